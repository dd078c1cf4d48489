#include "cli/manifest/ManifestLines.h"

#include <unistd.h>

#include <algorithm>

#include "cli/files/LineReader.h"
#include "cli/manifest/ManifestRow.h"

namespace olmkit {

ManifestLines::~ManifestLines() {
    if (file >= 0) {
        close(file);
    }
}

int ManifestLines::open(const OutputDirectory& directory, const std::string& name) {
    if (const int error = directory.openFile(name, file); error != 0) {
        return error;
    }
    if (const int error = readLines(); error != 0) {
        return error;
    }
    std::ranges::stable_sort(lines, {}, &Line::index);
    // Of each index the last line stays.
    const auto kept = std::unique(lines.rbegin(), lines.rend(),
                                  [](const Line& a, const Line& b) { return a.index == b.index; });
    lines.erase(lines.begin(), kept.base());
    return 0;
}

int ManifestLines::readLines() {
    LineReader reader(file);
    std::string line;
    std::uint64_t offset = 0;
    LineReader::Answer answer = reader.next(line);
    for (; answer == LineReader::Answer::Line; answer = reader.next(line)) {
        line += '\n';
        enter(line, offset);
        offset += line.size();
    }
    skipped += answer == LineReader::Answer::Rest ? 1 : 0;
    return reader.errorNumber();
}

void ManifestLines::enter(const std::string& line, std::uint64_t offset) {
    if (const auto index = indexOf(line)) {
        lines.push_back({*index, offset, line.size()});
    } else {
        ++skipped;
    }
}

std::string ManifestLines::line(std::size_t place) const {
    const Line& found = lines[place];
    std::string text(found.size, '\0');
    const ssize_t count = pread(file, text.data(), text.size(), static_cast<off_t>(found.offset));
    return count == static_cast<ssize_t>(text.size()) ? text : std::string();
}

std::size_t ManifestLines::find(std::uint64_t index) const {
    return static_cast<std::size_t>(std::ranges::lower_bound(lines, index, {}, &Line::index) -
                                    lines.begin());
}

std::string ManifestLines::lineOfIndex(std::uint64_t index) const {
    const std::size_t place = find(index);
    return place < lines.size() && lines[place].index == index ? line(place) : std::string();
}

} // namespace olmkit
