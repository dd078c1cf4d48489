#include "filter/core/WString.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <new>
#include <string_view>

#include "filter/core/NumberReader.h"
#include "filter/core/Utf8.h"

namespace qor {

namespace {

constexpr int64_t maxCapacity = std::numeric_limits<int>::max();

constexpr char16_t numberDigits[] = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";

// Returns the sum of a length and a count. REQUIRES: neither is negative.
int sumOfUnits(int length, int64_t count) {
    if (count > maxCapacity - length) {
        throw std::bad_alloc();
    }
    return length + static_cast<int>(count);
}

bool isAsciiLetter(uint16_t unit) {
    return (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z');
}

uint16_t foldCase(uint16_t unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<uint16_t>(unit + ('a' - 'A')) : unit;
}

// `word` is in lower-case ASCII letters.
bool isWord(const uint16_t* text, int length, std::string_view word) {
    return static_cast<size_t>(length) == word.size() &&
           std::equal(word.begin(), word.end(), text,
                      [](char letter, uint16_t unit) { return letter == foldCase(unit); });
}

} // namespace

WString::WString(const char* narrow) {
    append(narrow);
}

WString::WString(const WString& other) : AbstractMutableString() {
    copyUnits(other.value(), other.unitCount);
    hash = other.hash;
}

WString::WString(const WString& other, int number) {
    copyUnits(other.value(), std::clamp(number, 0, other.unitCount));
}

WString::WString(WString&& other) noexcept : AbstractMutableString() {
    takeUnits(other);
}

WString& WString::operator=(const WString& other) {
    if (this != &other) {
        copyUnits(other.value(), other.unitCount);
        hash = other.hash;
    }
    return *this;
}

WString& WString::operator=(WString&& other) noexcept {
    if (this != &other) {
        releaseUnits();
        takeUnits(other);
    }
    return *this;
}

void WString::assign(const uint16_t* source, int count) {
    if (source == nullptr || count <= 0) {
        setLength(0);
        return;
    }
    source = makeRoom(count, source);
    std::memmove(units, source, sizeof(uint16_t) * static_cast<size_t>(count));
    setUnitCount(static_cast<int>(std::find(units, units + count, 0) - units));
}

void WString::setValue(const char* narrow, int start, int count) {
    setLength(0);
    if (narrow != nullptr && start >= 0 && count > 0) {
        appendNarrow(narrow + start, static_cast<size_t>(count));
    }
}

void WString::setLength(int count) {
    hash = 0;
    count = std::max(count, 0);
    if (count == unitCount) {
        return;
    }
    insureCapacity(count);
    if (count > unitCount) {
        std::fill(units + unitCount, units + count, static_cast<uint16_t>(' '));
    }
    setUnitCount(count);
}

void WString::append(const uint16_t* source, int count) {
    hash = 0;
    if (source == nullptr || count <= 0) {
        return;
    }
    const int sum = sumOfUnits(unitCount, count);
    source = makeRoom(sum, source);
    std::memmove(units + unitCount, source, sizeof(uint16_t) * static_cast<size_t>(count));
    setUnitCount(sum);
}

void WString::append(const char* narrow) {
    hash = 0;
    if (narrow != nullptr) {
        appendNarrow(narrow, std::strlen(narrow));
    }
}

void WString::appendInteger(unsigned int number, int width, int radix, bool, bool) {
    hash = 0;
    if (radix < 2 || radix > 36) {
        return;
    }
    uint16_t digits[std::numeric_limits<unsigned int>::digits];
    uint16_t* const end = std::end(digits);
    uint16_t* first = end;
    do {
        *--first = numberDigits[number % static_cast<unsigned int>(radix)];
        number /= static_cast<unsigned int>(radix);
    } while (number != 0);

    const auto digitCount = static_cast<int>(end - first);
    const int zeroCount = std::max(width, digitCount) - digitCount;
    const int sum = sumOfUnits(unitCount, static_cast<int64_t>(zeroCount) + digitCount);
    insureCapacity(sum);
    std::fill_n(units + unitCount, zeroCount, static_cast<uint16_t>('0'));
    std::copy(first, end, units + unitCount + zeroCount);
    setUnitCount(sum);
}

void WString::insureCapacity(int count) {
    if (count <= unitCapacity) {
        return;
    }
    if (count <= shortCapacity) {
        units = shortUnits;
        unitCapacity = shortCapacity;
        units[0] = 0;
    } else {
        // The room grows by half each time, so that appending many small pieces takes linear time.
        const int64_t grown = static_cast<int64_t>(unitCapacity) + unitCapacity / 2;
        const auto needed = static_cast<int>(std::clamp<int64_t>(grown, count, maxCapacity));
        auto* larger = new uint16_t[static_cast<size_t>(needed) + 1];
        std::memcpy(larger, value(), sizeof(uint16_t) * (static_cast<size_t>(unitCount) + 1));
        releaseUnits();
        units = larger;
        unitCapacity = needed;
    }
    text = units;
}

int64_t WString::toLong(int start, int* end, int radix) const {
    return NumberReader<uint16_t>(value(), unitCount).read(start, end, radix);
}

bool WString::toBoolean(int start, int* end) const {
    const bool isInside = start >= 0 && start < unitCount;
    NumberReader<uint16_t> number(value(), unitCount);
    const int wordAt = isInside ? number.skipWhiteSpace(start) : start;
    int wordEnd = wordAt;
    while (isInside && wordEnd < unitCount && isAsciiLetter(value()[wordEnd])) {
        ++wordEnd;
    }
    if (wordEnd == wordAt) {
        return number.read(start, end, 10) != 0;
    }
    if (end != nullptr) {
        *end = wordEnd;
    }
    const uint16_t* word = value() + wordAt;
    return isWord(word, wordEnd - wordAt, "true") || isWord(word, wordEnd - wordAt, "yes");
}

bool WString::equalsIgnoreCase(const char* narrow) const {
    const char* position = narrow != nullptr ? narrow : "";
    const char* const narrowEnd = position + std::strlen(position);
    const uint16_t* unit = value();
    const uint16_t* const unitEnd = unit + unitCount;
    while (position != narrowEnd) {
        uint16_t expected[2] = {0, 0};
        const int count = writeUtf16(readUtf8(position, narrowEnd), expected);
        for (int i = 0; i < count; ++i, ++unit) {
            // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): set up to the length
            if (unit == unitEnd || foldCase(*unit) != foldCase(expected[i])) {
                return false;
            }
        }
    }
    return unit == unitEnd;
}

String WString::toString() const {
    std::string narrow;
    narrow.reserve(static_cast<size_t>(unitCount));
    const uint16_t* position = value();
    const uint16_t* const end = position + unitCount;
    while (position != end) {
        appendUtf8(narrow, readUtf16(position, end));
    }
    return String(narrow.data(), sumOfUnits(0, static_cast<int64_t>(narrow.size())));
}

// Makes room for `count` units. Returns the new address of `source`, which may be part of this
// text.
const uint16_t* WString::makeRoom(int count, const uint16_t* source) {
    const bool isOwn =
        std::less_equal<>()(units, source) && std::less<>()(source, units + unitCapacity);
    const auto offset = isOwn ? source - units : 0;
    insureCapacity(count);
    return isOwn ? units + offset : source;
}

// Takes over the units of `other` and leaves it empty. REQUIRES: this text's units were released.
void WString::takeUnits(WString& other) noexcept {
    unitCount = other.unitCount;
    hash = other.hash;
    unitCapacity = other.unitCapacity;
    units = other.units;
    if (other.units == other.shortUnits) {
        units = shortUnits;
        std::memcpy(units, other.units, sizeof(uint16_t) * (static_cast<size_t>(unitCount) + 1));
    }
    text = units;
    other.text = other.units = nullptr;
    other.unitCount = other.unitCapacity = other.hash = 0;
}

void WString::copyUnits(const uint16_t* source, int count) {
    hash = 0;
    insureCapacity(count);
    if (units == nullptr) {
        return; // both texts are empty
    }
    std::memcpy(units, source, sizeof(uint16_t) * static_cast<size_t>(count));
    setUnitCount(count);
}

// REQUIRES: `count` is within the capacity.
void WString::setUnitCount(int count) {
    unitCount = count;
    units[count] = 0;
    hash = 0;
}

// Narrow text becomes at most one unit per byte.
void WString::appendNarrow(const char* narrow, size_t byteCount) {
    if (byteCount == 0) {
        return;
    }
    const auto count = static_cast<int64_t>(std::min<size_t>(byteCount, maxCapacity + 1));
    insureCapacity(sumOfUnits(unitCount, count));
    uint16_t* unit = units + unitCount;
    for (const char *position = narrow, *end = narrow + count; position != end;) {
        unit += writeUtf16(readUtf8(position, end), unit);
    }
    setUnitCount(static_cast<int>(unit - units));
}

} // namespace qor
