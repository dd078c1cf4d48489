#ifndef OLMKIT_CLI_REPORT_CORRESPONDENTS_H
#define OLMKIT_CLI_REPORT_CORRESPONDENTS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace olmkit {

// An address, or a name where there is none, with the items that it sent or was sent.
struct Correspondent {
    std::string_view name; // as it was first written
    std::uint32_t sent = 0;
    std::uint32_t received = 0;
    std::uint32_t items = 0; // each once
};

// Counts who wrote to whom. Texts are UTF-8 with ";" between correspondents; two are the same when
// they differ in nothing but the case of ASCII letters and the blanks around them. Memory grows
// with the number of different ones.
class Correspondents {
public:
    // The next item.
    void add(std::string_view senders, std::string_view to, std::string_view cc);

    // Those of most items, at most so many; of equal ones, in byte order. Valid as long as nothing
    // is added.
    std::vector<Correspondent> most(std::size_t count) const;

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

    std::pmr::monotonic_buffer_resource memory; // for what is never freed
    // No hashes: an archive could be made whose names all have the same one.
    std::pmr::map<std::string_view, Tally, Less> tallies{&memory};
    std::uint32_t item = 0; // the one at hand
};

} // namespace olmkit

#endif
