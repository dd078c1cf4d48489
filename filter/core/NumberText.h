#ifndef OLMKIT_FILTER_CORE_NUMBERTEXT_H
#define OLMKIT_FILTER_CORE_NUMBERTEXT_H

#include <cstdint>
#include <limits>

namespace qor {

// Space, tab, line feed, vertical tab, form feed and carriage return.
template <class Unit> bool isWhiteSpace(Unit unit) {
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

// Reads whole numbers from text of narrow characters or of 16-bit units. All arithmetic is on
// whole numbers and takes time in proportion to the text, however large an exponent is.
template <class Unit> class NumberText {
public:
    // The text is borrowed; it needs no terminator.
    NumberText(const Unit* text, int length) : units(text), unitCount(length) {}

    // The position of the first unit from `position` on that is no white space.
    int skipWhiteSpace(int position) const {
        while (position < unitCount && isWhiteSpace(units[position])) {
            ++position;
        }
        return position;
    }

    // As WString::toLong.
    int64_t read(int start, int* end, int radix) {
        magnitude = 0;
        isNegative = false;
        isFull = false;
        int behind = start;
        if (start >= 0 && start < unitCount && radix >= 2 && radix <= 36) {
            behind = readSigned(start, radix);
        }
        if (end != nullptr) {
            *end = behind;
        }
        return isNegative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
    }

private:
    // Past it, an exponent outweighs any number of digits that a text can hold.
    static constexpr int64_t largestExponent = 10'000'000'000;

    bool isUnit(int position, char unit) const {
        return position < unitCount && units[position] == static_cast<Unit>(unit);
    }

    bool isSign(int position) const { return isUnit(position, '+') || isUnit(position, '-'); }

    // The value of the digit there, or -1.
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

    // Gives the position behind the number, or `start` when there is none.
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

    // Takes the digits that lie ahead of the point once the exponent has moved it.
    int readDecimal(int digitsAt, int digitsEnd) {
        int fractionAt = digitsEnd;
        if (isUnit(digitsEnd, '.') && digit(digitsEnd + 1, 10) >= 0) {
            fractionAt = digitsEnd + 1;
        }
        const int fractionEnd = skipDigits(fractionAt, 10);

        int64_t wanted = digitsEnd - digitsAt;
        const int behind = readExponent(fractionEnd, wanted);
        wanted = appendDigits(digitsAt, digitsEnd, 10, wanted);
        wanted = appendDigits(fractionAt, fractionEnd, 10, wanted);
        while (wanted > 0 && magnitude != 0 && !isFull) {
            appendDigit(0, 10);
            --wanted;
        }
        return behind;
    }

    // Adds the exponent at `position` to `wanted`. Gives the position behind it.
    int readExponent(int position, int64_t& wanted) const {
        if (!isUnit(position, 'E') && !isUnit(position, 'e')) {
            return position;
        }
        const int digitsAt = isSign(position + 1) ? position + 2 : position + 1;
        const int digitsEnd = skipDigits(digitsAt, 10);
        int64_t exponent = 0;
        for (int i = digitsAt; i < digitsEnd && exponent < largestExponent; ++i) {
            exponent = exponent * 10 + digit(i, 10);
        }
        wanted += isUnit(position + 1, '-') ? -exponent : exponent;
        return digitsEnd > digitsAt ? digitsEnd : position;
    }

    // Appends at most `wanted` of the digits. Gives how many are still wanted.
    int64_t appendDigits(int position, int end, int radix, int64_t wanted) {
        for (; position < end && wanted > 0 && !isFull; ++position, --wanted) {
            appendDigit(digit(position, radix), radix);
        }
        return wanted;
    }

    void appendDigit(int value, int radix) {
        constexpr auto largest = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
        const uint64_t limit = isNegative ? largest + 1 : largest;
        const auto added = static_cast<uint64_t>(value);
        const auto factor = static_cast<uint64_t>(radix);
        isFull = magnitude > (limit - added) / factor;
        magnitude = isFull ? limit : magnitude * factor + added;
    }

    const Unit* units;
    int unitCount;
    uint64_t magnitude = 0;
    bool isNegative = false;
    bool isFull = false; // the limit was reached: further digits don't count
};

} // namespace qor

#endif
