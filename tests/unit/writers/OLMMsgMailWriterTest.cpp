#include "filter/writers/OLMMsgMailWriter.h"

#include "tests/unit/writers/FullItems.h"
#include "tests/unit/writers/MailMessages.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The fixture is shared with the tests of addresses and attachments.
class OLMMsgMailWriterObjectTest : public MailWriterTest {};

} // namespace

// --- The writer itself.

TEST_F(OLMMsgMailWriterObjectTest, NewWriterHasTheArchiveAndNothingElse) {
    archive = host.openArchive();
    makeWriter();

    EXPECT_EQ(writer->archiveHandle, archive);
    EXPECT_EQ(writer->attachmentCount, 0u);
    EXPECT_EQ(writer->messageFlags, 0u);
    EXPECT_EQ(writer->toDisplayList.length(), 0);
    EXPECT_EQ(writer->ccDisplayList.length(), 0);
    EXPECT_EQ(writer->bccDisplayList.length(), 0);
}

TEST_F(OLMMsgMailWriterObjectTest, HeaderHoldsBothCountsTwice) {
    begin(mail());
    writer->recipientCount = 0x01020304;
    writer->attachmentCount = 0x05060708;
    HostStream* stream = OLMMsgWriter::createSubStreamFromWString(writer->rootStorage, "s");

    EXPECT_EQ(writer->writeMessageHeader(stream), 0u);

    EXPECT_EQ(message().stream("s"), hex("00 00 00 00 00 00 00 00  04 03 02 01 08 07 06 05"
                                         "04 03 02 01 08 07 06 05  00 00 00 00 00 00 00 00"));
    stream->close(stream);
}

TEST_F(OLMMsgMailWriterObjectTest, HeaderReturnsTheCodeOfAShortWrite) {
    begin(mail());
    HostStream* stream = OLMMsgWriter::createSubStreamFromWString(writer->rootStorage, "s");
    for (int failing = 0; failing < 8; ++failing) {
        SCOPED_TRACE(testing::Message() << "write " << failing);
        host.shortenWrite(failing, 3, 0);

        EXPECT_EQ(writer->writeMessageHeader(stream), shortWriteCode);
    }
    stream->close(stream);
}

TEST_F(OLMMsgMailWriterObjectTest, HeaderThatCannotBeWrittenLeavesTheEntriesOut) {
    begin(mail());
    run();
    host.shortenWrite(4, 2, 0);

    EXPECT_EQ(writer->finalizeNode(*parser), 0u);

    EXPECT_EQ(message().stream(propertyStream), Bytes(4 * 4 + 2));
}

TEST_F(OLMMsgMailWriterObjectTest, IndexOfPendingEntriesIsChecked) {
    begin(mail());

    EXPECT_EQ(thrownCode([&] { writer->properties.get(static_cast<int>(requiredCount)); }),
              qor::errorIndex);
}

// --- Whole messages.

