#ifndef OLMKIT_HOST_MARKUP_NAMEHASH_H
#define OLMKIT_HOST_MARKUP_NAMEHASH_H

#include <cstdint>
#include <cstring>
#include <string_view>

namespace olmhost {

// Returns a hash of an element's name. It is the same in every process on machines of one byte
// order, since saved states hold it, and takes eight bytes at a time, since every tag is hashed.
inline std::uint32_t nameHash(std::string_view name) noexcept {
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15U;
    const auto mix = [](std::uint64_t hash, std::uint64_t word) {
        hash = (hash ^ word) * multiplier;
        return hash ^ (hash >> 32);
    };
    const auto wordAt = [&](std::size_t offset) {
        std::uint64_t word = 0;
        std::memcpy(&word, name.data() + offset, sizeof word);
        return word;
    };

    std::uint64_t hash = mix(0, name.size());
    if (name.size() < sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        for (const char c : name) {
            word = word << 8 | static_cast<unsigned char>(c);
        }
        return static_cast<std::uint32_t>(mix(hash, word));
    }
    for (std::size_t offset = 0; offset + sizeof(std::uint64_t) < name.size(); offset += 8) {
        hash = mix(hash, wordAt(offset));
    }
    // The last eight bytes, which may overlap those before.
    return static_cast<std::uint32_t>(mix(hash, wordAt(name.size() - sizeof(std::uint64_t))));
}

} // namespace olmhost

#endif
