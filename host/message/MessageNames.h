#ifndef OLMKIT_HOST_MESSAGE_MESSAGENAMES_H
#define OLMKIT_HOST_MESSAGE_MESSAGENAMES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "host/message/Property.h"

namespace olmhost {

// What the properties of 0x8000 and above mean in one message (MS-OXMSG, 2.2.3).
class MessageNames {
public:
    // The three streams of the message's __nameid_version1.0 storage.
    MessageNames(std::vector<std::byte> sets, std::vector<std::byte> entries,
                 std::vector<std::byte> texts)
        : sets(std::move(sets)), entries(std::move(entries)), texts(std::move(texts)) {}

    // None for an id below 0x8000, for one that the streams don't tell of, and when what they tell
    // leads out of them.
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
