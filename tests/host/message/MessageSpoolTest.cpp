#include "host/message/MessageSpool.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "MessageBuilder.h"
#include "tests/host/compound/CompoundFiles.h"

namespace olmhost::test {
namespace {

Bytes contentsOf(MessageSpool& spool) {
    const auto contents = spool.contents();
    return {contents.begin(), contents.end()};
}

// Sets TMPDIR while this object lives.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string& path) {
        const char* set = std::getenv("TMPDIR");
        before = set == nullptr ? "" : set;
        setenv("TMPDIR", path.c_str(), 1);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        if (before.empty()) {
            unsetenv("TMPDIR");
        } else {
            setenv("TMPDIR", before.c_str(), 1);
        }
    }

private:
    std::string before;
};

TEST(MessageSpoolTest, KeepsTheBytesInMemoryAndInAFileAlike) {
    const Bytes part = pattern(1000, 1);
    Bytes expected;
    for (int i = 0; i < 5; ++i) {
        expected = expected + part;
    }
    for (const std::size_t held : {0, 999, 1000, 1001, 2500, 5000, 100'000}) {
        SCOPED_TRACE(held);
        MessageSpool spool(held);
        for (int i = 0; i < 5; ++i) {
            EXPECT_TRUE(spool.append(part));
        }

        EXPECT_EQ(contentsOf(spool), expected);
        EXPECT_EQ(spool.errorNumber(), 0);
    }
}

TEST(MessageSpoolTest, OverwritesInMemoryAndInAFileAlike) {
    for (const std::size_t held : {5, 100}) {
        MessageSpool spool(held);
        EXPECT_TRUE(spool.append(hex("00 11 22 33 44 55 66 77")));
        EXPECT_TRUE(spool.overwrite(0, hex("AA")));
        EXPECT_TRUE(spool.overwrite(6, hex("BB CC")));

        EXPECT_EQ(contentsOf(spool), hex("AA 11 22 33 44 55 BB CC"));
    }
}

TEST(MessageSpoolTest, NothingIsWrittenAfterTheEnd) {
    for (const std::size_t held : {1, 100}) {
        MessageSpool spool(held);
        EXPECT_TRUE(spool.append(hex("00 11 22")));

        EXPECT_FALSE(spool.overwrite(2, hex("AA BB")));
        EXPECT_EQ(spool.errorNumber(), EINVAL);
        EXPECT_FALSE(spool.append(hex("33")));
        EXPECT_TRUE(spool.contents().empty());
    }
}

TEST(MessageSpoolTest, FileHasNoName) {
    const std::filesystem::path folder = testFolder();
    const TemporaryFolder set(folder.string());
    MessageSpool spool(10);

    EXPECT_TRUE(spool.append(pattern(100, 1)));

    EXPECT_TRUE(std::filesystem::is_empty(folder));
    EXPECT_EQ(contentsOf(spool), pattern(100, 1));
    std::filesystem::remove_all(folder);
}

TEST(MessageSpoolTest, MissingFolderIsAFailure) {
    const TemporaryFolder set("/nowhere/at/all");
    MessageSpool spool(10);

    EXPECT_TRUE(spool.append(pattern(10, 1)));
    EXPECT_FALSE(spool.append(pattern(1, 1)));
    EXPECT_EQ(spool.errorNumber(), ENOENT);
    EXPECT_TRUE(spool.contents().empty());
}

} // namespace
} // namespace olmhost::test
