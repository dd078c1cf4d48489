#ifndef OLMKIT_CLI_MANIFEST_MANIFESTREADER_H
#define OLMKIT_CLI_MANIFEST_MANIFESTREADER_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "cli/files/LineReader.h"
#include "cli/manifest/ManifestRow.h"

namespace olmkit {

// Reads a manifest row by row; one line is held at a time.
class ManifestReader {
public:
    enum class Answer {
        Row,
        End,
        Invalid,    // the line is not a line of a manifest; see lineNumber() and isCutOff()
        Unreadable, // see errorNumber()
    };

    // `file` is a borrowed descriptor, open for reading at the start of the file.
    explicit ManifestReader(int file) : reader(file, maxLineBytes) {}

    // Reads the next row into `row`. Call it no more after any answer but Row.
    Answer next(ManifestRow& row);

    // Returns the number of the last line that was read, from 1; 0 before the first.
    std::uint64_t lineNumber() const { return lines; }

    // Whether the last line that was read has no line end, because its writer was cut off.
    bool isCutOff() const { return cutOff; }

    // Returns an errno value, or 0.
    int errorNumber() const { return reader.errorNumber(); }

private:
    // Far above the line of a mail with 100,000 attachments.
    static constexpr std::size_t maxLineBytes = std::size_t{256} << 20;

    LineReader reader;
    std::string line;
    std::uint64_t lines = 0;
    bool cutOff = false;
};

} // namespace olmkit

#endif
