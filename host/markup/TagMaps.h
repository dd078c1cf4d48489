#ifndef OLMKIT_HOST_MARKUP_TAGMAPS_H
#define OLMKIT_HOST_MARKUP_TAGMAPS_H

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "filter/boundary/Reader.h"

namespace olmhost {

// The tag maps of one reader, merged: element names and their numbers.
class TagMaps {
public:
    // Removes every map, and keeps the memory.
    void clear();

    // Adds rows, whose names are borrowed until clear(). A name that is there already gets the new
    // value. Adding the same rows as last time costs one comparison of them. Returns false, with
    // nothing added, when a row has no name.
    bool add(std::span<const UTXML_STRVALPAIR> rows);

    // Returns the number of a name, whose nameHash() is `hash`; UTXML_UNKNOWN_TAG for another name.
    std::uint32_t find(std::string_view name, std::uint32_t hash) const;

private:
    struct Slot {
        const char* name = nullptr; // null: free
        std::uint32_t length = 0;
        std::uint32_t hash = 0;
        std::uint32_t id = 0;
    };

    void put(const Slot& added);
    void makeRoom(std::size_t extra);

    std::vector<Slot> slots; // open addressing; a power of two, at most half full
    std::size_t used = 0;
    std::vector<UTXML_STRVALPAIR> last; // the rows added last
};

} // namespace olmhost

#endif
