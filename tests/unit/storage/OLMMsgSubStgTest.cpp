#include "filter/storage/OLMMsgSubStg.h"

#include <algorithm>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filter/storage/OLMMsgEmailAttachment.h"
#include "filter/storage/OLMMsgRecipient.h"
#include "tests/fakehost/FakeHost.h"
#include "tests/unit/core/Wide.h"
#include "tests/unit/storage/PropertyBytes.h"
#include "tests/unit/storage/Thrown.h"

using namespace fakehost;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr const char* propertyStream = "s/__properties_version1.0";

// The class itself, with its members open.
class OpenSubStg : public OLMMsgSubStg {
public:
    OpenSubStg() = default;

    using OLMMsgSubStg::initilize;
    using OLMMsgSubStg::propStream;
    using OLMMsgSubStg::storage;
};

// A storage "s" in a root, without a header.
class OLMMsgSubStgTest : public testing::Test {
protected:
    OLMMsgSubStgTest() {
        sub->initilize(root, "s");
        host.forgetCalls();
        openBefore = host.openHandles();
    }

    [[nodiscard]] Bytes properties() const { return host.message().stream(propertyStream); }
    [[nodiscard]] Bytes stored(const std::string& name) const {
        return host.message().stream("s/" + name);
    }

    FakeHost host;
    HostStream* root = host.newRoot();
    std::unique_ptr<OpenSubStg> sub = std::make_unique<OpenSubStg>();
    int openBefore = 0;
};

// One answer of a source: bytes and a status.
struct Answer {
    Bytes bytes;
    int32_t status = 0;
};

// A source whose reads are answered one by one, followed by its end.
struct AnsweringSource {
    HostStream stream{};
    std::vector<Answer> answers;
    size_t reads = 0;
    std::vector<uint32_t> sizes; // requested

    explicit AnsweringSource(std::vector<Answer> list) : answers(std::move(list)) {
        stream.read = read;
    }

    static int32_t read(HostStream* handle, void* buffer, uint32_t size, uint32_t* bytesRead) {
        auto* source = reinterpret_cast<AnsweringSource*>(handle);
        source->sizes.push_back(size);
        *bytesRead = 0;
        if (source->reads >= source->answers.size()) {
            return 1;
        }
        const Answer& answer = source->answers[source->reads++];
        *bytesRead = static_cast<uint32_t>(answer.bytes.size());
        std::ranges::copy(answer.bytes, static_cast<uint8_t*>(buffer));
        return answer.status;
    }
};

} // namespace

// --- Construction and destruction.

TEST(OLMMsgSubStgConstructionTest, StorageIsMadeAndThenItsPropertyStream) {
    FakeHost host;
    HostStream* root = host.newRoot();
    host.forgetCalls();
    OpenSubStg sub;

    sub.initilize(root, "inner");

    EXPECT_THAT(host.callsOf("IOCreate"),
                ElementsAre("IOCreate(34, \"inner\", 0x1012)",
                            "IOCreate(33, \"inner/__properties_version1.0\", 18)"));
    EXPECT_EQ(host.message().stream("inner/__properties_version1.0"), Bytes());
    EXPECT_NE(sub.storage, nullptr);
    EXPECT_NE(sub.propStream, nullptr);
}

