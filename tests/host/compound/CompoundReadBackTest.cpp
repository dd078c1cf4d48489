// Files of the compound writer, read by programs and libraries that share no code with it.

#include <random>

#include <gtest/gtest.h>

#include "tests/host/compound/CompoundFiles.h"

namespace olmhost::test {

namespace {

std::u16string wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

std::string hexName(unsigned int number) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "__substg1.0_3A58101F-%08X", number);
    return name.data();
}

std::string quoted(const std::filesystem::path& path) {
    return "'" + path.string() + "'";
}

class CompoundReadBackTest : public testing::Test {
protected:
    void SetUp() override {
        folder = testFolder();
        path = folder / "message.msg";
        sink = std::make_unique<FileSink>(path);
        output = std::make_unique<CompoundOutput>(*sink);
        root = createRoot(*output);
        ASSERT_NE(root, nullptr);
    }

    void TearDown() override {
        if (!HasFailure()) {
            std::filesystem::remove_all(folder);
        }
    }

    // Adds a stream in one write and expects it back.
    void add(HostStream* parent, const std::string& prefix, const std::string& name,
             const Bytes& bytes) {
        addStream(parent, wide(name), bytes);
        expected[prefix + name] = factsOf(bytes);
    }

    // Closes the root unless it is closed, then lets all readers read.
    void finish() {
        if (root != nullptr) {
            close(root);
        }
        ASSERT_TRUE(output->isWhole());
        output.reset();
        sink->close();

        const ProgramResult checked = checkFiles({path});
        EXPECT_EQ(checked.exitCode, 0) << checked.output;
        EXPECT_EQ(readStreams(path), expected);
        const bool isEmpty = readStorages(path).size() == 1 && expected.empty();
        expectGsfListsAll();
        const ProgramResult info = runProgram("olecfinfo " + quoted(path), true);
        EXPECT_EQ(info.exitCode, 0) << info.output;
        const char* wanted = isEmpty ? "No storage and stream items" : "Root Entry";
        EXPECT_NE(info.output.find(wanted), std::string::npos) << info.output;
    }

    // Every stream with its size, in the listing of gsf: "f <size> <path>". A storage without
    // members is listed as an empty file.
    void expectGsfListsAll() {
        const ProgramResult listed = runProgram("gsf list " + quoted(path));
        EXPECT_EQ(listed.exitCode, 0);
        std::map<std::string, std::uint64_t> sizes;
        std::istringstream lines(listed.output);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("f ")) {
                std::size_t digits = 0;
                const std::uint64_t size = std::stoull(line.substr(1), &digits);
                sizes[line.substr(1 + digits + 1)] = size;
            }
        }
        std::map<std::string, std::uint64_t> wanted;
        for (const auto& [name, facts] : expected) {
            wanted[name] = facts.size;
        }
        for (const std::string& name : emptyStorages) {
            wanted[name] = 0;
        }
        EXPECT_EQ(sizes, wanted);
    }

    void expectGsfReads(const std::string& name, const Bytes& bytes) {
        const ProgramResult read = runProgram("gsf cat " + quoted(path) + " '" + name + "'");
        EXPECT_EQ(read.exitCode, 0) << name;
        EXPECT_TRUE(read.output == asText(bytes)) << name << ": " << read.output.size();
    }

    // Exports all with olecfexport. Returns the folder of the root's members.
    std::filesystem::path exported() {
        const auto target = folder / "out";
        const ProgramResult result =
            runProgram("olecfexport -t " + quoted(target) + " " + quoted(path), true);
        EXPECT_EQ(result.exitCode, 0) << result.output;
        return target.string() + ".export";
    }

    std::filesystem::path folder;
    std::filesystem::path path;
    std::unique_ptr<FileSink> sink;
    std::unique_ptr<CompoundOutput> output;
    HostStream* root = nullptr;
    StreamMap expected;
    std::vector<std::string> emptyStorages;
};

} // namespace

TEST_F(CompoundReadBackTest, EmptyFileIsRead) {
    emptyStorages = {"*root*"}; // gsf's name for the root

    finish();

    const auto storages = readStorages(path);
    EXPECT_EQ(storages, (std::map<std::string, std::string>{{"/", ""}}));
}

