// Tests of OLMMsgCalWriter's organizer and attendees.

#include <limits>

#include "tests/unit/writers/CalMessages.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* attendeeList = "OPFCalendarEventCopyAttendeeList";
constexpr const char* organizer = "OPFCalendarEventCopyOrganizer";
constexpr const char* attendeeAddress = "OPFCalendarAttendeeAddress";
constexpr const char* attendeeName = "OPFCalendarAttendeeName";
constexpr const char* attendeeType = "OPFCalendarAttendeeType";

// Returns an appointment with an open list whose only tag has no attributes yet.
ItemDocument oneAttendee() {
    return appointment().open(attendeeList).element("appointmentAttendee");
}

class OLMMsgCalAttendeesObjectTest : public CalWriterTest {};

} // namespace

// --- The organizer.

TEST(OLMMsgCalAttendeesTest, OrganizerIsARecipientOfFiveEntries) {
    const Outcome outcome = extractItem(appointment().element(organizer, "o@x"));
    const StoredMessage& message = outcome.message;
    const std::string storage = recipientStorage(0);

    EXPECT_EQ(message.stream(storage + "/__properties_version1.0"),
              Bytes(8) + hex("03 00 00 30  06 00 00 00  00 00 00 00 00 00 00 00"
                             "03 00 15 0C  06 00 00 00  01 00 00 00 00 00 00 00"
                             "1F 00 03 30  06 00 00 00  08 00 00 00 00 00 00 00"
                             "1F 00 01 30  06 00 00 00  08 00 00 00 00 00 00 00"
                             "03 00 FD 5F  06 00 00 00  03 00 00 00 00 00 00 00"));
    EXPECT_THAT(
        message.names(storage),
        ElementsAre("__properties_version1.0", "__substg1.0_3003001F", "__substg1.0_3001001F"));
    EXPECT_EQ(message.stream(recipientValue(0, 0x3003001F)), utf16(u"o@x"));
    EXPECT_EQ(message.stream(recipientValue(0, 0x3001001F)), utf16(u"o@x"));
    EXPECT_EQ(message.stream(propertyStream), streamBegin(appointmentKind, 1));
    EXPECT_THAT(outcome.progress, ElementsAre(5, 5, 100));
}

TEST(OLMMsgCalAttendeesTest, OrganizerWithoutTextIsARecipientToo) {
    const StoredMessage message =
        writeItem(appointment().element(organizer, "o@x").element(organizer));

    // Nothing is left of the first one.
    expectRecipient(message, 1, {.address = u"", .name = u"", .further = {entry(0x5FFD0003, 3)}});
}

TEST(OLMMsgCalAttendeesTest, RecipientsAreNumberedInTheOrderOfTheItem) {
    const StoredMessage message = writeItem(appointment()
                                                .open(attendeeList)
                                                .element("appointmentAttendee")
                                                .attribute(attendeeAddress, "a@x")
                                                .element("appointmentAttendee")
                                                .attribute(attendeeAddress, "b@x")
                                                .close()
                                                .element(organizer, "o@x")
                                                .open(attendeeList)
                                                .element("appointmentAttendee")
                                                .attribute(attendeeAddress, "c@x")
                                                .close());

    EXPECT_EQ(countStorages(message, "__recip"), 4u);
    const char16_t* const addresses[] = {u"a@x", u"b@x", u"o@x", u"c@x"};
    for (uint32_t number = 0; number < 4; ++number) {
        EXPECT_EQ(message.stream(recipientValue(number, 0x3003001F)), utf16(addresses[number]));
        EXPECT_EQ(message.subEntries(recipientStorage(number)).front(), entry(0x30000003, number));
    }
    EXPECT_EQ(message.stream(propertyStream), streamBegin(appointmentKind, 4));
}

// --- Attendees.

