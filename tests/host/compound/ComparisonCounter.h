#ifndef OLMKIT_TESTS_HOST_COMPOUND_COMPARISONCOUNTER_H
#define OLMKIT_TESTS_HOST_COMPOUND_COMPARISONCOUNTER_H

#include <cstdint>

namespace olmhost::test {

// Counts the comparisons of entry names while one of these objects lives: the work of making and
// finishing a directory, on any machine.
class ComparisonCounter {
public:
    ComparisonCounter();

    std::uint64_t count() const;

private:
    std::uint64_t start;
};

} // namespace olmhost::test

#endif
