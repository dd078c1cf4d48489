#ifndef OLMKIT_TESTS_HOST_ARCHIVE_ZIPBUILDER_H
#define OLMKIT_TESTS_HOST_ARCHIVE_ZIPBUILDER_H

#include <cstdint>
#include <optional>
#include <string>

namespace olmhost::test {

// One entry of a ZIP file to be written. What is not given is written as it should be.
struct ZipMember {
    std::string name = {};
    std::string data = {};
    bool isDeflated = false;
    std::uint16_t flags = 0x800; // names are UTF-8
    bool hasZip64 = false;       // sizes and offset in an extra field, however small
    std::optional<std::uint16_t> method = {};
    std::optional<std::uint32_t> crc = {};
    std::optional<std::uint64_t> size = {};           // told, not written
    std::optional<std::uint64_t> compressedSize = {}; // told, not written
    std::optional<std::string> packed = {};           // written in the data's place
    std::optional<std::uint32_t> offset = {};         // told of the local header
};

// Writes ZIP files byte by byte, right and wrong ones.
class ZipBuilder {
public:
    // What it gives is meant to stand `start` bytes from the start of the file.
    explicit ZipBuilder(std::uint64_t start = 0) : start(start) {}

    ZipBuilder& add(const ZipMember& member);

    // The whole file, from `start` on.
    std::string bytes() const;

    // The same with another number of entries told in the directory's end.
    std::string bytesTelling(std::uint64_t entryCount) const;

    // What lies ahead of the directory.
    const std::string& entries() const { return body; }

private:
    std::uint64_t start;
    std::string body;
    std::string directory;
    std::uint64_t count = 0;
};

// The text as raw deflate.
std::string deflated(const std::string& text);

// `size` bytes that deflate to about a third of that; each seed gives others.
std::string someText(std::size_t size, unsigned seed = 1);

} // namespace olmhost::test

#endif
