#ifndef OLMKIT_HOST_CHECK_FINDINGLIST_H
#define OLMKIT_HOST_CHECK_FINDINGLIST_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/check/Finding.h"

namespace olmhost {

// Collects findings. It holds the first ones and counts the rest, so that a file in which
// everything is wrong costs no more memory than one with a few faults.
class FindingList {
public:
    explicit FindingList(std::size_t maxHeld) : maxHeld(maxHeld) {}

    void add(FindingCode code, std::string place, std::string text);

    // Returns how many were added, held or not.
    std::uint64_t count(Severity severity) const {
        return counts[static_cast<std::size_t>(severity)];
    }

    // Returns what is held, in the order in which it was added, and leaves the list empty.
    std::vector<Finding> take() { return std::exchange(held, {}); }

private:
    std::size_t maxHeld;
    std::vector<Finding> held;
    std::array<std::uint64_t, 3> counts{}; // by severity
};

// Parts of the texts of findings; all return ASCII.

// Returns "1 byte", "2 bytes": `noun` is the singular.
std::string counted(std::uint64_t count, std::string_view noun);

// Returns "0x0037001F".
std::string hexText(std::uint32_t value);

// Returns "12", or the value in hexadecimal when it is not the number of a sector or an entry.
std::string numberText(std::uint32_t value);

// Returns a name with what is not printable ASCII as "\u202E", so that no name can disguise itself
// or command a terminal.
std::string nameText(std::u16string_view name);

} // namespace olmhost

#endif
