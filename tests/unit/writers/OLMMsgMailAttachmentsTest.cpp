#include <cstring>

#include "filter/writers/OLMMsgMailWriter.h"
#include "tests/unit/writers/MailMessages.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr const char* attachmentList = "OPFMessageCopyAttachmentList";
constexpr const char* urlAttribute = "OPFAttachmentURL";
constexpr const char* contentIdAttribute = "OPFAttachmentContentID";
constexpr const char* contentTypeAttribute = "OPFAttachmentContentType";
constexpr const char* fileNameAttribute = "OPFAttachmentName";

// Returns a mail with its attachment list open.
ItemDocument attachments() {
    return mail().open(attachmentList);
}

// Returns an attachment with this name, whose entry does not exist.
ItemDocument named(const Text& name) {
    return attachments()
        .element("messageAttachment")
        .attribute(urlAttribute, "nowhere")
        .attribute(fileNameAttribute, name);
}

ItemRun withEntries(std::vector<std::pair<std::string, Bytes>> entries) {
    ItemRun run;
    run.archive = [entries = std::move(entries)](FakeHost& host) {
        for (const auto& [name, bytes] : entries) {
            host.entry(name, bytes);
        }
    };
    return run;
}

// Returns the entries of an attachment that names an entry of the archive: `data` if that can be
// read, its number, its texts, and what follows them in every attachment.
std::vector<PropertyEntry> attachmentEntries(uint32_t number,
                                             const std::vector<PropertyEntry>& texts = {},
                                             const std::vector<PropertyEntry>& data = {}) {
    std::vector<PropertyEntry> entries = data;
    entries.push_back(entry(0x0E210003, number));
    entries.insert(entries.end(), texts.begin(), texts.end());
    entries.insert(entries.end(),
                   {entry(0x0FFE0003, 7), entry(0x0FF40003, 2), entry(0x0FF70003, 0)});
    return entries;
}

Bytes requestBytes(const MemberOpenRequest& request) {
    Bytes bytes(sizeof request);
    std::memcpy(bytes.data(), &request, sizeof request);
    return bytes;
}

class OLMMsgMailAttachmentsObjectTest : public MailWriterTest {};

} // namespace

// --- One attachment.

TEST(OLMMsgMailAttachmentsTest, AttachmentHasItsElevenPropertiesInOrder) {
    const StoredMessage message = writeItem(attachments()
                                                .element("messageAttachment")
                                                .attribute(fileNameAttribute, "tide.csv")
                                                .attribute(contentTypeAttribute, "text/csv")
                                                .attribute("OPFAttachmentContentExtension", "csv")
                                                .attribute(contentIdAttribute, "t@s")
                                                .attribute(urlAttribute, "Local/a/tide.csv"),
                                            withEntries({{"Local/a/tide.csv", bytesOf("14:05")}}));

    const std::string storage = attachmentStorage(0);
    EXPECT_EQ(message.stream(storage + "/" + propertyStream),
              hex("00 00 00 00 00 00 00 00"
                  "02 01 01 37  06 00 00 00  05 00 00 00 00 00 00 00"
                  "03 00 05 37  06 00 00 00  01 00 00 00 00 00 00 00"
                  "03 00 21 0E  06 00 00 00  01 00 00 00 00 00 00 00"
                  "1F 00 12 37  06 00 00 00  08 00 00 00 00 00 00 00"
                  "1F 00 0E 37  06 00 00 00  12 00 00 00 00 00 00 00"
                  "1F 00 04 37  06 00 00 00  12 00 00 00 00 00 00 00"
                  "1F 00 01 30  06 00 00 00  12 00 00 00 00 00 00 00"
                  "1F 00 03 37  06 00 00 00  0A 00 00 00 00 00 00 00"
                  "03 00 FE 0F  06 00 00 00  07 00 00 00 00 00 00 00"
                  "03 00 F4 0F  06 00 00 00  02 00 00 00 00 00 00 00"
                  "03 00 F7 0F  06 00 00 00  00 00 00 00 00 00 00 00"));
    EXPECT_THAT(message.names(storage),
                ElementsAre(propertyStream, "__substg1.0_37010102", "__substg1.0_3712001F",
                            "__substg1.0_370E001F", "__substg1.0_3704001F", "__substg1.0_3001001F",
                            "__substg1.0_3703001F"));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x37010102)), bytesOf("14:05"));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3712001F)), utf16(u"t@s"));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x370E001F)), utf16(u"text/csv"));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3704001F)), utf16(u"tide.csv"));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3001001F)), utf16(u"tide.csv"));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3703001F)), utf16(u"tide"));
    EXPECT_EQ(message.stream(propertyStream), streamBegin(mailKind, 0, 1) + flagsEntry(0x10));
}