TEST(OLMMsgMailWriterTest, FullMailHasItsEntriesInDocumentOrder) {
    const StoredMessage message = writeItem(fullMail(), tideArchive());

    // The times are 131740151470000000, 116444735990000000 and one second later.
    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(mailKind, 4, 2) +
                  hex("1F 00 02 0E  06 00 00 00  0A 00 00 00 00 00 00 00"
                      "1F 00 00 10  06 00 00 00  16 00 00 00 00 00 00 00"
                      "1F 00 03 0E  06 00 00 00  08 00 00 00 00 00 00 00"
                      "1F 10 00 80  06 00 00 00  04 00 00 00 00 00 00 00"
                      "1F 00 65 00  06 00 00 00  08 00 00 00 00 00 00 00"
                      "1F 00 42 00  06 00 00 00  08 00 00 00 00 00 00 00"
                      "03 00 90 10  06 00 00 00  02 00 00 00 00 00 00 00"
                      "02 01 13 10  06 00 00 00  18 00 00 00 00 00 00 00"
                      "1F 00 42 10  06 00 00 00  0C 00 00 00 00 00 00 00"
                      "1F 00 35 10  06 00 00 00  0C 00 00 00 00 00 00 00"
                      "40 00 08 30  06 00 00 00  80 87 06 43 F8 08 D4 01"
                      "40 00 07 30  06 00 00 00  80 87 06 43 F8 08 D4 01"
                      "40 00 2A 00  06 00 00 00  80 E9 A5 D4 DE B1 9D 01"
                      "1F 00 39 10  06 00 00 00  0C 00 00 00 00 00 00 00"
                      "40 00 39 00  06 00 00 00  00 80 3E D5 DE B1 9D 01"
                      "1F 00 37 00  06 00 00 00  12 00 00 00 00 00 00 00"
                      "1F 00 3D 00  06 00 00 00  08 00 00 00 00 00 00 00"
                      "1F 00 1D 0E  06 00 00 00  0C 00 00 00 00 00 00 00"
                      "1F 00 70 00  06 00 00 00  0A 00 00 00 00 00 00 00"
                      "1F 00 04 0E  06 00 00 00  14 00 00 00 00 00 00 00"
                      "03 00 17 00  06 00 00 00  02 00 00 00 00 00 00 00"
                      "03 00 07 0E  06 00 00 00  19 00 00 00 00 00 00 00"));
}

TEST(OLMMsgMailWriterTest, FullMailHasItsStreamsInDocumentOrder) {
    const StoredMessage message = writeItem(fullMail(), tideArchive());

    EXPECT_THAT(
        message.names(),
        ElementsAre("__nameid_version1.0", "__substg1.0_10090102", "__substg1.0_001A001F",
                    "__attach_version1.0_#00000000", "__attach_version1.0_#00000001",
                    "__recip_version1.0_#00000000", "__substg1.0_0E02001F", "__substg1.0_1000001F",
                    "__recip_version1.0_#00000001", "__substg1.0_0E03001F", "__substg1.0_8000101F",
                    "__substg1.0_8000101F-00000000", "__substg1.0_0065001F", "__substg1.0_0042001F",
                    "__substg1.0_10130102", "__substg1.0_1042001F", "__substg1.0_1035001F",
                    "__substg1.0_1039001F", "__substg1.0_0037001F", "__substg1.0_003D001F",
                    "__substg1.0_0E1D001F", "__substg1.0_0070001F", "__recip_version1.0_#00000002",
                    "__recip_version1.0_#00000003", "__substg1.0_0E04001F", propertyStream));
    EXPECT_EQ(message.stream("__substg1.0_0E02001F"), terminated(u"d@x"));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"High water"));
    EXPECT_EQ(message.stream("__substg1.0_0E03001F"), terminated(u"Cy"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F"), hex("08 00 00 00"));
    EXPECT_EQ(message.stream("__substg1.0_8000101F-00000000"), terminated(u"Sea"));
    EXPECT_EQ(message.stream("__substg1.0_0065001F"), utf16(u"f@x"));
    EXPECT_EQ(message.stream("__substg1.0_0042001F"), utf16(u"Fay"));
    EXPECT_EQ(message.stream("__substg1.0_10130102"), hex("FF FE") + utf16(u"<b>High</b>"));
    EXPECT_EQ(message.stream("__substg1.0_1042001F"), utf16(u"<1@x>"));
    EXPECT_EQ(message.stream("__substg1.0_1035001F"), utf16(u"<2@x>"));
    EXPECT_EQ(message.stream("__substg1.0_1039001F"), utf16(u"<0@x>"));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(u"AW: Tide"));
    EXPECT_EQ(message.stream("__substg1.0_003D001F"), utf16(u"AW:"));
    EXPECT_EQ(message.stream("__substg1.0_0E1D001F"), utf16(u" Tide"));
    EXPECT_EQ(message.stream("__substg1.0_0070001F"), utf16(u"Tide"));
    EXPECT_EQ(message.stream("__substg1.0_0E04001F"), terminated(u"Ann; Bob"));
}

