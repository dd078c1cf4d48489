#include "tests/fakehost/FakeHost.h"

#include <array>
#include <cstring>

#include <gmock/gmock.h>

#include "tests/fakehost/Text.h"

namespace fakehost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr UTXML_STRVALPAIR noteTags[] = {{6, "note"}, {3, "notes"}};

// A reader on the first entry of a fresh host.
class FakeHostReaderTest : public testing::Test {
protected:
    void read(const ItemDocument& document) {
        host.entry("a.xml", document);
        ArchiveDirectory* archive = host.openArchive();
        MemberOpenRequest request{};
        request.archive = archive;
        request.always1 = 1;
        ASSERT_EQ(archive->stream.open(&entry, OpenMember, &request, OpenModeRead), 0);
        ASSERT_EQ(UTXMLInit(&reader, entry), 0);
        ASSERT_EQ(UTXMLAddTagMap(&reader, "", 0, 0, noteTags, 2), 0);
    }

    int16_t next() { return UTXMLReadNextTag(&reader, &tag, &extra); }

    int16_t skip(const UTXMLTagRecord& record) {
        std::array<uint64_t, 2> halves{};
        std::memcpy(halves.data(), &record, sizeof record);
        return UTXMLSkipTag(&reader, halves[0], halves[1]);
    }

    // Returns the next text of at most `capacity` units, or the status as text.
    std::string content(uint32_t capacity) {
        std::u16string units(capacity, u'#');
        uint32_t count = 0;
        const int16_t status = UTXMLReadContent(
            &reader, 1, reinterpret_cast<uint16_t*>(units.data()), capacity, &count);
        return status != 0 ? "status " + std::to_string(status) : toUtf8(units.substr(0, count));
    }

    FakeHost host;
    HostStream* entry = nullptr;
    UTXMLReader reader{};
    UTXMLTagRecord tag{};
    uint64_t extra = 0;
};

TEST_F(FakeHostReaderTest, ClosingTagHasTheIdOfItsOpeningTag) {
    read(note());

    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 3U);
    EXPECT_EQ(tag.flags & UTXML_CLOSING_TAG, 0U);
    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 6U);
    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 6U);
    EXPECT_NE(tag.flags & UTXML_CLOSING_TAG, 0U);
    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 3U);
    EXPECT_NE(tag.flags & UTXML_CLOSING_TAG, 0U);
}

TEST_F(FakeHostReaderTest, UnknownNameHasTheIdOfAnUnknownTag) {
    read(document("somethingElse"));

    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, UTXML_UNKNOWN_TAG);
}

TEST_F(FakeHostReaderTest, LaterRowOfAMapReplacesAnEarlierOne) {
    constexpr UTXML_STRVALPAIR rows[] = {{77, "note"}};
    read(note());

    ASSERT_EQ(UTXMLAddTagMap(&reader, "", 0, 0, rows, 1), 0);

    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 3U);
    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 77U);
}

TEST_F(FakeHostReaderTest, EndLeavesTheRecordUnchangedAndStaysTheEnd) {
    read(document("notes"));
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);
    const UTXMLTagRecord last = tag;

    EXPECT_LT(next(), 0);
    EXPECT_LT(next(), 0);
    EXPECT_EQ(std::memcmp(&last, &tag, sizeof tag), 0);
}

TEST_F(FakeHostReaderTest, UnreadTextIsReportedOnceAndNeverTwiceInARow) {
    read(document("notes").open("note").text("abc"));
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);

    EXPECT_EQ(next(), UTXML_CONTENT_PENDING);
    EXPECT_EQ(next(), 0);
    EXPECT_NE(tag.flags & UTXML_CLOSING_TAG, 0U);
}

TEST_F(FakeHostReaderTest, ReadTextIsNotPending) {
    read(document("notes").open("note").text("abcde"));
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);

    EXPECT_EQ(content(3), "abc");
    EXPECT_EQ(content(3), "de");
    EXPECT_EQ(content(3), "status 1");
    EXPECT_EQ(next(), 0);
}

TEST_F(FakeHostReaderTest, PartlyReadTextIsPending) {
    read(document("notes").open("note").text("abcde"));
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);

    EXPECT_EQ(content(3), "abc");
    EXPECT_EQ(next(), UTXML_CONTENT_PENDING);
}

TEST_F(FakeHostReaderTest, ThereIsNoTextAfterAClosingTag) {
    read(document("notes").element("note", "abc"));
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), UTXML_CONTENT_PENDING);
    ASSERT_EQ(next(), 0);

    EXPECT_EQ(content(3), "status 1");
}

