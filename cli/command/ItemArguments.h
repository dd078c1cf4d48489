#ifndef OLMKIT_CLI_COMMAND_ITEMARGUMENTS_H
#define OLMKIT_CLI_COMMAND_ITEMARGUMENTS_H

#include <optional>
#include <string>
#include <string_view>

#include "cli/rows/ItemPlace.h"

namespace olmkit {

// Reads a place as the user writes it, "12:1". Returns nothing for any other text.
std::optional<ItemPlace> readPlace(std::string_view text);

// Check an item's index or place: return what is wrong with the text, or nothing.
std::string checkIndex(const std::string& text);
std::string checkPlace(const std::string& text);

} // namespace olmkit

#endif
