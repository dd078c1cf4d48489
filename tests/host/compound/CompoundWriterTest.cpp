#include "host/compound/CompoundWriter.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/host/compound/ComparisonCounter.h"
#include "tests/host/compound/CompoundFiles.h"
#include "tests/host/compound/HeapCounter.h"

namespace olmhost::test {

namespace {

constexpr std::size_t bufferSize = 80000; // bytes: the output's, and the table of an empty file

// The stream of one value of multi-valued property `list`.
std::u16string numbered(unsigned int list, unsigned int value) {
    std::array<char, 32> name{};
    const int size =
        std::snprintf(name.data(), name.size(), "__substg1.0_80%02X1102-%08X", list, value);
    return {name.begin(), name.begin() + size};
}

// Two multi-valued properties as of a group: the value streams of both, alternately, and between
// them two streams with the lengths of the values. No storage is larger than these.
void addTwoLists(HostStream* root, unsigned int members) {
    HostStream* const sizes[] = {createStream(root, u"__substg1.0_80001102"),
                                 createStream(root, u"__substg1.0_80011102")};
    const Bytes value = pattern(140, 1);
    const Bytes size = pattern(8, 2);
    for (unsigned int member = 0; member < members; ++member) {
        for (unsigned int list = 0; list < 2; ++list) {
            addStream(root, numbered(list, member), value);
            ASSERT_TRUE(write(sizes[list], size));
        }
    }
    close(sizes[0]);
    close(sizes[1]);
}

} // namespace

TEST(CompoundWriterTest, AHundredThousandShortStreamsTakeUnder200BytesOfMemoryEach) {
    constexpr std::size_t count = 100000;
    NullSink sink;
    const Bytes bytes = pattern(40, 1);

    const HeapCounter heap;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    for (unsigned int i = 0; i < count; ++i) {
        addStream(root, numbered(0, i), bytes);
    }
    close(root);

    EXPECT_TRUE(output.isWhole());
    EXPECT_GT(heap.peak(), 64 * count) << "the names alone take that";
    EXPECT_LE(heap.peak(), 200 * count + bufferSize);
}

TEST(CompoundWriterTest, NamesAreComparedNoMoreThanAHashTableAndASortNeed) {
    for (const unsigned int members : {200U, 2000U, 20000U}) {
        SCOPED_TRACE(testing::Message() << members << " members");
        const double streams = 2.0 * members;
        NullSink sink;
        CompoundOutput output(sink);
        HostStream* root = createRoot(output);

        const ComparisonCounter making;
        addTwoLists(root, members);
        EXPECT_LE(static_cast<double>(making.count()), 2 * streams);

        const ComparisonCounter finishing;
        close(root);
        EXPECT_GE(static_cast<double>(finishing.count()), streams) << "they have to be sorted";
        EXPECT_LE(static_cast<double>(finishing.count()), 2 * streams * std::log2(streams));
        EXPECT_TRUE(output.isWhole());
    }
}

TEST(CompoundWriterTest, TwoListsOfFiftyThousandMembersTakeUnder200BytesOfMemoryPerStream) {
    constexpr unsigned int members = 50000;
    constexpr std::size_t streams = std::size_t{2} * members;
    NullSink sink;

    const HeapCounter heap;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    addTwoLists(root, members);
    close(root);

    EXPECT_TRUE(output.isWhole());
    EXPECT_LE(heap.peak(), 200 * streams + bufferSize);
}

TEST(CompoundWriterTest, OneGigabyteInOneStreamTakesUnderOneMegabyteOfMemory) {
    NullSink sink;
    const Bytes bytes = pattern(1024, 1);

    const HeapCounter heap;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    HostStream* stream = createStream(root, u"stream");
    for (int i = 0; i < 1 << 20; ++i) {
        ASSERT_TRUE(write(stream, bytes));
    }
    close(stream);
    close(root);

    EXPECT_TRUE(output.isWhole());
    EXPECT_GT(sink.size, std::uint64_t{1} << 30);
    EXPECT_LE(heap.peak(), std::size_t{1} << 20);
}

TEST(CompoundWriterTest, StreamsOfOneGigabyteWrittenAlternatelyTakeUnder24MegabytesOfMemory) {
    NullSink sink;
    const Bytes bytes = pattern(512, 1);

    const HeapCounter heap;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    HostStream* one = createStream(root, u"one");
    HostStream* other = createStream(root, u"other");
    for (int i = 0; i < 1 << 20; ++i) { // the sectors of one are every second one of the file
        ASSERT_TRUE(write(one, bytes));
        ASSERT_TRUE(write(other, bytes));
    }
    close(one);
    close(other);
    close(root);

    EXPECT_TRUE(output.isWhole());
    EXPECT_LE(heap.peak(), std::size_t{24} << 20);
}

} // namespace olmhost::test
