#include "host/archive/ArchiveBytes.h"

#include <fcntl.h>

#include <cerrno>
#include <random>

#include "host/archive/ZipDirectory.h"
#include "tests/host/archive/ArchiveFixture.h"

namespace olmhost::test {

namespace {

using ArchiveBytesTest = ArchiveFixture;

} // namespace

TEST_F(ArchiveBytesTest, ReadsAnyPieceInAnyOrder) {
    const std::string plain = someText(500000);
    OpenFailure failure;
    const auto bytes = ArchiveBytes::open(write("plain", plain), failure);
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes->size(), plain.size());

    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        const std::size_t offset = random() % (plain.size() + 10);
        const std::size_t size = random() % 100000;
        std::string buffer(size, '\0');
        buffer.resize(bytes->read(offset, buffer.data(), size));
        const std::string expected =
            offset < plain.size() ? plain.substr(offset, size) : std::string();
        ASSERT_TRUE(buffer == expected) << size << " bytes from " << offset;
        const auto piece = bytes->at(offset);
        ASSERT_EQ(piece.empty(), offset >= plain.size());
        ASSERT_EQ(plain.compare(std::min(offset, plain.size()), piece.size(),
                                reinterpret_cast<const char*>(piece.data()), piece.size()),
                  0);
    }
    EXPECT_EQ(bytes->error(), 0);
}

TEST_F(ArchiveBytesTest, AReadErrorIsKeptAndMakesTheArchiveUnreadable) {
    // A directory opens for reading, and every read of it fails.
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_GE(descriptor, 0);
    ArchiveBytes bytes(descriptor, 100000);
    char buffer[10];

    EXPECT_EQ(bytes.read(0, buffer, sizeof buffer), 0U);
    EXPECT_EQ(bytes.error(), EISDIR);
    OpenFailure failure;
    EXPECT_EQ(ZipDirectory::open(bytes, failure), nullptr);
    EXPECT_EQ(failure.kind, OpenFailureKind::Unreadable);
    EXPECT_EQ(failure.text, "can't be read: Is a directory");
}

TEST_F(ArchiveBytesTest, ATruncatedFileEndsAtItsNewEnd) {
    const std::string path = write("plain", someText(100000));
    OpenFailure failure;
    const auto bytes = ArchiveBytes::open(path, failure);
    ASSERT_NE(bytes, nullptr);
    std::filesystem::resize_file(path, 1000);
    std::string buffer(5000, '\0');

    EXPECT_EQ(bytes->read(0, buffer.data(), buffer.size()), 1000U);
    EXPECT_TRUE(bytes->at(50000).empty());
}

} // namespace olmhost::test