TEST_F(CompoundReadBackTest, SizesOnBothSidesOfEachLimitAreReadByteForByte) {
    std::map<std::string, Bytes> contents;
    for (const std::size_t size :
         {0, 1, 63, 64, 65, 511, 512, 513, 4095, 4096, 4097, 4608, 65536, 65537, 100000000}) {
        contents["size " + std::to_string(size)] =
            pattern(size, static_cast<std::uint32_t>(size) + 1);
    }
    for (const auto& [name, bytes] : contents) {
        add(root, "", name, bytes);
    }

    finish();

    const auto members = exported();
    for (const auto& [name, bytes] : contents) {
        expectGsfReads(name, bytes);
        if (!bytes.empty()) {
            EXPECT_TRUE(readFile(members / name / "StreamData.bin") == asText(bytes)) << name;
        }
    }
}

TEST_F(CompoundReadBackTest, FiveThousandStreamsInOneStorageAreRead) {
    std::map<std::string, Bytes> contents;
    for (unsigned int i = 0; i < 5000; ++i) {
        // Unordered, so that the directory must be sorted.
        contents[hexName(i * 7919 % 5000)] = pattern(i % 200, i);
    }
    for (unsigned int i = 0; i < 5000; ++i) {
        const std::string name = hexName(i * 3163 % 5000);
        add(root, "", name, contents.at(name));
    }

    finish();

    constexpr unsigned int namesPerRun = 1000; // as many as a command line takes
    for (unsigned int first = 0; first < 5000; first += namesPerRun) {
        std::string command = "gsf cat " + quoted(path);
        std::string wanted;
        for (unsigned int i = first; i < first + namesPerRun; ++i) {
            command += ' ';
            command += hexName(i);
            wanted += asText(contents.at(hexName(i)));
        }
        EXPECT_TRUE(runProgram(command).output == wanted) << first;
    }
}

TEST_F(CompoundReadBackTest, EveryNumberOfStreamsMakesAValidTree) {
    for (unsigned int count = 1; count <= 70; ++count) {
        const std::string storageName = "storage " + std::to_string(count);
        HostStream* storage = createStorage(root, wide(storageName));
        for (unsigned int i = 0; i < count; ++i) {
            add(storage, storageName + "/", hexName(i), pattern(i, i));
        }
        close(storage);
    }

    finish();
}

TEST_F(CompoundReadBackTest, TwoLongStreamsWrittenAlternatelyAreRead) {
    const Bytes one = pattern(20000, 1);
    const Bytes other = pattern(20000, 2);
    HostStream* streamOne = createStream(root, u"one");
    HostStream* streamOther = createStream(root, u"other");
    for (std::size_t at = 0; at < 20000; at += 1000) {
        ASSERT_TRUE(write(streamOne, std::span(one).subspan(at, 1000)));
        ASSERT_TRUE(write(streamOther, std::span(other).subspan(at, 1000)));
    }
    close(streamOne);
    close(streamOther);
    expected = {{"one", factsOf(one)}, {"other", factsOf(other)}};

    finish();

    expectGsfReads("one", one);
    expectGsfReads("other", other);
    const auto members = exported();
    EXPECT_TRUE(readFile(members / "one" / "StreamData.bin") == asText(one));
    EXPECT_TRUE(readFile(members / "other" / "StreamData.bin") == asText(other));
}

TEST_F(CompoundReadBackTest, FiveStreamsWrittenInRandomPiecesAreRead) {
    struct Written {
        HostStream* stream;
        Bytes contents;
        std::size_t done = 0;
    };
    std::vector<Written> streams;
    for (std::uint32_t i = 0; i < 5; ++i) {
        const std::string name = "stream " + std::to_string(i);
        streams.push_back({createStream(root, wide(name)), pattern(60000 + 777 * i, i)});
        expected[name] = factsOf(streams.back().contents);
    }
    std::mt19937 numbers(1);
    std::size_t unfinished = streams.size();
    while (unfinished != 0) {
        Written& written = streams[numbers() % streams.size()];
        const std::size_t left = written.contents.size() - written.done;
        const std::size_t size = std::min<std::size_t>(left, 1 + numbers() % 2500);
        if (left == 0) {
            continue;
        }
        ASSERT_TRUE(write(written.stream, std::span(written.contents).subspan(written.done, size)));
        written.done += size;
        if (size == left) {
            close(written.stream);
            --unfinished;
        }
    }

    finish();

    for (std::uint32_t i = 0; i < 5; ++i) {
        expectGsfReads("stream " + std::to_string(i), streams[i].contents);
    }
}