TEST(OLMMsgCalAttendeesTest, AttendeeHasNumberTypeAddressAndName) {
    const StoredMessage message = writeItem(oneAttendee()
                                                .attribute(attendeeName, "Ann")
                                                .attribute("OPFCalendarAttendeeStatus", "3")
                                                .attribute(attendeeType, "2")
                                                .attribute(attendeeAddress, "ann@x"));
    const std::string storage = recipientStorage(0);

    EXPECT_EQ(message.stream(storage + "/__properties_version1.0"),
              Bytes(8) + hex("03 00 00 30  06 00 00 00  00 00 00 00 00 00 00 00"
                             "03 00 15 0C  06 00 00 00  03 00 00 00 00 00 00 00"
                             "1F 00 03 30  06 00 00 00  0C 00 00 00 00 00 00 00"
                             "1F 00 01 30  06 00 00 00  08 00 00 00 00 00 00 00"));
    EXPECT_EQ(message.stream(recipientValue(0, 0x3003001F)), utf16(u"ann@x"));
    EXPECT_EQ(message.stream(recipientValue(0, 0x3001001F)), utf16(u"Ann"));
}

TEST(OLMMsgCalAttendeesTest, AddressReplacesAMissingName) {
    const StoredMessage missing = writeItem(oneAttendee().attribute(attendeeAddress, "ann@x"));
    const StoredMessage empty =
        writeItem(oneAttendee().attribute(attendeeAddress, "ann@x").attribute(attendeeName, ""));

    for (const StoredMessage& message : {missing, empty}) {
        expectRecipient(message, 0, {.address = u"ann@x", .name = u"ann@x"});
    }
}

TEST(OLMMsgCalAttendeesTest, NameAloneHasNoAddress) {
    const StoredMessage missing = writeItem(oneAttendee().attribute(attendeeName, "Ann"));
    const StoredMessage empty =
        writeItem(oneAttendee().attribute(attendeeAddress, "").attribute(attendeeName, "Ann"));

    for (const StoredMessage& message : {missing, empty}) {
        expectRecipient(message, 0, {.name = u"Ann"});
    }
}

TEST(OLMMsgCalAttendeesTest, TagWithoutAttributesIsARecipientOfNumberAndType) {
    const StoredMessage message = writeItem(oneAttendee());

    EXPECT_EQ(message.stream(recipientStorage(0) + "/__properties_version1.0"),
              Bytes(8) + hex("03 00 00 30  06 00 00 00  00 00 00 00 00 00 00 00"
                             "03 00 15 0C  06 00 00 00  01 00 00 00 00 00 00 00"));
}

TEST(OLMMsgCalAttendeesTest, NameOfAMailAddressReplacesTheAttendees) {
    const StoredMessage message = writeItem(oneAttendee()
                                                .attribute(nameAttribute, "Ann of the mail")
                                                .attribute(attendeeName, "Ann")
                                                .attribute(attendeeAddress, "ann@x"));

    EXPECT_EQ(message.stream(recipientValue(0, 0x3001001F)), utf16(u"Ann of the mail"));
}

TEST(OLMMsgCalAttendeesTest, EmptyNameOfAMailAddressReplacesTheAttendeesToo) {
    const StoredMessage withAddress = writeItem(oneAttendee()
                                                    .attribute(attendeeName, "Ann")
                                                    .attribute(nameAttribute, "")
                                                    .attribute(attendeeAddress, "ann@x"));
    EXPECT_EQ(withAddress.stream(recipientValue(0, 0x3001001F)), utf16(u"ann@x"));

    const StoredMessage withoutAddress =
        writeItem(oneAttendee().attribute(attendeeName, "Ann").attribute(nameAttribute, ""));
    expectRecipient(withoutAddress, 0, {});
}

