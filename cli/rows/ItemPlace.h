#ifndef OLMKIT_CLI_ROWS_ITEMPLACE_H
#define OLMKIT_CLI_ROWS_ITEMPLACE_H

#include <cstdint>

namespace olmkit {

// Where an item is in the archive.
struct ItemPlace {
    std::uint32_t entry = 0; // from 0
    std::uint32_t item = 0;  // in the entry's document, from 1

    bool operator<(const ItemPlace& other) const {
        return entry != other.entry ? entry < other.entry : item < other.item;
    }
};

} // namespace olmkit

#endif
