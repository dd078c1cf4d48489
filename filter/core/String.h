#ifndef OLMKIT_FILTER_CORE_STRING_H
#define OLMKIT_FILTER_CORE_STRING_H

#include <cstdint>
#include <string>

#include "filter/core/Object.h"

namespace qor {

// Narrow text, UTF-8 by agreement. A 0 byte may stand in it.
class String : public Object {
public:
    String() = default;

    // Copies the text up to its 0 byte; null counts as empty.
    String(const char* text);

    // Copies `count` bytes; null, or a count below 1, counts as empty.
    String(const char* text, int count);

    String(const String&) = default;
    String(String&&) noexcept = default;
    String& operator=(const String&) = default;
    String& operator=(String&&) noexcept = default;
    ~String() override = default;

    // Never null, always terminated; valid until the text changes.
    const char* value() const { return bytes.c_str(); }

    // In bytes.
    int length() const { return static_cast<int>(bytes.size()); }

    // As WString::toLong.
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
