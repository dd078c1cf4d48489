#ifndef OLMKIT_CLI_MANIFEST_MANIFESTROW_H
#define OLMKIT_CLI_MANIFEST_MANIFESTROW_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// One attachment of a mail that was written. Sizes are in bytes.
struct AttachmentRow {
    std::string name;                          // in the mail; empty when it has none
    std::optional<std::string> url;            // name of the archive's entry; none: no entry named
    std::optional<std::uint64_t> declaredSize; // of the entry, in the archive's directory
    std::string path;                          // of its own file; empty when it has none
    std::optional<std::uint64_t> size;         // in the message; none when it is missing
    std::string sha256;                        // of its bytes in the message; empty when missing
    std::string error; // why it is missing, incomplete or unreliable; empty when it is whole
};

// One requested item: a line of the manifest. docs/files.md describes every key.
struct ManifestRow {
    std::optional<std::uint64_t> index; // none for an item that was requested by its place
    std::optional<std::uint32_t> entry; // this and `item`: none for an index without an item
    std::optional<std::uint32_t> item;
    std::string path; // below the output folder; empty when the item failed
    std::uint64_t size = 0;
    std::string sha256;
    std::int32_t result = 0;
    std::uint16_t status = 0;
    std::string error;                      // empty when the message was written
    std::vector<std::string> warnings;      // what the message lacks, or what may be wrong in it
    std::vector<AttachmentRow> attachments; // in the order of the message
};

// Returns the row as a line of a manifest, with its line end.
std::string lineOf(const ManifestRow& row);

// Reads a line of a manifest, with or without its line end. Returns nothing when a key is missing,
// a value has another type, or values contradict each other. Unknown keys are ignored.
std::optional<ManifestRow> readRow(std::string_view line);

// Returns the index in a complete line that lineOf() made, without reading the rest of the line.
std::optional<std::uint64_t> indexOf(std::string_view line);

} // namespace olmkit

#endif
