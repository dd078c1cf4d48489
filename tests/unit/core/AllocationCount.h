#ifndef OLMKIT_TESTS_UNIT_CORE_ALLOCATIONCOUNT_H
#define OLMKIT_TESTS_UNIT_CORE_ALLOCATIONCOUNT_H

// Returns how many blocks this program has allocated with `new` so far.
long allocationCount();

#endif
