#ifndef OLMKIT_FILTER_BOUNDARY_LAYOUT_H
#define OLMKIT_FILTER_BOUNDARY_LAYOUT_H

/*
 * Assertions that hold the records of the boundary to their sizes and offsets, in C11 and in C++.
 */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define OLM_ASSERT(condition, text) static_assert(condition, text)
#else
#define OLM_ASSERT(condition, text) _Static_assert(condition, text)
#endif

#define OLM_ASSERT_SIZE(record, size) OLM_ASSERT(sizeof(record) == (size), #record)
#define OLM_ASSERT_OFFSET(record, member, offset)                                                  \
    OLM_ASSERT(offsetof(record, member) == (offset), #record "." #member)

#endif
