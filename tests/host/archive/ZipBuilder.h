#ifndef OLMKIT_TESTS_HOST_ARCHIVE_ZIPBUILDER_H
#define OLMKIT_TESTS_HOST_ARCHIVE_ZIPBUILDER_H

#include <cstdint>
#include <optional>
#include <string>

namespace olmhost::test {

// One entry of a ZIP file to be written. What is not set is written correctly.
struct ZipMember {
    std::string name = {};
    std::string data = {};
    bool isDeflated = false;
    std::uint16_t flags = 0x800; // names are UTF-8
    bool hasZip64 = false;       // sizes and offset in an extra field, however small
    std::optional<std::uint16_t> method = {};
    std::optional<std::uint32_t> crc = {};
    std::optional<std::uint64_t> size = {};           // declared, not written
    std::optional<std::uint64_t> compressedSize = {}; // declared, not written
    std::optional<std::string> packed = {};           // written instead of the data
    std::optional<std::uint32_t> offset = {};         // declared for the local header
};

// Writes ZIP files byte by byte, correct and wrong ones.
class ZipBuilder {
public:
    // Its bytes begin `start` bytes from the start of the file.
    explicit ZipBuilder(std::uint64_t start = 0) : start(start) {}

    ZipBuilder& add(const ZipMember& member);

    // Returns the whole file, from `start` on.
    std::string bytes() const;

    // Returns the same with another number of entries declared at the directory's end.
    std::string bytesDeclaring(std::uint64_t entryCount) const;

    // Returns what precedes the directory.
    const std::string& entries() const { return body; }

private:
    std::uint64_t start;
    std::string body;
    std::string directory;
    std::uint64_t count = 0;
};

// Returns the text as raw deflate.
std::string deflated(const std::string& text);

// Returns `size` bytes that deflate to about a third of that, others for each seed.
std::string someText(std::size_t size, unsigned seed = 1);

} // namespace olmhost::test

#endif
