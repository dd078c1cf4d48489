#ifndef OLMKIT_CLI_FILES_SHA256_H
#define OLMKIT_CLI_FILES_SHA256_H

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include <openssl/evp.h>

namespace olmkit {

// The SHA-256 of bytes that come piece by piece.
class Sha256 {
public:
    Sha256();

    void add(std::span<const std::byte> bytes);

    // Hexadecimal digits; empty when the library has failed. Call it once.
    std::string end();

private:
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context;
    bool isGood = false;
};

// That of an open file from its start to its end, whose size goes to `size`. Empty when it can't
// be read, with the reason in errno.
std::string sha256OfFile(int file, std::uint64_t& size);

} // namespace olmkit

#endif
