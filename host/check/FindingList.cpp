#include "host/check/FindingList.h"

#include "host/compound/CompoundFormat.h"

namespace olmhost {

namespace {

std::string hexDigits(std::uint32_t value, int count) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (int shift = 4 * (count - 1); shift >= 0; shift -= 4) {
        text += digits[(value >> shift) & 0xF];
    }
    return text;
}

} // namespace

void FindingList::add(FindingCode code, std::string place, std::string text) {
    const Severity severity = findingSeverity(code);
    ++counts[static_cast<std::size_t>(severity)];
    if (held.size() < maxHeld) {
        held.push_back({severity, code, std::move(place), std::move(text)});
    }
}

std::string counted(std::uint64_t count, std::string_view noun) {
    std::string text = std::to_string(count) + " ";
    text += noun;
    if (count != 1) {
        text += 's';
    }
    return text;
}

std::string hexText(std::uint32_t value) {
    return "0x" + hexDigits(value, 8);
}

std::string numberText(std::uint32_t value) {
    return value <= largestSectorNumber ? std::to_string(value) : hexText(value);
}

std::string nameText(std::u16string_view name) {
    std::string text;
    for (const char16_t unit : name) {
        if (unit >= 0x20 && unit <= 0x7E) {
            text += static_cast<char>(unit);
        } else {
            text += "\\u" + hexDigits(unit, 4);
        }
    }
    return text;
}

} // namespace olmhost