TEST(OLMMsgMailAttachmentsTest, AttachmentWithoutAUrlHasOnlyItsHeaderAndCounts) {
    const StoredMessage message = writeItem(attachments()
                                                .element("messageAttachment")
                                                .attribute(fileNameAttribute, "tide.csv")
                                                .attribute(contentIdAttribute, "t@s"));

    EXPECT_THAT(message.names(attachmentStorage(0)), ElementsAre(propertyStream));
    EXPECT_EQ(message.stream(attachmentStorage(0) + "/" + propertyStream), Bytes(8));
    EXPECT_EQ(message.stream(propertyStream), streamBegin(mailKind, 0, 1) + flagsEntry(0x10));
}

TEST(OLMMsgMailAttachmentsTest, TagWithoutAttributesCountsToo) {
    const StoredMessage message = writeItem(attachments().element("messageAttachment"));

    EXPECT_EQ(message.stream(attachmentStorage(0) + "/" + propertyStream), Bytes(8));
    EXPECT_EQ(message.stream(propertyStream), streamBegin(mailKind, 0, 1) + flagsEntry(0x10));
}

TEST(OLMMsgMailAttachmentsTest, UrlWithoutAnEntryHasAllButTheData) {
    const StoredMessage message = writeItem(attachments()
                                                .element("messageAttachment")
                                                .attribute(urlAttribute, "Local/a/none.csv")
                                                .attribute(contentIdAttribute, "t@s")
                                                .attribute(contentTypeAttribute, "text/csv")
                                                .attribute(fileNameAttribute, "tide.csv"));

    EXPECT_EQ(
        message.subEntries(attachmentStorage(0)),
        attachmentEntries(1, {entry(0x3712001F, 8), entry(0x370E001F, 18), entry(0x3704001F, 18),
                              entry(0x3001001F, 18), entry(0x3703001F, 10)}));
    EXPECT_FALSE(message.has(attachmentValue(0, 0x37010102)));
    EXPECT_EQ(messageFlags(message), 0x10u);
}

TEST(OLMMsgMailAttachmentsTest, EntryThatCannotBeOpenedHasAllButTheData) {
    ItemRun run;
    run.archive = [](FakeHost& host) { host.brokenEntry("Local/a/tide.csv"); };

    const StoredMessage message =
        writeItem(attachments().element("a").attribute(urlAttribute, "Local/a/tide.csv"), run);

    EXPECT_EQ(message.subEntries(attachmentStorage(0)), attachmentEntries(1));
}

TEST(OLMMsgMailAttachmentsTest, EmptyUrlIsAUrl) {
    const StoredMessage message = writeItem(attachments().element("a").attribute(urlAttribute, ""));

    EXPECT_EQ(message.subEntries(attachmentStorage(0)), attachmentEntries(1));
}

TEST(OLMMsgMailAttachmentsTest, EmptyEntryIsAnEmptyStreamAndHasItsMethod) {
    const StoredMessage message =
        writeItem(attachments().element("a").attribute(urlAttribute, "empty"),
                  withEntries({{"empty", Bytes()}}));

    EXPECT_EQ(message.subEntries(attachmentStorage(0)),
              attachmentEntries(1, {}, {entry(0x37010102, 0), entry(0x37050003, 1)}));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x37010102)), Bytes());
}

