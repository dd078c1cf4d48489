#include "cli/files/Sha256.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <vector>

#include "cli/files/Uninterrupted.h"

namespace olmkit {

Sha256::Sha256() : context(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
    isGood = context != nullptr && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1;
}

void Sha256::add(std::span<const std::byte> bytes) {
    isGood = isGood && EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()) == 1;
}

std::string Sha256::end() {
    std::array<unsigned char, EVP_MAX_MD_SIZE> value = {};
    unsigned size = 0;
    if (!isGood || EVP_DigestFinal_ex(context.get(), value.data(), &size) != 1) {
        return {};
    }
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : std::span(value).first(size)) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::string sha256OfFile(int file, std::uint64_t& size) {
    Sha256 sha256;
    std::vector<std::byte> buffer(std::size_t{64} << 10);
    size = 0;
    for (;;) {
        const ssize_t count = uninterrupted(
            [&] { return pread(file, buffer.data(), buffer.size(), static_cast<off_t>(size)); });
        if (count <= 0) {
            return count < 0 ? std::string() : sha256.end();
        }
        sha256.add(std::span(buffer).first(static_cast<std::size_t>(count)));
        size += static_cast<std::uint64_t>(count);
    }
}

} // namespace olmkit