TEST(OLMMsgMailWriterTest, CategoriesAreTheOnlyNamedPropertyOfAMail) {
    const StoredMessage message = writeItem(fullMail(), tideArchive());

    EXPECT_EQ(nameStream(message, "00020102"), Bytes());
    EXPECT_EQ(nameStream(message, "00030102"), hex("00 00 00 00  05 00  00 00"));
    EXPECT_EQ(nameStream(message, "00040102"), hex("10 00 00 00") + utf16(u"Keywords"));
    EXPECT_EQ(nameStream(message, "10150102"), hex("3B 4D DA 2E  05 00  00 00"));
}

TEST(OLMMsgMailWriterTest, EntriesFollowTheDocumentAndNotTheTable) {
    const StoredMessage message = writeItem(mail()
                                                .element("OPFMessageGetPriority", "4")
                                                .element("OPFMessageCopySubject", "Tide")
                                                .element("OPFMessageCopyBody", "b"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x00170003, 0), entry(0x0037001F, 10), entry(0x003D001F, 2),
                            entry(0x0E1D001F, 10), entry(0x1000001F, 4)));
}

// --- Subjects.

namespace {

struct SubjectCase {
    const char* name;
    const char16_t* text;
    const char16_t* prefix;
    const char16_t* rest;
};

class OLMMsgMailWriterSubjectTest : public testing::TestWithParam<SubjectCase> {};

} // namespace

TEST_P(OLMMsgMailWriterSubjectTest, SubjectIsWrittenWholeAndInTwoParts) {
    const Bytes text = utf16(GetParam().text);
    const Bytes prefix = utf16(GetParam().prefix);
    const Bytes rest = utf16(GetParam().rest);

    const StoredMessage message =
        writeItem(mail().element("OPFMessageCopySubject", GetParam().text));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0037001F, text.size() + 2),
                                                 entry(0x003D001F, prefix.size() + 2),
                                                 entry(0x0E1D001F, rest.size() + 2)));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), text);
    EXPECT_EQ(message.stream("__substg1.0_003D001F"), prefix);
    EXPECT_EQ(message.stream("__substg1.0_0E1D001F"), rest);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgMailWriterSubjectTest,
    testing::Values(SubjectCase{"TwoUnitsColonSpaceAndWord", u"AW: Tide", u"AW:", u" Tide"},
                    SubjectCase{"NoSpaceAfterTheColon", u"re:Tide", u"re:", u"Tide"},
                    SubjectCase{"ClockTime", u"08:30 ferry", u"08:", u"30 ferry"},
                    SubjectCase{"NoColon", u"Tide", u"", u"Tide"},
                    SubjectCase{"ColonAtThree", u"Fwd: Tide", u"", u"Fwd: Tide"},
                    SubjectCase{"ColonAtOne", u"R: Tide", u"", u"R: Tide"},
                    SubjectCase{"ColonAtZero", u":Tide", u"", u":Tide"},
                    SubjectCase{"ExactlyThreeUnits", u"AW:", u"AW:", u""},
                    SubjectCase{"ThreeUnitsWithoutColon", u"Sea", u"", u"Sea"},
                    SubjectCase{"TwoUnits", u"A:", u"", u"A:"},
                    SubjectCase{"OneUnit", u":", u"", u":"},
                    SubjectCase{"ThreeColons", u":::Tide", u":::", u"Tide"},
                    SubjectCase{"OnlyColons", u":::", u":::", u""},
                    SubjectCase{"TwoPrefixes", u"AW:AW:x", u"AW:", u"AW:x"},
                    SubjectCase{"Surrogates", u"\U0001F30A: x", u"\U0001F30A:", u" x"},
                    SubjectCase{"WideColon", u"AW\uFF1A x", u"", u"AW\uFF1A x"}),
    rowName);

