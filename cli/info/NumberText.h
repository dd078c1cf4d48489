#ifndef OLMKIT_CLI_INFO_NUMBERTEXT_H
#define OLMKIT_CLI_INFO_NUMBERTEXT_H

#include <cstdint>
#include <string>
#include <string_view>

namespace olmkit {

// Returns a number with a comma between groups of three digits.
std::string grouped(std::uint64_t number);

// Returns a number and what it counts: "1 item", "2,000 items".
std::string counted(std::uint64_t number, std::string_view one, std::string_view more);

} // namespace olmkit

#endif
