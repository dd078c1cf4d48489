#ifndef OLMKIT_FILTER_CORE_ARRAY_H
#define OLMKIT_FILTER_CORE_ARRAY_H

#include <algorithm>
#include <type_traits>

#include "filter/core/Exception.h"
#include "filter/core/Object.h"

namespace qor {

// A fixed number of plain values. The objects that pointer elements point to are not owned. An
// index out of range throws an Exception with the code errorIndex.
template <class T> class Array : public Object {
    static_assert(std::is_trivially_copyable_v<T>, "elements are copied bit for bit");

public:
    // Makes an array of zeros. A length of 0 or less allocates nothing.
    explicit Array(int length)
        : elementCount(length), data(length > 0 ? new T[static_cast<size_t>(length)]() : nullptr) {}
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    ~Array() override {
        if (!borrowed) {
            delete[] data;
        }
    }

    int length() const { return elementCount; }

    // The elements in order.
    const T* begin() const { return data; }
    const T* end() const { return data == nullptr ? nullptr : data + elementCount; }

    T get(int index) const {
        if (index < 0 || index >= elementCount) {
            throwIndexError("Array.get(): requested index is out of range");
        }
        return data[index];
    }

    void set(int index, T value) {
        if (index < 0 || index >= elementCount) {
            throwIndexError("Array.set: requested index is out of range");
        }
        data[index] = value;
    }

    // Stores `value` in every slot.
    void fill(T value) {
        if (elementCount < 1) {
            throwIndexError("Array.fill: requested index is out of range");
        }
        std::fill_n(data, elementCount, value);
    }

    // Copies all elements of the source to the start of this array. The other elements stay.
    void copyFromArray(const Array& source) {
        if (source.elementCount > elementCount) {
            throwIndexError(
                "Array.copyFromArray: copy operation would exceed destination array length");
        }
        std::copy_n(source.data, source.elementCount, data);
    }

    // Returns true for an array of the same type and length with equal elements. Pointers are equal
    // when they point to the same object.
    bool equals(const Object& other) const override {
        if (&other == this) {
            return true;
        }
        const auto* that = dynamic_cast<const Array*>(&other);
        if (that == nullptr || that->elementCount != elementCount) {
            return false;
        }
        return elementCount <= 0 || std::equal(data, data + elementCount, that->data);
    }

    // Moves `count` elements within the array. REQUIRES: both ranges are inside the array.
    void moveElements(int to, int from, int count) {
        T* const first = data + from;
        if (to < from) {
            std::copy_n(first, count, data + to);
        } else {
            std::copy_backward(first, first + count, data + to + count);
        }
    }

private:
    int elementCount;
    T* data;               // null when there are no elements
    bool borrowed = false; // true when the elements are not owned
};

} // namespace qor

#endif
