#include "cli/verify/Difference.h"

namespace olmkit {

const char* nameOf(Problem problem) {
    switch (problem) {
    case Problem::Missing:
        return "missing";
    case Problem::Size:
        return "size";
    case Problem::Hash:
        return "sha256";
    case Problem::Refused:
        return "refused";
    case Problem::Unreadable:
        return "unreadable";
    case Problem::Unexpected:
        return "unexpected";
    case Problem::Lines:
        return "lines";
    }
    return "";
}

std::string textOf(const Difference& difference) {
    std::string text = difference.path + ": ";
    switch (difference.problem) {
    case Problem::Missing:
        return text + "is missing";
    case Problem::Size:
        return text + "has " + std::to_string(difference.size) + " bytes, not " +
               std::to_string(difference.expectedSize);
    case Problem::Hash:
        return text + "has other contents: its SHA-256 is " + difference.sha256 + ", not " +
               difference.expectedSha256;
    case Problem::Refused:
        return text + "was not opened: " + difference.reason;
    case Problem::Unreadable:
        return text + "can't be read: " + difference.reason;
    case Problem::Unexpected:
        return text + "is not in the manifest";
    case Problem::Lines:
        return text + "has " + std::to_string(difference.lines) + " lines, not " +
               std::to_string(difference.expectedLines);
    }
    return text;
}

} // namespace olmkit
