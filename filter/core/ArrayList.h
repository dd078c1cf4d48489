#ifndef OLMKIT_FILTER_CORE_ARRAYLIST_H
#define OLMKIT_FILTER_CORE_ARRAYLIST_H

#include <cstdint>
#include <limits>
#include <memory>
#include <new>

#include "filter/core/Array.h"

namespace qor {

// A list that grows. The objects that pointer elements point to are not owned: the owner of the
// list deletes them first. An index out of range throws an Exception with the code errorIndex.
template <class T> class ArrayList : public Object {
public:
    ArrayList() = default;
    ArrayList(const ArrayList&) = delete;
    ArrayList& operator=(const ArrayList&) = delete;
    ~ArrayList() override {
        delete array;
        elementCount = 0;
    }

    int size() const { return elementCount; }

    void add(T value) {
        growByOne();
        ++elementCount;
        array->set(elementCount - 1, value);
    }

    T get(int index) const {
        if (index < 0 || index >= elementCount) {
            throwIndexError("ArrayList.get(): invalid parameter");
        }
        return array->get(index);
    }

    void remove(int index) {
        if (index < 0 || index >= elementCount) {
            throwIndexError("ArrayList.remove(): invalid parameter");
        }
        array->moveElements(index, index + 1, elementCount - index - 1);
        --elementCount;
    }

    void insert(int index, T value) {
        if (index < 0 || index > elementCount) {
            throwIndexError("ArrayList.insert(): invalid parameter");
        }
        growByOne();
        array->moveElements(index + 1, index, elementCount - index);
        array->set(index, value);
        ++elementCount;
    }

    // Removes the elements and keeps the memory for the next ones.
    void clear() { elementCount = 0; }

    // The elements in order. Adding or removing an element invalidates the pointers.
    const T* begin() const { return array == nullptr ? nullptr : array->begin(); }
    const T* end() const { return begin() + elementCount; }

    // Returns the array that holds the elements, or null before the first was added.
    const Array<T>* store() const { return array; }

protected:
    Array<T>* array = nullptr;
    int elementCount = 0;

private:
    // Makes room for one more element. The first array has one slot. A later one always has a spare
    // slot; its length doubles up to 4096 and then grows by 4096.
    void growByOne() {
        const int64_t needed = static_cast<int64_t>(elementCount) + 1;
        if (array == nullptr || array->length() == 0) {
            replaceStore(needed);
            return;
        }
        int64_t candidate = array->length();
        if (needed < candidate) {
            return;
        }
        while (needed >= candidate) {
            candidate += candidate > 4095 ? 4096 : candidate;
        }
        replaceStore(candidate);
    }

    void replaceStore(int64_t length) {
        if (length > std::numeric_limits<int>::max()) {
            throw std::bad_array_new_length();
        }
        auto grown = std::make_unique<Array<T>>(static_cast<int>(length));
        if (array != nullptr) {
            grown->copyFromArray(*array);
        }
        delete array;
        array = grown.release();
    }
};

} // namespace qor

#endif
