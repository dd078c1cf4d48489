#ifndef OLMKIT_CLI_COMMAND_EXTRACTOPTIONS_H
#define OLMKIT_CLI_COMMAND_EXTRACTOPTIONS_H

#include <cstdint>
#include <string>
#include <vector>

namespace olmkit {

// Where an item lies in the archive.
struct ItemPlace {
    std::uint32_t entry = 0; // from 0
    std::uint32_t item = 0;  // from 1

    bool operator<(const ItemPlace& other) const {
        return entry != other.entry ? entry < other.entry : item < other.item;
    }
};

// With neither items nor places: everything.
struct ExtractOptions {
    std::string archive;
    std::string directory;
    std::vector<std::uint64_t> items; // indexes, from 0, in any order, some perhaps twice
    std::vector<ItemPlace> places;    // likewise

    bool isEverything() const { return items.empty() && places.empty(); }
};

} // namespace olmkit

#endif
