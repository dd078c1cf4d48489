#ifndef OLMKIT_HOST_MESSAGE_ONEOFFENTRYID_H
#define OLMKIT_HOST_MESSAGE_ONEOFFENTRYID_H

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "host/stream/Export.h"

namespace olmhost {

// A recipient that is not in an address book (One-Off EntryID, MS-OXCDATA 2.2.5.1).
struct OneOffEntryId {
    std::u16string displayName;
    std::u16string addressType; // "SMTP", "MAPIPDL" for a group
    std::u16string address;
};

// Returns none when the bytes are not such a value, are cut off, or have text of 8 bits.
OLMHOST_EXPORT std::optional<OneOffEntryId> decodeOneOffEntryId(std::span<const std::byte> bytes);

} // namespace olmhost

#endif
