#include "cli/files/LineReader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "cli/files/Uninterrupted.h"

namespace olmkit {

namespace {

constexpr std::size_t partSize = std::size_t{64} << 10;

} // namespace

LineReader::Answer LineReader::next(std::string& line) {
    line.clear();
    while (place < filled || fill()) {
        const auto start = part.begin() + static_cast<std::ptrdiff_t>(place);
        const auto end = part.begin() + static_cast<std::ptrdiff_t>(filled);
        const auto stop = std::find(start, end, '\n');
        line.append(start, stop);
        place = static_cast<std::size_t>(stop - part.begin()) + (stop != end ? 1 : 0);
        if (line.size() > maxBytes) {
            return Answer::TooLong;
        }
        if (stop != end) {
            return Answer::Line;
        }
    }
    if (error != 0) {
        return Answer::Unreadable;
    }
    return line.empty() ? Answer::End : Answer::Rest;
}

// Returns false at the end of the file and on an error.
bool LineReader::fill() {
    part.resize(partSize);
    const ssize_t count = uninterrupted([this] { return read(file, part.data(), part.size()); });
    error = count < 0 ? errno : 0;
    place = 0;
    filled = count < 0 ? 0 : static_cast<std::size_t>(count);
    return filled > 0;
}

} // namespace olmkit
