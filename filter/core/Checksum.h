#ifndef OLMKIT_FILTER_CORE_CHECKSUM_H
#define OLMKIT_FILTER_CORE_CHECKSUM_H

#include "filter/core/String.h"

namespace qor {

// A checksum over bytes that are added one by one.
class Checksum : public Object {
public:
    virtual void update(unsigned char byte) = 0;

    // Returns the checksum of all bytes so far, as decimal text.
    virtual String getValue() const = 0;
};

} // namespace qor

#endif
