#ifndef OLMKIT_CLI_SHOW_SHOWOPTIONS_H
#define OLMKIT_CLI_SHOW_SHOWOPTIONS_H

#include <cstdint>
#include <optional>
#include <string>

#include "cli/rows/ItemPlace.h"

namespace olmkit {

enum class ShowForm {
    Text, // everything, as text
    Json, // everything, as one object
    Body, // only the text of the item
};

// Exactly one of `index` and `place` is set.
struct ShowOptions {
    std::string archive;
    std::optional<std::uint64_t> index;
    std::optional<ItemPlace> place;
    ShowForm form = ShowForm::Text;
};

} // namespace olmkit

#endif
