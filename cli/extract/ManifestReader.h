#ifndef OLMKIT_CLI_EXTRACT_MANIFESTREADER_H
#define OLMKIT_CLI_EXTRACT_MANIFESTREADER_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "cli/extract/ManifestRow.h"
#include "cli/files/LineReader.h"

namespace olmkit {

// Reads a manifest row by row; one line is held at a time.
class ManifestReader {
public:
    enum class Answer {
        Row,
        End,
        Broken,     // the line is none of a manifest: see lineNumber() and isCutOff()
        Unreadable, // see errorNumber()
    };

    // `file` is open for reading and stands at its start; it is borrowed.
    explicit ManifestReader(int file) : reader(file, longestLine) {}

    // The next row goes to `row`. After anything but Row there is nothing more to read.
    Answer next(ManifestRow& row);

    // The number of the last line that was read, from 1; 0 while there is none.
    std::uint64_t lineNumber() const { return lines; }

    // Whether the last line that was read has no end: the program that wrote it was cut off.
    bool isCutOff() const { return cutOff; }

    // An errno value.
    int errorNumber() const { return reader.errorNumber(); }

private:
    // Bytes; the line of no mail comes near, not even with 100,000 attachments.
    static constexpr std::size_t longestLine = std::size_t{256} << 20;

    LineReader reader;
    std::string line;
    std::uint64_t lines = 0;
    bool cutOff = false;
};

} // namespace olmkit

#endif
