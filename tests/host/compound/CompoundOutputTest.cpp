#include "host/compound/CompoundOutput.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/host/compound/CompoundFiles.h"

namespace olmhost::test {

namespace {

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

// Writes a message with everything: long and short streams, alternately and alone, a storage, a
// stream that is replaced, one that is still open and one that is never closed. Ignores results,
// since its sinks fail.
void writeMixedMessage(CompoundOutput& output) {
    HostStream* root = createRoot(output);
    HostStream* storage = createStorage(root, u"storage");
    HostStream* long1 = createStream(storage, u"long 1");
    HostStream* long2 = createStream(root, u"long 2");
    for (int i = 0; i < 100; ++i) {
        write(long1, pattern(1024, 1));
        write(long2, pattern(700, 2));
    }
    close(long1);
    HostStream* replaced = createStream(storage, u"LONG 1");
    write(replaced, pattern(100, 3));
    close(replaced);
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        HostStream* small = createStream(root, std::u16string(u"small ") + digit);
        write(small, pattern(static_cast<std::size_t>(digit - u'0') * 50, 4));
        close(small);
    }
    write(createStream(root, u"never closed"), pattern(5000, 5));
    close(root);
    close(long2);
    close(storage);
}

// Numbers of a handmade file, low byte first.
class FileImage {
public:
    explicit FileImage(std::size_t sectors) : bytes(sectors * 512, std::byte{0}) {}

    void number(std::size_t offset, std::size_t width, std::uint64_t value) {
        for (std::size_t i = 0; i < width; ++i) {
            bytes[offset + i] = static_cast<std::byte>(value >> (8 * i));
        }
    }

    void fill(std::size_t from, std::size_t end, unsigned int value) {
        std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(from),
                  bytes.begin() + static_cast<std::ptrdiff_t>(end), static_cast<std::byte>(value));
    }

    // The fields that are the same in every file.
    void header() {
        number(0, 8, 0xE11AB1A1E011CFD0);
        number(24, 2, 0x3E);
        number(26, 2, 3);
        number(28, 2, 0xFFFE);
        number(30, 2, 9);
        number(32, 2, 6);
        number(56, 4, 4096);
        number(60, 4, 0xFFFFFFFE);
        number(68, 4, 0xFFFFFFFE);
        fill(76, 512, 0xFF);
    }

    void text(std::size_t offset, std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            number(offset + 2 * i, 2, static_cast<unsigned char>(text[i]));
        }
        number(offset + 64, 2, 2 * text.size() + 2);
    }

    Bytes bytes;
};

class CompoundOutputTest : public testing::Test {
protected:
    MemorySink sink;
    CompoundOutput output{sink};
};

} // namespace

TEST_F(CompoundOutputTest, RootWithoutMembersIsThreeSectors) {
    FileImage expected(3);
    expected.header();
    expected.number(44, 4, 1); // FAT sectors
    expected.number(48, 4, 0); // the directory's first
    expected.number(76, 4, 1); // the FAT's first
    expected.text(512, "Root Entry");
    expected.number(512 + 66, 1, 5);
    expected.number(512 + 67, 1, 1);
    expected.number(512 + 116, 4, 0xFFFFFFFE);
    for (std::size_t entry = 0; entry < 4; ++entry) {
        expected.fill(512 + 128 * entry + 68, 512 + 128 * entry + 80, 0xFF);
    }
    expected.fill(1024, 1536, 0xFF);
    expected.number(1024, 4, 0xFFFFFFFE); // the directory ends
    expected.number(1028, 4, 0xFFFFFFFD); // the FAT itself

    close(createRoot(output));

    EXPECT_TRUE(output.isWhole());
    EXPECT_EQ(sink.bytes, expected.bytes);
}

