// The people of OLMMsgCalWriter: organizer and attendees.

#include "tests/unit/storage/Thrown.h"
#include "tests/unit/writers/CalMessages.h"
#include "tests/unit/writers/MailMessages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* attendeeList = "OPFCalendarEventCopyAttendeeList";
constexpr const char* organizer = "OPFCalendarEventCopyOrganizer";
constexpr const char* attendeeAddress = "OPFCalendarAttendeeAddress";
constexpr const char* attendeeName = "OPFCalendarAttendeeName";
constexpr const char* attendeeType = "OPFCalendarAttendeeType";

// An appointment with an open list whose one tag has no attribute yet.
ItemDocument oneAttendee() {
    return appointment().open(attendeeList).element("appointmentAttendee");
}

Bytes textOf(const StoredMessage& message, uint32_t recipient, const char* tag) {
    return message.stream(recipientStorage(recipient) + "/__substg1.0_" + tag);
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
    EXPECT_EQ(textOf(message, 0, "3003001F"), utf16(u"o@x"));
    EXPECT_EQ(textOf(message, 0, "3001001F"), utf16(u"o@x"));
    EXPECT_EQ(message.stream(propertyStream),
              headerBytes(1, 0) + requiredEntriesOf(u"IPM.Appointment"));
    EXPECT_THAT(outcome.progress, ElementsAre(5, 5, 100));
}

TEST(OLMMsgCalAttendeesTest, OrganizerWithoutTextIsARecipientAllTheSame) {
    const StoredMessage message =
        writeItem(appointment().element(organizer, "o@x").element(organizer));

    EXPECT_THAT(message.subEntries(recipientStorage(1)),
                ElementsAre(entry(0x30000003, 1), entry(0x0C150003, 1), entry(0x3003001F, 2),
                            entry(0x3001001F, 2), entry(0x5FFD0003, 3)));
    EXPECT_EQ(textOf(message, 1, "3003001F"), Bytes()) << "nothing of the first one";
    EXPECT_EQ(textOf(message, 1, "3001001F"), Bytes());
}

TEST(OLMMsgCalAttendeesTest, PeopleAreNumberedAsTheyStandInTheItem) {
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
        EXPECT_EQ(textOf(message, number, "3003001F"), utf16(addresses[number]));
        EXPECT_EQ(message.subEntries(recipientStorage(number)).front(), entry(0x30000003, number));
    }
    EXPECT_EQ(message.stream(propertyStream),
              headerBytes(4, 0) + requiredEntriesOf(u"IPM.Appointment"));
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
    EXPECT_EQ(textOf(message, 0, "3003001F"), utf16(u"ann@x"));
    EXPECT_EQ(textOf(message, 0, "3001001F"), utf16(u"Ann"));
}

TEST(OLMMsgCalAttendeesTest, AddressStandsInForTheName) {
    const StoredMessage missing = writeItem(oneAttendee().attribute(attendeeAddress, "ann@x"));
    const StoredMessage empty =
        writeItem(oneAttendee().attribute(attendeeAddress, "ann@x").attribute(attendeeName, ""));

    for (const StoredMessage& message : {missing, empty}) {
        EXPECT_THAT(message.subEntries(recipientStorage(0)),
                    ElementsAre(entry(0x30000003, 0), entry(0x0C150003, 1), entry(0x3003001F, 12),
                                entry(0x3001001F, 12)));
        EXPECT_EQ(textOf(message, 0, "3003001F"), utf16(u"ann@x"));
        EXPECT_EQ(textOf(message, 0, "3001001F"), utf16(u"ann@x"));
    }
}

