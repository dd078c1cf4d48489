#ifndef OLMKIT_TESTS_HOST_COMPOUND_HEAPCOUNTER_H
#define OLMKIT_TESTS_HOST_COMPOUND_HEAPCOUNTER_H

#include <cstddef>

namespace olmhost::test {

// Measures what the program takes from the heap by `new` while one of these lives.
class HeapCounter {
public:
    HeapCounter();

    // Bytes, at most at one time, above what was taken when the counter was made.
    std::size_t peak() const;

private:
    std::size_t start; // bytes
};

} // namespace olmhost::test

#endif
