#ifndef OLMKIT_CLI_EXTRACT_EXTRACTOPTIONS_H
#define OLMKIT_CLI_EXTRACT_EXTRACTOPTIONS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/rows/FilterOptions.h"

namespace olmkit {

// Where an item lies in the archive.
struct ItemPlace {
    std::uint32_t entry = 0; // from 0
    std::uint32_t item = 0;  // from 1

    bool operator<(const ItemPlace& other) const {
        return entry != other.entry ? entry < other.entry : item < other.item;
    }
};

// One of `count` equal parts of an archive.
struct Shard {
    std::uint64_t number = 1; // from 1
    std::uint64_t count = 1;

    bool takes(std::uint64_t index) const { return index % count == number - 1; }
    bool operator==(const Shard&) const = default;
};

// How much of the archive an extraction is to write.
enum class RunExtent {
    Whole,     // every item
    Shard,     // every item of one shard
    Selection, // chosen items
};

// The folders below the output folder.
enum class Layout {
    Tree, // those of the archive
    Flat, // none
};

// With neither items nor places: everything that the filter takes.
struct ExtractOptions {
    std::string archive;
    std::string directory;
    std::vector<std::uint64_t> items; // indexes, from 0, in any order, some perhaps twice
    std::vector<ItemPlace> places;    // likewise
    FilterOptions filter;             // takes everything when there are items or places
    std::optional<Shard> shard;       // of all items or the chosen ones, never beside places
    Layout layout = Layout::Tree;
    bool hasTimestamps = false;
    bool attachments = false; // each gets a file of its own besides

    // These don't change what is written.
    unsigned jobs = 0; // threads that make messages; 0: as many as there are cores
    bool isResumed = false;
    bool isDryRun = false;
    bool failsFast = false;
    std::optional<std::uint64_t> mostErrors; // not 0

    // Whether items are chosen by their index or place, and not by rules.
    bool isEverything() const { return items.empty() && places.empty(); }
    RunExtent extent() const {
        if (!isEverything() || !filter.takesEverything()) {
            return RunExtent::Selection;
        }
        return shard ? RunExtent::Shard : RunExtent::Whole;
    }
};

} // namespace olmkit

#endif
