#include "host/message/MessageNames.h"

#include <algorithm>

#include "host/compound/FieldReader.h"

namespace olmhost {

namespace {

constexpr std::uint16_t firstNamedId = 0x8000;
constexpr std::size_t nameEntrySize = 8; // bytes

// The numbers of the sets that are never listed, and of the first that is (MS-OXMSG 2.2.3.1.2).
constexpr unsigned mapiNumber = 1;
constexpr unsigned publicStringsNumber = 2;
constexpr unsigned firstListedNumber = 3;

} // namespace

std::optional<PropertyName> MessageNames::nameOf(std::uint16_t id) const {
    if (id < firstNamedId) {
        return std::nullopt;
    }
    const std::size_t place = std::size_t{id - 0U - firstNamedId} * nameEntrySize;
    if (place > entries.size() || entries.size() - place < nameEntrySize) {
        return std::nullopt;
    }
    const std::span<const std::byte> record = entries;
    FieldReader fields(record.subspan(place));
    const auto identifier = fields.number<std::uint32_t>();
    const auto kind = fields.number<std::uint16_t>();
    const std::optional<PropertySet> set = setOf(kind >> 1);
    if (!set.has_value()) {
        return std::nullopt;
    }
    PropertyName name;
    name.set = *set;
    name.isText = (kind & 1) != 0;
    if (!name.isText) {
        name.id = identifier;
        return name;
    }
    std::optional<std::u16string> text = textAt(identifier);
    if (!text.has_value()) {
        return std::nullopt;
    }
    name.text = std::move(*text);
    return name;
}

std::optional<PropertySet> MessageNames::setOf(unsigned number) const {
    if (number == mapiNumber) {
        return mapiSet();
    }
    if (number == publicStringsNumber) {
        return publicStringsSet();
    }
    PropertySet set;
    if (number < firstListedNumber ||
        sets.size() / set.size() <= std::size_t{number} - firstListedNumber) {
        return std::nullopt;
    }
    const auto bytes =
        std::span(sets).subspan((number - firstListedNumber) * set.size(), set.size());
    std::ranges::copy(bytes, set.begin());
    return set;
}

std::optional<std::u16string> MessageNames::textAt(std::uint32_t offset) const {
    if (offset > texts.size()) {
        return std::nullopt;
    }
    const std::span<const std::byte> listed = texts;
    FieldReader fields(listed.subspan(offset));
    FieldReader units(fields.bytes(fields.number<std::uint32_t>()));
    std::u16string text;
    while (units.remaining() >= 2) {
        text += static_cast<char16_t>(units.number<std::uint16_t>());
    }
    return fields.isGood() ? std::optional(text) : std::nullopt;
}

} // namespace olmhost
