#ifndef OLMKIT_TESTS_UNIT_CORE_INTEGERENDS_H
#define OLMKIT_TESTS_UNIT_CORE_INTEGERENDS_H

#include <limits>

// The least and the greatest value of an index, a length or a field of a date.
inline constexpr int lowest = std::numeric_limits<int>::min();
inline constexpr int highest = std::numeric_limits<int>::max();

#endif