TEST(OLMMsgMailAttachmentsTest, EmptyContentIdAndTypeAreEmptyStreamsOfSizeTwo) {
    const StoredMessage message = writeItem(attachments()
                                                .element("messageAttachment")
                                                .attribute(urlAttribute, "nowhere")
                                                .attribute(contentIdAttribute, "")
                                                .attribute(contentTypeAttribute, ""));

    EXPECT_EQ(message.subEntries(attachmentStorage(0)),
              attachmentEntries(1, {entry(0x3712001F, 2), entry(0x370E001F, 2)}));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3712001F)), Bytes());
    EXPECT_EQ(message.stream(attachmentValue(0, 0x370E001F)), Bytes());
}

TEST(OLMMsgMailAttachmentsTest, AttributeNamesAreExactAndTheFirstOfTwoIsUsed) {
    const StoredMessage message =
        writeItem(attachments()
                      .element("messageAttachment")
                      .attribute("opfAttachmentURL", "second")
                      .attribute(urlAttribute, "first")
                      .attribute(urlAttribute, "second")
                      .attribute("OPFAttachmentNAME", "no")
                      .attribute(fileNameAttribute, "one")
                      .attribute(fileNameAttribute, "two"),
                  withEntries({{"second", bytesOf("22")}, {"first", bytesOf("1")}}));

    EXPECT_EQ(message.stream(attachmentValue(0, 0x37010102)), bytesOf("1"));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3704001F)), utf16(u"one"));
}

// --- Names of files.

namespace {

struct FileNameCase {
    const char* name;
    const char16_t* fileName;
    const char16_t* stem; // null without a dot
};

class OLMMsgMailAttachmentsNameTest : public testing::TestWithParam<FileNameCase> {};

} // namespace

TEST_P(OLMMsgMailAttachmentsNameTest, NameIsWrittenTwiceAndUpToItsLastDot) {
    const Bytes name = utf16(GetParam().fileName);
    std::vector<PropertyEntry> texts = {entry(0x3704001F, name.size() + 2),
                                        entry(0x3001001F, name.size() + 2)};
    if (GetParam().stem != nullptr) {
        texts.push_back(entry(0x3703001F, utf16(GetParam().stem).size() + 2));
    }

    const StoredMessage message = writeItem(named(GetParam().fileName));

    EXPECT_EQ(message.subEntries(attachmentStorage(0)), attachmentEntries(1, texts));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3704001F)), name);
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3001001F)), name);
    EXPECT_EQ(message.has(attachmentValue(0, 0x3703001F)), GetParam().stem != nullptr);
    if (GetParam().stem != nullptr) {
        EXPECT_EQ(message.stream(attachmentValue(0, 0x3703001F)), utf16(GetParam().stem));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Names, OLMMsgMailAttachmentsNameTest,
    testing::Values(FileNameCase{"OneDot", u"tide.csv", u"tide"},
                    FileNameCase{"SeveralDots", u"tide.table.tar.gz", u"tide.table.tar"},
                    FileNameCase{"NoDot", u"README", nullptr}, FileNameCase{"Empty", u"", nullptr},
                    FileNameCase{"LeadingDot", u".profile", u""},
                    FileNameCase{"TrailingDot", u"tide.", u"tide"},
                    FileNameCase{"OnlyADot", u".", u""},
                    FileNameCase{"WideDot", u"tide\uFF0Ecsv", nullptr},
                    FileNameCase{"Surrogates", u"\U0001F30A.csv", u"\U0001F30A"}),
    rowName);

TEST(OLMMsgMailAttachmentsTest, MissingNameHasNoneOfItsProperties) {
    const StoredMessage message =
        writeItem(attachments().element("a").attribute(urlAttribute, "nowhere.csv"));

    EXPECT_EQ(message.subEntries(attachmentStorage(0)), attachmentEntries(1));
}

// --- Lists.

