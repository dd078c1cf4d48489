#include "host/compound/EntryName.h"

#include <algorithm>

#include <utf8proc.h>

#include "host/compound/CompoundFormat.h"

namespace olmhost {

namespace {

// Returns the capital of one unit. Surrogates stay as they are, and so do characters without a
// capital, or with one above U+FFFF.
char16_t upperCased(char16_t unit) {
    if (unit < 0x80) {
        return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - (u'a' - u'A')) : unit;
    }
    constexpr char16_t sharpS = 0xDF; // Unicode has no simple capital for it, but the library does
    if (unit == sharpS || (unit >= 0xD800 && unit <= 0xDFFF)) {
        return unit;
    }
    const utf8proc_int32_t capital = utf8proc_toupper(unit);
    return capital > 0 && capital <= 0xFFFF ? static_cast<char16_t>(capital) : unit;
}

} // namespace

bool isValidEntryName(std::u16string_view name) {
    return !name.empty() && name.size() <= longestName &&
           name.find_first_of(u"/\\:!") == std::u16string_view::npos;
}

std::strong_ordering compareEntryNames(std::u16string_view left, std::u16string_view right) {
    if (left.size() != right.size()) {
        return left.size() <=> right.size();
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (left[i] == right[i]) {
            continue;
        }
        const char16_t leftUnit = upperCased(left[i]);
        const char16_t rightUnit = upperCased(right[i]);
        if (leftUnit != rightUnit) {
            return leftUnit <=> rightUnit;
        }
    }
    return std::strong_ordering::equal;
}

std::size_t hashEntryName(std::u16string_view name) {
    std::uint64_t hash = 0xCBF29CE484222325; // FNV-1a
    for (const char16_t unit : name) {
        hash = (hash ^ upperCased(unit)) * 0x100000001B3;
    }
    return hash ^ (hash >> 32);
}

} // namespace olmhost