TEST_F(CompoundOutputTest, SmallFileIsLaidOutByteForByte) {
    FileImage expected(5);
    expected.header();
    expected.number(44, 4, 1);
    expected.number(48, 4, 2); // the directory's first
    expected.number(60, 4, 1); // the MiniFAT's first
    expected.number(64, 4, 1);
    expected.number(76, 4, 3);         // the FAT's first
    expected.number(512, 3, 0x636261); // the mini stream: abc, rounded up to a sector
    expected.fill(1024, 1536, 0xFF);
    expected.number(1024, 4, 0xFFFFFFFE); // the MiniFAT: one mini sector
    expected.text(1536, "Root Entry");
    expected.number(1536 + 66, 2, 0x0105);
    expected.number(1536 + 76, 4, 2); // of two names the second is the tree's top
    for (std::size_t i = 0; i < 16; ++i) {
        expected.number(1536 + 80 + i, 1, 0x30 + i);
    }
    expected.number(1536 + 120, 4, 64);
    expected.text(1664, "s1");
    expected.number(1664 + 66, 2, 0x0002); // red: the last level has a gap
    expected.text(1792, "s2");
    expected.number(1792 + 66, 2, 0x0102);
    expected.number(1792 + 68, 4, 1);
    expected.number(1792 + 116, 4, 0xFFFFFFFE); // empty
    expected.number(1664 + 120, 4, 3);
    for (const std::size_t offset : {1536 + 68, 1664 + 68, 1792 + 72, 1920 + 68}) {
        expected.fill(offset, offset + 8, 0xFF);
    }
    for (const std::size_t offset : {1664 + 76, 1792 + 76, 1920 + 76}) {
        expected.fill(offset, offset + 4, 0xFF);
    }
    expected.fill(2048, 2560, 0xFF);
    expected.number(2048, 4, 0xFFFFFFFE); // mini stream
    expected.number(2052, 4, 0xFFFFFFFE); // MiniFAT
    expected.number(2056, 4, 0xFFFFFFFE); // directory
    expected.number(2060, 4, 0xFFFFFFFD); // FAT

    HostStream* root = createRoot(output);
    ASSERT_EQ(IOSetInfo(root, IORootStorage, IOInfoClassId, "0123456789:;<=>?"), 0);
    addStream(root, u"s1", bytesOf("abc"));
    addStream(root, u"s2", {});
    close(root);

    EXPECT_EQ(sink.bytes, expected.bytes);
}

TEST_F(CompoundOutputTest, SameCallsWriteTheSameBytes) {
    MemorySink otherSink;
    CompoundOutput otherOutput(otherSink);

    writeMixedMessage(output);
    writeMixedMessage(otherOutput);

    EXPECT_TRUE(output.isWhole());
    EXPECT_GT(sink.bytes.size(), 100000U);
    EXPECT_TRUE(sink.bytes == otherSink.bytes);
}

TEST_F(CompoundOutputTest, FileWithoutClosedRootIsNotWholeAndHasABlankHeader) {
    {
        CompoundOutput unfinished(sink);
        HostStream* root = createRoot(unfinished);
        addStream(root, u"long", pattern(200000, 1));
        EXPECT_FALSE(unfinished.isWhole());
        EXPECT_FALSE(unfinished.failed());
    }

    ASSERT_GT(sink.bytes.size(), 512U);
    EXPECT_EQ(Bytes(sink.bytes.begin(), sink.bytes.begin() + 512), Bytes(512));
}

TEST_F(CompoundOutputTest, HandlesAreCountedUntilTheyAreClosed) {
    EXPECT_EQ(output.openHandles(), 0U);
    HostStream* root = createRoot(output);
    HostStream* storage = createStorage(root, u"storage");
    HostStream* stream = createStream(storage, u"stream");
    EXPECT_EQ(output.openHandles(), 3U);

    close(root);
    EXPECT_EQ(output.openHandles(), 2U);
    close(stream);
    close(storage);
    EXPECT_EQ(output.openHandles(), 0U);
    EXPECT_TRUE(output.isWhole());
}

