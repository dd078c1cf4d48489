#include "cli/extract/ManifestReader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <optional>
#include <utility>

namespace olmkit {

namespace {

constexpr std::size_t partSize = std::size_t{64} << 10;

// Bytes of a line; none of a mail with 100,000 attachments comes near.
constexpr std::size_t longestLine = std::size_t{256} << 20;

} // namespace

ManifestReader::Answer ManifestReader::next(ManifestRow& row) {
    if (const Answer answer = readLine(); answer != Answer::Row) {
        return answer;
    }
    std::optional<ManifestRow> read = cutOff ? std::nullopt : readRow(line);
    if (!read.has_value()) {
        return Answer::Broken;
    }
    row = std::move(*read);
    return Answer::Row;
}

ManifestReader::Answer ManifestReader::readLine() {
    line.clear();
    bool hasEnd = false;
    while (!hasEnd) {
        if (place == filled && !fill()) {
            break;
        }
        const auto start = part.begin() + static_cast<std::ptrdiff_t>(place);
        const auto end = part.begin() + static_cast<std::ptrdiff_t>(filled);
        const auto stop = std::find(start, end, '\n');
        hasEnd = stop != end;
        line.append(start, stop);
        place = static_cast<std::size_t>(stop - part.begin()) + (hasEnd ? 1 : 0);
        if (line.size() > longestLine) {
            ++lines;
            return Answer::Broken;
        }
    }
    if (error != 0) {
        return Answer::Unreadable;
    }
    if (!hasEnd && line.empty()) {
        return Answer::End;
    }
    ++lines;
    cutOff = !hasEnd;
    return Answer::Row;
}

// False at the end, and when the file can't be read.
bool ManifestReader::fill() {
    part.resize(partSize);
    ssize_t count = 0;
    do {
        count = read(file, part.data(), part.size());
    } while (count < 0 && errno == EINTR);
    error = count < 0 ? errno : 0;
    place = 0;
    filled = count < 0 ? 0 : static_cast<std::size_t>(count);
    return filled > 0;
}

} // namespace olmkit
