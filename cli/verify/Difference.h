#ifndef OLMKIT_CLI_VERIFY_DIFFERENCE_H
#define OLMKIT_CLI_VERIFY_DIFFERENCE_H

#include <cstdint>
#include <string>

namespace olmkit {

enum class Problem {
    Missing,
    Size,
    Hash,
    Refused,    // its path leads out of the folder or through a link; it was not opened
    Unreadable, // it exists, but is not a regular file or can't be read
    Unexpected, // the manifest doesn't list it
    Lines,      // the manifest itself has more or fewer lines than the summary says
};

// A file that differs from the manifest.
struct Difference {
    Problem problem = Problem::Missing;
    std::string path; // as in the manifest
    std::uint64_t expectedSize = 0;
    std::uint64_t size = 0;
    std::string expectedSha256;
    std::string sha256;
    std::uint64_t expectedLines = 0;
    std::uint64_t lines = 0;
    std::string reason; // of Refused and Unreadable, for the user
};

// Returns the name of a problem in JSON.
const char* nameOf(Problem problem);

// Returns a line for the user, without its end. Control characters of the path are still in it.
std::string textOf(const Difference& difference);

} // namespace olmkit

#endif
