#ifndef OLMKIT_HOST_MESSAGE_ONEOFFENTRYID_H
#define OLMKIT_HOST_MESSAGE_ONEOFFENTRYID_H

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "host/stream/Export.h"

namespace olmhost {

// A recipient outside any address book, as a binary value holds it (MS-OXCDATA, 2.2.5.1).
struct OneOffEntryId {
    std::u16string displayName;
    std::u16string addressType; // "SMTP", "MAPIPDL" for a group
    std::u16string address;
};

// None when the bytes are no such value, are cut off, or hold text in 8 bits.
OLMHOST_EXPORT std::optional<OneOffEntryId> decodeOneOffEntryId(std::span<const std::byte> bytes);

} // namespace olmhost

#endif
