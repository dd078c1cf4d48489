#ifndef OLMKIT_HOST_MESSAGE_MESSAGENAMES_H
#define OLMKIT_HOST_MESSAGE_MESSAGENAMES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "host/message/Property.h"

namespace olmhost {

// The names of the properties of 0x8000 and above in one message (MS-OXMSG 2.2.3).
class MessageNames {
public:
    // The three streams of the message's __nameid_version1.0 storage.
    MessageNames(std::vector<std::byte> sets, std::vector<std::byte> entries,
                 std::vector<std::byte> texts)
        : sets(std::move(sets)), entries(std::move(entries)), texts(std::move(texts)) {}

    // Returns none for an id below 0x8000, for one without an entry, and when its entry points
    // outside the streams.
    std::optional<PropertyName> nameOf(std::uint16_t id) const;

private:
    std::optional<PropertySet> setOf(unsigned number) const;
    std::optional<std::u16string> textAt(std::uint32_t offset) const;

    std::vector<std::byte> sets;
    std::vector<std::byte> entries;
    std::vector<std::byte> texts;
};

} // namespace olmhost

#endif
