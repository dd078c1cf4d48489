#ifndef OLMKIT_CLI_COMMAND_SUGGESTION_H
#define OLMKIT_CLI_COMMAND_SUGGESTION_H

#include <string>
#include <string_view>
#include <vector>

namespace olmkit {

// The one of `names` that was most likely meant by `mistyped`; empty when none is near. Near is
// what a few letters more, less, wrong or in the other order make of it, or what begins with it.
std::string nearestName(std::string_view mistyped, const std::vector<std::string>& names);

} // namespace olmkit

#endif