TEST_F(FakeHostReaderTest, StatusAtTheEndOfATextIsTheOneSet) {
    read(document("notes"));
    host.setEndOfTextStatus(0);
    ASSERT_EQ(next(), 0);

    EXPECT_EQ(content(3), "");
}

TEST_F(FakeHostReaderTest, SkipTagLeavesTheElement) {
    read(document("notes").open("note").open("x").element("y", "t").close().close().open("note"));
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);

    EXPECT_EQ(skip(tag), 0);
    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 6U);
    EXPECT_EQ(tag.flags & UTXML_CLOSING_TAG, 0U);
}

TEST_F(FakeHostReaderTest, SkipTagRejectsAnElementThatIsNotOpen) {
    read(document("notes").element("note"));
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);
    const UTXMLTagRecord item = tag;
    ASSERT_EQ(next(), 0);

    EXPECT_NE(skip(item), 0);
    EXPECT_NE(skip(UTXMLTagRecord{}), 0);
    EXPECT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 3U);
}

TEST_F(FakeHostReaderTest, SkipTagFailsInABrokenDocument) {
    read(document("notes").open("note").breakOff());
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);

    EXPECT_NE(skip(tag), 0);
}

TEST_F(FakeHostReaderTest, SavedStateIsValidInAnotherReaderOfTheEntry) {
    read(document("notes").element("note").open("note").text("abc"));
    tagUTXMLSaveData save{};
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(next(), 0);
    }
    ASSERT_EQ(UTXMLGetStateInfo(&reader, &save), 0);
    UTXMLDeInit(&reader);
    ASSERT_EQ(UTXMLInit(&reader, entry), 0);
    ASSERT_EQ(UTXMLAddTagMap(&reader, "", 0, 0, noteTags, 2), 0);
    ASSERT_EQ(next(), 0);

    ASSERT_EQ(UTXMLRestoreStateInfo(&reader, &save), 0);

    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 6U);
    EXPECT_EQ(content(10), "abc");
    ASSERT_EQ(next(), 0);
    ASSERT_EQ(next(), 0);
    EXPECT_EQ(tag.id, 3U);
    EXPECT_LT(next(), 0);
}

TEST_F(FakeHostReaderTest, StateOfAnotherEntryIsAMisuse) {
    read(note());
    tagUTXMLSaveData save{};
    ASSERT_EQ(UTXMLGetStateInfo(&reader, &save), 0);
    save.host[1] += 1;

    EXPECT_NE(UTXMLRestoreStateInfo(&reader, &save), 0);
    EXPECT_THAT(host.takeMisuses(), ElementsAre("a saved state that was not taken on this entry"));
}

TEST_F(FakeHostReaderTest, AttributesComeInOrderInTheFormOfTheScript) {
    ScriptedAttribute shaped;
    shaped.name = u"b";
    shaped.nameIsTerminated = true;
    shaped.valueIsNull = true;
    read(document("notes").attribute("a", "1").attribute(shaped));
    ASSERT_EQ(next(), 0);
    uint32_t word = 0;
    const uint16_t* name = nullptr;
    const uint16_t* value = nullptr;
    uint32_t nameLength = 0;
    uint32_t valueLength = 0;
    const auto attribute = [&] {
        return UTXMLGetNextAttribute(&reader, &word, &name, &value, &nameLength, &valueLength);
    };

    ASSERT_EQ(attribute(), 0);
    EXPECT_EQ(name[0], u'a');
    EXPECT_EQ(nameLength, 1U);
    EXPECT_EQ(value[0], u'1');
    EXPECT_EQ(valueLength, 1U);
    ASSERT_EQ(attribute(), 0);
    EXPECT_EQ(name[0], u'b');
    EXPECT_EQ(name[1], 0);
    EXPECT_EQ(nameLength, UTXML_COUNT_IT);
    EXPECT_EQ(value, nullptr);
    EXPECT_NE(attribute(), 0);
}

TEST_F(FakeHostReaderTest, UseOfAnUnpreparedReaderIsAMisuse) {
    EXPECT_LT(next(), 0);

    EXPECT_THAT(host.takeMisuses(),
                ElementsAre("UTXMLReadNextTag on a reader that is not prepared"));
}

TEST_F(FakeHostReaderTest, TagMapOutOfOrderIsAMisuse) {
    constexpr UTXML_STRVALPAIR rows[] = {{1, "b"}, {2, "a"}};
    read(note());

    UTXMLAddTagMap(&reader, "", 0, 0, rows, 2);

    EXPECT_THAT(host.takeMisuses(), ElementsAre("a tag map out of order"));
}

