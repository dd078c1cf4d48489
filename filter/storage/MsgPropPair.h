#ifndef OLMKIT_FILTER_STORAGE_MSGPROPPAIR_H
#define OLMKIT_FILTER_STORAGE_MSGPROPPAIR_H

#include "filter/boundary/Layout.h"

// The attributes that every entry carries: readable (2) and writable (4).
inline constexpr uint32_t propertyFlags = 6;

// One entry of a property stream; in memory it looks as it does in the stream.
struct MsgPropPair {
    uint32_t tag;   // property id in the high 16 bits, property type in the low 16 bits
    uint32_t flags; // propertyFlags
    uint64_t value; // the value, or the size of one that has a stream of its own
};

OLM_ASSERT_OFFSET(MsgPropPair, tag, 0);
OLM_ASSERT_OFFSET(MsgPropPair, flags, 4);
OLM_ASSERT_OFFSET(MsgPropPair, value, 8);
OLM_ASSERT_SIZE(MsgPropPair, 16);

#endif
