#ifndef OLMKIT_CLI_MANIFEST_SHARD_H
#define OLMKIT_CLI_MANIFEST_SHARD_H

#include <cstdint>
#include <string>

namespace olmkit {

// One of `count` parts of an archive: every `count`-th item.
struct Shard {
    std::uint64_t number = 1; // from 1
    std::uint64_t count = 1;

    bool takes(std::uint64_t index) const { return index % count == number - 1; }
    bool operator==(const Shard&) const = default;

    // The shard as the user writes it: "1/4".
    std::string text() const { return std::to_string(number) + "/" + std::to_string(count); }
};

} // namespace olmkit

#endif