TEST(OLMMsgMailAttachmentsTest, NumbersInPropertiesAreOneAboveThoseOfStorages) {
    const StoredMessage message = writeItem(attachments()
                                                .element("a")
                                                .attribute(urlAttribute, "x")
                                                .element("a")
                                                .element("a")
                                                .attribute(urlAttribute, "x"));

    EXPECT_EQ(message.subEntries(attachmentStorage(0)), attachmentEntries(1));
    EXPECT_THAT(message.subEntries(attachmentStorage(1)), IsEmpty());
    EXPECT_EQ(message.subEntries(attachmentStorage(2)), attachmentEntries(3));
    EXPECT_EQ(message.stream(propertyStream), streamBegin(mailKind, 0, 3) + flagsEntry(0x10));
}

TEST(OLMMsgMailAttachmentsTest, EmptyListHasNoAttachment) {
    const Outcome outcome =
        extractItem(mail().element(attachmentList).element("OPFMessageCopyBody", "b"));

    EXPECT_EQ(outcome.message.stream(propertyStream).part(0, 32), headerBytes(0, 0));
    EXPECT_EQ(messageFlags(outcome.message), 0u);
    EXPECT_THAT(outcome.progress, ElementsAre(4, 9, 9, 100));
}

TEST(OLMMsgMailAttachmentsTest, SecondListContinuesTheCount) {
    const StoredMessage message = writeItem(mail()
                                                .open(attachmentList)
                                                .element("a")
                                                .attribute(urlAttribute, "x")
                                                .close()
                                                .open(attachmentList)
                                                .element("a")
                                                .attribute(urlAttribute, "x")
                                                .close());

    EXPECT_EQ(message.subEntries(attachmentStorage(1)).front(), entry(0x0E210003, 2));
    EXPECT_EQ(message.stream(propertyStream).part(0, 32), headerBytes(0, 2));
}

TEST(OLMMsgMailAttachmentsTest, EveryOpeningTagOfTheListIsAnAttachment) {
    const StoredMessage message = writeItem(attachments()
                                                .open("OPFMessageCopySubject")
                                                .text("no subject")
                                                .element("stranger")
                                                .close()
                                                .close()
                                                .element("OPFMessageCopyBody", "b"));

    EXPECT_EQ(countStorages(message, "__attach"), 2u);
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x1000001F, 4)));
}

TEST(OLMMsgMailAttachmentsTest, ListEndsAtATagOfItsOwnKind) {
    const StoredMessage message = writeItem(attachments()
                                                .element("a")
                                                .open(attachmentList)
                                                .attribute(urlAttribute, "x")
                                                .element("a")
                                                .attribute(urlAttribute, "x"));

    EXPECT_EQ(countStorages(message, "__attach"), 1u);
}

TEST(OLMMsgMailAttachmentsTest, BrokenListKeepsWhatWasWritten) {
    const StoredMessage message = writeItem(attachments()
                                                .element("a")
                                                .attribute(urlAttribute, "tide")
                                                .open("a")
                                                .attribute(urlAttribute, "tide")
                                                .breakOff(),
                                            withEntries({{"tide", bytesOf("14:05")}}));

    for (const uint32_t number : {0U, 1U}) {
        EXPECT_EQ(message.stream(attachmentValue(number, 0x37010102)), bytesOf("14:05"));
    }
    EXPECT_EQ(message.stream(propertyStream), streamBegin(mailKind, 0, 2) + flagsEntry(0x10));
}

// --- The request.

TEST_F(OLMMsgMailAttachmentsObjectTest, EntryIsRequestedByItsUnchangedName) {
    begin(attachments().element("a").attribute(urlAttribute, u"..\\a/%20b/T\u00E9\U0001F30A.csv"));
    run();

    ASSERT_THAT(host.memberRequests(), SizeIs(2)) << "the document's own entry and this one";
    MemberOpenRequest expected{};
    std::memset(static_cast<void*>(&expected), 0, sizeof expected);
    expected.archive = archive;
    std::strcpy(expected.name, "..\\a/%20b/T\xC3\xA9\xF0\x9F\x8C\x8A.csv");
    expected.entryIndex = -1;
    expected.always1 = 1;
    EXPECT_EQ(requestBytes(host.memberRequests().back()), requestBytes(expected));
}

namespace {

struct LongFileNameCase {
    size_t length;
    size_t kept;
    uint64_t index;
};

class OLMMsgMailAttachmentsLongNameTest : public MailWriterTest,
                                          public testing::WithParamInterface<LongFileNameCase> {};

} // namespace