TEST(OLMMsgCalAttendeesTest, AttributeNamesAreExactAndTheFirstOfTwoIsUsed) {
    const StoredMessage message = writeItem(oneAttendee()
                                                .attribute("opfcalendarattendeename", "lower")
                                                .attribute("OPFCalendarAttendeeNameX", "longer")
                                                .attribute(addressAttribute, "mail@x")
                                                .attribute(attendeeName, "first")
                                                .attribute(attendeeName, "second")
                                                .attribute(attendeeType, "1")
                                                .attribute(attendeeType, "2"));

    expectRecipient(message, 0, {.type = 2, .name = u"first"});
}

TEST(OLMMsgCalAttendeesTest, EveryOpeningTagOfTheListIsARecipient) {
    const StoredMessage message = writeItem(appointment()
                                                .open(attendeeList)
                                                .open("stranger")
                                                .attribute(attendeeName, "outer")
                                                .element("OPFCalendarEventCopySummary", "unread")
                                                .close()
                                                .close());

    EXPECT_EQ(countStorages(message, "__recip"), 2u);
    EXPECT_EQ(message.stream(recipientValue(0, 0x3001001F)), utf16(u"outer"));
    EXPECT_THAT(ownEntries(message), IsEmpty());
}

TEST(OLMMsgCalAttendeesTest, ListInsideTheListEndsItAfterOneRecipient) {
    const Outcome outcome = extractItem(appointment()
                                            .open(attendeeList)
                                            .open(attendeeList)
                                            .attribute(attendeeName, "inner")
                                            .close()
                                            .element("stranger")
                                            .close());

    EXPECT_EQ(countStorages(outcome.message, "__recip"), 1u);
    EXPECT_THAT(outcome.progress, ElementsAre(5, 5, 5, 5, 5, 100));
}

TEST(OLMMsgCalAttendeesTest, EmptyListHasNoRecipient) {
    const Outcome outcome = extractItem(
        appointment().element(attendeeList).element("OPFCalendarEventCopySummary", "s"));

    EXPECT_EQ(countStorages(outcome.message, "__recip"), 0u);
    EXPECT_EQ(outcome.message.stream(propertyStream),
              streamBegin(appointmentKind) + entryBytes(0x0037001F, 4));
    EXPECT_THAT(outcome.progress, ElementsAre(5, 10, 10, 100));
}

// The tag read last counts once more, without its attributes.
TEST(OLMMsgCalAttendeesTest, BrokenListHasOneMoreRecipient) {
    const StoredMessage atTheStart = writeItem(appointment().open(attendeeList).breakOff());
    EXPECT_EQ(countStorages(atTheStart, "__recip"), 1u);
    expectRecipient(atTheStart, 0, {});

    const StoredMessage afterAnOpeningTag = writeItem(appointment()
                                                          .open(attendeeList)
                                                          .open("appointmentAttendee")
                                                          .attribute(attendeeName, "Ann")
                                                          .attribute(attendeeType, "2")
                                                          .breakOff());
    EXPECT_EQ(countStorages(afterAnOpeningTag, "__recip"), 2u);
    expectRecipient(afterAnOpeningTag, 0, {.type = 3, .name = u"Ann"});
    expectRecipient(afterAnOpeningTag, 1, {});

    const StoredMessage afterAClosingTag =
        writeItem(oneAttendee().attribute(attendeeName, "Ann").breakOff());
    EXPECT_EQ(countStorages(afterAClosingTag, "__recip"), 1u);
}

// --- Types.

