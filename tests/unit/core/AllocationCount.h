#ifndef OLMKIT_TESTS_UNIT_CORE_ALLOCATIONCOUNT_H
#define OLMKIT_TESTS_UNIT_CORE_ALLOCATIONCOUNT_H

// How many blocks this program has taken with `new` so far.
long allocationCount();

#endif