TEST(ItemDocumentTest, OpenElementsAreClosedAutomatically) {
    const ItemDocument item = note().element("a", "x").open("b");

    // Open notes, note, a; text; close a; open b; close b, note, notes.
    EXPECT_EQ(item.eventCount(), 9U);
    EXPECT_EQ(item.events().back().name, "notes");
}

TEST(ItemDocumentTest, CutDocumentEndsInAFault) {
    const auto events = note().cutAfter(1).events();

    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].name, "notes");
    EXPECT_EQ(events[1].kind, ReaderEvent::Kind::Fault);
}

TEST(TextTest, Utf8AndUtf16AreTheSameText) {
    EXPECT_EQ(Text("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80").units, u"a\u00E9\u20AC\U0001F600");
    EXPECT_EQ(toUtf8(u"a\u00E9\u20AC\U0001F600"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(std::u16string(1, u'\xD800')), "\xEF\xBF\xBD");
}

TEST(BytesTest, HexAndNumbersAreBytes) {
    EXPECT_EQ(hex("FF fe 0A0b"), (Bytes{0xFF, 0xFE, 0x0A, 0x0B}));
    EXPECT_EQ(le32(0x01020304), hex("04 03 02 01"));
    EXPECT_EQ(utf16(u"hi"), hex("68 00 69 00"));
    EXPECT_EQ(hex("00 04 03 02 01").dword(1), 0x01020304U);
    EXPECT_EQ(hex("01 02 03").part(1, 9), hex("02 03"));
    EXPECT_THROW(hex("0"), std::invalid_argument);
}

class FakeHostStorageTest : public testing::Test {
protected:
    static HostStream* create(uint32_t type, HostStream* parent, std::u16string_view name) {
        StorageSpec record{};
        record.parent = parent;
        for (size_t i = 0; i < name.size(); ++i) {
            record.name[i] = name[i];
        }
        HostStream* handle = nullptr;
        const uint32_t flags =
            type == IOStream ? uint32_t{IOStreamFlags} : uint32_t{IOStorageFlags};
        IOCreate(&handle, type, &record, flags);
        return handle;
    }

    static uint32_t write(HostStream* stream, const Bytes& bytes) {
        uint32_t written = 0;
        stream->write(stream, bytes.data(), static_cast<uint32_t>(bytes.size()), &written);
        return written;
    }

    FakeHost host;
};

TEST_F(FakeHostStorageTest, StreamsKeepTheirBytesAndTheirOrder) {
    HostStream* root = host.newRoot();
    HostStream* storage = create(IOSubStorage, root, u"box");
    HostStream* inner = create(IOStream, storage, u"b");
    HostStream* outer = create(IOStream, root, u"a");
    write(inner, hex("01"));
    write(outer, hex("02"));
    write(inner, hex("03"));

    const StoredMessage message = host.message();
    EXPECT_THAT(message.paths(), ElementsAre("box", "box/b", "a"));
    EXPECT_THAT(message.names(), ElementsAre("box", "a"));
    EXPECT_THAT(message.names("box"), ElementsAre("b"));
    EXPECT_EQ(message.stream("box/b"), hex("01 03"));
    EXPECT_EQ(message.stream("a"), hex("02"));
    EXPECT_FALSE(message.has("b"));
}

TEST_F(FakeHostStorageTest, NameMadeAgainIsEmptyAndKeepsItsFirstPlace) {
    HostStream* root = host.newRoot();
    HostStream* first = create(IOStream, root, u"a");
    create(IOStream, root, u"b");
    write(first, hex("01"));
    HostStream* second = create(IOStream, root, u"a");
    write(first, hex("02"));
    write(second, hex("03"));

    const StoredMessage message = host.message();
    EXPECT_THAT(message.paths(), ElementsAre("a", "b"));
    EXPECT_EQ(message.stream("a"), hex("03"));
}

TEST_F(FakeHostStorageTest, StorageMadeAgainLosesItsContents) {
    HostStream* root = host.newRoot();
    create(IOStream, create(IOSubStorage, root, u"box"), u"a");

    create(IOSubStorage, root, u"box");

    EXPECT_THAT(host.message().paths(), ElementsAre("box"));
}

TEST_F(FakeHostStorageTest, NameOf128UnitsNeedsNoTerminator) {
    const std::u16string longName(128, u'n');

    create(IOStream, host.newRoot(), longName);

    EXPECT_THAT(host.message().paths(), ElementsAre(std::string(128, 'n')));
}

TEST_F(FakeHostStorageTest, HandlesCloseInAnyOrder) {
    HostStream* root = host.newRoot();
    HostStream* stream = create(IOStream, root, u"a");
    EXPECT_EQ(host.openHandles(), 2);
    EXPECT_FALSE(host.message().isRootClosed());

    root->close(root);
    EXPECT_EQ(write(stream, hex("01")), 1U);
    stream->close(stream);

    EXPECT_EQ(host.openHandles(), 0);
    EXPECT_TRUE(host.message().isRootClosed());
    EXPECT_EQ(host.message().stream("a"), hex("01"));
}

TEST_F(FakeHostStorageTest, EndOfAnOutputClosesItsHandles) {
    HostStream* output = host.newOutput();
    RootStorageSpec record{};
    record.output = output;
    record.always1 = 1;
    HostStream* root = nullptr;
    ASSERT_EQ(IOCreate(&root, IORootStorage, &record, IOStorageFlags), 0);
    create(IOStream, root, u"a");
    HostStream* other = host.newRoot();

    host.endOutput(output);

    EXPECT_THAT(host.openHandleTexts(), ElementsAre("root"));
    other->close(other);
    EXPECT_EQ(host.openHandles(), 0);
}

TEST_F(FakeHostStorageTest, UseOfAClosedHandleIsAMisuse) {
    HostStream* root = host.newRoot();
    root->close(root);

    root->close(root);

    EXPECT_THAT(host.takeMisuses(), ElementsAre("close on a closed handle: root"));
}

TEST_F(FakeHostStorageTest, ShortenedWriteTakesOnlyThatMuch) {
    HostStream* stream = create(IOStream, host.newRoot(), u"a");
    host.shortenWrite(1, 2);

    EXPECT_EQ(write(stream, hex("01 02 03")), 3U);
    EXPECT_FALSE(host.hasFailed());
    EXPECT_EQ(write(stream, hex("04 05 06")), 2U);
    EXPECT_TRUE(host.hasFailed());
    EXPECT_EQ(host.message().stream("a"), hex("01 02 03 04 05"));
}

TEST_F(FakeHostStorageTest, KthCallOfAKindFails) {
    HostStream* root = host.newRoot();
    host.failCall(CallKind::CreateStream, 1);

    EXPECT_NE(create(IOStream, root, u"a"), nullptr);
    EXPECT_NE(create(IOSubStorage, root, u"box"), nullptr);
    EXPECT_EQ(create(IOStream, root, u"b"), nullptr);
    EXPECT_NE(create(IOStream, root, u"c"), nullptr);
    EXPECT_THAT(host.message().paths(), ElementsAre("a", "box", "c"));
}

TEST_F(FakeHostStorageTest, KthCallOfAnyKindFails) {
    HostStream* root = host.newRoot();
    host.resetCallCount();
    host.failAnyCall(2);

    HostStream* stream = create(IOStream, root, u"a");
    EXPECT_EQ(write(stream, hex("01")), 1U);
    EXPECT_EQ(write(stream, hex("02")), 0U);
    EXPECT_EQ(write(stream, hex("03")), 1U);
    EXPECT_EQ(host.hostCallCount(), 4);
    EXPECT_EQ(host.message().stream("a"), hex("01 03"));
}

TEST_F(FakeHostStorageTest, CallsAreRecordedWithTheirArguments) {
    HostStream* root = host.newRoot();
    write(create(IOStream, create(IOSubStorage, root, u"box"), u"a"), hex("01 02"));
    root->close(root);

    EXPECT_THAT(host.callTexts(),
                ElementsAre("IOCreate(35, output, 0x1012)", "IOCreate(34, \"box\", 0x1012)",
                            "IOCreate(33, \"box/a\", 18)", "write(box/a, 2)", "close(root)"));
    EXPECT_THAT(host.callsOf("write"), ElementsAre("write(box/a, 2)"));
    EXPECT_EQ(host.countOf(CallKind::CreateStream), 1);
}

TEST_F(FakeHostStorageTest, CopiedNameIsTruncatedOrPadded) {
    const uint16_t source[] = {'a', 'b', 'c', 0};
    uint16_t two[] = {9, 9, 9};
    uint16_t five[] = {9, 9, 9, 9, 9};

    _UTwstrncpy(two, source, 2);
    _UTwstrncpy(five, source, 5);

    EXPECT_THAT(two, ElementsAre('a', 'b', 9));
    EXPECT_THAT(five, ElementsAre('a', 'b', 'c', 0, 0));
}

TEST(FakeHostMemoryTest, BlocksAreCountedUntilTheyAreFreed) {
    FakeHost host;
    const uint64_t handle = SYSNativeAlloc(40);
    EXPECT_EQ(host.blockSize(handle), 40U);
    EXPECT_EQ(host.openBlocks(), 1);

    auto* bytes = static_cast<uint8_t*>(SYSNativeLock(handle));
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes[39], 0xA5);
    EXPECT_EQ(host.lockedBlocks(), 1);
    SYSNativeUnlock(handle);
    SYSNativeFree(handle);

    EXPECT_EQ(host.openBlocks(), 0);
    EXPECT_EQ(host.lockedBlocks(), 0);
}

