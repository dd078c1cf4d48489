// Files whose FAT is too large for the header, and files far larger than what is read of them.

#include <chrono>

#include <gtest/gtest.h>

#include "tests/host/check/CheckedFiles.h"
#include "tests/host/compound/HeapCounter.h"

namespace olmhost::test {

namespace {

using enum FindingCode;

// The FAT of 16 MB takes 257 sectors, so there are two DIFAT sectors.
class DifatTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        MemorySink sink;
        CompoundOutput output(sink);
        HostStream* root = createRoot(output);
        addStream(root, u"long", Bytes(std::size_t{16} << 20));
        close(root);
        good = std::move(sink.bytes);
    }

    static std::size_t offsetOf(std::uint32_t sector) { return 512 * (std::size_t{sector} + 1); }

    static Bytes changed(std::size_t offset, std::uint32_t value) {
        Bytes bad = good;
        put(bad, offset, value, 4);
        return bad;
    }

    static std::uint32_t first() { return numberAt(good, 68); }
    static std::uint32_t second() { return numberAt(good, offsetOf(first()) + 508); }

    static inline Bytes good;
};

std::string sectorName(const char* noun, std::uint32_t number) {
    return std::string(noun) + " " + std::to_string(number);
}

} // namespace

TEST_F(DifatTest, GoodFileHasNoFindings) {
    ASSERT_EQ(numberAt(good, 72), 2U);
    expectNone(checkCompoundBytes(good));
}

TEST_F(DifatTest, FaultsOfTheChainAreFound) {
    expectFinding(checkCompoundBytes(changed(offsetOf(first()) + 508, first())), DifatChain,
                  "DIFAT");
    expectFinding(checkCompoundBytes(changed(offsetOf(first()) + 508, 0xFFFFFFFE)), DifatCount,
                  "header");
    expectFinding(checkCompoundBytes(changed(offsetOf(first()) + 508, 0xFFFFFFFE)), FatCount,
                  "header");
    expectFinding(checkCompoundBytes(changed(offsetOf(second()) + 508, 0xFFFFFFFF)), DifatChain,
                  "DIFAT");
    expectFinding(checkCompoundBytes(changed(72, 1)), DifatCount, "header");
}

TEST_F(DifatTest, FaultsOfWhatItListsAreFound) {
    // The FAT's 110th sector is listed where its 111th is.
    const std::size_t place = offsetOf(first());
    expectFinding(checkCompoundBytes(changed(place, numberAt(good, place + 4))), ChainShared,
                  "DIFAT");
    expectFinding(checkCompoundBytes(changed(place, 0xFFFFFFFF)), FatSectorLost, "DIFAT");
    expectFinding(checkCompoundBytes(changed(offsetOf(second()) + 504, 7)), DifatTail, "DIFAT");
    // The header says that the first DIFAT sector is the last that is used.
    expectFinding(checkCompoundBytes(changed(44, 236)), DifatSpare, "DIFAT");
}

TEST_F(DifatTest, MarksOfItsSectorsAreChecked) {
    const std::size_t fatSector = offsetOf(numberAt(good, 76 + 4UL * (first() / 128)));
    // The table's sectors come last, so the DIFAT's are in the FAT's last ones.
    const std::size_t listed = first() / 128 - 109;
    const std::size_t inDifat =
        listed < 127 ? offsetOf(first()) + 4 * listed : offsetOf(second()) + 4 * (listed - 127);
    const std::size_t sector = first() / 128 < 109 ? fatSector : offsetOf(numberAt(good, inDifat));
    const Bytes bad = changed(sector + 4UL * (first() % 128), 0xFFFFFFFE);
    expectFinding(checkCompoundBytes(bad), FatSectorMark, sectorName("DIFAT sector", first()));
}

namespace {

constexpr std::uint64_t bigSector = 4096; // bytes, in version 4

void putHeader(SparseAccess& file, std::uint32_t fatCount, std::uint32_t directory,
               std::uint32_t difat) {
    file.put(0, 0xE11AB1A1E011CFD0, 8);
    file.put(24, 0x0004003E, 4);
    file.put(28, 0x000CFFFE, 4);
    file.put(32, 6, 2);
    file.put(40, 1, 4);
    file.put(44, fatCount, 4);
    file.put(48, directory, 4);
    file.put(56, 4096, 4);
    file.put(60, 0xFFFFFFFE, 4);
    file.put(68, difat, 4);
    file.put(72, difat == 0xFFFFFFFE ? 0 : 1, 4);
    for (std::uint32_t i = 0; i < 109; ++i) {
        file.put(76 + 4ULL * i, i < fatCount ? i : 0xFFFFFFFF, 4);
    }
}

void putEntry(SparseAccess& file, std::uint64_t offset, std::u16string_view name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        file.put(offset + 2 * i, name[i], 2);
    }
    file.put(offset + 64, 2 * (name.size() + 1), 2);
    file.put(offset + 66, 0x0105, 2);
    file.put(offset + 76, 0xFFFFFFFF, 4);
    file.put(offset + 116, 0xFFFFFFFE, 4);
}

