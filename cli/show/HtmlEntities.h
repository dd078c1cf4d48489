#ifndef OLMKIT_CLI_SHOW_HTMLENTITIES_H
#define OLMKIT_CLI_SHOW_HTMLENTITIES_H

#include <string_view>

namespace olmkit {

// The character that "&name;" stands for; 0 for a name that is not among those in common use.
char32_t characterOfEntity(std::string_view name);

} // namespace olmkit

#endif