TEST(FakeHostMemoryTest, FailedCallsReturnNoBlock) {
    FakeHost host;
    host.failCall(CallKind::Alloc, 0);
    EXPECT_EQ(SYSNativeAlloc(8), 0U);

    const uint64_t handle = SYSNativeAlloc(8);
    host.failCall(CallKind::Lock, 0);
    EXPECT_EQ(SYSNativeLock(handle), nullptr);
    SYSNativeFree(handle);
}

TEST(FakeHostMemoryTest, UnlockWithoutLockIsAMisuse) {
    FakeHost host;
    const uint64_t handle = SYSNativeAlloc(8);

    SYSNativeUnlock(handle);
    SYSNativeFree(handle);
    SYSNativeFree(handle);

    EXPECT_THAT(host.takeMisuses(), ElementsAre("SYSNativeUnlock on a block that is not locked",
                                                "SYSNativeFree on something that is not a block"));
}

TEST(FakeHostArchiveTest, EntriesOpenByIndexAndByName) {
    FakeHost host;
    host.entry("a", bytesOf("one")).entry("b", bytesOf("two"));
    ArchiveDirectory* archive = host.openArchive();
    ASSERT_EQ(archive->entryCount, 2U);
    EXPECT_STREQ(archive->namePool + archive->entries[1].nameOffset, "b");
    EXPECT_EQ(archive->entries[1].nameLength, 1);
    MemberOpenRequest request{};
    request.archive = archive;
    request.entryIndex = MEMBER_BY_NAME;
    std::strcpy(request.name, "b");
    HostStream* entry = nullptr;

    ASSERT_EQ(archive->stream.open(&entry, OpenMember, &request, OpenModeRead), 0);

    char text[8] = {};
    uint32_t count = 0;
    EXPECT_EQ(entry->read(entry, text, 2, &count), 0);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(entry->read(entry, text + 2, 6, &count), 0);
    EXPECT_STREQ(text, "two");
    EXPECT_NE(entry->read(entry, text, 8, &count), 0);
    EXPECT_EQ(count, 0U);
    entry->seek(entry, 1, 0);
    EXPECT_EQ(entry->read(entry, text, 8, &count), 0);
    EXPECT_EQ(count, 2U);
    EXPECT_THAT(host.callsOf("open"), ElementsAre("open(40, \"b\")"));
    EXPECT_EQ(host.openHandles(), 2);
}

