#ifndef OLMKIT_TESTS_HOST_COMPOUND_HEAPCOUNTER_H
#define OLMKIT_TESTS_HOST_COMPOUND_HEAPCOUNTER_H

#include <cstddef>

namespace olmhost::test {

// Measures what the program allocates by `new` while one of these objects lives.
class HeapCounter {
public:
    HeapCounter();

    // Returns the most bytes that were allocated at one time, beyond those of the start.
    std::size_t peak() const;

private:
    std::size_t start; // bytes
};

} // namespace olmhost::test

#endif