// The terminator of a name of 512 bytes overwrites the lowest byte of the index.
TEST_P(OLMMsgMailAttachmentsLongNameTest, NameIsTruncatedAndItsTerminatorMayOverwriteTheIndex) {
    std::string name;
    for (size_t i = 0; i < GetParam().length; ++i) {
        name.push_back(static_cast<char>('a' + i % 26));
    }
    begin(attachments().element("a").attribute(urlAttribute, name));
    run();

    const Bytes request = requestBytes(host.memberRequests().back());
    EXPECT_EQ(request.part(8, 512),
              bytesOf(name.substr(0, GetParam().kept)) + Bytes(512 - GetParam().kept));
    EXPECT_EQ(request.qword(520), GetParam().index);
    EXPECT_EQ(request.part(528, 8), hex("00 00 00 00  01 00  00 00"));
    EXPECT_EQ(request.qword(0), reinterpret_cast<uint64_t>(archive));
    EXPECT_EQ(message().subEntries(attachmentStorage(0)), attachmentEntries(1));
}

INSTANTIATE_TEST_SUITE_P(Lengths, OLMMsgMailAttachmentsLongNameTest,
                         testing::Values(LongFileNameCase{0, 0, 0xFFFFFFFFFFFFFFFF},
                                         LongFileNameCase{511, 511, 0xFFFFFFFFFFFFFFFF},
                                         LongFileNameCase{512, 512, 0xFFFFFFFFFFFFFF00},
                                         LongFileNameCase{513, 512, 0xFFFFFFFFFFFFFF00},
                                         LongFileNameCase{3000, 512, 0xFFFFFFFFFFFFFF00}));

TEST_F(OLMMsgMailAttachmentsObjectTest, OpenedEntryBelongsToTheCallerAndAMissingOneIsNull) {
    entries = {{"tide", bytesOf("14:05")}};
    begin(mail());

    EXPECT_EQ(writer->openAttachmentNode("none"), nullptr);
    HostStream* opened = writer->openAttachmentNode("tide");

    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(host.openHandles(), openBefore + 1);
    opened->close(opened);
    EXPECT_THAT(host.callsOf("open"), ElementsAre("open(40, \"none\")", "open(40, \"tide\")"));
}

TEST_F(OLMMsgMailAttachmentsObjectTest, EachEntryIsClosedBeforeItsAttachmentAndTheNextOne) {
    entries = {{"one", bytesOf("1")}, {"two", bytesOf("2")}};
    begin(attachments()
              .element("a")
              .attribute(urlAttribute, "one")
              .element("a")
              .attribute(urlAttribute, "two"));
    run();

    std::vector<std::string> opensAndCloses;
    for (const HostCall& call : host.calls()) {
        if (call.kind == CallKind::OpenMember || call.kind == CallKind::Close) {
            opensAndCloses.push_back(call.text);
        }
    }
    const std::string first = attachmentStorage(0);
    const std::string second = attachmentStorage(1);
    EXPECT_THAT(opensAndCloses,
                ElementsAre("open(40, \"one\")", "close(" + first + "/__substg1.0_37010102)",
                            "close(entry one)", "close(" + first + "/__properties_version1.0)",
                            "close(" + first + ")", "open(40, \"two\")",
                            "close(" + second + "/__substg1.0_37010102)", "close(entry two)",
                            "close(" + second + "/__properties_version1.0)",
                            "close(" + second + ")"));
}

// --- Failures of the host.

TEST_F(OLMMsgMailAttachmentsObjectTest, DataWithoutAStreamKeepsItsMethod) {
    entries = {{"tide", bytesOf("14:05")}};
    begin(attachments().element("a").attribute(urlAttribute, "tide"));
    // The data comes after the property stream.
    host.failCall(CallKind::CreateStream, 1);

    run();

    EXPECT_EQ(message().subEntries(attachmentStorage(0)),
              attachmentEntries(1, {}, {entry(0x37050003, 1)}));
    EXPECT_FALSE(message().has(attachmentValue(0, 0x37010102)));
    EXPECT_EQ(host.openHandles(), openBefore) << "the entry is closed too";
}

