#include "filter/core/String.h"

#include <cstring>
#include <limits>
#include <new>

#include "filter/core/NumberReader.h"

namespace qor {

String::String(const char* text) {
    if (text == nullptr) {
        return;
    }
    const size_t byteCount = std::strlen(text);
    if (byteCount > static_cast<size_t>(std::numeric_limits<int>::max())) {
        throw std::bad_alloc();
    }
    bytes.assign(text, byteCount);
}

String::String(const char* text, int count) {
    if (text != nullptr && count > 0) {
        bytes.assign(text, static_cast<size_t>(count));
    }
}

int64_t String::toLong(int start, int* end, int radix) const {
    return NumberReader<char>(value(), length()).read(start, end, radix);
}

int String::hashCode() const {
    const auto* first = reinterpret_cast<const unsigned char*>(value());
    return static_cast<int>(hashdata(first, static_cast<unsigned int>(length())) & 0x7FFFFFFFU);
}

bool String::equals(const Object& other) const {
    const auto* that = dynamic_cast<const String*>(&other);
    return that != nullptr && *this == *that;
}

String String::toString() const {
    return *this;
}

} // namespace qor