TEST(FakeHostArchiveTest, BrokenAndMissingEntriesHaveNoHandle) {
    FakeHost host;
    host.entry("a", Bytes{}).brokenEntry("a", -9);
    ArchiveDirectory* archive = host.openArchive();
    MemberOpenRequest request{};
    request.archive = archive;
    HostStream* entry = nullptr;

    EXPECT_EQ(archive->stream.open(&entry, OpenMember, &request, OpenModeRead), -9);
    request.entryIndex = 1;
    EXPECT_NE(archive->stream.open(&entry, OpenMember, &request, OpenModeRead), 0);
    EXPECT_EQ(entry, nullptr);
}

TEST(FakeHostArchiveTest, RefusedArchiveSetsTheFlags) {
    FakeHost host;
    host.refuseArchive(-3, ArchiveEncrypted);
    HostStream* handle = host.rawStream();
    ArchiveOpenRequest request{};

    EXPECT_EQ(handle->open(&handle, OpenArchive, &request, OpenModeRead), -3);
    EXPECT_EQ(request.flags, ArchiveEncrypted);
    EXPECT_EQ(handle, host.rawStream());
}

TEST(FakeHostNestingTest, InnerHostIsCurrentWhileItExists) {
    FakeHost outer;
    {
        FakeHost inner;
        EXPECT_EQ(&FakeHost::current(), &inner);
    }
    EXPECT_EQ(&FakeHost::current(), &outer);
    EXPECT_THAT(outer.calls(), IsEmpty());
}

} // namespace
} // namespace fakehost