TEST(OLMMsgCalAttendeesTest, NameAloneHasNoAddress) {
    const StoredMessage missing = writeItem(oneAttendee().attribute(attendeeName, "Ann"));
    const StoredMessage empty =
        writeItem(oneAttendee().attribute(attendeeAddress, "").attribute(attendeeName, "Ann"));

    for (const StoredMessage& message : {missing, empty}) {
        EXPECT_THAT(message.subEntries(recipientStorage(0)),
                    ElementsAre(entry(0x30000003, 0), entry(0x0C150003, 1), entry(0x3001001F, 8)));
        EXPECT_FALSE(message.has(recipientStorage(0) + "/__substg1.0_3003001F"));
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

    EXPECT_EQ(textOf(message, 0, "3001001F"), utf16(u"Ann of the mail"));
}

TEST(OLMMsgCalAttendeesTest, EmptyNameOfAMailAddressReplacesTheAttendeesToo) {
    const StoredMessage withAddress = writeItem(oneAttendee()
                                                    .attribute(attendeeName, "Ann")
                                                    .attribute(nameAttribute, "")
                                                    .attribute(attendeeAddress, "ann@x"));
    EXPECT_EQ(textOf(withAddress, 0, "3001001F"), utf16(u"ann@x"));

    const StoredMessage withoutAddress =
        writeItem(oneAttendee().attribute(attendeeName, "Ann").attribute(nameAttribute, ""));
    EXPECT_THAT(withoutAddress.subEntries(recipientStorage(0)),
                ElementsAre(entry(0x30000003, 0), entry(0x0C150003, 1)));
}

TEST(OLMMsgCalAttendeesTest, AttributesAreTakenByTheirExactNameAndTheFirstCounts) {
    const StoredMessage message = writeItem(oneAttendee()
                                                .attribute("opfcalendarattendeename", "lower")
                                                .attribute("OPFCalendarAttendeeNameX", "longer")
                                                .attribute(addressAttribute, "mail@x")
                                                .attribute(attendeeName, "first")
                                                .attribute(attendeeName, "second")
                                                .attribute(attendeeType, "1")
                                                .attribute(attendeeType, "2"));

    EXPECT_THAT(message.subEntries(recipientStorage(0)),
                ElementsAre(entry(0x30000003, 0), entry(0x0C150003, 2), entry(0x3001001F, 12)));
    EXPECT_EQ(textOf(message, 0, "3001001F"), utf16(u"first"));
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
    EXPECT_EQ(textOf(message, 0, "3001001F"), utf16(u"outer"));
    EXPECT_THAT(entriesBehindRequired(message), IsEmpty());
}

TEST(OLMMsgCalAttendeesTest, ListInsideTheListEndsItBehindOneRecipient) {
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
    EXPECT_EQ(outcome.message.stream(propertyStream), headerBytes(0, 0) +
                                                          requiredEntriesOf(u"IPM.Appointment") +
                                                          entryBytes(0x0037001F, 4));
    EXPECT_THAT(outcome.progress, ElementsAre(5, 10, 10, 100));
}

// The record of the tag read last counts once more, without its attributes.
TEST(OLMMsgCalAttendeesTest, ListThatBreaksOffHasOneMoreRecipient) {
    const StoredMessage atTheBegin = writeItem(appointment().open(attendeeList).breakOff());
    EXPECT_EQ(countStorages(atTheBegin, "__recip"), 1u);
    EXPECT_THAT(atTheBegin.subEntries(recipientStorage(0)),
                ElementsAre(entry(0x30000003, 0), entry(0x0C150003, 1)));

    const StoredMessage behindAnOpening = writeItem(appointment()
                                                        .open(attendeeList)
                                                        .open("appointmentAttendee")
                                                        .attribute(attendeeName, "Ann")
                                                        .attribute(attendeeType, "2")
                                                        .breakOff());
    EXPECT_EQ(countStorages(behindAnOpening, "__recip"), 2u);
    EXPECT_THAT(behindAnOpening.subEntries(recipientStorage(0)),
                ElementsAre(entry(0x30000003, 0), entry(0x0C150003, 3), entry(0x3001001F, 8)));
    EXPECT_THAT(behindAnOpening.subEntries(recipientStorage(1)),
                ElementsAre(entry(0x30000003, 1), entry(0x0C150003, 1)));

    const StoredMessage behindAClosing = writeItem(appointment()
                                                       .open(attendeeList)
                                                       .element("appointmentAttendee")
                                                       .attribute(attendeeName, "Ann")
                                                       .breakOff());
    EXPECT_EQ(countStorages(behindAClosing, "__recip"), 1u);
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

struct TypeCase {
    const char* name;
    const char* text;
    uint64_t type;
};

class OLMMsgCalAttendeesTypeTest : public testing::TestWithParam<TypeCase> {};

} // namespace

TEST_P(OLMMsgCalAttendeesTypeTest, TypeIsReadAsANumber) {
    const StoredMessage message = writeItem(oneAttendee().attribute(attendeeType, GetParam().text));

    EXPECT_THAT(message.subEntries(recipientStorage(0)),
                ElementsAre(entry(0x30000003, 0), entry(0x0C150003, GetParam().type)));
}

// 4294967297 is 2^32 and 1: the number is cut to 32 bits.
INSTANTIATE_TEST_SUITE_P(
    Texts, OLMMsgCalAttendeesTypeTest,
    testing::Values(TypeCase{"Zero", "0", 1}, TypeCase{"One", "1", 2}, TypeCase{"Two", "2", 3},
                    TypeCase{"Three", "3", 1}, TypeCase{"Exponent", "2E0", 3},
                    TypeCase{"Negative", "-1", 1}, TypeCase{"Wide", "4294967297", 2},
                    TypeCase{"NoNumber", "required", 1}, TypeCase{"Empty", "", 1}),
    [](const auto& row) { return row.param.name; });

// --- Text of every length around the size of a chunk.

namespace {

class OLMMsgCalAttendeesLengthTest : public testing::TestWithParam<size_t> {};

} // namespace

TEST_P(OLMMsgCalAttendeesLengthTest, TextsOfPeopleAreWhole) {
    const std::u16string text = patternText(GetParam());
    const std::u16string name = text + u"n";

    const StoredMessage message = writeItem(oneAttendee()
                                                .attribute(attendeeAddress, text)
                                                .attribute(attendeeName, name)
                                                .close()
                                                .element(organizer, text));

    EXPECT_EQ(textOf(message, 0, "3001001F"), utf16(name));
    if (!text.empty()) {
        EXPECT_EQ(textOf(message, 0, "3003001F"), utf16(text));
    }
    EXPECT_EQ(textOf(message, 1, "3003001F"), utf16(text));
    EXPECT_EQ(textOf(message, 1, "3001001F"), utf16(text));
}

INSTANTIATE_TEST_SUITE_P(Units, OLMMsgCalAttendeesLengthTest,
                         testing::Values(0, 1, 1023, 1024, 1025, 3000));

// --- Failures of the host.

TEST(OLMMsgCalAttendeesTest, RecipientWithoutAStorageEndsTheItem) {
    const ItemDocument items[] = {
        appointment().element(organizer, "o@x"),
        oneAttendee().attribute(attendeeAddress, "ann@x"),
    };
    for (const ItemDocument& item : items) {
        ItemRun run;
        // The storage of named properties is the first.
        run.prepare = [](FakeHost& host) { host.failCall(CallKind::CreateStorage, 1, 7); };

        const Outcome outcome = extractItem(item, run);

        EXPECT_EQ(outcome.result, VwSpecialFailed);
        EXPECT_EQ(outcome.openHandles, 0);
    }
}

TEST_F(OLMMsgCalAttendeesObjectTest, CodeOfAMissingStorageIsTheHosts) {
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

TEST_F(OLMMsgCalAttendeesObjectTest, EntryOfARecipientThatCannotBeWrittenIsMissing) {
    begin(appointment().element(organizer, "o@x"));
    // Each of the two strings is a stream; the property stream is the first.
    host.failCall(CallKind::CreateStream, 1);

    EXPECT_EQ(run().back(), 100);

    EXPECT_THAT(message().subEntries(recipientStorage(0)),
                ElementsAre(entry(0x30000003, 0), entry(0x0C150003, 1), entry(0x3001001F, 8),
                            entry(0x5FFD0003, 3)));
    EXPECT_EQ(writer->recipientCount, 1);
    EXPECT_EQ(host.openHandles(), openBefore);
}
