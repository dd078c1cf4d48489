#ifndef OLMKIT_CLI_FILES_LINEREADER_H
#define OLMKIT_CLI_FILES_LINEREADER_H

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace olmkit {

// Reads a file line by line; one line is held at a time.
class LineReader {
public:
    enum class Answer {
        Line,
        Rest,       // what stands behind the last line's end, without an end of its own
        TooLong,    // the line has more bytes than it may
        End,        // there is nothing more
        Unreadable, // see errorNumber()
    };

    // `file` is open for reading and stands at its start; it is borrowed. `longest` bytes of a line
    // are taken at most.
    explicit LineReader(int file, std::size_t longest = std::numeric_limits<std::size_t>::max())
        : file(file), longest(longest) {}

    // The next line goes to `line`, without its end. After anything but Line there is nothing more
    // to read.
    Answer next(std::string& line);

    // An errno value.
    int errorNumber() const { return error; }

private:
    bool fill();

    int file;
    std::size_t longest;
    std::vector<char> part; // of the file, read at once
    std::size_t place = 0;  // in it, of the next byte
    std::size_t filled = 0; // bytes in it
    int error = 0;
};

} // namespace olmkit

#endif
