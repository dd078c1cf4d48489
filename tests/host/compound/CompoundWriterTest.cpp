#include "host/compound/CompoundWriter.h"

#include "tests/host/compound/CompoundFiles.h"
#include "tests/host/compound/HeapCounter.h"

#include <gtest/gtest.h>

namespace olmhost::test {

namespace {

constexpr std::size_t bufferSize = 80000; // bytes: the output's, and the table of an empty file

std::u16string numbered(unsigned int number) {
    std::array<char, 32> name{};
    const int size = std::snprintf(name.data(), name.size(), "__substg1.0_3A58101F-%08X", number);
    return {name.begin(), name.begin() + size};
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
        addStream(root, numbered(i), bytes);
    }
    close(root);

    EXPECT_TRUE(output.isWhole());
    EXPECT_GT(heap.peak(), 64 * count) << "the names alone take that";
    EXPECT_LE(heap.peak(), 200 * count + bufferSize);
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

TEST(CompoundWriterTest, StreamsOfOneGigabyteWrittenInTurnsTakeUnder24MegabytesOfMemory) {
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
