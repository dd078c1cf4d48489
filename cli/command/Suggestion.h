#ifndef OLMKIT_CLI_COMMAND_SUGGESTION_H
#define OLMKIT_CLI_COMMAND_SUGGESTION_H

#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// Returns the one of `names` that was most likely meant by `mistyped`, empty when none is similar.
// A name is similar when it differs in a few missing, added, wrong or swapped letters, or begins
// with `mistyped`.
std::string nearestName(std::string_view mistyped, const std::vector<std::string>& names);

} // namespace olmkit

#endif
