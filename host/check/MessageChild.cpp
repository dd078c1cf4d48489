#include "host/check/MessageChild.h"

#include <optional>

namespace olmhost {

namespace {

constexpr std::size_t numberDigits = 8;

struct ChildPrefix {
    std::u16string_view text;
    MessageChild::Kind kind;
};

constexpr ChildPrefix numberedPrefixes[] = {
    {u"__recip_version1.0_#", MessageChild::Kind::Recipient},
    {u"__attach_version1.0_#", MessageChild::Kind::Attachment},
    {u"__substg1.0_", MessageChild::Kind::Value},
};

// Takes eight hexadecimal digits off the front of `text`.
std::optional<std::uint32_t> takeNumber(std::u16string_view& text, bool& hasLowercaseDigits) {
    if (text.size() < numberDigits) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (const char16_t unit : text.substr(0, numberDigits)) {
        std::uint32_t digit = 0;
        if (unit >= u'0' && unit <= u'9') {
            digit = unit - u'0';
        } else if (unit >= u'A' && unit <= u'F') {
            digit = unit - u'A' + 10;
        } else if (unit >= u'a' && unit <= u'f') {
            digit = unit - u'a' + 10;
            hasLowercaseDigits = true;
        } else {
            return std::nullopt;
        }
        number = number << 4 | digit;
    }
    text.remove_prefix(numberDigits);
    return number;
}

} // namespace

MessageChild::MessageChild(std::u16string_view name) {
    if (name == u"__properties_version1.0") {
        kind = Kind::PropertyStream;
        return;
    }
    if (name == u"__nameid_version1.0") {
        kind = Kind::NameStorage;
        return;
    }
    for (const ChildPrefix& prefix : numberedPrefixes) {
        if (!name.starts_with(prefix.text)) {
            continue;
        }
        std::u16string_view rest = name.substr(prefix.text.size());
        const std::optional<std::uint32_t> first = takeNumber(rest, hasLowercaseDigits);
        if (first.has_value() && rest.empty()) {
            kind = prefix.kind;
            number = *first;
        } else if (first.has_value() && rest.front() == u'-' && prefix.kind == Kind::Value) {
            rest.remove_prefix(1);
            const std::optional<std::uint32_t> second = takeNumber(rest, hasLowercaseDigits);
            if (second.has_value() && rest.empty()) {
                kind = Kind::ListValue;
                number = *first;
                index = *second;
            }
        }
    }
}

} // namespace olmhost
