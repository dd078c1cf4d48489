#ifndef OLMKIT_FILTER_STORAGE_MSGPROPPAIR_H
#define OLMKIT_FILTER_STORAGE_MSGPROPPAIR_H

#include "filter/boundary/Layout.h"

// The flags of every entry: PROPATTR_READABLE (2) and PROPATTR_WRITABLE (4).
inline constexpr uint32_t propertyFlags = 6;

// One entry of a property stream ([MS-OXMSG] 2.4.2), with the same layout as in the stream.
struct MsgPropPair {
    uint32_t tag;   // property id in the high 16 bits, property type in the low 16 bits
    uint32_t flags; // propertyFlags
    uint64_t value; // the value, or the size of a value that has its own stream
};

OLM_ASSERT_OFFSET(MsgPropPair, tag, 0);
OLM_ASSERT_OFFSET(MsgPropPair, flags, 4);
OLM_ASSERT_OFFSET(MsgPropPair, value, 8);
OLM_ASSERT_SIZE(MsgPropPair, 16);

#endif
