#ifndef OLMKIT_CLI_EXTRACT_MANIFESTROW_H
#define OLMKIT_CLI_EXTRACT_MANIFESTROW_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// What became of one attachment of a mail that was written.
struct AttachmentRow {
    std::string name; // as the mail calls it; empty when it has none
    // The archive's name of it, as the mail asks for it; none when the mail names no file.
    std::optional<std::string> url;
    std::optional<std::uint64_t> declaredSize; // as the archive's directory says
    std::string path;                          // of a file of its own; empty when there is none
    std::optional<std::uint64_t> size;         // in the message, bytes; none when it is not there
    std::string sha256;                        // of those bytes; empty when there are none
    std::string error; // why it is missing, in part, or not to be relied on; empty when all is well
};

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
    std::string error;                      // empty when it was written
    std::vector<std::string> warnings;      // what its message lacks, or may be wrong in it
    std::vector<AttachmentRow> attachments; // of its message, in order
};

// The row as a line of a manifest, its end included.
std::string lineOf(const ManifestRow& row);

// The row that a line tells of, with or without its end; none when it tells of none: a key is
// missing, a value is of another kind, or one is not there although another says so. Keys that it
// doesn't know are left out.
std::optional<ManifestRow> readRow(std::string_view line);

// The index in a whole line as lineOf() makes them, found without reading the rest.
std::optional<std::uint64_t> indexOf(std::string_view line);

} // namespace olmkit

#endif
