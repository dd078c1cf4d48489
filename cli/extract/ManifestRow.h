#ifndef OLMKIT_CLI_EXTRACT_MANIFESTROW_H
#define OLMKIT_CLI_EXTRACT_MANIFESTROW_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// What became of one requested item.
struct ManifestRow {
    std::optional<std::uint64_t> index; // none for an item that was asked for by its place
    std::optional<std::uint32_t> entry; // neither for an index that the archive doesn't have
    std::optional<std::uint32_t> item;
    std::string path; // below the output folder; empty when it failed
    std::uint64_t size = 0;
    std::string sha256;
    std::int32_t result = 0;
    std::uint16_t status = 0;
    std::string error;                 // empty when it was written
    std::vector<std::string> warnings; // what its message lacks, or may be wrong in it
};

// The row as a line of a manifest, its end included.
std::string lineOf(const ManifestRow& row);

// The row that a line tells of, with or without its end; none when it tells of none.
std::optional<ManifestRow> readRow(std::string_view line);

// The index in a whole line as lineOf() makes them, found without reading the rest.
std::optional<std::uint64_t> indexOf(std::string_view line);

} // namespace olmkit

#endif
