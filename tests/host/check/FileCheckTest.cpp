// What a caller meets: paths, failures to read, limits, and the table of the findings.

#include "host/check/FileCheck.h"

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/check/CheckedFiles.h"
#include "tests/host/compound/HeapCounter.h"
#include "tests/host/message/MessageBuilder.h"

namespace olmhost::test {

namespace {

// Fails one read, and counts them all.
class FailingAccess : public MemoryAccess {
public:
    FailingAccess(std::span<const std::byte> bytes, int callThatFails)
        : MemoryAccess(bytes), failingCall(callThatFails) {}

    int read(std::uint64_t offset, std::span<std::byte> place) override {
        return calls++ == failingCall ? EIO : MemoryAccess::read(offset, place);
    }

    int calls = 0;

private:
    int failingCall; // from 0
};

Bytes smallMessage() {
    Part part;
    part.isMessage = true;
    return fileOf(part);
}

} // namespace

TEST(FileCheckTest, FileIsReadByItsPath) {
    const auto path = testFolder() / "a message.msg";
    writeFile(path, smallMessage());

    const CheckResult result = checkFile(path.string());

    EXPECT_EQ(result.errorNumber, 0);
    expectFinding(result, FindingCode::NamesMissing, "/");
    EXPECT_EQ(result.fileSize, smallMessage().size());
}

TEST(FileCheckTest, WhatIsNoRegularFileCannotBeRead) {
    const auto folder = testFolder();
    EXPECT_EQ(checkFile((folder / "missing").string()).errorNumber, ENOENT);
    EXPECT_EQ(checkFile(folder.string()).errorNumber, EISDIR);
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(checkFile((folder / "pipe").string()).errorNumber, ESPIPE);
    EXPECT_FALSE(checkFile((folder / "missing").string()).isGood());
}

TEST(FileCheckTest, EmptyFileHasAnError) {
    const auto path = testFolder() / "empty.msg";
    writeFile(path, {});
    expectFinding(checkFile(path.string()), FindingCode::FileTooShort, "header");
}

TEST(FileCheckTest, FileThatBecameShorterCannotBeRead) {
    const auto path = testFolder() / "shrinking.msg";
    writeFile(path, Bytes(10000));
    FileAccess file;
    ASSERT_EQ(file.open(path.string()), 0);
    std::filesystem::resize_file(path, 100);

    EXPECT_EQ(checkFile(file).errorNumber, EIO);
}

TEST(FileCheckTest, EachReadThatFailsEndsTheCheck) {
    const Bytes file = messagesOfTheSample().front();
    FailingAccess whole(file, -1);
    ASSERT_TRUE(checkFile(whole).isGood());
    ASSERT_GT(whole.calls, 1);

    for (int failing = 0; failing < whole.calls; ++failing) {
        FailingAccess access(file, failing);
        const CheckResult result = checkFile(access);
        EXPECT_EQ(result.errorNumber, EIO) << failing;
        EXPECT_FALSE(result.isGood());
        EXPECT_EQ(access.calls, failing + 1) << "reads after the failure";
    }
}

TEST(FileCheckTest, FindingsAboveTheLimitAreCounted) {
    Bytes file = messagesOfTheSample().front();
    const std::size_t directory = 512 * (std::size_t{numberAt(file, 48)} + 1);
    for (std::size_t entry = 0; entry < 4; ++entry) {
        put(file, directory + 128 * entry + 67, 9, 1);
    }
    const CheckResult all = checkBytes(file);
    const CheckResult limited = checkBytes(file, {.maxFindings = 2});

    ASSERT_GT(all.findings.size(), 2U);
    EXPECT_EQ(limited.findings.size(), 2U);
    EXPECT_EQ(limited.errors, all.errors);
    EXPECT_EQ(limited.advice, all.advice);
}

TEST(FileCheckTest, MoreThanAMillionPropertiesAreNotCompared) {
    Part part;
    part.hasProperties = false;
    constexpr std::size_t count = (std::size_t{1} << 20) + 1;
    Bytes& stream = part.streams[u"__properties_version1.0"];
    stream.resize(32 + 16 * count);
    for (std::size_t i = 0; i < count; ++i) {
        put(stream, 32 + 16 * i, 0x0E070003, 4);
    }
    part.storages[u"__nameid_version1.0"].hasProperties = false;
    const Bytes file = fileOf(part);

    const HeapCounter heap;
    const CheckResult result = checkBytes(file);

    EXPECT_LT(heap.peak(), std::size_t{32} << 20);
    EXPECT_EQ(result.properties, count);
    EXPECT_EQ(result.warnings, 1U) << "the limit, and not that the property is there twice";
    expectFinding(result, FindingCode::CheckLimit, "/__properties_version1.0");
}

TEST(FileCheckTest, TextsOfNamesAreReadUpToALimit) {
    Part part;
    part.isMessage = true;
    Part& names = part.storages[u"__nameid_version1.0"];
    names.hasProperties = false;
    names.streams[streamName(0x00020102)] = {};
    names.streams[streamName(0x00030102)] = {};
    names.streams[streamName(0x00040102)] = Bytes(std::size_t{17} << 20);
    const Bytes file = fileOf(part);

    const HeapCounter heap;
    const CheckResult result = checkBytes(file);

    expectFinding(result, FindingCode::CheckLimit, "/__nameid_version1.0/__substg1.0_00040102");
    EXPECT_LT(heap.peak(), std::size_t{18} << 20);
}

// Texts of a megabyte that overlap, each with a name of its own.
TEST(FileCheckTest, TextsThatAreTooLongForNamesAreNotRead) {
    Part part;
    part.isMessage = true;
    Part& names = part.storages[u"__nameid_version1.0"];
    names.hasProperties = false;
    names.streams[streamName(0x00020102)] = {};
    constexpr std::uint32_t nameCount = 0x7FFF;
    for (std::uint32_t name = 0; name < nameCount; ++name) {
        Bytes& entries = names.streams[streamName(0x00030102)];
        entries.resize(entries.size() + 8);
        put(entries, 8UL * name, 4UL * name, 4);
        put(entries, 8UL * name + 4, name << 16 | 5, 4);
    }
    Bytes& texts = names.streams[streamName(0x00040102)];
    texts.resize(std::size_t{4} << 20);
    for (std::size_t i = 0; i < texts.size(); i += 4) {
        put(texts, i, 1U << 20, 4);
    }

    const auto start = std::chrono::steady_clock::now();
    const CheckResult result = checkBytes(fileOf(part));

    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_GE(result.errors, nameCount);
    expectFinding(result, FindingCode::NamesEntryText, "/__nameid_version1.0/__substg1.0_00030102");
}

TEST(FindingTest, NamesAreUniqueAndOfSmallLetters) {
    std::set<std::string> names;
    for (int code = 0; code <= static_cast<int>(FindingCode::CheckLimit); ++code) {
        const std::string name = findingName(static_cast<FindingCode>(code));
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_THAT(name, testing::MatchesRegex("[a-z]+(-[a-z]+)*"));
        EXPECT_STRNE(findingRule(static_cast<FindingCode>(code)), "");
    }
}

TEST(FindingTest, NamesThatScriptsRelyOn) {
    EXPECT_STREQ(findingName(FindingCode::SectorOrphan), "sector-orphan");
    EXPECT_STREQ(findingName(FindingCode::CheckLimit), "check-limit");
    EXPECT_STREQ(findingRule(FindingCode::SectorOrphan), "MS-CFB 2.3");
    EXPECT_EQ(findingSeverity(FindingCode::PropertyTwice), Severity::Warning);
    EXPECT_STREQ(severityName(Severity::Advice), "advice");
    EXPECT_STREQ(severityName(Severity::Warning), "warning");
    EXPECT_STREQ(severityName(Severity::Error), "error");
}

} // namespace olmhost::test