TEST(OLMMsgCalAttendeesTest, AttendeeNumbersAreMapped) {
    EXPECT_EQ(mapAttendeeVal(1), 2);
    EXPECT_EQ(mapAttendeeVal(2), 3);
    for (const int other :
         {0, 3, 4, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_EQ(mapAttendeeVal(other), 1);
    }
}

namespace {

class OLMMsgCalAttendeesTypeTest : public NumberTest {};

} // namespace

TEST_P(OLMMsgCalAttendeesTypeTest, TypeIsReadAsANumber) {
    const StoredMessage message = writeItem(oneAttendee().attribute(attendeeType, GetParam().text));

    expectRecipient(message, 0, {.type = GetParam().value});
}

// 4294967297 is 2^32 + 1: the number is truncated to 32 bits.
INSTANTIATE_TEST_SUITE_P(Texts, OLMMsgCalAttendeesTypeTest,
                         testing::Values(NumberCase{"Zero", "0", 1}, NumberCase{"One", "1", 2},
                                         NumberCase{"Two", "2", 3}, NumberCase{"Three", "3", 1},
                                         NumberCase{"Exponent", "2E0", 3},
                                         NumberCase{"Negative", "-1", 1},
                                         NumberCase{"Wide", "4294967297", 2},
                                         NumberCase{"NoNumber", "required", 1},
                                         NumberCase{"Empty", "", 1}),
                         rowName);

// --- Text of every length around the size of a chunk.

namespace {

class OLMMsgCalAttendeesLengthTest : public TextLengthTest {};

} // namespace

TEST_P(OLMMsgCalAttendeesLengthTest, TextsOfRecipientsAreWhole) {
    const std::u16string name = text + u"n";

    const StoredMessage message = writeItem(oneAttendee()
                                                .attribute(attendeeAddress, text)
                                                .attribute(attendeeName, name)
                                                .close()
                                                .element(organizer, text));

    EXPECT_EQ(message.stream(recipientValue(0, 0x3001001F)), utf16(name));
    if (!text.empty()) {
        EXPECT_EQ(message.stream(recipientValue(0, 0x3003001F)), utf16(text));
    }
    EXPECT_EQ(message.stream(recipientValue(1, 0x3003001F)), utf16(text));
    EXPECT_EQ(message.stream(recipientValue(1, 0x3001001F)), utf16(text));
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgCalAttendeesLengthTest, testing::ValuesIn(textLengths));

// --- Failures of the host.

TEST(OLMMsgCalAttendeesTest, RecipientWithoutAStorageFailsTheRequest) {
    const ItemDocument items[] = {
        appointment().element(organizer, "o@x"),
        oneAttendee().attribute(attendeeAddress, "ann@x"),
    };
    for (const ItemDocument& item : items) {
        ItemRun run;
        // The storage of named properties comes first.
        run.prepare = [](FakeHost& host) { host.failCall(CallKind::CreateStorage, 1, 7); };

        const Outcome outcome = extractItem(item, run);

        expectFailedRequest(outcome);
    }
}

TEST_F(OLMMsgCalAttendeesObjectTest, MissingStorageThrowsTheHostsStatus) {
    begin(oneAttendee().attribute(attendeeAddress, "ann@x"));
    host.failCall(CallKind::CreateStorage, 0, 7);

    EXPECT_EQ(thrownCode([&] { run(); }), 7u);
    EXPECT_EQ(writer->recipientCount, 0);
    EXPECT_EQ(writer->handledProps, 0u);
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgCalAttendeesObjectTest, OrganizersMissingStorageThrowsToo) {
    begin(appointment().element(organizer, "o@x"));
    host.failCall(CallKind::CreateStorage, 0, 7);

    EXPECT_EQ(thrownCode([&] { run(); }), 7u);
    EXPECT_EQ(writer->recipientCount, 0);
    EXPECT_EQ(host.openHandles(), openBefore);
}

TEST_F(OLMMsgCalAttendeesObjectTest, RecipientStringWithoutAStreamIsMissing) {
    begin(appointment().element(organizer, "o@x"));
    // The property stream is the first stream; the address and the name follow.
    host.failCall(CallKind::CreateStream, 1);

    EXPECT_EQ(run().back(), 100);

    expectRecipient(message(), 0, {.name = u"o@x", .further = {entry(0x5FFD0003, 3)}});
    EXPECT_EQ(writer->recipientCount, 1);
    EXPECT_EQ(host.openHandles(), openBefore);
}