TEST(OLMMsgMailWriterTest, SubjectWithoutTextHasNoneOfTheThreeProperties) {
    const Outcome outcome = extractItem(mail().element("OPFMessageCopySubject"));

    EXPECT_THAT(ownEntries(outcome.message), IsEmpty());
    EXPECT_FALSE(outcome.message.has("__substg1.0_0037001F"));
    EXPECT_FALSE(outcome.message.has("__substg1.0_003D001F"));
    EXPECT_FALSE(outcome.message.has("__substg1.0_0E1D001F"));
    EXPECT_THAT(outcome.progress, ElementsAre(4, 4, 100)) << "the element counts";
}

TEST(OLMMsgMailWriterTest, SubjectThatCannotBeReadHasNoneOfTheThreeProperties) {
    ItemRun run;
    run.prepare = [](FakeHost& host) { host.failCall(CallKind::ReadContent, 0); };

    const StoredMessage message = writeItem(mail().element("OPFMessageCopySubject", "Tide"), run);

    EXPECT_THAT(ownEntries(message), IsEmpty());
    EXPECT_FALSE(message.has("__substg1.0_0037001F"));
}

TEST_F(OLMMsgMailWriterObjectTest, SubjectStreamThatCannotBeMadeLosesOnlyItsProperty) {
    struct Case {
        const char16_t* text;
        std::vector<PropertyEntry> whole;
    };
    const Case cases[] = {
        {u"AW: Tide", {entry(0x0037001F, 18), entry(0x003D001F, 8), entry(0x0E1D001F, 12)}},
        {u"Tide", {entry(0x0037001F, 10), entry(0x003D001F, 2), entry(0x0E1D001F, 10)}},
    };
    ItemDocument item = mail();
    for (const Case& row : cases) {
        for (int failing = 0; failing < 3; ++failing) {
            item.element("OPFMessageCopySubject", row.text);
        }
    }
    begin(item);

    for (const Case& row : cases) {
        for (int failing = 0; failing < 3; ++failing) {
            SCOPED_TRACE(testing::Message() << "stream " << failing);
            auto expected = added();
            auto left = row.whole;
            left.erase(left.begin() + failing);
            expected.insert(expected.end(), left.begin(), left.end());
            host.failCall(CallKind::CreateStream, failing);

            writer->writeNode(*parser); // the opening tag
            EXPECT_EQ(added(), expected);
            EXPECT_EQ(host.openHandles(), openBefore);
            writer->writeNode(*parser); // the closing tag
        }
    }
    EXPECT_TRUE(host.hasFailed());
}

// --- Bodies.

TEST(OLMMsgMailWriterTest, EachBodyComesFromItsOwnElement) {
    const StoredMessage message = writeItem(
        mail().element("OPFMessageCopyHTMLBody", "<p>rich").element("OPFMessageCopyBody", "plain"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x10130102, 16), entry(0x1000001F, 12)));
    EXPECT_EQ(message.stream("__substg1.0_10130102"), hex("FF FE") + utf16(u"<p>rich"));
    EXPECT_EQ(message.stream("__substg1.0_1000001F"), utf16(u"plain"));
}

TEST(OLMMsgMailWriterTest, NeitherBodyIsMadeFromTheOther) {
    EXPECT_THAT(writeItem(mail().element("OPFMessageCopyHTMLBody", "<p>rich")),
                HasNoProperty(0x1000001F));
    EXPECT_THAT(writeItem(mail().element("OPFMessageCopyBody", "plain")),
                HasNoProperty(0x10130102));
}

TEST(OLMMsgMailWriterTest, HtmlBodyWithoutTextHasOnlyItsMark) {
    const StoredMessage message = writeItem(mail().element("OPFMessageCopyHTMLBody"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x10130102, 2)));
    EXPECT_EQ(message.stream("__substg1.0_10130102"), hex("FF FE"));
}

