#include "cli/extract/MessageFile.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>
#include <utility>

namespace olmkit {

namespace {

// Bytes that are held in memory: most messages are never written before they are whole, and so need
// no second reading for their hash.
constexpr std::size_t heldBytes = std::size_t{4} << 20;

constexpr std::size_t readBytes = std::size_t{256} << 10;

// The bytes of one SHA-256.
class Sha256 {
public:
    Sha256() : context(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
        isGood = context != nullptr && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1;
    }

    void add(std::span<const std::byte> bytes) {
        isGood = isGood && EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()) == 1;
    }

    // Hexadecimal digits; empty when the library has failed.
    std::string end() {
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

private:
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context;
    bool isGood = false;
};

} // namespace

void MessageFile::begin() {
    discard();
}

bool MessageFile::append(std::span<const std::byte> bytes) {
    if (!isUsable()) {
        return false;
    }
    pending.insert(pending.end(), bytes.begin(), bytes.end());
    return pending.size() < heldBytes || flush();
}

bool MessageFile::overwrite(std::uint64_t offset, std::span<const std::byte> bytes) {
    if (!isUsable()) {
        return false;
    }
    if (offset > size() || bytes.size() > size() - offset) {
        error = EINVAL;
        return false;
    }
    if (offset < written) {
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), written - offset));
        if (!writeAt(offset, bytes.first(count))) {
            return false;
        }
        bytes = bytes.subspan(count);
        offset += count;
    }
    std::ranges::copy(bytes, pending.begin() + static_cast<std::ptrdiff_t>(offset - written));
    return true;
}

int MessageFile::commit(const MessagePath& path) {
    if (error == 0 && hash() && flush()) {
        error = closeFile();
    }
    if (error == 0) {
        error = directory.moveTo(temporary, path);
    }
    if (error == 0) {
        guard.reset();
        temporary.clear();
        return 0;
    }
    const int failure = error;
    discard();
    return failure;
}

void MessageFile::discard() {
    closeFile();
    if (!temporary.empty()) {
        directory.remove(temporary);
        guard.reset();
        temporary.clear();
    }
    pending.clear();
    written = 0;
    error = 0;
    digest.clear();
}

bool MessageFile::isUsable() {
    if (error == 0 && Interrupt::isRequested()) {
        error = EINTR;
    }
    return error == 0;
}

bool MessageFile::flush() {
    if (file < 0) {
        error = directory.createTemporary(temporary, file, guard);
        if (error != 0) {
            return false;
        }
    }
    if (!writeAt(written, pending)) {
        return false;
    }
    written += pending.size();
    pending.clear();
    return true;
}

bool MessageFile::writeAt(std::uint64_t offset, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            error = count < 0 ? errno : EIO;
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    return true;
}

// The start of a message is overwritten last, so only a whole one can be hashed.
bool MessageFile::hash() {
    Sha256 sha256;
    std::vector<std::byte> buffer(written > 0 ? readBytes : 0);
    for (std::uint64_t offset = 0; offset < written;) {
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), written - offset));
        const ssize_t count = pread(file, buffer.data(), wanted, static_cast<off_t>(offset));
        if (count <= 0) {
            error = count < 0 ? errno : EIO;
            return false;
        }
        sha256.add(std::span(buffer).first(static_cast<std::size_t>(count)));
        offset += static_cast<std::uint64_t>(count);
    }
    sha256.add(pending);
    digest = sha256.end();
    error = digest.empty() ? EIO : 0;
    return error == 0;
}

int MessageFile::closeFile() {
    // Some file systems tell only now that a write has failed.
    return file >= 0 && close(std::exchange(file, -1)) != 0 ? errno : 0;
}

} // namespace olmkit
