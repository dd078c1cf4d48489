#ifndef OLMKIT_CLI_EXTRACT_MANIFESTLINES_H
#define OLMKIT_CLI_EXTRACT_MANIFESTLINES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/files/OutputDirectory.h"

namespace olmkit {

// The lines of a manifest, whole or broken off, by the index that each tells of. They stay in the
// file; held for each are 24 bytes. Of several lines with one index the last counts; a line that is
// broken or has no index counts for nothing.
class ManifestLines {
public:
    ManifestLines() = default;
    ManifestLines(const ManifestLines&) = delete;
    ManifestLines& operator=(const ManifestLines&) = delete;
    ~ManifestLines();

    // Reads the file `name` of `directory`. 0 or an errno value. Call it once.
    int open(const OutputDirectory& directory, const std::string& name);

    // How many there are, and one of them, in ascending order of the index. A line has its end; it
    // is empty when it can't be read any more.
    std::size_t count() const { return lines.size(); }
    std::uint64_t index(std::size_t place) const { return lines[place].index; }
    std::string line(std::size_t place) const;

    // Lines, and the rest of one, that count for nothing.
    std::size_t brokenCount() const { return broken; }

    // The place of the first line with that index or a higher one; count() when there is none.
    std::size_t find(std::uint64_t index) const;

    // The line with that index, empty when there is none.
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
    std::size_t broken = 0;
};

} // namespace olmkit

#endif