TEST(OLMMsgSubStgConstructionTest, NothingOpenedMeansNothingClosed) {
    FakeHost host;
    { const OpenSubStg sub; }

    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST(OLMMsgSubStgConstructionTest, StorageThatCannotBeMadeThrowsTheHostsStatus) {
    FakeHost host;
    HostStream* root = host.newRoot();
    host.failCall(CallKind::CreateStorage, 0, -42);
    OpenSubStg sub;

    EXPECT_EQ(thrownCode([&] { sub.initilize(root, "s"); }), static_cast<unsigned int>(-42));
    EXPECT_THAT(host.message().paths(), IsEmpty());
}

TEST(OLMMsgSubStgConstructionTest, StorageWithoutAPropertyStreamIsClosedByItself) {
    FakeHost host;
    HostStream* root = host.newRoot();
    host.failCall(CallKind::CreateStream, 0);
    {
        OpenSubStg sub;
        sub.initilize(root, "s");
        EXPECT_EQ(sub.propStream, nullptr);
    }

    EXPECT_THAT(host.callsOf("close"), ElementsAre("close(s)"));
}

TEST_F(OLMMsgSubStgTest, EndClosesThePropertyStreamAndThenTheStorage) {
    sub.reset();

    EXPECT_THAT(host.callTexts(), ElementsAre("close(s/__properties_version1.0)", "close(s)"));
}

// --- Raw bytes of the property stream.

TEST_F(OLMMsgSubStgTest, RawBytesAreWrittenToThePropertyStreamUnchanged) {
    const unsigned char bytes[] = {1, 0, 0xFF};

    EXPECT_EQ(sub->writeToPropStream(bytes, 3), 0u);
    EXPECT_EQ(sub->writeToPropStream(bytes, 1), 0u);

    EXPECT_EQ(properties(), hex("01 00 FF 01"));
}

TEST_F(OLMMsgSubStgTest, ShortWriteOfRawBytesThrowsTheStatusEvenIfItIsZero) {
    const unsigned char bytes[8] = {};
    for (const int32_t status : {0, -7, 3}) {
        SCOPED_TRACE(status);
        host.shortenWrite(0, 7, status);

        EXPECT_EQ(thrownCode([&] { sub->writeToPropStream(bytes, 8); }),
                  static_cast<unsigned int>(status));
    }
}

TEST_F(OLMMsgSubStgTest, ReportedFailureOfRawBytesThrowsEvenIfAllWereWritten) {
    const unsigned char bytes[8] = {};
    host.shortenWrite(0, 8, -7);

    EXPECT_EQ(thrownCode([&] { sub->writeToPropStream(bytes, 8); }), static_cast<unsigned int>(-7));
}

// --- Values in the entry itself.

TEST_F(OLMMsgSubStgTest, ShortIsASignExtendedBoolean) {
    EXPECT_TRUE(sub->addProperty(0x0E1F, short{1}));
    EXPECT_TRUE(sub->addProperty(0x0E1F, short{0}));
    EXPECT_TRUE(sub->addProperty(0x0E1F, short{-2}));
    EXPECT_TRUE(sub->addProperty(0xFFFE, short{0x1234}));

    EXPECT_EQ(properties(), hex("0B 00 1F 0E  06 00 00 00  01 00 00 00 00 00 00 00"
                                "0B 00 1F 0E  06 00 00 00  00 00 00 00 00 00 00 00"
                                "0B 00 1F 0E  06 00 00 00  FE FF FF FF FF FF FF FF"
                                "0B 00 FE FF  06 00 00 00  34 12 00 00 00 00 00 00"));
    EXPECT_EQ(host.countOf(CallKind::CreateStream), 0);
}

TEST_F(OLMMsgSubStgTest, IntIsASignExtendedInteger) {
    EXPECT_TRUE(sub->addProperty(0x3000, 0x12345678));
    EXPECT_TRUE(sub->addProperty(0x3000, -2));
    EXPECT_TRUE(sub->addProperty(0x0C15, 3));

    EXPECT_EQ(properties(), hex("03 00 00 30  06 00 00 00  78 56 34 12 00 00 00 00"
                                "03 00 00 30  06 00 00 00  FE FF FF FF FF FF FF FF"
                                "03 00 15 0C  06 00 00 00  03 00 00 00 00 00 00 00"));
    EXPECT_EQ(host.countOf(CallKind::CreateStream), 0);
}

TEST_F(OLMMsgSubStgTest, UnsignedLongLongIsAnUnchangedTime) {
    EXPECT_TRUE(sub->addProperty(0x3007, 0x8123456789ABCDEFULL));

    EXPECT_EQ(properties(), hex("40 00 07 30  06 00 00 00  EF CD AB 89 67 45 23 81"));
    EXPECT_EQ(host.countOf(CallKind::CreateStream), 0);
}

TEST_F(OLMMsgSubStgTest, EntryThatCannotBeWrittenReturnsFalseAndDoesNotThrow) {
    // Tag, flags and value are three writes.
    for (int failing = 0; failing < 3; ++failing) {
        SCOPED_TRACE(testing::Message() << "write " << failing);
        host.shortenWrite(failing, 1, 0);
        EXPECT_FALSE(sub->addProperty(0x0E1F, short{1}));
        host.failCall(CallKind::Write, failing, -7);
        EXPECT_FALSE(sub->addProperty(0x3000, 1));
        host.shortenWrite(failing, 0, -7);
        EXPECT_FALSE(sub->addProperty(0x3007, 1ULL));
    }
    EXPECT_TRUE(sub->addProperty(0x3000, 1));
}

// --- Strings.

TEST_F(OLMMsgSubStgTest, StringHasAStreamAndASizeWithTheTerminator) {
    EXPECT_TRUE(sub->addProperty(0x3001, wide(u"T\u00E9\u20AC\U0001F600")));

    EXPECT_EQ(properties(), hex("1F 00 01 30  06 00 00 00  0C 00 00 00 00 00 00 00"));
    EXPECT_EQ(stored("__substg1.0_3001001F"), hex("54 00 E9 00 AC 20 3D D8 00 DE"));
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgSubStgTest, EmptyStringHasAnEmptyStreamAndTheSizeTwo) {
    EXPECT_TRUE(sub->addProperty(0x3001, qor::WString()));

    EXPECT_EQ(properties(), entryBytes(0x3001001F, 2));
    EXPECT_EQ(stored("__substg1.0_3001001F"), Bytes());
}

TEST_F(OLMMsgSubStgTest, TextOfAStringThatCannotBeWrittenCountsNothing) {
    host.failCall(CallKind::Write, 0);

    EXPECT_TRUE(sub->addProperty(0x3001, qor::WString("Tide")));

    EXPECT_EQ(properties(), entryBytes(0x3001001F, 2));
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgSubStgTest, EntryOfAStringThatCannotBeWrittenReturnsFalse) {
    host.shortenWrite(1, 3, 0);

    EXPECT_FALSE(sub->addProperty(0x3001, qor::WString("Tide")));

    EXPECT_EQ(stored("__substg1.0_3001001F"), utf16(u"Tide"));
    EXPECT_EQ(properties(), hex("1F 00 01"));
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgSubStgTest, ValueWithoutAStreamHasNoEntryAndEarlierEntriesStay) {
    HostStream* source = host.byteStream(bytesOf("data"));
    ASSERT_TRUE(sub->addProperty(0x3000, 7));
    const Bytes before = properties();

    host.failCall(CallKind::CreateStream, 0);
    EXPECT_FALSE(sub->addProperty(0x3001, qor::WString("Tide")));
    host.failCall(CallKind::CreateStream, 0);
    EXPECT_FALSE(sub->addProperty(0x3702, qor::String("Tide")));
    host.failCall(CallKind::CreateStream, 0);
    EXPECT_FALSE(sub->addProperty(0x3701, source));

    EXPECT_EQ(properties(), before);
    EXPECT_EQ(host.countOf(CallKind::Read), 0);
    EXPECT_TRUE(sub->addProperty(0x0FFE, 7));
    EXPECT_EQ(properties(), before + entryBytes(0x0FFE0003, 7));
    source->close(source);
}

// --- Binary values.

TEST_F(OLMMsgSubStgTest, NarrowStringIsAnEmptyBinaryWhateverItHolds) {
    EXPECT_TRUE(sub->addProperty(0x3702, qor::String("application")));

    EXPECT_EQ(properties(), hex("02 01 02 37  06 00 00 00  00 00 00 00 00 00 00 00"));
    EXPECT_EQ(stored("__substg1.0_37020102"), Bytes());
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgSubStgTest, EntryOfANarrowStringThatCannotBeWrittenReturnsFalse) {
    host.shortenWrite(2, 4, 0);

    EXPECT_FALSE(sub->addProperty(0x3702, qor::String("application")));
    EXPECT_EQ(host.openHandles(), openBefore);
}

class OLMMsgSubStgCopyTest : public OLMMsgSubStgTest, public testing::WithParamInterface<size_t> {};

TEST_P(OLMMsgSubStgCopyTest, StreamIsCopiedInBlocks) {
    const Bytes bytes = patternBytes(GetParam());
    HostStream* source = host.byteStream(bytes);

    EXPECT_TRUE(sub->addProperty(0x3701, source));

    EXPECT_EQ(properties(), entryBytes(0x37010102, GetParam()));
    EXPECT_EQ(stored("__substg1.0_37010102"), bytes);
    EXPECT_THAT(host.callsOf("read"),
                testing::AllOf(SizeIs((GetParam() + 1023) / 1024 + 1), Each("read(bytes, 0x400)")));
    EXPECT_EQ(host.openHandles(), openBefore + 1) << "the source belongs to the caller";
    source->close(source);
}

INSTANTIATE_TEST_SUITE_P(Bytes, OLMMsgSubStgCopyTest,
                         testing::Values(0, 1, 1023, 1024, 1025, 2048, 3000));

TEST_P(OLMMsgSubStgCopyTest, TextOfAnyLengthIsWhole) {
    const std::u16string text = patternText(GetParam());

    EXPECT_TRUE(sub->addProperty(0x3001, wide(text)));

    EXPECT_EQ(properties(), entryBytes(0x3001001F, 2 * GetParam() + 2));
    EXPECT_EQ(stored("__substg1.0_3001001F"), utf16(text));
}

TEST_F(OLMMsgSubStgTest, ShortAndEmptyReadsDoNotEndACopy) {
    AnsweringSource source({{bytesOf("abc")}, {{}}, {bytesOf("de")}});

    EXPECT_TRUE(sub->addProperty(0x3701, &source.stream));

    EXPECT_EQ(stored("__substg1.0_37010102"), bytesOf("abcde"));
    EXPECT_EQ(properties(), entryBytes(0x37010102, 5));
    EXPECT_THAT(source.sizes, ElementsAre(1024, 1024, 1024, 1024));
}

TEST_F(OLMMsgSubStgTest, BytesWithAStatusAreNotCopied) {
    for (const int32_t status : {1, -7}) {
        SCOPED_TRACE(status);
        AnsweringSource source({{bytesOf("abc")}, {bytesOf("lost"), status}, {bytesOf("never")}});

        EXPECT_TRUE(sub->addProperty(0x3701, &source.stream));

        EXPECT_EQ(stored("__substg1.0_37010102"), bytesOf("abc"));
        EXPECT_EQ(source.reads, 2u);
    }
    EXPECT_EQ(properties(), entryBytes(0x37010102, 3) + entryBytes(0x37010102, 3));
}

TEST_F(OLMMsgSubStgTest, CopyWithAFailedReadHasTheSizeReachedSoFar) {
    const Bytes bytes = patternBytes(3000);
    HostStream* source = host.byteStream(bytes);
    host.failCall(CallKind::Read, 1, -7);

    EXPECT_TRUE(sub->addProperty(0x3701, source));

    EXPECT_EQ(stored("__substg1.0_37010102"), bytes.part(0, 1024));
    EXPECT_EQ(properties(), entryBytes(0x37010102, 1024));
    source->close(source);
}

TEST_F(OLMMsgSubStgTest, CopyWithAFailedWriteReturnsFalseButHasAnEntry) {
    const Bytes bytes = patternBytes(3000);
    HostStream* source = host.byteStream(bytes);
    host.failCall(CallKind::Write, 1, -7);

    EXPECT_FALSE(sub->addProperty(0x3701, source));

    EXPECT_EQ(stored("__substg1.0_37010102"), bytes.part(0, 1024));
    EXPECT_EQ(properties(), entryBytes(0x37010102, 1024));
    EXPECT_EQ(host.countOf(CallKind::Read), 2);
    EXPECT_EQ(host.openHandles(), openBefore + 1);
    source->close(source);
}

TEST_F(OLMMsgSubStgTest, CopyCountsTheBytesThatWriteReports) {
    const Bytes bytes = patternBytes(1030);
    HostStream* source = host.byteStream(bytes);
    host.shortenWrite(0, 10, 0);

    EXPECT_TRUE(sub->addProperty(0x3701, source));

    EXPECT_EQ(stored("__substg1.0_37010102"), bytes.part(0, 10) + bytes.part(1024, 6));
    EXPECT_EQ(properties(), entryBytes(0x37010102, 16));
    source->close(source);
}

TEST_F(OLMMsgSubStgTest, CopyWithoutItsEntryReturnsFalse) {
    HostStream* source = host.byteStream(bytesOf("data"));
    host.shortenWrite(1, 2, 0);

    EXPECT_FALSE(sub->addProperty(0x3701, source));

    EXPECT_EQ(stored("__substg1.0_37010102"), bytesOf("data"));
    EXPECT_EQ(properties(), hex("02 01"));
    EXPECT_EQ(host.openHandles(), openBefore + 1);
    source->close(source);
}

// --- Several properties.

TEST_F(OLMMsgSubStgTest, PropertiesAreInOrderOfAddition) {
    HostStream* source = host.byteStream(bytesOf("data"));
    sub->addProperty(0x3703, qor::WString("csv"));
    sub->addProperty(0x3701, source);
    sub->addProperty(0x0FFE, 7);

    EXPECT_EQ(properties(),
              entryBytes(0x3703001F, 8) + entryBytes(0x37010102, 4) + entryBytes(0x0FFE0003, 7));
    EXPECT_THAT(
        host.message().names("s"),
        ElementsAre("__properties_version1.0", "__substg1.0_3703001F", "__substg1.0_37010102"));
    source->close(source);
}

TEST_F(OLMMsgSubStgTest, RepeatedIdHasTwoEntriesAndTheLaterText) {
    EXPECT_TRUE(sub->addProperty(0x3001, qor::WString("first")));
    EXPECT_TRUE(sub->addProperty(0x3001, qor::WString("no")));
    EXPECT_TRUE(sub->addProperty(0x3000, 1));
    EXPECT_TRUE(sub->addProperty(0x3000, 2));

    EXPECT_EQ(properties(), entryBytes(0x3001001F, 12) + entryBytes(0x3001001F, 6) +
                                entryBytes(0x30000003, 1) + entryBytes(0x30000003, 2));
    EXPECT_EQ(stored("__substg1.0_3001001F"), utf16(u"no"));
}

TEST_F(OLMMsgSubStgTest, EntryIsWrittenAtOnce) {
    sub->addProperty(0x3000, 1);
    EXPECT_EQ(properties(), entryBytes(0x30000003, 1));
    sub->addProperty(0x0C15, 2);
    EXPECT_EQ(properties(), entryBytes(0x30000003, 1) + entryBytes(0x0C150003, 2));
}

// --- What recipients and attachments have in common.

template <class SubStorage> class OLMMsgSubStgKindTest : public testing::Test {
protected:
    FakeHost host;
    HostStream* root = host.newRoot();
    int openBefore = host.openHandles();
};

using Kinds = testing::Types<OLMMsgRecipient, OLMMsgEmailAttachment>;
TYPED_TEST_SUITE(OLMMsgSubStgKindTest, Kinds);

TYPED_TEST(OLMMsgSubStgKindTest, NothingAddedLeavesEightZeroBytes) {
    { const TypeParam sub(this->root, 0); }

    const auto paths = this->host.message().paths();
    ASSERT_THAT(paths, SizeIs(2));
    EXPECT_EQ(paths[1], paths[0] + "/__properties_version1.0");
    EXPECT_EQ(this->host.message().stream(paths[1]), hex("00 00 00 00 00 00 00 00"));
    EXPECT_EQ(this->host.openHandles(), this->openBefore);
}

TYPED_TEST(OLMMsgSubStgKindTest, EntriesFollowTheHeader) {
    {
        TypeParam sub(this->root, 0);
        EXPECT_TRUE(sub.addProperty(0x3000, 1));
    }

    const std::string storage = this->host.message().paths().front();
    EXPECT_EQ(this->host.message().stream(storage + "/__properties_version1.0"),
              hex("00 00 00 00 00 00 00 00  03 00 00 30  06 00 00 00  01 00 00 00 00 00 00 00"));
}

TYPED_TEST(OLMMsgSubStgKindTest, StorageThatCannotBeMadeThrowsTheHostsStatusAndLeavesNothing) {
    this->host.failCall(CallKind::CreateStorage, 0, -42);

    EXPECT_EQ(thrownCode([&] { TypeParam(this->root, 0); }), static_cast<unsigned int>(-42));
    EXPECT_EQ(this->host.openHandles(), this->openBefore);
    EXPECT_THAT(this->host.message().paths(), IsEmpty());
}

TYPED_TEST(OLMMsgSubStgKindTest, HeaderThatCannotBeWrittenThrowsTheStatusAndClosesTheStorage) {
    for (const int32_t status : {0, -7}) {
        SCOPED_TRACE(status);
        this->host.shortenWrite(0, 3, status);

        EXPECT_EQ(thrownCode([&] { TypeParam(this->root, 0); }), static_cast<unsigned int>(status));
        EXPECT_EQ(this->host.openHandles(), this->openBefore);
    }
}

TYPED_TEST(OLMMsgSubStgKindTest, PropertyStreamThatCannotBeMadeThrowsAndClosesTheStorage) {
    this->host.failCall(CallKind::CreateStream, 0, -42);

    EXPECT_NE(thrownCode([&] { TypeParam(this->root, 0); }), std::nullopt);
    EXPECT_EQ(this->host.openHandles(), this->openBefore);
}

// All overloads on one storage, with the k-th call of the host failing: only the constructor can
// throw, and everything opened is closed.
TYPED_TEST(OLMMsgSubStgKindTest, NoHostFailureLeaks) {
    HostStream* source = nullptr;
    const auto write = [&] {
        TypeParam sub(this->root, 0);
        sub.addProperty(0x0E1F, short{1});
        sub.addProperty(0x3000, 1);
        sub.addProperty(0x3007, 1ULL);
        sub.addProperty(0x3001, qor::WString("Tide"));
        sub.addProperty(0x3702, qor::String("Tide"));
        sub.addProperty(0x3701, source);
    };
    source = this->host.byteStream(patternBytes(1500));
    this->host.resetCallCount();
    write();
    source->close(source);
    const int callCount = this->host.hostCallCount();
    // Storage, property stream and header; six entries of three writes; three streams, one text,
    // three reads with two writes.
    ASSERT_EQ(callCount, 3 + 6 * 3 + 3 + 1 + 5);

    for (int failing = 0; failing < callCount; ++failing) {
        SCOPED_TRACE(testing::Message() << "failing host call " << failing);
        source = this->host.byteStream(patternBytes(1500));
        this->host.failAnyCall(failing, -7);

        EXPECT_EQ(thrownCode(write).has_value(), failing < 3);

        EXPECT_EQ(this->host.openHandles(), this->openBefore + 1) << "the source";
        source->close(source);
    }
    EXPECT_TRUE(this->host.hasFailed());
}
