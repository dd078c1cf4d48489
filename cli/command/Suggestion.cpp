#include "cli/command/Suggestion.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr std::size_t maxMistyped = 64; // bytes; a longer name is not a typing mistake
constexpr std::size_t minStart = 2;     // letters that identify a name by its start

bool isSame(char one, char other) {
    return lowerAscii(one) == lowerAscii(other);
}

// The number of letters to insert, remove, replace, or swap with their neighbour.
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::vector<std::size_t>> steps(from.size() + 1,
                                                std::vector<std::size_t>(to.size() + 1));
    for (std::size_t i = 0; i <= from.size(); ++i) {
        for (std::size_t j = 0; j <= to.size(); ++j) {
            if (i == 0 || j == 0) {
                steps[i][j] = i + j;
                continue;
            }
            const std::size_t replaced = isSame(from[i - 1], to[j - 1]) ? 0 : 1;
            steps[i][j] = std::min(
                {steps[i - 1][j] + 1, steps[i][j - 1] + 1, steps[i - 1][j - 1] + replaced});
            if (i > 1 && j > 1 && isSame(from[i - 1], to[j - 2]) &&
                isSame(from[i - 2], to[j - 1])) {
                steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
            }
        }
    }
    return steps[from.size()][to.size()];
}

// Removes the dashes of an option.
std::string_view letters(std::string_view name) {
    name.remove_prefix(std::min(name.find_first_not_of('-'), name.size()));
    return name;
}

} // namespace

std::string nearestName(std::string_view mistyped, const std::vector<std::string>& names) {
    const std::string_view meant = letters(mistyped);
    if (meant.size() > maxMistyped) {
        return {};
    }
    std::string nearest;
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (const std::string& name : names) {
        const std::string_view candidate = letters(name);
        const bool isStart = meant.size() >= minStart && candidate.starts_with(meant);
        const std::size_t steps = isStart ? 1 : distance(meant, candidate);
        const std::size_t allowed = std::max<std::size_t>(1, candidate.size() / 3);
        if (candidate.size() > 1 && steps <= allowed && steps < least) {
            least = steps;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace olmkit
