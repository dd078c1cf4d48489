#include "tests/host/compound/ComparisonCounter.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "host/compound/EntryName.h"

namespace {

using Comparison = std::strong_ordering (*)(std::u16string_view, std::u16string_view);

std::uint64_t comparisons = 0;

Comparison libraryComparison() {
    void* found = dlsym(RTLD_NEXT, "_ZN7olmhost17compareEntryNamesESt17basic_string_viewIDsSt11"
                                   "char_traitsIDsEES3_");
    if (found == nullptr) {
        std::fputs("the library has no compareEntryNames()\n", stderr);
        std::abort();
    }
    return reinterpret_cast<Comparison>(found);
}

} // namespace

namespace olmhost {

// A program's function stands ahead of a library's of the same name, also for the library itself.
std::strong_ordering compareEntryNames(std::u16string_view left, std::u16string_view right) {
    static const Comparison original = libraryComparison();
    ++comparisons;
    return original(left, right);
}

} // namespace olmhost

namespace olmhost::test {

ComparisonCounter::ComparisonCounter() : start(comparisons) {}

std::uint64_t ComparisonCounter::count() const {
    return comparisons - start;
}

} // namespace olmhost::test