TEST_F(CompoundReadBackTest, BytesWrittenFourAtATimeAreRead) {
    for (const std::size_t size : {4092, 4096, 4100, 50000}) {
        const Bytes bytes = pattern(size, 1);
        const std::string name = "size " + std::to_string(size);
        HostStream* stream = createStream(root, wide(name));
        for (std::size_t at = 0; at < size; at += 4) {
            ASSERT_TRUE(write(stream, std::span(bytes).subspan(at, 4)));
        }
        close(stream);
        expected[name] = factsOf(bytes);
    }

    finish();
}

TEST_F(CompoundReadBackTest, NestedStoragesAreRead) {
    const Bytes bytes = pattern(30, 1);
    std::vector<HostStream*> storages{root};
    std::string prefix;
    std::map<std::string, std::string> wantedStorages{{"/", ""}};
    for (int depth = 0; depth < 20; ++depth) {
        add(storages.back(), prefix, "same name", pattern(30 + depth, depth));
        const std::string name = "depth " + std::to_string(depth);
        storages.push_back(createStorage(storages.back(), wide(name)));
        prefix += name + "/";
        wantedStorages[prefix] = "";
    }
    for (std::size_t i = storages.size() - 1; i > 0; --i) {
        close(storages[i]);
    }

    emptyStorages = {prefix.substr(0, prefix.size() - 1)};

    finish();

    EXPECT_EQ(readStorages(path), wantedStorages);
    expectGsfReads("depth 0/depth 1/same name", pattern(32, 2));
}

TEST_F(CompoundReadBackTest, ClassIdOfTheRootIsRead) {
    const ClassId message{std::byte{0x0B},
                          std::byte{0x0D},
                          std::byte{0x02},
                          {},
                          {},
                          {},
                          {},
                          {},
                          std::byte{0xC0},
                          {},
                          {},
                          {},
                          {},
                          {},
                          {},
                          std::byte{0x46}};
    ASSERT_EQ(IOSetInfo(root, IORootStorage, IOInfoClassId, message.data()), 0);
    close(createStorage(root, u"storage"));
    emptyStorages = {"storage"};

    finish();

    EXPECT_EQ(readStorages(path),
              (std::map<std::string, std::string>{{"/", "00020D0B-0000-0000-C000-000000000046"},
                                                  {"storage/", ""}}));
}

TEST_F(CompoundReadBackTest, RootClosedBeforeItsMembersKeepsWhatTheyHeld) {
    const Bytes small = pattern(100, 1);
    const Bytes large = pattern(5001, 2);
    HostStream* storage = createStorage(root, u"storage");
    HostStream* smallStream = createStream(storage, u"small");
    HostStream* largeStream = createStream(root, u"large");
    HostStream* emptyStream = createStream(root, u"empty");
    ASSERT_TRUE(write(smallStream, small));
    ASSERT_TRUE(write(largeStream, large));
    close(root);
    root = nullptr;
    for (HostStream* handle : {storage, smallStream, largeStream, emptyStream}) {
        close(handle);
    }
    expected = {
        {"storage/small", factsOf(small)}, {"large", factsOf(large)}, {"empty", factsOf({})}};

    finish();
}

TEST_F(CompoundReadBackTest, HandlesThatAreNeverClosedKeepWhatTheyHeld) {
    const Bytes small = pattern(100, 1);
    const Bytes large = pattern(5001, 2);
    HostStream* storage = createStorage(root, u"storage");
    ASSERT_TRUE(write(createStream(storage, u"small"), small));
    ASSERT_TRUE(write(createStream(storage, u"large"), large));
    expected = {{"storage/small", factsOf(small)}, {"storage/large", factsOf(large)}};

    finish();
}

