#ifndef OLMKIT_CLI_SHOW_ITEMDESCRIPTION_H
#define OLMKIT_CLI_SHOW_ITEMDESCRIPTION_H

#include <cstdint>
#include <optional>
#include <string>

#include "cli/rows/JsonLine.h"
#include "host/message/Message.h"

namespace olmkit {

// Which item a message was made of.
struct ItemOrigin {
    std::optional<std::uint64_t> index; // none for one that was asked for by its place
    std::uint32_t entry = 0;
    std::uint32_t item = 0;
};

// All that a message holds, as an object of "index", "entry", "item", "class", "properties",
// "recipients", "attachments" and "recurrence" (null without one). A recurrence that can't be
// decoded is an object with its "fault" alone.
JsonObject describeItem(const ItemOrigin& origin, const olmhost::Message& message);

} // namespace olmkit

#endif