TEST_F(OLMMsgMailWriterObjectTest, HtmlBodyWithoutAStreamIsLeftOut) {
    begin(mail().element("OPFMessageCopyHTMLBody", "lost").element("OPFMessageCopyBody", "kept"));
    host.failCall(CallKind::CreateStream, 0);

    run();

    EXPECT_THAT(added(), ElementsAre(entry(0x1000001F, 10)));
    EXPECT_EQ(writer->handledProps, 2u) << "the element was read nevertheless";
}

TEST_F(OLMMsgMailWriterObjectTest, MarkThatCannotBeWrittenThrowsAndClosesItsStream) {
    begin(mail().element("OPFMessageCopyHTMLBody", "lost"));
    host.shortenWrite(0, 1, 0);

    EXPECT_EQ(thrownCode([&] { writer->writeNode(*parser); }), shortWriteCode);

    EXPECT_THAT(added(), IsEmpty());
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST(OLMMsgMailWriterTest, MarkThatCannotBeWrittenFailsTheRequest) {
    // The first write is that of the message class.
    ItemRun run;
    run.prepare = [](FakeHost& host) { host.shortenWrite(1, 1, 0); };

    const Outcome outcome = extractItem(mail().element("OPFMessageCopyHTMLBody", "lost"), run);

    EXPECT_EQ(outcome.result, VwSpecialFailed);
    EXPECT_EQ(outcome.status, VwSpecialStatusFailed);
    EXPECT_EQ(outcome.message.stream("__substg1.0_10130102"), hex("FF"));
    EXPECT_FALSE(outcome.message.has(propertyStream));
    EXPECT_EQ(outcome.openHandles, 0);
}

TEST_F(OLMMsgMailWriterObjectTest, TextOfAnHtmlBodyThatCannotBeWrittenCountsOnlyTheMark) {
    begin(mail().element("OPFMessageCopyHTMLBody", "lost"));
    host.failCall(CallKind::Write, 1);

    run();

    EXPECT_THAT(added(), ElementsAre(entry(0x10130102, 2)));
    EXPECT_EQ(message().stream("__substg1.0_10130102"), hex("FF FE"));
}

// --- Plain strings, times and the flag status.

TEST_F(OLMMsgMailWriterObjectTest, PlainStringWithoutAStreamIsLeftOut) {
    begin(mail()
              .element("OPFMessageCopyMessageID", "lost")
              .element("OPFMessageCopyThreadTopic", "kept"));
    host.failCall(CallKind::CreateStream, 0);

    run();

    EXPECT_THAT(added(), ElementsAre(entry(0x0070001F, 10)));
    EXPECT_EQ(writer->handledProps, 1u);
}

TEST(OLMMsgMailWriterTest, CreationTimeIsTheModificationTime) {
    EXPECT_THAT(
        ownEntries(writeItem(mail().element("OPFMessageCopyModDate", "1970-01-01T00:00:00Z"))),
        ElementsAre(entry(0x30080040, time1970), entry(0x30070040, time1970)));
}

TEST(OLMMsgMailWriterTest, BothTimesAreZeroWithoutADate) {
    for (const char* text : {"", "soon"}) {
        EXPECT_THAT(ownEntries(writeItem(mail().element("OPFMessageCopyModDate", text))),
                    ElementsAre(entry(0x30080040, 0), entry(0x30070040, 0)));
    }
}

TEST(OLMMsgMailWriterTest, NeitherTimeExistsWithoutTheModificationDate) {
    const StoredMessage message = writeItem(mail()
                                                .element("OPFMessageCopySentTime", "1970-01-01")
                                                .element("OPFMessageCopyReceivedTime", "soon"));

    EXPECT_THAT(ownEntries(message),
                ElementsAre(entry(0x00390040, time1970), entry(0x002A0040, 0)));
}

TEST(OLMMsgMailWriterTest, FlagStatusDoesNotAffectTheFlags) {
    const StoredMessage message =
        writeItem(mail().element("OPFMessageCopyGetFlagStatus", "-1.2E1"));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x10900003, 0xFFFFFFF4)));
    EXPECT_EQ(messageFlags(message), 0u);
}

