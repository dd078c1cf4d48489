#ifndef OLMKIT_CLI_REPORT_CORRESPONDENTS_H
#define OLMKIT_CLI_REPORT_CORRESPONDENTS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace olmkit {

// An address, or a name without an address, with the number of items it sent and received.
struct Correspondent {
    std::string_view name; // as it appeared first
    std::uint32_t sent = 0;
    std::uint32_t received = 0;
    std::uint32_t items = 0; // sent or received, each counted once
};

// Counts the items of each correspondent. Names that differ only in the case of ASCII letters and
// in surrounding blanks are the same. Memory grows with the number of different names.
class Correspondents {
public:
    // Counts the next item. Each text is UTF-8 with ";" between correspondents.
    void add(std::string_view senders, std::string_view to, std::string_view cc);

    // Returns the `count` correspondents with the most items, equal ones in byte order. The names
    // are valid as long as this object.
    std::vector<Correspondent> busiest(std::size_t count) const;

private:
    struct Tally {
        std::uint32_t sent = 0;
        std::uint32_t received = 0;
        std::uint32_t items = 0;
        std::uint32_t lastSent = 0; // numbers of items, from 1
        std::uint32_t lastReceived = 0;
    };
    struct Less {
        bool operator()(std::string_view left, std::string_view right) const;
    };

    void addAll(std::string_view names, bool areSenders);
    Tally& tallyOf(std::string_view name);

    std::pmr::monotonic_buffer_resource memory; // for names and tallies, never freed
    // Not a hash table: an archive could be made so that the hashes of all its names collide.
    std::pmr::map<std::string_view, Tally, Less> tallies{&memory};
    std::uint32_t item = 0; // the number of the current item
};

} // namespace olmkit

#endif
