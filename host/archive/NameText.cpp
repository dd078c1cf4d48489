#include "host/archive/NameText.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <utf8proc.h>

namespace olmhost {

bool isAscii(std::string_view text) {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::uint64_t word = 0;
    for (; text.size() >= sizeof word; text.remove_prefix(sizeof word)) {
        std::memcpy(&word, text.data(), sizeof word);
        if ((word & highBits) != 0) {
            return false;
        }
    }
    word = 0;
    text.copy(reinterpret_cast<char*>(&word), sizeof word);
    return (word & highBits) == 0;
}

bool isUtf8(std::string_view text) {
    if (isAscii(text)) {
        return true;
    }
    const auto* next = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t character = 0;
        const utf8proc_ssize_t count = utf8proc_iterate(next, left, &character);
        if (count < 1) {
            return false;
        }
        next += count;
        left -= count;
    }
    return true;
}

std::string composedForm(std::string_view text) {
    if (isAscii(text)) {
        return std::string(text);
    }
    utf8proc_uint8_t* result = nullptr;
    const utf8proc_ssize_t length =
        utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                     static_cast<utf8proc_ssize_t>(text.size()), &result,
                     static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(result, &std::free);
    if (length < 0) {
        return std::string(text);
    }
    return {reinterpret_cast<const char*>(result), static_cast<std::size_t>(length)};
}

} // namespace olmhost
