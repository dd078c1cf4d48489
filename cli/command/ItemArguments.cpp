#include "cli/command/ItemArguments.h"

#include "cli/command/Arguments.h"

namespace olmkit {

std::optional<ItemPlace> readPlace(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto entry = readNumber<std::uint32_t>(text.substr(0, colon));
    const auto item = readNumber<std::uint32_t>(text.substr(colon + 1));
    if (!entry.has_value() || !item.has_value()) {
        return std::nullopt;
    }
    return ItemPlace{*entry, *item};
}

std::string checkIndex(const std::string& text) {
    return readNumber<std::uint64_t>(text)
               ? ""
               : "'" + text + "' is not the index of an item; use 0, 1, 2, ...";
}

std::string checkPlace(const std::string& text) {
    return readPlace(text) ? "" : "'" + text + "' is not a place; use ENTRY:ITEM, such as 12:1";
}

} // namespace olmkit
