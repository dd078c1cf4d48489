#ifndef OLMKIT_CLI_EXTRACT_EXTRACTOPTIONS_H
#define OLMKIT_CLI_EXTRACT_EXTRACTOPTIONS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/manifest/Shard.h"
#include "cli/manifest/SummaryNumbers.h"
#include "cli/rows/FilterOptions.h"
#include "cli/rows/ItemPlace.h"

namespace olmkit {

// The folders below the output folder.
enum class Layout {
    Tree, // those of the archive
    Flat, // none
};

// Without items and places, every item that the filter takes is extracted.
struct ExtractOptions {
    std::string archive;
    std::string directory;
    std::vector<std::uint64_t> items; // indexes, from 0, in any order; duplicates are allowed
    std::vector<ItemPlace> places;    // likewise
    FilterOptions filter;             // takes everything when there are items or places
    std::optional<Shard> shard;       // of all items or of `items`; never set with places
    Layout layout = Layout::Tree;
    bool hasTimestamps = false;
    bool attachments = false; // each also gets a file of its own

    // These don't change what is written.
    unsigned jobs = 0; // threads that make messages; 0: one for each core
    bool isResumed = false;
    bool isDryRun = false;
    bool skipsSync = false; // doesn't wait until the files are on the disk
    bool failsFast = false;
    std::optional<std::uint64_t> maxErrors; // never 0

    // Whether the filter chooses the items, rather than a list of indexes or places.
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
