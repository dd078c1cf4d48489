#ifndef OLMKIT_FILTER_CORE_ABSTRACTMUTABLESTRING_H
#define OLMKIT_FILTER_CORE_ABSTRACTMUTABLESTRING_H

#include "filter/core/AbstractString.h"

namespace qor {

// Text with a buffer that can be written to.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): the base makes it virtual
template <class T> class AbstractMutableString : public AbstractString<T> {
public:
    ~AbstractMutableString() override = default;

    // Returns how many units fit in the buffer, not counting the terminator.
    int capacity() const { return unitCapacity; }

    // Returns the units, to be changed in place, or null when capacity() is 0. A change must be
    // followed by resetHash().
    T* buffer() { return units; }

protected:
    AbstractMutableString() = default;

    T* units = nullptr;
    int unitCapacity = 0;
};

} // namespace qor

#endif