TEST_F(OLMMsgMailAttachmentsObjectTest, DataThatFailsHalfwayHasTheSizeReachedSoFar) {
    const Bytes data = patternBytes(3000);
    for (const CallKind kind : {CallKind::Read, CallKind::Write}) {
        SCOPED_TRACE(static_cast<int>(kind));
        ItemRun run = withEntries({{"tide", data}});
        // The writes of the class and the attachment's header come before those of the data.
        run.prepare = [kind](FakeHost& own) {
            own.failCall(kind, kind == CallKind::Read ? 2 : 4, -7);
        };

        const StoredMessage stored =
            writeItem(attachments().element("a").attribute(urlAttribute, "tide"), run);

        EXPECT_EQ(stored.subEntries(attachmentStorage(0)),
                  attachmentEntries(1, {}, {entry(0x37010102, 2048), entry(0x37050003, 1)}));
        EXPECT_EQ(stored.stream(attachmentValue(0, 0x37010102)), data.part(0, 2048));
    }
}

TEST_F(OLMMsgMailAttachmentsObjectTest, TextWithoutAStreamLosesOnlyItsProperty) {
    begin(named("tide.csv"));
    // The order is: property stream, file name, display name, the name up to its last dot.
    host.failCall(CallKind::CreateStream, 2);

    run();

    EXPECT_EQ(message().subEntries(attachmentStorage(0)),
              attachmentEntries(1, {entry(0x3704001F, 18), entry(0x3703001F, 10)}));
}

TEST_F(OLMMsgMailAttachmentsObjectTest, StorageThatCannotBeMadeThrowsAndIsNotCounted) {
    begin(named("tide.csv"));
    host.failCall(CallKind::CreateStorage, 0, -42);

    EXPECT_EQ(thrownCode([&] { writer->writeNode(*parser); }), static_cast<unsigned int>(-42));

    EXPECT_EQ(writer->attachmentCount, 0u);
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST(OLMMsgMailAttachmentsTest, StorageThatCannotBeMadeFailsTheRequest) {
    // The storage of named properties comes first.
    ItemRun run;
    run.prepare = [](FakeHost& host) { host.failCall(CallKind::CreateStorage, 1, -42); };

    const Outcome outcome = extractItem(named("tide.csv"), run);

    expectFailedRequest(outcome);
}

// --- Text and data of every length.

namespace {

class OLMMsgMailAttachmentsLengthTest : public TextLengthTest {};

} // namespace

TEST_P(OLMMsgMailAttachmentsLengthTest, TextsAreWhole) {
    const std::u16string fileName = text + u".csv";

    const StoredMessage message = writeItem(attachments()
                                                .element("messageAttachment")
                                                .attribute(urlAttribute, "nowhere")
                                                .attribute(contentIdAttribute, text)
                                                .attribute(contentTypeAttribute, text)
                                                .attribute(fileNameAttribute, fileName));

    EXPECT_EQ(message.subEntries(attachmentStorage(0)),
              attachmentEntries(1, {entry(0x3712001F, size), entry(0x370E001F, size),
                                    entry(0x3704001F, size + 8), entry(0x3001001F, size + 8),
                                    entry(0x3703001F, size)}));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3712001F)), utf16(text));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x370E001F)), utf16(text));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3704001F)), utf16(fileName));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3001001F)), utf16(fileName));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x3703001F)), utf16(text));
}

TEST_P(OLMMsgMailAttachmentsLengthTest, DataIsWhole) {
    const Bytes data = patternBytes(GetParam());

    const StoredMessage message = writeItem(
        attachments().element("a").attribute(urlAttribute, "tide"), withEntries({{"tide", data}}));

    EXPECT_EQ(message.subEntries(attachmentStorage(0)).front(), entry(0x37010102, GetParam()));
    EXPECT_EQ(message.stream(attachmentValue(0, 0x37010102)), data);
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgMailAttachmentsLengthTest, testing::ValuesIn(textLengths));
