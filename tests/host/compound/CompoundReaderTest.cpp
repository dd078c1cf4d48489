#include "host/compound/CompoundReader.h"

#include <cstring>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CompoundFiles.h"

namespace olmhost::test {
namespace {

using testing::HasSubstr;

// Offsets of fields, in bytes from the start of the file.
constexpr std::size_t versionField = 26;
constexpr std::size_t tableCountField = 44;
constexpr std::size_t directoryField = 48;
constexpr std::size_t firstTableField = 76;

void setNumber(Bytes& file, std::size_t place, std::uint32_t number) {
    std::memcpy(&file[place], &number, sizeof number);
}

std::size_t placeOfSector(SectorNumber number) {
    return (std::size_t{number} + 1) * sectorSize;
}

// Returns the offset of a sector's number in the FAT; for files with one sector of it.
std::size_t placeInTable(const Bytes& file, SectorNumber number) {
    return placeOfSector(numberAt(file, firstTableField)) + number * sizeof(SectorNumber);
}

// Returns the offset of an entry of the directory, in its first sector.
std::size_t placeOfEntry(const Bytes& file, EntryId id) {
    return placeOfSector(numberAt(file, directoryField)) + id * directoryEntrySize;
}

constexpr std::size_t rightField = 72;
constexpr std::size_t childField = 76;
constexpr std::size_t firstSectorField = 116;
constexpr std::size_t sizeField = 120;

std::u16string nameOf(std::size_t number) {
    std::u16string name = u"stream ";
    for (const char digit : std::to_string(number)) {
        name += static_cast<char16_t>(digit);
    }
    return name;
}

Bytes fileOf(const std::vector<std::size_t>& sizes) {
    MemorySink sink;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        addStream(root, nameOf(i), pattern(sizes[i], static_cast<std::uint32_t>(i)));
    }
    close(root);
    return sink.bytes;
}

// Every stream below the root by name, read whole.
std::map<std::u16string, Bytes> streamsOf(const CompoundReader& reader, EntryId storage) {
    std::map<std::u16string, Bytes> streams;
    for (const EntryId id : reader.entry(storage).children) {
        if (reader.entry(id).isStorage) {
            for (auto& [name, bytes] : streamsOf(reader, id)) {
                streams[reader.entry(id).name + u"/" + name] = std::move(bytes);
            }
        } else {
            streams[reader.entry(id).name] = reader.bytes(id);
        }
    }
    return streams;
}

std::string failureOf(const Bytes& file) {
    std::string failure;
    EXPECT_EQ(CompoundReader::open(file, failure), nullptr);
    return failure;
}

void expectStreams(const std::vector<std::size_t>& sizes) {
    const Bytes file = fileOf(sizes);
    std::string failure;

    const auto reader = CompoundReader::open(file, failure);

    ASSERT_NE(reader, nullptr) << failure;
    const auto streams = streamsOf(*reader, rootEntry);
    EXPECT_EQ(streams.size(), sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        ASSERT_TRUE(streams.contains(nameOf(i)));
        EXPECT_TRUE(streams.at(nameOf(i)) == pattern(sizes[i], static_cast<std::uint32_t>(i)))
            << "a stream of " << sizes[i] << " bytes";
    }
}

TEST(CompoundReaderTest, ReadsStreamsOfSizesOnBothSidesOfEachLimit) {
    expectStreams({0, 1, 63, 64, 65, 511, 512, 513, 4095, 4096, 4097, 70'000});
}

TEST(CompoundReaderTest, ReadsAFileWithoutStreams) {
    expectStreams({});
}

TEST(CompoundReaderTest, ReadsATableThatTheHeaderCanNotList) {
    // 109 sectors of the FAT cover 7,143,424 bytes; the second file needs two index sectors.
    expectStreams({8'000'000});
    expectStreams({20'000'000, 5});
}

TEST(CompoundReaderTest, ReadsStoragesInStorages) {
    MemorySink sink;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    HostStream* outer = createStorage(root, u"outer");
    HostStream* inner = createStorage(outer, u"inner");
    addStream(inner, u"deep", pattern(5000, 1));
    addStream(outer, u"near", pattern(10, 2));
    for (HostStream* storage : {inner, outer, root}) {
        close(storage);
    }
    std::string failure;

    const auto reader = CompoundReader::open(sink.bytes, failure);

    ASSERT_NE(reader, nullptr) << failure;
    EXPECT_EQ(streamsOf(*reader, rootEntry),
              (std::map<std::u16string, Bytes>{{u"outer/inner/deep", pattern(5000, 1)},
                                               {u"outer/near", pattern(10, 2)}}));
}

TEST(CompoundReaderTest, ReturnsNoMoreThanTheLimit) {
    const Bytes file = fileOf({100, 9000});
    std::string failure;
    const auto reader = CompoundReader::open(file, failure);
    ASSERT_NE(reader, nullptr) << failure;

    for (const EntryId id : reader->entry(rootEntry).children) {
        const Bytes whole = reader->bytes(id);
        for (const std::size_t limit : {0, 1, 64, 65, 512, 513}) {
            const std::size_t count = std::min<std::size_t>(limit, whole.size());
            EXPECT_EQ(reader->bytes(id, limit),
                      Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count)));
        }
    }
}

TEST(CompoundReaderTest, RefusesOtherFiles) {
    EXPECT_THAT(failureOf({}), HasSubstr("not a compound file"));
    EXPECT_THAT(failureOf(Bytes(10'000)), HasSubstr("not a compound file"));
    Bytes file = fileOf({100});
    file.resize(sectorSize - 1);
    EXPECT_THAT(failureOf(file), HasSubstr("not a compound file"));
}

TEST(CompoundReaderTest, RefusesAnotherVersion) {
    Bytes file = fileOf({100});
    file[versionField] = std::byte{4};

    EXPECT_THAT(failureOf(file), HasSubstr("version 3"));
}

TEST(CompoundReaderTest, ChainThatRunsInACircleIsRefused) {
    Bytes file = fileOf({5000});
    const SectorNumber first = numberAt(file, placeOfEntry(file, 1) + firstSectorField);
    setNumber(file, placeInTable(file, first + 1), first);

    EXPECT_THAT(failureOf(file), HasSubstr("two chains, or in one twice"));
}

TEST(CompoundReaderTest, DirectoryThatRunsInACircleIsRefused) {
    Bytes file = fileOf({5000});
    const SectorNumber first = numberAt(file, directoryField);
    setNumber(file, placeInTable(file, first), first);

    EXPECT_THAT(failureOf(file), HasSubstr("two chains, or in one twice"));
}

TEST(CompoundReaderTest, StreamsThatShareASectorAreRefused) {
    Bytes file = fileOf({5000, 5000});
    const SectorNumber first = numberAt(file, placeOfEntry(file, 1) + firstSectorField);
    setNumber(file, placeOfEntry(file, 2) + firstSectorField, first);

    EXPECT_THAT(failureOf(file), HasSubstr("two chains, or in one twice"));
}

TEST(CompoundReaderTest, StreamsThatShareAMiniSectorAreRefused) {
    Bytes file = fileOf({100, 100});
    const SectorNumber first = numberAt(file, placeOfEntry(file, 1) + firstSectorField);
    setNumber(file, placeOfEntry(file, 2) + firstSectorField, first);

    EXPECT_THAT(failureOf(file), HasSubstr("a mini sector is in two chains"));
}

TEST(CompoundReaderTest, StreamLongerThanItsChainIsRefused) {
    for (const std::size_t size : {100, 5000}) {
        Bytes file = fileOf({size, size});
        setNumber(file, placeOfEntry(file, 1) + sizeField, static_cast<std::uint32_t>(size + 600));

        EXPECT_THAT(failureOf(file), HasSubstr("leads out of"));
    }
}

TEST(CompoundReaderTest, TableLargerThanTheFileIsRefused) {
    Bytes file = fileOf({100});
    setNumber(file, tableCountField, 0xFFFFFFFF);

    EXPECT_THAT(failureOf(file), HasSubstr("leads out of the file"));
}

TEST(CompoundReaderTest, TreeThatRunsInACircleIsRefused) {
    Bytes file = fileOf({10});
    setNumber(file, placeOfEntry(file, 1) + rightField, 1);
    EXPECT_THAT(failureOf(file), HasSubstr("tree is broken"));

    file = fileOf({10});
    setNumber(file, placeOfEntry(file, rootEntry) + childField, rootEntry);
    EXPECT_THAT(failureOf(file), HasSubstr("tree is broken"));

    file = fileOf({10});
    setNumber(file, placeOfEntry(file, rootEntry) + childField, 1'000'000);
    EXPECT_THAT(failureOf(file), HasSubstr("tree is broken"));
}

// Any bytes are refused with a reason, or read without leaving the file.
void expectNoHarm(const Bytes& file) {
    std::string failure;
    const auto reader = CompoundReader::open(file, failure);
    if (reader == nullptr) {
        EXPECT_FALSE(failure.empty());
        return;
    }
    std::size_t total = 0;
    for (const auto& [name, bytes] : streamsOf(*reader, rootEntry)) {
        total += bytes.size();
    }
    EXPECT_LE(total, file.size());
}

TEST(CompoundReaderTest, AnyChangedByteIsHarmless) {
    const Bytes whole = fileOf({0, 70, 600, 4100});
    Bytes file = whole;
    for (std::size_t place = 0; place < file.size(); ++place) {
        for (const unsigned changed : {0x00U, 0x01U, 0x7FU, 0xFEU, 0xFFU}) {
            file[place] = static_cast<std::byte>(changed);
            expectNoHarm(file);
        }
        file[place] = whole[place];
    }
}

TEST(CompoundReaderTest, AnyTruncationIsHarmless) {
    Bytes file = fileOf({0, 70, 600, 4100});
    while (!file.empty()) {
        file.pop_back();
        expectNoHarm(file);
    }
}

} // namespace
} // namespace olmhost::test
