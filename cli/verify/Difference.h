#ifndef OLMKIT_CLI_VERIFY_DIFFERENCE_H
#define OLMKIT_CLI_VERIFY_DIFFERENCE_H

#include <cstdint>
#include <string>

namespace olmkit {

enum class Problem {
    Missing,
    Size,
    Hash,
    Refused,    // its path leads out of the folder, or over a link; it was not opened
    Unreadable, // it is there, but is no file or can't be read
    Unexpected, // the manifest doesn't name it
};

// A file that is not as the manifest says.
struct Difference {
    Problem problem = Problem::Missing;
    std::string path; // as the manifest has it
    std::uint64_t expectedSize = 0;
    std::uint64_t size = 0;
    std::string expectedSha256;
    std::string sha256;
    std::string reason; // of Refused and Unreadable, for people
};

// The name of a problem for programs.
const char* nameOf(Problem problem);

// A line for people, without its end. What the path could do to a terminal is still in it.
std::string textOf(const Difference& difference);

} // namespace olmkit

#endif
