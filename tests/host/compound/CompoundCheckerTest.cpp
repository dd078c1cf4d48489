// The strict checker itself: a valid file passes, and a file with one fault doesn't.

#include <set>

#include <gtest/gtest.h>

#include "tests/host/compound/CompoundFiles.h"

namespace olmhost::test {

namespace {

// Sectors of the valid file, in the order in which they are written; 0 to 8 are the long stream.
constexpr std::size_t headerAt = 0;
constexpr std::size_t miniTableAt = 5632; // sector 10, after the mini stream
constexpr std::size_t directoryAt = 6144; // sectors 11 and 12
constexpr std::size_t tableAt = 7168;     // sector 13
constexpr std::size_t goodSize = 7680;

// Entries: root, long, s1, s2, storage, inner; two are unused.
Bytes goodFile() {
    MemorySink sink;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    addStream(root, u"long", pattern(4500, 1));
    addStream(root, u"s1", pattern(100, 2));
    addStream(root, u"s2", pattern(64, 3));
    HostStream* storage = createStorage(root, u"storage");
    addStream(storage, u"inner", pattern(1, 4));
    close(storage);
    close(root);
    return sink.bytes;
}

std::size_t entryAt(std::size_t entry, std::size_t field) {
    return directoryAt + 128 * entry + field;
}

struct Fault {
    const char* name;
    std::size_t offset;
    std::uint8_t value; // instead of the right one
};

const Fault faults[] = {
    {"signature", headerAt, 0},
    {"class-id-of-header", headerAt + 8, 1},
    {"minor-version", headerAt + 24, 1},
    {"major-version", headerAt + 26, 4},
    {"byte-order", headerAt + 28, 0xFF},
    {"sector-shift", headerAt + 30, 12},
    {"mini-sector-shift", headerAt + 32, 7},
    {"reserved", headerAt + 34, 1},
    {"directory-sectors-counted", headerAt + 40, 1},
    {"table-sector-count", headerAt + 44, 2},
    {"directory-elsewhere", headerAt + 48, 0},
    {"transaction", headerAt + 52, 1},
    {"mini-limit", headerAt + 57, 0x20},
    {"mini-table-elsewhere", headerAt + 60, 0},
    {"mini-table-count", headerAt + 64, 2},
    {"index-sector-that-is-none", headerAt + 68, 1},
    {"index-sector-count", headerAt + 72, 1},
    {"table-sector-elsewhere", headerAt + 76, 1},
    {"second-table-sector", headerAt + 80, 0},
    {"chain-cut-short", tableAt + 4UL * 3, 0xFE},
    {"chain-skips-a-sector", tableAt + 4UL * 3, 5},
    {"chain-in-a-circle", tableAt + 4UL * 3, 2},
    {"chain-leaves-the-file", tableAt + 4UL * 3, 100},
    {"table-sector-not-marked", tableAt + 4UL * 13, 0xFE},
    {"sector-after-the-end", tableAt + 4UL * 14, 0xFE},
    {"mini-chain-cut-short", miniTableAt, 0xFE},
    {"mini-chain-too-long", miniTableAt + 4, 2},
    {"mini-sector-after-the-end", miniTableAt + 4UL * 4, 0xFE},
    {"root-called-otherwise", entryAt(0, 0), 'r'},
    {"root-of-another-type", entryAt(0, 66), 1},
    {"root-with-time", entryAt(0, 100), 1},
    {"mini-stream-too-short", entryAt(0, 121), 0},
    {"mini-stream-of-odd-size", entryAt(0, 120), 0xFF},
    {"name-not-terminated", entryAt(1, 64), 8},
    {"name-of-odd-length", entryAt(1, 64), 9},
    {"bytes-after-the-name", entryAt(1, 30), 1},
    {"forbidden-character", entryAt(1, 0), '/'},
    {"unknown-type", entryAt(1, 66), 3},
    {"unknown-colour", entryAt(1, 67), 2},
    {"stream-with-child", entryAt(1, 76), 5},
    {"stream-with-class-id", entryAt(1, 80), 1},
    {"stream-with-state", entryAt(1, 96), 1},
    {"stream-with-time", entryAt(1, 100), 1},
    {"stream-of-another-size", entryAt(1, 121), 0x20},
    {"stream-with-high-size", entryAt(1, 124), 1},
    {"stream-elsewhere", entryAt(1, 116), 1},
    {"short-stream-of-another-size", entryAt(2, 120), 64},
    {"short-stream-elsewhere", entryAt(3, 116), 0},
    {"storage-with-size", entryAt(4, 120), 1},
    {"storage-with-place", entryAt(4, 116), 1},
    {"storage-without-child", entryAt(4, 76), 6},
    {"names-out-of-order", entryAt(2, 2), '9'},
    {"same-name-twice", entryAt(2, 2), '2'},
    {"unused-entry-not-blank", entryAt(6, 0), 1},
    {"unused-entry-with-zero-links", entryAt(7, 68), 0},
};

} // namespace

TEST(CompoundCheckerTest, GoodFileIsValid) {
    const auto path = testFolder() / "good.msg";
    const Bytes good = goodFile();
    ASSERT_EQ(good.size(), goodSize);
    writeFile(path, good);

    const ProgramResult result = checkFiles({path});

    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(result.output, path.string() + ": valid: 4 streams, 1 storages, 2 unused entries, "
                                             "14 sectors, 0 of them free\n");
}

TEST(CompoundCheckerTest, FileWithOneFaultIsNotValid) {
    const auto folder = testFolder();
    const Bytes good = goodFile();
    std::vector<std::filesystem::path> paths;
    for (const Fault& fault : faults) {
        Bytes bad = good;
        ASSERT_NE(bad[fault.offset], std::byte{fault.value}) << fault.name << " is not a fault";
        bad[fault.offset] = std::byte{fault.value};
        paths.push_back(folder / fault.name);
        writeFile(paths.back(), bad);
    }

    const ProgramResult result = checkFiles(paths);

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output.find("Traceback"), std::string::npos) << result.output;
    for (const auto& path : paths) {
        EXPECT_NE(result.output.find(path.string() + ": fault: "), std::string::npos) << path;
        EXPECT_EQ(result.output.find(path.string() + ": valid: "), std::string::npos) << path;
    }
}

