#ifndef OLMKIT_CLI_SHOW_HTMLENTITIES_H
#define OLMKIT_CLI_SHOW_HTMLENTITIES_H

#include <string_view>

namespace olmkit {

// Returns the character that "&name;" denotes, or 0 for a name that isn't in HTML 4.
char32_t characterOfEntity(std::string_view name);

} // namespace olmkit

#endif
