#ifndef OLMKIT_CLI_FILES_SHA256_H
#define OLMKIT_CLI_FILES_SHA256_H

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include <openssl/evp.h>

namespace olmkit {

// Computes the SHA-256 of bytes that arrive in pieces.
class Sha256 {
public:
    Sha256();

    void add(std::span<const std::byte> bytes);

    // Returns lower-case hexadecimal digits; empty when the library failed. Call it once.
    std::string end();

private:
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context;
    bool isGood = false;
};

// Returns the SHA-256 of an open file from start to end, and its size in `size`. On a read error
// the text is empty and errno has the reason.
std::string sha256OfFile(int file, std::uint64_t& size);

} // namespace olmkit

#endif