TEST(CompoundCheckerTest, EveryColourExceptTheRightOneIsAFault) {
    const auto folder = testFolder();
    const Bytes good = goodFile();
    std::vector<std::filesystem::path> paths;
    for (std::size_t entry = 1; entry <= 5; ++entry) {
        Bytes bad = good;
        bad[entryAt(entry, 67)] ^= std::byte{1};
        paths.push_back(folder / std::to_string(entry));
        writeFile(paths.back(), bad);
    }

    const ProgramResult result = checkFiles(paths);

    for (const auto& path : paths) {
        EXPECT_NE(result.output.find(path.string() + ": fault: "), std::string::npos) << path;
    }
}

TEST(CompoundCheckerTest, FileTruncatedAnywhereIsNotValid) {
    const auto folder = testFolder();
    const Bytes good = goodFile();
    std::vector<std::filesystem::path> paths;
    for (const std::size_t size : {0, 1, 511, 512, 513, 1024, 5000, 6144, 7168, 7679}) {
        paths.push_back(folder / std::to_string(size));
        writeFile(paths.back(), std::span(good).first(size));
    }

    const ProgramResult result = checkFiles(paths);

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output.find("Traceback"), std::string::npos) << result.output;
    for (const auto& path : paths) {
        EXPECT_NE(result.output.find(path.string() + ": fault: "), std::string::npos) << path;
    }
}

TEST(CompoundCheckerTest, MissingFileAndNoFileAreNotValid) {
    EXPECT_EQ(checkFiles({testFolder() / "missing"}).exitCode, 2);
    EXPECT_EQ(checkFiles({}).exitCode, 2);
}

} // namespace olmhost::test