TEST_F(CompoundReadBackTest, ExistingNameIsReplacedWhateverItsCase) {
    add(root, "", "Subject", pattern(100, 1));
    add(root, "", "SUBJECT", pattern(50, 2));
    add(root, "", "large", pattern(9000, 3));
    add(root, "", "Large", pattern(8000, 4));
    add(root, "", "shrinks", pattern(9000, 5));
    add(root, "", "Shrinks", pattern(80, 6));
    add(root, "", "grows", pattern(90, 7));
    add(root, "", "Grows", pattern(8000, 8));
    for (const char* gone : {"Subject", "large", "shrinks", "grows"}) {
        expected.erase(gone);
    }

    finish();
}

TEST_F(CompoundReadBackTest, StreamReplacedWhileItIsOpenLeavesNothing) {
    HostStream* small = createStream(root, u"small");
    HostStream* large = createStream(root, u"large");
    HostStream* neverClosed = createStream(root, u"never closed");
    ASSERT_TRUE(write(small, pattern(100, 1)));
    ASSERT_TRUE(write(large, pattern(9000, 2)));
    ASSERT_TRUE(write(neverClosed, pattern(9001, 3)));
    add(root, "", "small", pattern(200, 4));
    add(root, "", "large", pattern(9002, 5));
    add(root, "", "never closed", pattern(9003, 6));
    close(small);
    close(large);

    finish();
}

TEST_F(CompoundReadBackTest, StorageIsReplacedWithItsContents) {
    HostStream* storage = createStorage(root, u"storage");
    HostStream* inner = createStorage(storage, u"inner");
    HostStream* open = createStream(inner, u"open");
    ASSERT_TRUE(write(open, pattern(7000, 1)));
    addStream(inner, u"small", pattern(70, 2));
    addStream(storage, u"large", pattern(7000, 3));
    HostStream* replacement = createStorage(root, u"STORAGE");
    add(replacement, "STORAGE/", "small", pattern(71, 4));
    add(root, "", "stream in place of a storage", pattern(72, 5));
    close(createStorage(root, u"Stream in place of a Storage"));
    expected.erase("stream in place of a storage");
    for (HostStream* handle : {open, inner, storage, replacement}) {
        close(handle);
    }
    emptyStorages = {"Stream in place of a Storage"};

    finish();

    EXPECT_EQ(readStorages(path),
              (std::map<std::string, std::string>{
                  {"/", ""}, {"STORAGE/", ""}, {"Stream in place of a Storage/", ""}}));
}

TEST_F(CompoundReadBackTest, UnusedEntriesAreBlank) {
    HostStream* storage = createStorage(root, u"storage");
    for (unsigned int i = 0; i < 50; ++i) {
        addStream(storage, wide(hexName(i)), pattern(100, i));
    }
    close(storage);
    close(createStorage(root, u"storage"));
    emptyStorages = {"storage"};

    finish();

    EXPECT_NE(checkFiles({path}).output.find("0 streams, 1 storages, 50 unused entries"),
              std::string::npos);
}

TEST_F(CompoundReadBackTest, NamesBeyondAsciiAreOrderedByTheirCapitals) {
    // Small letters whose order among themselves is not that of their capitals, and surrogates.
    for (const char16_t* name :
         {u"\u00FF", u"\u0101", u"\u00E4", u"\u0436", u"\u03C2x", u"\u03B1x", u"\u1FB3", u"\u00DF",
          u"\u00B5", u"\u0131", u"_", u"a", u"Z", u"\xD83D\xDE00", u"ab"}) {
        addStream(root, name, pattern(10, 1));
    }
    close(root);
    ASSERT_TRUE(output->isWhole());
    sink->close();

    const ProgramResult checked = checkFiles({path});
    EXPECT_EQ(checked.exitCode, 0) << checked.output;
    EXPECT_NE(checked.output.find("15 streams"), std::string::npos) << checked.output;
    EXPECT_EQ(runProgram("gsf list " + quoted(path)).exitCode, 0);
}

} // namespace olmhost::test
