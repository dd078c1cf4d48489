#ifndef OLMKIT_FILTER_CORE_WSTRING_H
#define OLMKIT_FILTER_CORE_WSTRING_H

#include <cstdint>

#include "filter/core/AbstractMutableString.h"
#include "filter/core/String.h"

namespace qor {

// Text of 16-bit units, UTF-16 by agreement, always with a 0 unit behind it.
//
// Made and freed for every attribute that is read: a short text lives inside the object, and an
// empty one costs no allocation. A text whose units would not fit an int ends in std::bad_alloc,
// as any other failed allocation does.
//
// Narrow text is taken as UTF-8; each maximal invalid sequence in it becomes one U+FFFD.
class WString : public AbstractMutableString<unsigned short> {
public:
    // Not defaulted: that would let `WString()` fill the room for short texts with zero.
    // NOLINTNEXTLINE(modernize-use-equals-default)
    WString() {}

    // Narrow text up to its 0 byte; null counts as empty.
    WString(const char* narrow);

    // A copy takes the units and the hash that was kept, so a table's texts can be hashed before
    // threads share them.
    WString(const WString& other);

    // The first `number` units: none when it is below 1, all when it lies past the end.
    WString(const WString& other, int number);

    // Leaves the other text empty.
    WString(WString&& other) noexcept;

    WString& operator=(const WString& other);
    WString& operator=(WString&& other) noexcept;
    ~WString() override { releaseUnits(); }

    // Replaces the text by what stands before the first 0 unit among `count` units.
    void assign(const uint16_t* source, int count);

    // Replaces the text by `count` narrow characters (bytes) from `start` on. Both are taken on
    // trust; a start or a count below 0, or a null text, gives an empty text.
    void setValue(const char* narrow, int start, int count);

    // Cuts the text, or fills it up with spaces. Keeps the buffer.
    void setLength(int count);

    // Appends `count` units as they are, 0 units too.
    void append(const uint16_t* source, int count);

    // Appends narrow text up to its 0 byte.
    void append(const char* narrow);

    // Appends a number in upper-case digits, with leading zeros up to `width` digits. The radix
    // is 2 to 36; with another one nothing is appended. The two flags change nothing.
    void appendInteger(unsigned int number, int width, int radix, bool, bool);

    // Makes room for `count` units in all. Never shrinks, keeps the text.
    void insureCapacity(int count);

    // The number at `start`, behind white space and one optional sign, truncated toward zero and
    // cut to the range of 64 bits. Radix 10 takes digits, then optionally "." and digits, then
    // optionally "E" or "e", a sign and digits; other radices, 2 to 36, take digits alone. 0 when
    // there is no number, or when `start` or the radix is out of range. `end` may be null; it gets
    // the position behind the number, or `start` when there was none.
    int64_t toLong(int start, int* end, int radix) const;

    // The truth value at `start`, behind white space: the words "true" and "yes" in any case of
    // letters, and numbers other than 0, are true. `end` may be null; it gets the position behind
    // the word or the number, or `start` when there was neither.
    bool toBoolean(int start, int* end) const;

    // Compares without regard to the case of ASCII letters; null counts as empty.
    bool equalsIgnoreCase(const char* narrow) const;

    // The text in UTF-8; a lone surrogate becomes U+FFFD.
    String toString() const override;

    bool operator==(const WString& other) const { return hasSameUnits(other); }

private:
    // Fills the object up to 88 bytes.
    static constexpr int shortCapacity = 25;

    void releaseUnits() noexcept {
        if (units != shortUnits) {
            delete[] units;
        }
    }
    const uint16_t* makeRoom(int count, const uint16_t* source);
    void takeUnits(WString& other) noexcept;
    void copyUnits(const uint16_t* source, int count);
    void setUnitCount(int count);
    void appendNarrow(const char* narrow, size_t byteCount);

    uint16_t shortUnits[shortCapacity + 1]; // left as it is until the text is put there
};

} // namespace qor

#endif
