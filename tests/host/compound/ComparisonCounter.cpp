#include "tests/host/compound/ComparisonCounter.h"

#include "host/compound/EntryName.h"

// A linker option wraps compareEntryNames(): its callers call the first of these functions instead,
// and the second is the original.
#define COMPARE_ENTRY_NAMES                                                                        \
    "_ZN7olmhost17compareEntryNamesESt17basic_string_viewIDsSt11char_traitsIDsEES3_"

namespace olmhost::test {

std::strong_ordering
countedComparison(std::u16string_view left,
                  std::u16string_view right) asm("__wrap_" COMPARE_ENTRY_NAMES);
std::strong_ordering
originalComparison(std::u16string_view left,
                   std::u16string_view right) asm("__real_" COMPARE_ENTRY_NAMES);

namespace {

std::uint64_t comparisons = 0;

} // namespace

std::strong_ordering countedComparison(std::u16string_view left, std::u16string_view right) {
    ++comparisons;
    return originalComparison(left, right);
}

ComparisonCounter::ComparisonCounter() : start(comparisons) {}

std::uint64_t ComparisonCounter::count() const {
    return comparisons - start;
}

} // namespace olmhost::test
