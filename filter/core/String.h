#ifndef OLMKIT_FILTER_CORE_STRING_H
#define OLMKIT_FILTER_CORE_STRING_H

#include <cstdint>
#include <string>

#include "filter/core/Object.h"

namespace qor {

// Narrow text in UTF-8. It may contain 0 bytes.
class String : public Object {
public:
    String() = default;

    // Copies the text up to its 0 byte. Null is an empty text.
    String(const char* text);

    // Copies `count` bytes. Null, or a count below 1, is an empty text.
    String(const char* text, int count);

    String(const String&) = default;
    String(String&&) noexcept = default;
    String& operator=(const String&) = default;
    String& operator=(String&&) noexcept = default;
    ~String() override = default;

    // Returns the terminated text, never null. Valid until the text changes.
    const char* value() const { return bytes.c_str(); }

    // Returns the length in bytes.
    int length() const { return static_cast<int>(bytes.size()); }

    // Returns the number at `start`, as WString::toLong().
    int64_t toLong(int start, int* end, int radix) const;

    int hashCode() const override;
    bool equals(const Object& other) const override;
    String toString() const override;

    bool operator==(const String& other) const { return bytes == other.bytes; }

private:
    std::string bytes;
};

} // namespace qor

#endif
