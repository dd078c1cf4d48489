#ifndef OLMKIT_TESTS_HOST_COMPOUND_COMPARISONCOUNTER_H
#define OLMKIT_TESTS_HOST_COMPOUND_COMPARISONCOUNTER_H

#include <cstdint>

namespace olmhost::test {

// Counts how often two names of entries are compared while one of these lives: the work that
// making and finishing a directory comes to, on any machine.
class ComparisonCounter {
public:
    ComparisonCounter();

    std::uint64_t count() const;

private:
    std::uint64_t start;
};

} // namespace olmhost::test

#endif
