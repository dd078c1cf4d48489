#ifndef OLMKIT_CLI_MANIFEST_MANIFESTLINES_H
#define OLMKIT_CLI_MANIFEST_MANIFESTLINES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/files/OutputDirectory.h"

namespace olmkit {

// The lines of a manifest, complete or not, by the index of their item. The lines stay in the file;
// 24 bytes are held for each. Of several lines with one index the last is used; a line that is
// damaged or has no index is skipped.
class ManifestLines {
public:
    ManifestLines() = default;
    ManifestLines(const ManifestLines&) = delete;
    ManifestLines& operator=(const ManifestLines&) = delete;
    ~ManifestLines();

    // Reads the file `name` of `directory`. Returns 0 or an errno value. Call it once.
    int open(const OutputDirectory& directory, const std::string& name);

    // Returns the number of lines; places are from 0, in ascending order of the index.
    std::size_t count() const { return lines.size(); }
    std::uint64_t index(std::size_t place) const { return lines[place].index; }

    // Returns a line with its end, or an empty text when it can no longer be read.
    std::string line(std::size_t place) const;

    // Returns how many lines were skipped, a last line without an end included.
    std::size_t skippedCount() const { return skipped; }

    // Returns the place of the first line with that index or a higher one, or count().
    std::size_t find(std::uint64_t index) const;

    // Returns the line with that index, or an empty text.
    std::string lineOfIndex(std::uint64_t index) const;

private:
    struct Line {
        std::uint64_t index;
        std::uint64_t offset;
        std::size_t size;
    };

    int readLines();
    void enter(const std::string& line, std::uint64_t offset);

    int file = -1;
    std::vector<Line> lines;
    std::size_t skipped = 0;
};

} // namespace olmkit

#endif