TEST_F(CompoundOutputTest, NothingIsWrittenOrMadeAfterTheRootIsClosed) {
    HostStream* root = createRoot(output);
    HostStream* storage = createStorage(root, u"storage");
    HostStream* stream = createStream(storage, u"stream");
    HostStream* longStream = createStream(storage, u"long");
    ASSERT_TRUE(write(longStream, pattern(5000, 1)));
    close(root);
    const Bytes finished = sink.bytes;

    EXPECT_FALSE(write(stream, pattern(10, 1)));
    EXPECT_FALSE(write(longStream, pattern(5000, 1)));
    EXPECT_EQ(createStream(storage, u"late"), nullptr);
    EXPECT_EQ(createStorage(storage, u"late"), nullptr);
    close(longStream);
    close(stream);
    close(storage);

    EXPECT_TRUE(output.isWhole());
    EXPECT_TRUE(sink.bytes == finished);
}

TEST_F(CompoundOutputTest, ReplacedStreamTakesNoMoreBytes) {
    HostStream* root = createRoot(output);
    HostStream* first = createStream(root, u"name");
    ASSERT_TRUE(write(first, pattern(10, 1)));
    HostStream* second = createStream(root, u"NAME");

    EXPECT_FALSE(write(first, pattern(10, 1)));
    EXPECT_TRUE(write(second, pattern(10, 1)));
}

TEST_F(CompoundOutputTest, ReplacedStorageTakesNoMoreMembers) {
    HostStream* root = createRoot(output);
    HostStream* storage = createStorage(root, u"name");
    createStorage(root, u"name");

    EXPECT_EQ(createStream(storage, u"member"), nullptr);
}

TEST_F(CompoundOutputTest, RawBytesGoDirectlyToTheSink) {
    EXPECT_TRUE(write(&output, bytesOf("<?xml")));
    EXPECT_EQ(asText(sink.bytes), "<?xml");
    EXPECT_TRUE(write(&output, bytesOf(" ?>")));
    EXPECT_EQ(asText(sink.bytes), "<?xml ?>");
    EXPECT_FALSE(output.isWhole());
    EXPECT_FALSE(output.failed());
    EXPECT_EQ(createRoot(output), nullptr) << "one or the other";
    close(&output);
}

TEST_F(CompoundOutputTest, RawBytesAreRefusedOnceThereIsAStorage) {
    HostStream* root = createRoot(output);

    EXPECT_FALSE(write(&output, bytesOf("raw")));
    close(root);
    EXPECT_FALSE(write(&output, bytesOf("raw")));
    EXPECT_TRUE(output.isWhole());
}

TEST_F(CompoundOutputTest, RawBytesThatTheSinkRefusesAreAFailure) {
    MemorySink failing(1);
    CompoundOutput raw(failing);

    EXPECT_TRUE(write(&raw, bytesOf("a")));
    EXPECT_FALSE(write(&raw, bytesOf("b")));
    EXPECT_FALSE(write(&raw, bytesOf("c")));

    EXPECT_TRUE(raw.failed());
    EXPECT_EQ(failing.calls, 2) << "a sink that has failed is not called again";
}

TEST_F(CompoundOutputTest, BytesAreWrittenInLargePiecesAndTheHeaderLast) {
    HostStream* root = createRoot(output);
    HostStream* stream = createStream(root, u"stream");
    for (int i = 0; i < 2560; ++i) {
        ASSERT_TRUE(write(stream, pattern(400, 1))); // 1,024,000 bytes
    }
    EXPECT_EQ(sink.overwrites, 0);
    close(root);

    EXPECT_EQ(sink.overwrites, 1);
    EXPECT_LE(sink.calls, 1024000 / 65000 + 3);
}

TEST_F(CompoundOutputTest, NoFileIsWholeWhenTheSinkFailedOnce) {
    writeMixedMessage(output);
    ASSERT_TRUE(output.isWhole());
    ASSERT_GE(sink.calls, 4);

    for (int failing = 0; failing < sink.calls; ++failing) {
        SCOPED_TRACE(testing::Message() << "failing call " << failing);
        MemorySink failingSink(failing);
        CompoundOutput broken(failingSink);
        writeMixedMessage(broken);

        EXPECT_FALSE(broken.isWhole());
        EXPECT_TRUE(broken.failed());
        EXPECT_EQ(broken.openHandles(), 1U) << "the stream that is never closed";
        EXPECT_EQ(failingSink.calls, failing + 1) << "the first failure is the last call";
    }
}

