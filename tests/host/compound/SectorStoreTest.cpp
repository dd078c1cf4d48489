#include "host/compound/SectorStore.h"

#include <gtest/gtest.h>

#include "tests/host/compound/CompoundFiles.h"

namespace olmhost::test {

namespace {

// Returns the finished file of one chain of that many sectors.
Bytes fileOfSectors(std::size_t count) {
    MemorySink sink;
    SectorStore store(sink);
    const Bytes sectors(count * sectorSize, std::byte{0x5A});
    SectorNumber first = 0;
    store.endChain(store.append(endOfChain, sectors, first));
    store.finish({});
    EXPECT_FALSE(store.failed());
    return sink.bytes;
}

struct TableCase {
    const char* name;
    std::size_t dataSectors;
    std::uint32_t tableSectors; // of the FAT
    std::uint32_t indexSectors; // of the DIFAT
};

class SectorStoreTest : public testing::TestWithParam<TableCase> {};

} // namespace

TEST_P(SectorStoreTest, TableCoversTheFileAndItself) {
    const TableCase& row = GetParam();

    const Bytes file = fileOfSectors(row.dataSectors);

    const std::size_t sectors = row.dataSectors + row.tableSectors + row.indexSectors;
    ASSERT_EQ(file.size(), 512 * (1 + sectors));
    EXPECT_EQ(numberAt(file, 44), row.tableSectors);
    EXPECT_EQ(numberAt(file, 72), row.indexSectors);
    EXPECT_EQ(numberAt(file, 68),
              row.indexSectors == 0 ? endOfChain : row.dataSectors + row.tableSectors);

    // Every number of the FAT, found through the header and the index sectors.
    std::vector<std::uint32_t> tableSectors;
    for (std::size_t i = 0; i < 109; ++i) {
        tableSectors.push_back(numberAt(file, 76 + 4 * i));
    }
    for (std::uint32_t index = numberAt(file, 68); index != endOfChain;) {
        const std::size_t offset = 512 * (std::size_t{index} + 1);
        for (std::size_t i = 0; i < 127; ++i) {
            tableSectors.push_back(numberAt(file, offset + 4 * i));
        }
        index = numberAt(file, offset + 508);
    }
    ASSERT_EQ(tableSectors.size(), 109 + 127 * row.indexSectors);
    for (std::size_t i = 0; i < tableSectors.size(); ++i) {
        ASSERT_EQ(tableSectors[i], i < row.tableSectors ? row.dataSectors + i : freeSector) << i;
    }
    for (std::size_t sector = 0; sector < numbersPerSector * row.tableSectors; ++sector) {
        std::uint32_t wanted = freeSector;
        if (sector + 1 < row.dataSectors) {
            wanted = static_cast<std::uint32_t>(sector + 1);
        } else if (sector + 1 == row.dataSectors) {
            wanted = endOfChain;
        } else if (sector < row.dataSectors + row.tableSectors) {
            wanted = tableSector;
        } else if (sector < sectors) {
            wanted = indexSector;
        }
        const std::size_t table = 512 * (std::size_t{tableSectors[sector / 128]} + 1);
        ASSERT_EQ(numberAt(file, table + 4 * (sector % 128)), wanted) << sector;
    }
}

// 109 table sectors cover 13,952 sectors, themselves included; 236 cover 30,208.
INSTANTIATE_TEST_SUITE_P(Sizes, SectorStoreTest,
                         testing::Values(TableCase{"OneSector", 1, 1, 0},
                                         TableCase{"TableExactlyFull", 127, 1, 0},
                                         TableCase{"TableFullWithoutItself", 128, 2, 0},
                                         TableCase{"HeaderExactlyFull", 13843, 109, 0},
                                         TableCase{"FirstIndexSector", 13844, 110, 1},
                                         TableCase{"IndexSectorExactlyFull", 29971, 236, 1},
                                         TableCase{"SecondIndexSector", 29972, 237, 2}),
                         [](const auto& row) { return row.param.name; });

} // namespace olmhost::test