void putDirectory(SparseAccess& file, std::uint64_t offset) {
    file.fill(offset, std::byte{0});
    for (std::uint64_t entry = 0; entry < 32; ++entry) {
        file.put(offset + 128 * entry + 68, 0xFFFFFFFFFFFFFFFF, 8);
        file.put(offset + 128 * entry + 76, 0xFFFFFFFF, 4);
    }
    putEntry(file, offset, u"Root Entry");
}

// A file of version 4 with nothing in it but free sectors: sectors 0 to 513 are the FAT, 514 is the
// DIFAT and 515 the directory.
SparseAccess hugeFile() {
    constexpr std::uint32_t fatCount = 514;
    SparseAccess file(bigSector * (1 + fatCount * 1024ULL));
    putHeader(file, fatCount, fatCount + 1, fatCount);
    const auto offsetOf = [](std::uint64_t sector) { return bigSector * (sector + 1); };
    for (std::uint64_t sector = 0; sector <= fatCount; ++sector) {
        file.fill(offsetOf(sector), std::byte{0xFF});
    }
    for (std::uint64_t sector = 0; sector < fatCount; ++sector) {
        file.put(offsetOf(0) + 4 * sector, 0xFFFFFFFD, 4);
    }
    file.put(offsetOf(0) + 4ULL * fatCount, 0xFFFFFFFC, 4);
    file.put(offsetOf(0) + 4ULL * (fatCount + 1), 0xFFFFFFFE, 4);
    for (std::uint64_t i = 0; i < fatCount - 109; ++i) {
        file.put(offsetOf(fatCount) + 4 * i, i + 109, 4);
    }
    file.put(offsetOf(fatCount) + 4092, 0xFFFFFFFE, 4);
    putDirectory(file, offsetOf(fatCount + 1));
    // The sector of the locks, at 2 GB less 256 bytes.
    file.put(offsetOf(0x7FFFE / 1024) + 4ULL * (0x7FFFE % 1024), 0xFFFFFFFE, 4);
    return file;
}

} // namespace

TEST(HugeFileTest, TwoGigabytesTakeLittleMemory) {
    SparseAccess file = hugeFile();
    ASSERT_GT(file.size(), std::uint64_t{1} << 31);

    const HeapCounter heap;
    const CheckResult result = checkFile(file, {.kind = FileKind::CompoundFile});
    const std::size_t peak = heap.peak();

    expectNone(result);
    EXPECT_EQ(result.sectors, 514U * 1024);
    EXPECT_LT(peak, std::size_t{1} << 20);
}

TEST(HugeFileTest, SectorOfTheLocksIsAllocatedAndUnused) {
    SparseAccess file = hugeFile();
    file.put(bigSector * (1 + 0x7FFFE / 1024) + 4ULL * (0x7FFFE % 1024), 0xFFFFFFFF, 4);
    expectFinding(checkFile(file, {.kind = FileKind::CompoundFile}), RangeLock, "sector 524286");
}