TEST(OLMMsgMailWriterTest, RichTextAddsNothingAndIsNotCounted) {
    const Outcome outcome = extractItem(mail().element("OPFMessageGetHasRichText", "1E0"));

    EXPECT_THAT(outcome.progress, ElementsAre(0, 0, 100));
    EXPECT_THAT(ownEntries(outcome.message), IsEmpty());
    EXPECT_THAT(outcome.message, HasNumber(0x0E1F000B, 0));
}

// --- Flags.

namespace {

struct MailFlagCase {
    const char* name;
    const char* wasSent; // null: without the element
    const char* isRead;  // likewise
    bool hasAttachment;
    uint64_t flags;
};

class OLMMsgMailWriterFlagTest : public testing::TestWithParam<MailFlagCase> {};

} // namespace

TEST_P(OLMMsgMailWriterFlagTest, FlagsAreTheLastEntry) {
    ItemDocument item = mail();
    if (GetParam().hasAttachment) {
        item.open("OPFMessageCopyAttachmentList").element("messageAttachment").close();
    }
    if (GetParam().wasSent != nullptr) {
        item.element("OPFMessageGetWasSent", GetParam().wasSent);
    }
    if (GetParam().isRead != nullptr) {
        item.element("OPFMessageGetIsRead", GetParam().isRead);
    }

    const StoredMessage message = writeItem(item);

    EXPECT_THAT(ownEntries(message), IsEmpty());
    EXPECT_EQ(messageFlags(message), GetParam().flags);
}

INSTANTIATE_TEST_SUITE_P(Mails, OLMMsgMailWriterFlagTest,
                         testing::Values(MailFlagCase{"Neither", nullptr, nullptr, false, 0},
                                         MailFlagCase{"Sent", "1E0", nullptr, false, 0},
                                         MailFlagCase{"NotSent", "0E0", nullptr, false, 8},
                                         MailFlagCase{"SentWithoutText", "", nullptr, false, 8},
                                         MailFlagCase{"SentInAWord", "true", nullptr, false, 0},
                                         MailFlagCase{"NotSentInAWord", "no", nullptr, false, 8},
                                         MailFlagCase{"Read", nullptr, "1E0", false, 1},
                                         MailFlagCase{"NotRead", nullptr, "0E0", false, 0},
                                         MailFlagCase{"ReadWithoutText", nullptr, "", false, 0},
                                         MailFlagCase{"ReadInAWord", nullptr, "YES", false, 1},
                                         MailFlagCase{"NotSentAndRead", "0", "1", false, 9},
                                         MailFlagCase{"Attachment", nullptr, nullptr, true, 16},
                                         MailFlagCase{"All", "false", "true", true, 25}),
                         rowName);

TEST(OLMMsgMailWriterTest, FlagIsNeverCleared) {
    const StoredMessage message = writeItem(mail()
                                                .element("OPFMessageGetIsRead", "1")
                                                .element("OPFMessageGetIsRead", "0")
                                                .element("OPFMessageGetWasSent", "0")
                                                .element("OPFMessageGetWasSent", "1"));

    EXPECT_EQ(messageFlags(message), 9u);
}

TEST_F(OLMMsgMailWriterObjectTest, OtherFlagCodesOnlyReadTheText) {
    begin(mail().element("stranger", "1"));
    OLMXMLTag tag;
    ASSERT_EQ(parser->nextTag(tag), 1);
    host.forgetCalls();

    writer->handleFlagTag(5, *parser);

    EXPECT_EQ(writer->messageFlags, 0u);
    EXPECT_GT(host.countOf(CallKind::ReadContent), 0);
}

