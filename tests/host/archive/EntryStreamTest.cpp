#include "host/archive/EntryStream.h"

#include <algorithm>
#include <random>
#include <vector>

#include "host/archive/InflatePoints.h"
#include "host/archive/InflatedEntries.h"
#include "tests/host/archive/ArchiveFixture.h"

namespace olmhost::test {

namespace {

constexpr std::uint64_t megabyte = 1000000;

class EntryStreamTest : public ArchiveFixture {
protected:
    // Reads pieces at random positions, with all three origins, and compares them with `plain`.
    void compareAtRandom(HostStream* handle, const std::string& plain, int rounds) {
        std::mt19937 random(7);
        std::int64_t here = 0;
        const auto size = static_cast<std::int64_t>(plain.size());
        for (int round = 0; round < rounds; ++round) {
            const auto place = static_cast<std::int64_t>(random() % plain.size());
            const auto origin = static_cast<std::int32_t>(random() % 3);
            const std::int64_t bases[] = {0, here, size};
            const auto length = static_cast<std::uint32_t>(random() % 100000);
            ASSERT_EQ(handle->seek(handle, place - bases[origin], origin), 0);
            const std::string piece = readSome(handle, length);
            ASSERT_TRUE(piece == plain.substr(std::size_t(place), length))
                << "round " << round << ", " << length << " bytes from " << place;
            here = place + static_cast<std::int64_t>(piece.size());
        }
    }