TEST(HugeFileTest, CountsThatTheFileStatesAreNotBelieved) {
    SparseAccess file(std::uint64_t{1} << 50);
    putHeader(file, 0xFFFFFFFF, 0, 0);
    file.put(40, 0xFFFFFFFF, 4);
    file.put(64, 0xFFFFFFFF, 4);
    file.put(72, 0xFFFFFFFF, 4);

    const HeapCounter heap;
    const auto start = std::chrono::steady_clock::now();
    const CheckResult result = checkFile(file, {.kind = FileKind::CompoundFile, .maxFindings = 50});

    EXPECT_GT(result.errors, 0U);
    EXPECT_EQ(result.findings.size(), 50U);
    EXPECT_LT(heap.peak(), std::size_t{4} << 20);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

namespace {

constexpr std::uint32_t listLength = 16384; // entries

// A directory in which the root has a child, and each entry, a storage, links to the next one by
// the field at `link`.
SparseAccess listOfStorages(std::size_t link) {
    constexpr std::uint32_t sectors = listLength / 32;
    SparseAccess file(bigSector * (2 + sectors));
    putHeader(file, 1, 1, 0xFFFFFFFE);
    file.put(40, sectors, 4);
    file.fill(bigSector, std::byte{0xFF});
    file.put(bigSector, 0xFFFFFFFD, 4);
    for (std::uint32_t sector = 1; sector <= sectors; ++sector) {
        file.put(bigSector + 4ULL * sector, sector == sectors ? 0xFFFFFFFE : sector + 1, 4);
        putDirectory(file, bigSector * (sector + 1));
    }
    file.put(2 * bigSector + 76, 1, 4);
    for (std::uint32_t entry = 1; entry < listLength; ++entry) {
        const std::uint64_t offset = 2 * bigSector + 128ULL * entry;
        putEntry(file, offset, u"Storage001");
        file.put(offset + 66, 1, 1);
        file.put(offset + 68, 0xFFFFFFFFFFFFFFFF, 8);
        file.put(offset + 116, 0, 4);
        file.put(offset + link, entry + 1 < listLength ? entry + 1 : 0xFFFFFFFF, 4);
    }
    return file;
}

} // namespace

// No stack of calls could follow these.
TEST(HugeFileTest, StoragesInsideEachOtherAreWalked) {
    SparseAccess file = listOfStorages(76);
    const CheckResult result = checkFile(file, {.kind = FileKind::CompoundFile});
    expectNone(result);
    EXPECT_EQ(result.storages, listLength - 1);
}

TEST(HugeFileTest, TreesThatAreListsAreWalked) {
    for (const std::size_t link : {68, 72}) {
        SCOPED_TRACE(link);
        SparseAccess file = listOfStorages(link);
        const CheckResult result = checkFile(file, {.kind = FileKind::CompoundFile});
        EXPECT_EQ(result.storages, listLength - 1);
        EXPECT_EQ(result.errors, listLength - 2) << "names that are equal";
        EXPECT_EQ(result.advice, 1U) << "the height of the tree";
        expectFinding(result, NamesEqual, "entry 0, '/'");
    }
}

// The path of a deep entry is short all the same.
TEST(HugeFileTest, PlacesInDeepStoragesAreShort) {
    SparseAccess file = listOfStorages(76);
    file.put(2 * bigSector + 128ULL * 9 + 67, 7, 1);
    std::string path = "/...";
    for (int name = 0; name < 8; ++name) {
        path += "/Storage001";
    }
    expectFinding(checkFile(file, {.kind = FileKind::CompoundFile}), EntryColour,
                  "entry 9, '" + path + "'");
}

namespace {

// Sectors: FAT, directory, mini FAT, mini stream, and two of a long stream.
SparseAccess goodVersion4() {
    SparseAccess file(7 * bigSector);
    putHeader(file, 1, 1, 0xFFFFFFFE);
    file.put(60, 2, 4);
    file.put(64, 1, 4);
    file.fill(bigSector, std::byte{0xFF});
    const std::uint32_t fat[] = {0xFFFFFFFD, 0xFFFFFFFE, 0xFFFFFFFE, 0xFFFFFFFE, 5, 0xFFFFFFFE};
    for (std::size_t sector = 0; sector < std::size(fat); ++sector) {
        file.put(bigSector + 4 * sector, fat[sector], 4);
    }
    file.fill(3 * bigSector, std::byte{0xFF});
    file.put(3 * bigSector, 1, 4);
    file.put(3 * bigSector + 4, 0xFFFFFFFE, 4);
    const std::uint64_t root = 2 * bigSector;
    putDirectory(file, root);
    file.put(root + 76, 1, 4);
    file.put(root + 116, 3, 4);
    file.put(root + 120, 128, 8);
    putEntry(file, root + 128, u"long");
    file.put(root + 128 + 66, 0x0102, 2);
    file.put(root + 128 + 68, 2, 4);
    file.put(root + 128 + 116, 4, 4);
    file.put(root + 128 + 120, 5000, 8);
    putEntry(file, root + 256, u"s");
    file.put(root + 256 + 66, 0x0002, 2);
    file.put(root + 256 + 116, 0, 4);
    file.put(root + 256 + 120, 100, 8);
    return file;
}

} // namespace

TEST(Version4Test, GoodFileHasNoFindings) {
    SparseAccess file = goodVersion4();
    const CheckResult result = checkFile(file, {.kind = FileKind::CompoundFile});
    expectNone(result);
    EXPECT_EQ(result.streams, 2U);
    EXPECT_EQ(result.sectors, 6U);
}

// The directory's sectors are counted, the rest of the header's sector is zero, and a size has 64
// bits.
TEST(Version4Test, FaultsOfItsOwnFieldsAreFound) {
    SparseAccess file = goodVersion4();
    file.put(40, 2, 4);
    file.put(4095, 1, 1);
    file.put(2 * bigSector + 124, 1, 4);
    const CheckResult result = checkFile(file, {.kind = FileKind::CompoundFile});
    expectFinding(result, HeaderDirectoryCount, "header");
    expectFinding(result, HeaderPadding, "header");
    expectFinding(result, ChainLength, "mini stream");
}

TEST(Version4Test, ChainsAreCheckedBySectorsOf4096Bytes) {
    SparseAccess file = goodVersion4();
    file.put(2 * bigSector + 128 + 120, 8193, 8);
    file.put(2 * bigSector + 256 + 120, 129, 8);
    const CheckResult result = checkFile(file, {.kind = FileKind::CompoundFile});
    expectFinding(result, ChainLength, "entry 1, '/long'");
    expectFinding(result, ChainLength, "entry 2, '/s'");
}

} // namespace olmhost::test