// --- Importance.

namespace {

class OLMMsgMailWriterPriorityTest : public NumberTest {};

} // namespace

TEST_P(OLMMsgMailWriterPriorityTest, PriorityBecomesAnImportance) {
    expectOnlyEntry(mail().element("OPFMessageGetPriority", GetParam().text),
                    entry(0x00170003, GetParam().value));
}

// 4294967298 is 2^32 + 2: the number is not truncated to 32 bits before the comparison.
INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgMailWriterPriorityTest,
    testing::Values(NumberCase{"One", "1", 1}, NumberCase{"Two", "2", 2},
                    NumberCase{"Three", "3", 1}, NumberCase{"Four", "4", 0},
                    NumberCase{"Five", "5", 1}, NumberCase{"Zero", "0", 1},
                    NumberCase{"Exponent", "2E0", 2}, NumberCase{"Fraction", "4.9", 0},
                    NumberCase{"Negative", "-2", 1}, NumberCase{"NoNumber", "high", 1},
                    NumberCase{"Wide", "4294967298", 1}, NumberCase{"NoText", "", 1}),
    rowName);

// --- Progress.

TEST(OLMMsgMailWriterTest, ProgressCountsTheElementsOfTheTable) {
    const Outcome outcome = extractItem(mail()
                                            .open("OPFMessageCopyCategoryList")
                                            .close()
                                            .element("OPFMessageCopyBody", "b")
                                            .element("stranger")
                                            .open("OPFMessageCopyFromAddresses")
                                            .element("emailAddress")
                                            .close()
                                            .open("OPFMessageCopyToAddresses")
                                            .element("emailAddress")
                                            .close()
                                            .element("OPFMessageGetWasSent", "1"));

    // Only the sender's group leaves its closing tags to the item.
    EXPECT_THAT(outcome.progress, ElementsAre(4, 9, 9, 9, 9, 13, 13, 13, 18, 22, 22, 100));
}

// --- Text of every length around the size of a chunk.

namespace {

class OLMMsgMailWriterLengthTest : public TextLengthTest {};

} // namespace

TEST_P(OLMMsgMailWriterLengthTest, HtmlBodyIsWhole) {
    const StoredMessage message = writeItem(mail().element("OPFMessageCopyHTMLBody", text));

    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x10130102, size)));
    EXPECT_EQ(message.stream("__substg1.0_10130102"), hex("FF FE") + utf16(text));
}

TEST_P(OLMMsgMailWriterLengthTest, SubjectIsWholeInBothOfItsPlaces) {
    const StoredMessage message = writeItem(mail().element("OPFMessageCopySubject", text));

    if (text.empty()) {
        EXPECT_THAT(ownEntries(message), IsEmpty());
        return;
    }
    EXPECT_THAT(ownEntries(message), ElementsAre(entry(0x0037001F, size), entry(0x003D001F, 2),
                                                 entry(0x0E1D001F, size)));
    EXPECT_EQ(message.stream("__substg1.0_0037001F"), utf16(text));
    EXPECT_EQ(message.stream("__substg1.0_003D001F"), Bytes());
    EXPECT_EQ(message.stream("__substg1.0_0E1D001F"), utf16(text));
}

TEST_P(OLMMsgMailWriterLengthTest, SubjectAfterAPrefixIsWhole) {
    const StoredMessage message = writeItem(mail().element("OPFMessageCopySubject", u"AW:" + text));

    EXPECT_THAT(message, HasText(0x0037001F, u"AW:" + text));
    EXPECT_THAT(message, HasText(0x003D001F, u"AW:"));
    EXPECT_THAT(message, HasText(0x0E1D001F, text));
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgMailWriterLengthTest, testing::ValuesIn(textLengths));