    // Reads as the extraction of one item does: a new handle, the document's beginning, then the
    // item and what the reader reads after it.
    void readItem(std::uint64_t index, const std::string& plain, std::uint64_t place,
                  std::uint32_t length) {
        HostStream* handle = open(index);
        ASSERT_NE(handle, nullptr);
        ASSERT_TRUE(readSome(handle, 16384) == plain.substr(0, 16384));
        ASSERT_EQ(handle->seek(handle, std::int64_t(place), 0), 0);
        ASSERT_TRUE(readSome(handle, length) == plain.substr(place, length)) << place;
        handle->close(handle);
    }
};

} // namespace

TEST_F(EntryStreamTest, ReadsOfAnySizeReturnTheSameBytes) {
    const std::string plain = someText(300001);
    openZip(ZipBuilder()
                .add({.name = "stored", .data = plain})
                .add({.name = "deflated", .data = plain, .isDeflated = true}));

    for (std::uint64_t index = 0; index < 2; ++index) {
        for (const std::uint32_t step : {7U, 1024U, 4096U, 65536U, 1000000U}) {
            HostStream* handle = open(index);
            ASSERT_NE(handle, nullptr);
            EXPECT_TRUE(readOn(handle, step) == plain) << index << " by " << step;
            handle->close(handle);
        }
    }
    EXPECT_TRUE(file->faults().empty());
}

TEST_F(EntryStreamTest, AReadIsShortOnlyAtTheEndAndTheEndStays) {
    openZip(ZipBuilder().add({.name = "a", .data = std::string(1500, 'a')}));
    HostStream* handle = open(0);
    char buffer[1024];
    std::uint32_t count = 0;

    EXPECT_EQ(handle->read(handle, buffer, 1024, &count), 0);
    EXPECT_EQ(count, 1024U);
    EXPECT_EQ(handle->read(handle, buffer, 0, &count), 0) << "a read of no bytes is not the end";
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(handle->read(handle, buffer, 1024, &count), 0);
    EXPECT_EQ(count, 476U);
    EXPECT_NE(handle->read(handle, buffer, 1024, &count), 0);
    EXPECT_EQ(count, 0U);
    EXPECT_NE(handle->read(handle, buffer, 1024, &count), 0);
}

TEST_F(EntryStreamTest, WritingIsRefused) {
    openZip(ZipBuilder().add({.name = "a", .data = "x"}));
    HostStream* handle = open(0);
    std::uint32_t count = 7;

    EXPECT_NE(handle->write(handle, "y", 1, &count), 0);

    EXPECT_EQ(count, 0U);
}

TEST_F(EntryStreamTest, AStoredEntrySeeksBackAndForth) {
    const std::string plain = someText(10 * megabyte);
    openZip(ZipBuilder().add({.name = "a", .data = plain}));

    compareAtRandom(open(0), plain, 2000);
}

TEST_F(EntryStreamTest, ADeflatedEntrySeeksBackAndForth) {
    const std::string plain = someText(10 * megabyte);
    openZip(ZipBuilder().add({.name = "a", .data = plain, .isDeflated = true}));
    constexpr std::uint64_t rounds = 500;

    compareAtRandom(open(0), plain, int{rounds});

    // Each seek costs at most one stretch between points, and its own bytes.
    EXPECT_LT(file->inflatedBytes(),
              2 * plain.size() + rounds * (InflatePoints::firstSpacing + 200000));
    EXPECT_TRUE(file->faults().empty());
}

TEST_F(EntryStreamTest, SeekingBeforeTheStartIsRefusedAndAfterTheEndIsTheEnd) {
    openZip(ZipBuilder()
                .add({.name = "a", .data = "0123456789"})
                .add({.name = "b", .data = "0123456789", .isDeflated = true}));

    for (std::uint64_t index = 0; index < 2; ++index) {
        HostStream* handle = open(index);
        EXPECT_EQ(handle->seek(handle, 4, 0), 0);
        EXPECT_NE(handle->seek(handle, -1, 0), 0);
        EXPECT_NE(handle->seek(handle, -5, 1), 0);
        EXPECT_NE(handle->seek(handle, -11, 2), 0);
        EXPECT_NE(handle->seek(handle, INT64_MIN, 1), 0);
        EXPECT_NE(handle->seek(handle, 0, 3), 0);
        EXPECT_EQ(readSome(handle, 3), "456") << "a refused seek moves nothing";
        EXPECT_EQ(handle->seek(handle, 5, 2), 0);
        EXPECT_EQ(readSome(handle, 3), "");
        EXPECT_EQ(handle->seek(handle, INT64_MAX, 0), 0);
        EXPECT_EQ(readSome(handle, 3), "");
        EXPECT_NE(handle->seek(handle, 1, 1), 0) << "past the largest number";
        EXPECT_EQ(handle->seek(handle, -2, 2), 0);
        EXPECT_EQ(readSome(handle, 3), "89");
    }
}

TEST_F(EntryStreamTest, AllItemsOfADocumentInOrderInflateItOnceMore) {
    constexpr std::uint32_t itemSize = 10000;
    const std::string plain = someText(10 * megabyte);
    openZip(ZipBuilder().add({.name = "a.xml", .data = plain, .isDeflated = true}));
    ASSERT_TRUE(contents(0U) == plain);
    ASSERT_EQ(file->inflatedBytes(), plain.size());

    for (std::uint64_t place = 0; place < plain.size(); place += itemSize) {
        readItem(0, plain, place, 3 * itemSize);
    }

    EXPECT_LT(file->inflatedBytes(), 2 * plain.size() + InflatedEntry::ringSize);
}

TEST_F(EntryStreamTest, ItemsInAnyOrderCostOneStretchEach) {
    constexpr std::uint32_t itemSize = 10000;
    const std::string plain = someText(10 * megabyte);
    openZip(ZipBuilder().add({.name = "a.xml", .data = plain, .isDeflated = true}));
    std::vector<std::uint64_t> places;
    for (std::uint64_t place = 0; place < plain.size(); place += std::uint64_t{10} * itemSize) {
        places.push_back(place);
    }
    std::shuffle(places.begin(), places.end(), std::mt19937(3));

    for (const std::uint64_t place : places) {
        readItem(0, plain, place, itemSize);
    }

    EXPECT_LT(file->inflatedBytes(),
              plain.size() + places.size() * (InflatePoints::firstSpacing + 65536 + itemSize));
}

TEST_F(EntryStreamTest, AlternatingBetweenDocumentsInflatesNoneAgain) {
    constexpr std::uint64_t count = InflatedEntries::maxHeld;
    constexpr std::uint32_t itemSize = 10000;
    ZipBuilder zip;
    std::vector<std::string> plain;
    for (unsigned index = 0; index < count; ++index) {
        plain.push_back(someText(3 * megabyte, index));
        zip.add({.name = "a.xml", .data = plain.back(), .isDeflated = true});
    }
    openZip(zip);

    for (std::uint64_t place = 0; place < 3 * megabyte; place += itemSize) {
        for (std::uint64_t index = 0; index < count; ++index) {
            readItem(index, plain[index], place, itemSize);
        }
    }

    EXPECT_LT(file->inflatedBytes(), count * (3 * megabyte + InflatedEntry::ringSize));
}

TEST_F(EntryStreamTest, MoreDocumentsThanAreHeldCostOneStretchPerItem) {
    constexpr std::uint64_t count = 2 * InflatedEntries::maxHeld;
    constexpr std::uint64_t size = 4 * megabyte;
    ZipBuilder zip;
    std::vector<std::string> plain;
    for (unsigned index = 0; index < count; ++index) {
        plain.push_back(someText(size, index));
        zip.add({.name = "a.xml", .data = plain.back(), .isDeflated = true});
    }
    openZip(zip);
    std::uint64_t items = 0;

    for (std::uint64_t place = size - 200000; place > size / 2; place -= 200000) {
        for (std::uint64_t index = 0; index < count; ++index) {
            readItem(index, plain[index], place, 1000);
            ++items;
        }
    }

    EXPECT_LT(file->inflatedBytes(), count * size + items * (InflatePoints::firstSpacing + 196608));
}

TEST_F(EntryStreamTest, TwoHandlesOnOneEntryAreIndependent) {
    const std::string plain = someText(3 * megabyte);
    openZip(ZipBuilder().add({.name = "a", .data = plain, .isDeflated = true}));
    HostStream* first = open(0);
    HostStream* second = open(0);
    second->seek(second, 2000000, 0);
    std::string firstText;
    std::string secondText;

    for (int round = 0; round < 100; ++round) {
        firstText += readSome(first, 9000);
        secondText += readSome(second, 9000);
    }

    EXPECT_TRUE(firstText == plain.substr(0, 900000));
    EXPECT_TRUE(secondText == plain.substr(2000000, 900000));
}

TEST_F(EntryStreamTest, MoreOpenHandlesThanEntriesHeldAreServed) {
    ZipBuilder zip;
    for (unsigned index = 0; index < 12; ++index) {
        zip.add({.name = "a", .data = someText(200000, index), .isDeflated = true});
    }
    openZip(zip);
    std::vector<HostStream*> handles;
    std::vector<std::string> texts(12);
    for (std::uint64_t index = 0; index < 12; ++index) {
        handles.push_back(open(index));
    }

    for (int round = 0; round < 201; ++round) {
        for (std::size_t index = 0; index < 12; ++index) {
            texts[index] += readSome(handles[index], 1000);
        }
    }

    for (unsigned index = 0; index < 12; ++index) {
        EXPECT_TRUE(texts[index] == someText(200000, index)) << index;
    }
    EXPECT_EQ(file->inflatedBytes(), 2400000U);
}

TEST_F(EntryStreamTest, AWrongChecksumReturnsAllBytesAndIsAFault) {
    const std::string plain = someText(100000);
    for (const bool isDeflated : {false, true}) {
        openZip(ZipBuilder()
                    .add({.name = "a", .data = plain, .isDeflated = isDeflated, .crc = 1})
                    .add({.name = "b", .data = plain, .isDeflated = isDeflated}));

        EXPECT_TRUE(contents(0U) == plain);
        EXPECT_TRUE(contents(1U) == plain);
        EXPECT_EQ(onlyFault(), "Checksum 0: its checksum is wrong");
        EXPECT_TRUE(contents(0U) == plain);
        EXPECT_EQ(onlyFault(), "Checksum 0: its checksum is wrong") << "reported once";
    }
}

TEST_F(EntryStreamTest, AWrongChecksumIsReportedWithTheLastByte) {
    for (const bool isDeflated : {false, true}) {
        openZip(ZipBuilder().add(
            {.name = "a", .data = someText(5000), .isDeflated = isDeflated, .crc = 1}));
        HostStream* handle = open(0);

        readSome(handle, 4999);
        readSome(handle, 1);

        EXPECT_EQ(onlyFault(), "Checksum 0: its checksum is wrong");
    }
}

TEST_F(EntryStreamTest, AnEmptyEntryWithAChecksumIsAFault) {
    openZip(ZipBuilder().add({.name = "a", .crc = 1}));

    EXPECT_EQ(contents(0U), "");

    EXPECT_EQ(onlyFault(), "Checksum 0: its checksum is wrong");
}

TEST_F(EntryStreamTest, AStoredEntryReadWithGapsIsNotChecked) {
    openZip(ZipBuilder().add({.name = "a", .data = someText(5000), .crc = 1}));
    HostStream* handle = open(0);

    handle->seek(handle, 100, 0);
    readOn(handle);

    EXPECT_TRUE(file->faults().empty());
}

TEST_F(EntryStreamTest, ADeflatedEntryBrokenInTheMiddleIsReadUpToThere) {
    const std::string plain = someText(400000);
    // A first half that ends at a byte boundary without ending the stream, then a block of unknown
    // type.
    z_stream stream = {};
    ASSERT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(400000, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(plain.data()));
    stream.avail_in = 200000;
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = uInt(packed.size());
    ASSERT_EQ(deflate(&stream, Z_FULL_FLUSH), Z_OK);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    packed += "\x07 and more";
    openZip(ZipBuilder()
                .add({.name = "a", .data = plain, .method = 8, .packed = packed})
                .add({.name = "b", .data = "unhurt"}));

    EXPECT_TRUE(contents(0U) == plain.substr(0, 200000));
    EXPECT_EQ(onlyFault(), "Damaged 0: its data end after 200000 of 400000 bytes");
    EXPECT_EQ(contents(1U), "unhurt");
    HostStream* handle = open(0);
    handle->seek(handle, 100, 0);
    EXPECT_EQ(readSome(handle, 50), plain.substr(100, 50))
        << "the readable bytes can be read again";
    handle->seek(handle, 300000, 0);
    EXPECT_EQ(readSome(handle, 50), "");
    handle->seek(handle, -10, 2);
    EXPECT_EQ(readSome(handle, 50), plain.substr(199990, 10));
}

TEST_F(EntryStreamTest, ATruncatedDeflatedEntryIsReadUpToItsEnd) {
    const std::string plain = someText(100000);
    const std::string packed = deflated(plain);
    openZip(ZipBuilder().add(
        {.name = "a", .data = plain, .method = 8, .packed = packed.substr(0, packed.size() / 2)}));

    const std::string text = contents(0U).value_or("none");

    EXPECT_GT(text.size(), 30000U);
    EXPECT_TRUE(text == plain.substr(0, text.size()));
    EXPECT_EQ(onlyFault(),
              "Damaged 0: its data end after " + std::to_string(text.size()) + " of 100000 bytes");
}

TEST_F(EntryStreamTest, ADeflatedEntryTruncatedAfterItsLastByteIsDamaged) {
    const std::string plain = someText(5000);
    std::string packed = deflated(plain);
    packed.pop_back();
    openZip(ZipBuilder().add({.name = "a", .data = plain, .method = 8, .packed = packed}));

    contents(0U);

    ASSERT_EQ(file->faults().size(), 1U);
    EXPECT_EQ(file->faults()[0].kind, FaultKind::Damaged);
}

TEST_F(EntryStreamTest, ADeflatedEntryShorterThanDeclaredEndsEarly) {
    openZip(
        ZipBuilder().add({.name = "a", .data = someText(5000), .isDeflated = true, .size = 5001}));

    EXPECT_EQ(contents(0U), someText(5000));

    EXPECT_EQ(onlyFault(), "Damaged 0: its data end after 5000 of 5001 bytes");
}

TEST_F(EntryStreamTest, ADeflatedEntryLongerThanDeclaredEndsAtItsDeclaredSize) {
    for (const std::uint64_t size : {0U, 1U, 32768U, 131072U, 199999U}) {
        const std::string plain = someText(200000);
        const auto crc = static_cast<std::uint32_t>(
            crc32_z(0, reinterpret_cast<const Bytef*>(plain.data()), size));
        openZip(ZipBuilder().add(
            {.name = "a", .data = plain, .isDeflated = true, .crc = crc, .size = size}));

        EXPECT_TRUE(contents(0U) == plain.substr(0, size));
        EXPECT_EQ(onlyFault(), "Damaged 0: its data continue after its declared size of " +
                                   std::to_string(size) + " bytes");
        EXPECT_LE(file->inflatedBytes(), size + InflatedEntry::stepSize);
    }
}

TEST_F(EntryStreamTest, AStoredEntryWhoseSizesDifferHasTheSmaller) {
    openZip(ZipBuilder()
                .add({.name = "a", .data = "0123456789", .size = 12})
                .add({.name = "b", .data = "0123456789", .size = 8}));

    EXPECT_EQ(contents(0U), "0123456789");
    EXPECT_EQ(contents(1U), "01234567");
    ASSERT_GE(file->faults().size(), 2U);
    EXPECT_EQ(file->faults()[0].text, "its data end after 10 of 12 bytes");
    EXPECT_EQ(file->faults()[0].entryIndex, 0U);
    EXPECT_EQ(file->faults()[1].text, "its data continue after its declared size of 8 bytes");
    EXPECT_EQ(file->faults()[1].entryIndex, 1U);
}

TEST_F(EntryStreamTest, AStoredEntryThatExceedsTheFileEndsWithTheFile) {
    openZip(ZipBuilder().add(
        {.name = "a", .data = "0123456789", .size = 1000000000, .compressedSize = 1000000000}));

    const std::string text = contents(0U).value_or("");

    EXPECT_EQ(text.substr(0, 10), "0123456789");
    EXPECT_LT(text.size(), 200U);
    EXPECT_EQ(onlyFault(), "Damaged 0: its data end after " + std::to_string(text.size()) +
                               " of 1000000000 bytes");
}

TEST_F(EntryStreamTest, ADeflatedEntryThatExceedsTheFileEndsWithItsStream) {
    openZip(ZipBuilder().add(
        {.name = "a", .data = someText(5000), .isDeflated = true, .compressedSize = 1000000000}));

    EXPECT_EQ(contents(0U), someText(5000));
}

TEST_F(EntryStreamTest, AnyChangedByteOfADeflatedEntryIsDetected) {
    const std::string plain = someText(300);
    const std::string packed = deflated(plain);
    for (std::size_t place = 0; place < packed.size(); ++place) {
        std::string changed = packed;
        changed[place] = static_cast<char>(changed[place] ^ 0x55);
        openZip(ZipBuilder().add({.name = "a", .data = plain, .method = 8, .packed = changed}));

        const std::string text = contents(0U).value_or("none");

        EXPECT_TRUE(text == plain || !file->faults().empty()) << place;
        EXPECT_LE(text.size(), plain.size());
    }
}

TEST_F(EntryStreamTest, FaultsOfTheReaderBelongToTheEntry) {
    Limits limits;
    limits.deepestNesting = 12;
    openZip(ZipBuilder().add({.name = "x"}).add({.name = "a"}), limits);
    HostStream* handle = open(1);

    EXPECT_EQ(Handle::of(handle).limits().deepestNesting, 12U);
    Handle::of(handle).reportFault(FaultKind::BrokenMarkup, "its XML is broken");

    EXPECT_EQ(onlyFault(), "BrokenMarkup 1: its XML is broken");
}

} // namespace olmhost::test
