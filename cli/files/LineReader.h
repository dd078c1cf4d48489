#ifndef OLMKIT_CLI_FILES_LINEREADER_H
#define OLMKIT_CLI_FILES_LINEREADER_H

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace olmkit {

// Reads a file line by line and holds one line at a time.
class LineReader {
public:
    enum class Answer {
        Line,
        Rest,       // a last line without a line end
        TooLong,    // the line has more than `maxBytes` bytes
        End,        // there are no more lines
        Unreadable, // see errorNumber()
    };

    // `file` is a borrowed descriptor, open for reading at the start of the file.
    explicit LineReader(int file, std::size_t maxBytes = std::numeric_limits<std::size_t>::max())
        : file(file), maxBytes(maxBytes) {}

    // Reads the next line into `line`, without its end. Call it no more after any answer but Line.
    Answer next(std::string& line);

    // Returns an errno value, or 0.
    int errorNumber() const { return error; }

private:
    bool fill();

    int file;
    std::size_t maxBytes;   // of a line
    std::vector<char> part; // of the file
    std::size_t place = 0;  // of the next byte in `part`
    std::size_t filled = 0; // bytes in `part`
    int error = 0;
};

} // namespace olmkit

#endif
