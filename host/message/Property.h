#ifndef OLMKIT_HOST_MESSAGE_PROPERTY_H
#define OLMKIT_HOST_MESSAGE_PROPERTY_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/message/PropertyNames.h"

namespace olmhost {

// The name of a property of 0x8000 and above in one message: a number or a text in a set.
struct PropertyName {
    PropertySet set = {};
    std::uint32_t id = 0;
    std::u16string text;
    bool isText = false;
};

// One value that has a stream of its own.
struct ValueStream {
    std::uint32_t place = 0; // of the stream in its file's directory
    std::uint64_t size = 0;  // bytes
};

// One property of a message, of a recipient or of an attachment.
struct Property {
    std::uint32_t tag = 0;
    std::uint64_t field = 0;          // the eight bytes of the entry: the value, or its size
    std::optional<PropertyName> name; // of a property of 0x8000 and above, if known
    std::vector<ValueStream> values;  // of texts and binary values, one for each value
    std::string fault;                // why there is no value, human-readable; empty when there is

    std::uint16_t id() const { return static_cast<std::uint16_t>(tag >> 16); }
    std::uint16_t type() const { return static_cast<std::uint16_t>(tag); }
};

} // namespace olmhost

#endif
