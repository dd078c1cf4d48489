#ifndef OLMKIT_FILTER_CORE_NUMBERREADER_H
#define OLMKIT_FILTER_CORE_NUMBERREADER_H

#include <cstdint>
#include <limits>

namespace qor {

// Returns true for space, tab, line feed, vertical tab, form feed and carriage return.
template <class Unit> bool isWhiteSpace(Unit unit) {
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

// Reads whole numbers from text of narrow characters or of 16-bit units. All arithmetic is on
// integers, and takes time in proportion to the text even for a large exponent.
template <class Unit> class NumberReader {
public:
    // The text is borrowed and needs no terminator.
    NumberReader(const Unit* text, int length) : units(text), unitCount(length) {}

    // Returns the position of the first unit, from `position` on, that is not white space.
    int skipWhiteSpace(int position) const {
        while (position < unitCount && isWhiteSpace(units[position])) {
            ++position;
        }
        return position;
    }

    // Reads the number at `start`, as WString::toLong().
    int64_t read(int start, int* end, int radix) {
        magnitude = 0;
        isNegative = false;
        isFull = false;
        int numberEnd = start;
        if (start >= 0 && start < unitCount && radix >= 2 && radix <= 36) {
            numberEnd = readSigned(start, radix);
        }
        if (end != nullptr) {
            *end = numberEnd;
        }
        return isNegative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
    }

private:
    // A larger exponent outweighs all the digits that a text can contain.
    static constexpr int64_t maxExponent = 10'000'000'000;

    bool isUnit(int position, char unit) const {
        return position < unitCount && units[position] == static_cast<Unit>(unit);
    }

    bool isSign(int position) const { return isUnit(position, '+') || isUnit(position, '-'); }

    // Returns the value of the digit at `position`, or -1.
    int digit(int position, int radix) const {
        if (position >= unitCount) {
            return -1;
        }
        const Unit unit = units[position];
        int value = -1;
        if (unit >= '0' && unit <= '9') {
            value = unit - '0';
        } else if (unit >= 'A' && unit <= 'Z') {
            value = unit - 'A' + 10;
        } else if (unit >= 'a' && unit <= 'z') {
            value = unit - 'a' + 10;
        }
        return value < radix ? value : -1;
    }

    int skipDigits(int position, int radix) const {
        while (digit(position, radix) >= 0) {
            ++position;
        }
        return position;
    }

    // Returns the position after the number, or `start` when there is no number.
    int readSigned(int start, int radix) {
        const int signAt = skipWhiteSpace(start);
        const int digitsAt = isSign(signAt) ? signAt + 1 : signAt;
        const int digitsEnd = skipDigits(digitsAt, radix);
        if (digitsEnd == digitsAt) {
            return start;
        }
        isNegative = isUnit(signAt, '-');
        if (radix == 10) {
            return readDecimal(digitsAt, digitsEnd);
        }
        appendDigits(digitsAt, digitsEnd, radix, unitCount);
        return digitsEnd;
    }

    // Reads the digits that are before the decimal point once the exponent has moved it. Returns
    // the position after the number.
    int readDecimal(int digitsAt, int digitsEnd) {
        int fractionAt = digitsEnd;
        if (isUnit(digitsEnd, '.') && digit(digitsEnd + 1, 10) >= 0) {
            fractionAt = digitsEnd + 1;
        }
        const int fractionEnd = skipDigits(fractionAt, 10);

        int64_t count = digitsEnd - digitsAt;
        const int numberEnd = readExponent(fractionEnd, count);
        count = appendDigits(digitsAt, digitsEnd, 10, count);
        count = appendDigits(fractionAt, fractionEnd, 10, count);
        while (count > 0 && magnitude != 0 && !isFull) {
            appendDigit(0, 10);
            --count;
        }
        return numberEnd;
    }

    // Adds the exponent at `position` to `count`. Returns the position after it.
    int readExponent(int position, int64_t& count) const {
        if (!isUnit(position, 'E') && !isUnit(position, 'e')) {
            return position;
        }
        const int digitsAt = isSign(position + 1) ? position + 2 : position + 1;
        const int digitsEnd = skipDigits(digitsAt, 10);
        int64_t exponent = 0;
        for (int i = digitsAt; i < digitsEnd && exponent < maxExponent; ++i) {
            exponent = exponent * 10 + digit(i, 10);
        }
        count += isUnit(position + 1, '-') ? -exponent : exponent;
        return digitsEnd > digitsAt ? digitsEnd : position;
    }

    // Appends at most `count` of the digits. Returns how many are still missing.
    int64_t appendDigits(int position, int end, int radix, int64_t count) {
        for (; position < end && count > 0 && !isFull; ++position, --count) {
            appendDigit(digit(position, radix), radix);
        }
        return count;
    }

    void appendDigit(int value, int radix) {
        constexpr auto maxPositive = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
        const uint64_t limit = isNegative ? maxPositive + 1 : maxPositive;
        const auto added = static_cast<uint64_t>(value);
        const auto factor = static_cast<uint64_t>(radix);
        isFull = magnitude > (limit - added) / factor;
        magnitude = isFull ? limit : magnitude * factor + added;
    }

    const Unit* units;
    int unitCount;
    uint64_t magnitude = 0;
    bool isNegative = false;
    bool isFull = false; // the limit was reached; further digits are ignored
};

} // namespace qor

#endif
