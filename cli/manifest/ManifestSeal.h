#ifndef OLMKIT_CLI_MANIFEST_MANIFESTSEAL_H
#define OLMKIT_CLI_MANIFEST_MANIFESTSEAL_H

#include <cstdint>
#include <optional>
#include <string>

#include "cli/rows/JsonLine.h"

namespace olmkit {

// What a manifest is known by: one that lost lines is still a valid manifest by itself.
struct ManifestSeal {
    std::uint64_t lines = 0;
    std::string sha256; // of the whole file

    bool operator==(const ManifestSeal& other) const = default;
};

// Reads an open manifest from start to end. Returns nothing on a read error, with the reason in
// errno.
std::optional<ManifestSeal> sealOfFile(int file);

// Returns the value of the key "manifest" in runfile::summary and runfile::shard.
JsonObject objectOf(const ManifestSeal& seal);

// Reads the key "manifest" of such a file's object. Returns nothing when it is missing, null or no
// seal.
std::optional<ManifestSeal> sealIn(const JsonObject& object);

} // namespace olmkit

#endif
