#ifndef OLMKIT_FILTER_CORE_ABSTRACTSTRING_H
#define OLMKIT_FILTER_CORE_ABSTRACTSTRING_H

#include <cstring>

#include "filter/core/Object.h"

namespace qor {

// Terminated text of units of type T, with its length and a cached hash. Derived classes own the
// units.
template <class T> class AbstractString : public Object {
public:
    ~AbstractString() override = default;

    // The text of a string without a buffer.
    static constexpr T EMPTY_STRING_BUF[1] = {0};

    static const T* emptyText() { return EMPTY_STRING_BUF; }

    // Returns the terminated text, never null. Valid until the text changes.
    const T* value() const { return text != nullptr ? text : EMPTY_STRING_BUF; }

    // Returns the length in units, without the terminator.
    int length() const { return unitCount; }

    // Returns the hash of the units, which is cached unless it is 0.
    int hashCode() const override {
        if (hash <= 0) {
            const auto* bytes = reinterpret_cast<const unsigned char*>(value());
            const auto byteCount = static_cast<unsigned int>(unitCount) * sizeof(T);
            hash = static_cast<int>(hashdata(bytes, static_cast<unsigned int>(byteCount)) &
                                    0x7FFFFFFFU);
        }
        return hash;
    }

    // Returns true for a text of the same unit type with the same units.
    bool equals(const Object& other) const override {
        const auto* that = dynamic_cast<const AbstractString*>(&other);
        return that != nullptr && hasSameUnits(*that);
    }

    // Clears the cached hash. To be called after a change through buffer().
    void resetHash() { hash = 0; }

protected:
    AbstractString() = default;

    // Only the class that owns the units can copy them.
    AbstractString(const AbstractString&) = delete;
    AbstractString& operator=(const AbstractString&) = delete;

    bool hasSameUnits(const AbstractString& other) const {
        return unitCount == other.unitCount &&
               std::memcmp(value(), other.value(), sizeof(T) * static_cast<size_t>(unitCount)) == 0;
    }

    const T* text = nullptr; // null while there is no buffer
    int unitCount = 0;
    mutable int hash = 0;
};

} // namespace qor

#endif
