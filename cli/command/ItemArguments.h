#ifndef OLMKIT_CLI_COMMAND_ITEMARGUMENTS_H
#define OLMKIT_CLI_COMMAND_ITEMARGUMENTS_H

#include <optional>
#include <string>
#include <string_view>

#include "cli/rows/ItemPlace.h"

namespace olmkit {

// A place as people write it, "12:1"; none for what is no place.
std::optional<ItemPlace> readPlace(std::string_view text);

// For CLI11: what is wrong with an item's index, or with its place; empty when nothing is.
std::string checkIndex(const std::string& text);
std::string checkPlace(const std::string& text);

} // namespace olmkit

#endif
