#include "cli/manifest/ManifestSeal.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "cli/files/Sha256.h"
#include "cli/files/Uninterrupted.h"

namespace olmkit {

std::optional<ManifestSeal> sealOfFile(int file) {
    ManifestSeal seal;
    Sha256 sha256;
    std::vector<std::byte> buffer(std::size_t{64} << 10);
    off_t offset = 0;
    for (;;) {
        const ssize_t count =
            uninterrupted([&] { return pread(file, buffer.data(), buffer.size(), offset); });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            seal.sha256 = sha256.end();
            return seal;
        }
        const auto bytes = std::span(buffer).first(static_cast<std::size_t>(count));
        sha256.add(bytes);
        seal.lines += static_cast<std::uint64_t>(std::ranges::count(bytes, std::byte{'\n'}));
        offset += count;
    }
}

JsonObject objectOf(const ManifestSeal& seal) {
    JsonObject object;
    object["lines"] = seal.lines;
    object["sha256"] = seal.sha256;
    return object;
}

std::optional<ManifestSeal> sealIn(const JsonObject& object) {
    try {
        const JsonObject& seal = object.at("manifest");
        return ManifestSeal{seal.at("lines").get<std::uint64_t>(),
                            seal.at("sha256").get<std::string>()};
    } catch (const JsonObject::exception&) {
        return std::nullopt;
    }
}

} // namespace olmkit
