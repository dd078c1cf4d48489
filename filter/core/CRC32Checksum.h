#ifndef OLMKIT_FILTER_CORE_CRC32CHECKSUM_H
#define OLMKIT_FILTER_CORE_CRC32CHECKSUM_H

#include <cstdint>

#include "filter/core/Checksum.h"

namespace qor {

// The CRC-32 of property names ([MS-OXMSG] 2.2.3.2): reflected, polynomial 0xEDB88320, with the
// initial value 0 and not inverted at the end. The CRC-32 of ZIP differs in the last two.
class CRC32Checksum : public Checksum {
public:
    void update(unsigned char byte) override;
    String getValue() const override;

private:
    uint32_t remainder = 0;
};

} // namespace qor

#endif