TEST_F(CompoundOutputTest, WritesFailAfterAFailureButStreamsAreStillMade) {
    MemorySink failing(0);
    CompoundOutput broken(failing);
    HostStream* root = createRoot(broken);
    HostStream* stream = createStream(root, u"stream");

    EXPECT_FALSE(write(stream, pattern(100000, 1)));
    EXPECT_FALSE(write(stream, pattern(1, 1)));
    HostStream* later = createStream(root, u"later");
    ASSERT_NE(later, nullptr) << "creating a stream does not fail";
    EXPECT_FALSE(write(later, pattern(1, 1)));
    close(later);
    close(stream);
    close(root);

    EXPECT_FALSE(broken.isWhole());
    EXPECT_EQ(broken.openHandles(), 0U);
}

TEST_F(CompoundOutputTest, StreamEndsBelowFourGigabytesAndReportsIt) {
    NullSink nullSink;
    CompoundOutput large(nullSink);
    HostStream* root = createRoot(large);
    HostStream* stream = createStream(root, u"stream");
    const Bytes piece(std::size_t{16} << 20);
    for (int i = 0; i < 255; ++i) {
        ASSERT_TRUE(write(stream, piece));
    }
    ASSERT_TRUE(write(stream, std::span(piece).first(piece.size() - 1)));
    EXPECT_FALSE(large.lostBytes());

    EXPECT_FALSE(write(stream, std::span(piece).first(1)));

    EXPECT_TRUE(large.lostBytes());
    close(root);
    EXPECT_TRUE(large.isWhole());
    EXPECT_GT(nullSink.size, 0xFFFFFFFFU);
}

// Records its notifications.
class Notes : public CompoundWatcher, public StreamWatcher {
public:
    void storageMade(EntryId id, std::u16string_view name) override {
        last = id;
        storages.emplace_back(name);
    }
    StreamWatcher* streamMade(EntryId parent, std::u16string_view name) override {
        EXPECT_EQ(parent, last);
        streams.emplace_back(name);
        return name == u"ignored" ? nullptr : this;
    }
    void wrote(ByteSpan more) override { bytes.insert(bytes.end(), more.begin(), more.end()); }

    EntryId last = noEntry;
    std::vector<std::u16string> storages;
    std::vector<std::u16string> streams;
    Bytes bytes;
};

TEST_F(CompoundOutputTest, WatcherIsNotifiedOfStoragesInTheRootAndStreamsInThem) {
    Notes watcher;
    MemorySink watchedSink;
    CompoundOutput watched(watchedSink, &watcher);
    HostStream* root = createRoot(watched);
    addStream(root, u"in the root", pattern(10, 1));
    HostStream* first = createStorage(root, u"first");
    addStream(first, u"short", pattern(10, 2));
    addStream(first, u"ignored", pattern(10, 3));
    close(first);
    HostStream* second = createStorage(root, u"second");
    addStream(second, u"long", pattern(9000, 4));
    close(second);
    close(root);

    EXPECT_EQ(watcher.storages, (std::vector<std::u16string>{u"first", u"second"}));
    EXPECT_EQ(watcher.streams, (std::vector<std::u16string>{u"short", u"ignored", u"long"}));
    Bytes expected = pattern(10, 2);
    const Bytes rest = pattern(9000, 4);
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_EQ(watcher.bytes, expected);
    EXPECT_TRUE(watched.isWhole());
}

TEST_F(CompoundOutputTest, ExceptionOfAWatcherIsAFailureOfTheFileAndLeavesNoCall) {
    class Thrower : public Notes {
        void wrote(ByteSpan /*bytes*/) override { throw std::runtime_error("enough"); }
    } watcher;
    MemorySink watchedSink;
    CompoundOutput watched(watchedSink, &watcher);
    HostStream* root = createRoot(watched);
    HostStream* storage = createStorage(root, u"storage");
    HostStream* stream = createStream(storage, u"stream");

    EXPECT_FALSE(write(stream, pattern(10, 1)));

    close(stream);
    close(storage);
    close(root);
    EXPECT_TRUE(watched.failed());
    EXPECT_FALSE(watched.isWhole());
}

} // namespace olmhost::test
