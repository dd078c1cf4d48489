#include "cli/info/NumberText.h"

#include <cstddef>

namespace olmkit {

std::string grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t end = text.size(); end > 3; end -= 3) {
        text.insert(end - 3, 1, ',');
    }
    return text;
}

std::string counted(std::uint64_t number, std::string_view one, std::string_view more) {
    return grouped(number) + " " + std::string(number == 1 ? one : more);
}

} // namespace olmkit
