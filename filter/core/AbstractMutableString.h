#ifndef OLMKIT_FILTER_CORE_ABSTRACTMUTABLESTRING_H
#define OLMKIT_FILTER_CORE_ABSTRACTMUTABLESTRING_H

#include "filter/core/AbstractString.h"

namespace qor {

// A text with a buffer that can be written to.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): the base makes it virtual
template <class T> class AbstractMutableString : public AbstractString<T> {
public:
    ~AbstractMutableString() override = default;

    // The units that the buffer can hold, without the terminator.
    int capacity() const { return unitCapacity; }

    // The units, to be changed in place; null when capacity() is 0. resetHash() when done.
    T* buffer() { return units; }

protected:
    AbstractMutableString() = default;

    T* units = nullptr;
    int unitCapacity = 0;
};

} // namespace qor

#endif
