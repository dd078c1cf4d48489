#include "cli/show/PropertyDescription.h"

#include <bit>

#include "cli/show/TimeText.h"
#include "cli/terminal/Text.h"
#include "host/message/OneOffEntryId.h"
#include "host/message/PropertyType.h"

namespace olmkit {

namespace {

using olmhost::Message;
using olmhost::Property;
using olmhost::ValueStream;

constexpr std::size_t shownBytes = 32;          // of a binary value
constexpr std::size_t maxEntryIdSize = 1 << 20; // bytes; larger values are not decoded
constexpr double currencyUnit = 10'000;         // PtypCurrency counts in 1/10,000
constexpr std::uint32_t maxShortId = 0xFFFF;    // a larger LID is shown with 8 digits

std::string hexNumber(std::uint32_t number, int digits) {
    constexpr std::string_view all = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text += all[(number >> shift) & 0xF];
    }
    return text;
}

std::string hexDigits(const std::vector<std::byte>& bytes) {
    constexpr std::string_view all = "0123456789abcdef";
    std::string text;
    for (const std::byte byte : bytes) {
        text += all[std::to_integer<unsigned>(byte) >> 4];
        text += all[std::to_integer<unsigned>(byte) & 0xF];
    }
    return text;
}

JsonObject numberValue(std::uint16_t type, std::uint64_t bits) {
    switch (type & ~olmhost::multipleValues) {
    case olmhost::PtypInteger16:
        return static_cast<std::int16_t>(bits);
    case olmhost::PtypInteger32:
    case olmhost::PtypErrorCode:
        return static_cast<std::int32_t>(bits);
    case olmhost::PtypFloating32:
        return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    case olmhost::PtypFloating64:
    case olmhost::PtypFloatingTime:
        return std::bit_cast<double>(bits);
    case olmhost::PtypCurrency:
        return static_cast<double>(static_cast<std::int64_t>(bits)) / currencyUnit;
    case olmhost::PtypBoolean:
        return bits != 0;
    case olmhost::PtypTime:
        return fileTimeText(bits);
    default:
        return static_cast<std::int64_t>(bits);
    }
}

JsonObject binaryValue(const Message& message, const ValueStream& value) {
    JsonObject described;
    described["size"] = value.size;
    described["start"] = hexDigits(message.bytes(value, shownBytes));
    if (value.size > maxEntryIdSize) {
        return described;
    }
    if (const auto entryId = olmhost::decodeOneOffEntryId(message.bytes(value, value.size))) {
        described["one_off"] = {{"display_name", utf8Of(entryId->displayName)},
                                {"address_type", utf8Of(entryId->addressType)},
                                {"address", utf8Of(entryId->address)}};
    }
    return described;
}

bool isText(std::uint16_t type) {
    const int single = type & ~olmhost::multipleValues;
    return single == olmhost::PtypString || single == olmhost::PtypString8;
}

JsonObject describeValue(const Message& message, const Property& property) {
    std::vector<JsonObject> values;
    for (const std::uint64_t bits : message.numbers(property)) {
        values.push_back(numberValue(property.type(), bits));
    }
    const olmhost::TypeRow* row = olmhost::findType(property.type());
    if (!row->isInEntry) {
        for (const ValueStream& value : property.values) {
            values.push_back(isText(property.type())
                                 ? JsonObject(utf8Of(message.text(property, value)))
                                 : binaryValue(message, value));
        }
    }
    if ((property.type() & olmhost::multipleValues) != 0) {
        return values;
    }
    return values.empty() ? JsonObject() : values.front();
}

JsonObject nameOrNull(const char* text) {
    return text == nullptr ? JsonObject() : JsonObject(text);
}

void describeName(JsonObject& described, const Property& property) {
    if (!property.name.has_value()) {
        described["name"] = nameOrNull(olmhost::tagName(property.id()));
        described["set"] = nullptr;
        described["id"] = nullptr;
        return;
    }
    const olmhost::PropertyName& name = *property.name;
    const char* set = olmhost::setName(name.set);
    described["name"] = nameOrNull(name.isText ? olmhost::namedPropertyName(name.set, name.text)
                                               : olmhost::namedPropertyName(name.set, name.id));
    described["set"] = set == nullptr ? olmhost::setText(name.set) : set;
    described["id"] =
        name.isText ? utf8Of(name.text) : hexNumber(name.id, name.id > maxShortId ? 8 : 4);
}

} // namespace

JsonObject describeProperty(const Message& message, const Property& property) {
    const char* type = olmhost::typeName(property.type());
    JsonObject described;
    described["tag"] = hexNumber(property.tag, 8);
    described["type"] = type == nullptr ? hexNumber(property.type(), 4) : type;
    describeName(described, property);
    if (property.fault.empty()) {
        described["value"] = describeValue(message, property);
    } else {
        described["value"] = nullptr;
        described["fault"] = property.fault;
    }
    return described;
}

std::string utf8Of(std::u16string_view text) {
    std::string narrow;
    appendUtf8(narrow, text);
    return narrow;
}

} // namespace olmkit
