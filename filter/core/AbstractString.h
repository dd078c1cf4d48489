#ifndef OLMKIT_FILTER_CORE_ABSTRACTSTRING_H
#define OLMKIT_FILTER_CORE_ABSTRACTSTRING_H

#include <cstring>

#include "filter/core/Object.h"

namespace qor {

// Terminated text of units of type T that knows its length and keeps its hash. Where the units
// live is the business of the derived classes.
template <class T> class AbstractString : public Object {
public:
    ~AbstractString() override = default;

    // What an empty text without a buffer points to.
    static constexpr T EMPTY_STRING_BUF[1] = {0};

    static const T* emptyText() { return EMPTY_STRING_BUF; }

    // The text with a 0 unit behind it; never null. Valid until the text changes.
    const T* value() const { return text != nullptr ? text : EMPTY_STRING_BUF; }

    // In units, without the terminator.
    int length() const { return unitCount; }

    // Kept from the first call on, unless it is 0: then each call works it out again.
    int hashCode() const override {
        if (hash <= 0) {
            const auto* bytes = reinterpret_cast<const unsigned char*>(value());
            const auto byteCount = static_cast<unsigned int>(unitCount) * sizeof(T);
            hash = static_cast<int>(hashdata(bytes, static_cast<unsigned int>(byteCount)) &
                                    0x7FFFFFFFU);
        }
        return hash;
    }

    // True for a text of the same kind with the same units.
    bool equals(const Object& other) const override {
        const auto* that = dynamic_cast<const AbstractString*>(&other);
        return that != nullptr && hasSameUnits(*that);
    }

    // To be called after a change through a pointer into the text.
    void resetHash() { hash = 0; }

protected:
    AbstractString() = default;

    // Copying is for the class that holds the units.
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
