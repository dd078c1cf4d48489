#ifndef OLMKIT_CLI_SHOW_ITEMDESCRIPTION_H
#define OLMKIT_CLI_SHOW_ITEMDESCRIPTION_H

#include <cstdint>
#include <optional>
#include <string>

#include "cli/rows/JsonLine.h"
#include "host/message/Message.h"

namespace olmkit {

// The item that a message was extracted from.
struct ItemOrigin {
    std::optional<std::uint64_t> index; // none when the item was named by its place
    std::uint32_t entry = 0;
    std::uint32_t item = 0;
};

// Returns the contents of a message as an object with "index", "entry", "item", "class",
// "properties", "recipients", "attachments" and "recurrence" (null without one). A recurrence that
// can't be decoded is an object with only a "fault".
JsonObject describeItem(const ItemOrigin& origin, const olmhost::Message& message);

} // namespace olmkit

#endif
