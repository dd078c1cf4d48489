#ifndef OLMKIT_FILTER_CORE_WSTRING_H
#define OLMKIT_FILTER_CORE_WSTRING_H

#include <cstdint>

#include "filter/core/AbstractMutableString.h"
#include "filter/core/String.h"

namespace qor {

// Terminated text of 16-bit units in UTF-16.
//
// A short text is stored in the object and an empty one allocates nothing, since objects are made
// and freed for every attribute. A text of more units than an int can count throws std::bad_alloc,
// like any failed allocation.
//
// Narrow text is in UTF-8; each maximal invalid sequence of it becomes one U+FFFD.
class WString : public AbstractMutableString<unsigned short> {
public:
    // Not defaulted: `WString()` would then fill the room for short texts with zero.
    // NOLINTNEXTLINE(modernize-use-equals-default)
    WString() {}

    // Copies narrow text up to its 0 byte. Null is an empty text.
    WString(const char* narrow);

    // Copies the units and the cached hash, so that the texts of a table can be hashed before
    // threads share them.
    WString(const WString& other);

    // Copies the first `number` units: none when it is below 1, all when it is past the end.
    WString(const WString& other, int number);

    // Leaves the other text empty.
    WString(WString&& other) noexcept;

    WString& operator=(const WString& other);
    WString& operator=(WString&& other) noexcept;
    ~WString() override { releaseUnits(); }

    // Replaces the text by the units before the first 0 unit among `count` units.
    void assign(const uint16_t* source, int count);

    // Replaces the text by `count` bytes of narrow text from `start` on, which are not checked
    // against its length. A negative start or count, or a null text, empties the text.
    void setValue(const char* narrow, int start, int count);

    // Cuts the text to `count` units, or fills it up with spaces. Keeps the buffer.
    void setLength(int count);

    // Appends `count` units, including 0 units.
    void append(const uint16_t* source, int count);

    // Appends narrow text up to its 0 byte.
    void append(const char* narrow);

    // Appends a number in upper-case digits, with leading zeros up to `width` digits. A radix that
    // is not 2 to 36 appends nothing. The two flags are ignored.
    void appendInteger(unsigned int number, int width, int radix, bool, bool);

    // Makes room for `count` units in total. Keeps the text and never shrinks the buffer.
    void insureCapacity(int count);

    // Returns the number at `start`, after white space and an optional sign, truncated toward zero
    // and limited to the range of 64 bits. In radix 10 it is digits, then optionally "." and
    // digits, then optionally "E" or "e", an optional sign and digits; in another radix, 2 to 36,
    // digits alone. Returns 0 when there is no number, or when `start` or the radix is out of
    // range. Stores the position after the number, or `start` without one, in `*end`, which may be
    // null.
    int64_t toLong(int start, int* end, int radix) const;

    // Returns the truth value at `start`, after white space: the words "true" and "yes" in any case
    // and numbers other than 0 are true. Stores the position after the word or number, or `start`
    // without either, in `*end`, which may be null.
    bool toBoolean(int start, int* end) const;

    // Compares without regard to the case of ASCII letters. Null is an empty text.
    bool equalsIgnoreCase(const char* narrow) const;

    // Returns the text in UTF-8. A lone surrogate becomes U+FFFD.
    String toString() const override;

    bool operator==(const WString& other) const { return hasSameUnits(other); }

private:
    // Makes the object 88 bytes large.
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

    uint16_t shortUnits[shortCapacity + 1]; // not initialized until a text is stored in it
};

} // namespace qor

#endif
