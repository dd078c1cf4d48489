// One good message, and for each rule of its format a message with one thing changed.

#include <functional>

#include <gtest/gtest.h>

#include "tests/host/check/CheckedFiles.h"
#include "tests/host/message/MessageBuilder.h"

namespace olmhost::test {

namespace {

using enum FindingCode;

const std::u16string propertyStreamName = u"__properties_version1.0";
const std::u16string nameStorage = u"__nameid_version1.0";
const std::u16string recipient0 = u"__recip_version1.0_#00000000";
const std::u16string recipient1 = u"__recip_version1.0_#00000001";
const std::u16string attachment0 = u"__attach_version1.0_#00000000";
const std::u16string attachment1 = u"__attach_version1.0_#00000001";
const std::u16string objectStorage = u"__substg1.0_3701000D";

// The header of a message's property stream, without the end that the top level alone has.
Bytes headerOfMessage(std::uint32_t recipients, std::uint32_t attachments) {
    return number(0, 8) + number(recipients, 4) + number(attachments, 4) + number(recipients, 4) +
           number(attachments, 4);
}

// Puts the entries of a part, with their header before them, into its property stream.
Part sealed(Part part, const Bytes& header) {
    part.hasProperties = false;
    part.streams[propertyStreamName] = header + part.entries;
    return part;
}

Part& addText(Part& part, std::uint32_t tag, std::u16string_view text) {
    part.streams[streamName(tag)] = utf16(text);
    return part.add(tag, 2 * text.size() + 2);
}

Part recipient() {
    Part part;
    part.add(0x30000003, std::uint64_t{0});
    addText(part, 0x3001001F, u"Ann");
    return sealed(part, number(0, 8));
}

// Ids 0x8000 to 0x8002: number 0x8205 and text "Tide2" of one set, and "Keywords".
Part names() {
    Part part;
    part.hasProperties = false;
    part.streams[streamName(0x00020102)] = hex("02200600 0000 0000 C000 000000000046");
    part.streams[streamName(0x00030102)] =
        hex("05820000 0600 0000  00000000 0700 0100  10000000 0500 0200");
    part.streams[streamName(0x00040102)] =
        number(10, 4) + utf16(u"Tide2") + number(0, 2) + number(16, 4) + utf16(u"Keywords");
    // Buckets 20, 22 and 21.
    part.streams[streamName(0x10140102)] = hex("05820000 0600 0000");
    part.streams[streamName(0x10160102)] = hex("AE83B60D 0700 0100");
    part.streams[streamName(0x10150102)] = hex("3B4DDA2E 0500 0200");
    return part;
}

Part byValue() {
    Part part;
    part.add(0x37050003, std::uint64_t{1});
    part.add(0x37010102, hex("01 02 03"));
    return sealed(part, number(0, 8));
}

Part embedded() {
    Part inner;
    addText(inner, 0x001A001F, u"IPM.Note");
    inner.storages[recipient0] = recipient();
    Part part;
    part.storages[objectStorage] = sealed(inner, headerOfMessage(1, 0));
    part.add(0x37050003, std::uint64_t{5});
    part.add(0x3701000D, 0x1FFFFFFFF);
    return sealed(part, number(0, 8));
}

// The top level, before its property stream is made.
Part goodTop() {
    Part part;
    addText(part, 0x001A001F, u"IPM.Note");
    part.add(0x340D0003, std::uint64_t{0x40E79});
    part.add(0x0E1F000B, std::uint64_t{1});
    part.add(0x10090102, hex("AA BB CC"));
    part.add(0x66700048, hex("00112233445566778899AABBCCDDEEFF"));
    part.add(0x66711003, hex("01000000 02000000 03000000"));
    part.add(0x80000003, std::uint64_t{7});
    addText(part, 0x8001001F, u"Neap");
    // Two texts and two binary values.
    part.add(0x8002101F, number(4, 4) + number(6, 4));
    part.streams[streamName(0x8002101F) + u"-00000000"] = utf16(u"a") + number(0, 2);
    part.streams[streamName(0x8002101F) + u"-00000001"] = utf16(u"bc") + number(0, 2);
    part.add(0x66721102, number(2, 8) + number(0, 8));
    part.streams[streamName(0x66721102) + u"-00000000"] = hex("01 02");
    part.streams[streamName(0x66721102) + u"-00000001"] = {};
    part.storages[nameStorage] = names();
    part.storages[recipient0] = recipient();
    part.storages[recipient1] = recipient();
    part.storages[attachment0] = byValue();
    part.storages[attachment1] = embedded();
    return part;
}

Part sealedTop(const Part& top) {
    return sealed(top, headerOfMessage(2, 2) + number(0, 8));
}

Part goodMessage() {
    return sealedTop(goodTop());
}

// The file of a message, with the class id that messages have.
Bytes messageFile(const Part& message) {
    Bytes file = fileOf(message);
    const std::size_t root = 512 * (std::size_t{numberAt(file, 48)} + 1);
    put(file, root + 80, 0x00020D0B, 8);
    put(file, root + 88, 0x46000000000000C0, 8);
    return file;
}

Part& at(Part& message, const std::u16string& storage) {
    return message.storages.at(storage);
}

struct MessageFault {
    const char* name;
    std::function<void(Part&)> change; // of the good message
    FindingCode code;
    const char* place;
};

// The same, of the top level before its property stream is made.
struct PropertyFault {
    const char* name;
    std::function<void(Part&)> change;
    FindingCode code;
    const char* place = "/__properties_version1.0";
};

// Changes some bytes of a stream.
std::function<void(Part&)> patch(const std::u16string& storage, const std::u16string& stream,
                                 std::size_t offset, std::uint64_t value, std::size_t width) {
    return [=](Part& message) {
        Part& part = storage.empty() ? message : at(message, storage);
        put(part.streams.at(stream), offset, value, width);
    };
}

std::function<void(Part&)> patchTop(std::size_t offset, std::uint64_t value, std::size_t width) {
    return patch(u"", propertyStreamName, offset, value, width);
}

std::function<void(Part&)> patchName(std::uint32_t tag, std::size_t offset, std::uint64_t value,
                                     std::size_t width) {
    return patch(nameStorage, streamName(tag), offset, value, width);
}

Part& innerMessage(Part& message) {
    return at(at(message, attachment1), objectStorage);
}

// clang-format off
const MessageFault storageFaults[] = {
    {"UnknownStream", [](Part& m) { m.streams[u"diary"] = {}; }, ChildName, "/diary"},
    {"UnknownStorage", [](Part& m) { m.storages[u"__substg1.0_"] = names(); }, ChildName,
     "/__substg1.0_"},
    {"NumberTooShort", [](Part& m) { m.streams[u"__substg1.0_0037001"] = {}; }, ChildName,
     "/__substg1.0_0037001"},
    {"NumberTooLong", [](Part& m) { m.streams[u"__substg1.0_0037001F0"] = {}; }, ChildName,
     "/__substg1.0_0037001F0"},
    {"IndexTooShort", [](Part& m) { m.streams[u"__substg1.0_8002101F-0000000"] = {}; }, ChildName,
     "/__substg1.0_8002101F-0000000"},
    {"SmallDigits",
     [](Part& m) {
         m.streams[u"__substg1.0_001a001f"] = m.streams.at(streamName(0x001A001F));
         m.streams.erase(streamName(0x001A001F));
     },
     ChildNameCase, "/__substg1.0_001a001f"},
    {"ValueIsAStorage",
     [](Part& m) {
         m.streams.erase(streamName(0x10090102));
         m.storages[streamName(0x10090102)] = names();
     },
     ChildKind, "/__substg1.0_10090102"},
    {"RecipientIsAStream", [](Part& m) { m.streams[u"__recip_version1.0_#00000002"] = {}; },
     ChildKind, "/__recip_version1.0_#00000002"},
    {"NamesAreAStream",
     [](Part& m) {
         m.storages.erase(nameStorage);
         m.streams[nameStorage] = {};
     },
     ChildKind, "/__nameid_version1.0"},
    {"RecipientInARecipient", [](Part& m) { at(m, recipient0).storages[recipient1] = recipient(); },
     ChildName, "/__recip_version1.0_#00000000/__recip_version1.0_#00000001"},
    {"NoPropertyStream", [](Part& m) { m.streams.erase(propertyStreamName); }, PropertyStreamMissing,
     "/"},
    {"RecipientWithoutPropertyStream",
     [](Part& m) { at(m, recipient1).streams.erase(propertyStreamName); }, PropertyStreamMissing,
     "/__recip_version1.0_#00000001"},
    {"AttachmentWithoutPropertyStream",
     [](Part& m) { at(m, attachment0).streams.erase(propertyStreamName); }, PropertyStreamMissing,
     "/__attach_version1.0_#00000000"},
    {"EmbeddedWithoutPropertyStream",
     [](Part& m) { innerMessage(m).streams.erase(propertyStreamName); }, PropertyStreamMissing,
     "/__attach_version1.0_#00000001/__substg1.0_3701000D"},
    {"PropertyStreamShorterThanItsHeader", [](Part& m) { m.streams[propertyStreamName].resize(31); },
     PropertyStreamSize, "/__properties_version1.0"},
    {"PropertyStreamOfOddSize", [](Part& m) { m.streams[propertyStreamName].resize(32 + 15); },
     PropertyStreamSize, "/__properties_version1.0"},
    {"HeaderOfTheTopLevelInAnEmbeddedMessage",
     [](Part& m) {
         Bytes& stream = innerMessage(m).streams[propertyStreamName];
         stream.insert(stream.begin() + 24, 8, std::byte{0});
     },
     PropertyStreamSize,
     "/__attach_version1.0_#00000001/__substg1.0_3701000D/__properties_version1.0"},
    {"HeaderOfAMessageInARecipient",
     [](Part& m) {
         Bytes& stream = at(m, recipient0).streams[propertyStreamName];
         stream.insert(stream.begin(), 24, std::byte{0});
     },
     PropertyStreamSize, "/__recip_version1.0_#00000000/__properties_version1.0"},
    {"ReservedBytesAhead", patchTop(7, 1, 1), PropertyStreamReserved, "/__properties_version1.0"},
    {"ReservedBytesAfter", patchTop(24, 1, 1), PropertyStreamReserved, "/__properties_version1.0"},
    {"ReservedBytesOfARecipient", patch(recipient0, propertyStreamName, 0, 1, 1),
     PropertyStreamReserved, "/__recip_version1.0_#00000000/__properties_version1.0"},
    {"RecipientNextId", patchTop(8, 1, 4), RecipientNextId, "/__properties_version1.0"},
    {"AttachmentNextId", patchTop(12, 0, 4), AttachmentNextId, "/__properties_version1.0"},
    {"RecipientCount", patchTop(16, 3, 4), RecipientCount, "/__properties_version1.0"},
    {"AttachmentCount", patchTop(20, 1, 4), AttachmentCount, "/__properties_version1.0"},
    {"RecipientCountOfAnEmbeddedMessage",
     [](Part& m) { put(innerMessage(m).streams.at(propertyStreamName), 16, 0, 4); }, RecipientCount,
     "/__attach_version1.0_#00000001/__substg1.0_3701000D/__properties_version1.0"},
    {"RecipientMissing", [](Part& m) { m.storages.erase(recipient0); }, RecipientCount,
     "/__properties_version1.0"},
    {"GapInTheRecipients", [](Part& m) { m.storages.erase(recipient0); }, PartNumber, "/"},
    {"NamesInAnEmbeddedMessage", [](Part& m) { innerMessage(m).storages[nameStorage] = names(); },
     NamesEmbedded, "/__attach_version1.0_#00000001/__substg1.0_3701000D/__nameid_version1.0"},
    {"AttachmentWithoutData",
     [](Part& m) {
         Part part;
         part.add(0x37050003, std::uint64_t{1});
         m.storages[attachment0] = sealed(part, number(0, 8));
     },
     AttachmentData, "/__attach_version1.0_#00000000"},
    {"EmbeddedMessageWithoutStorage", patch(attachment0, propertyStreamName, 16, 5, 4), AttachmentData,
     "/__attach_version1.0_#00000000"},
    {"ObjectInAStream",
     [](Part& m) {
         at(m, attachment1).storages.erase(objectStorage);
         at(m, attachment1).streams[objectStorage] = {};
     },
     ChildKind, "/__attach_version1.0_#00000001/__substg1.0_3701000D"},
    {"ObjectWithASize", patch(attachment1, propertyStreamName, 32, 8, 4), ObjectSize,
     "/__attach_version1.0_#00000001/__properties_version1.0"},
};

const PropertyFault propertyFaults[] = {
    {"UnknownType", [](Part& m) { m.add(0x66800099, std::uint64_t{0}); }, PropertyType},
    {"ListOfATypeWithoutLists", [](Part& m) { m.add(0x6680100B, std::uint64_t{0}); }, PropertyType},
    {"PropertyTwice", [](Part& m) { m.add(0x0E1F000B, std::uint64_t{1}); }, PropertyTwice},
    {"IdWithTwoTypes", [](Part& m) { m.add(0x0E1F0003, std::uint64_t{1}); }, PropertyIdTwice},
    {"UnknownFlags", [](Part& m) { put(m.entries, 16 + 4, 14, 4); }, PropertyFlags},
    {"BytesAfterAShortValue", [](Part& m) { put(m.entries, 16 + 12, 1, 1); }, ValueUnusedBytes},
    {"BooleanTwo", [](Part& m) { put(m.entries, 32 + 8, 2, 1); }, ValueBoolean},
    {"TextWithoutStream", [](Part& m) { m.streams.erase(streamName(0x001A001F)); }, ValueMissing},
    {"ListWithoutLengths", [](Part& m) { m.streams.erase(streamName(0x8002101F)); }, ValueMissing},
    {"TextSizeWithoutTerminator", [](Part& m) { put(m.entries, 8, 16, 4); }, ValueSize},
    {"BinarySize", [](Part& m) { put(m.entries, 48 + 8, 5, 4); }, ValueSize},
    {"TextLongerThanItsEntry",
     [](Part& m) { m.streams[streamName(0x001A001F)] = utf16(u"IPM.Task1"); }, ValueSize},
    {"ListSizeOfEntry", [](Part& m) { put(m.entries, 80 + 8, 8, 4); }, ValueSize},
    {"ObjectAtTheTop", [](Part& m) { m.add(0x6680000D, 0xFFFFFFFF); }, ValueMissing},
    {"ValueWithoutProperty", [](Part& m) { m.streams[streamName(0x66810102)] = {}; }, ValueStray,
     "/__substg1.0_66810102"},
    {"ValueWithoutPropertyAtTheEnd", [](Part& m) { m.streams[streamName(0xFFF00102)] = {}; },
     ValueStray, "/__substg1.0_FFF00102"},
    {"ListValueOfASingleProperty",
     [](Part& m) { m.streams[streamName(0x10090102) + u"-00000000"] = {}; }, ValueStray,
     "/__substg1.0_10090102-00000000"},
    {"StreamOfAFixedType", [](Part& m) { m.streams[streamName(0x340D0003)] = {}; },
     ValueOfFixedType},
    {"HalfACharacter",
     [](Part& m) {
         m.streams[streamName(0x001A001F)].resize(15);
         put(m.entries, 8, 17, 4);
     },
     TextSize},
    {"NarrowText", [](Part& m) { m.add(0x0037001E, hex("41")); }, TextKind},
    {"UnicodeThatTheMessageDoesNotState", [](Part& m) { put(m.entries, 16 + 8, 0xE79, 4); },
     TextKind},
    {"UnicodeInARecipientThatTheMessageDoesNotState",
     [](Part& m) { put(m.entries, 16 + 8, 0xE79, 4); }, TextKind,
     "/__recip_version1.0_#00000000/__properties_version1.0"},
    {"GuidTooShort",
     [](Part& m) {
         m.streams[streamName(0x66700048)].resize(15);
         put(m.entries, 64 + 8, 15, 4);
     },
     GuidSize},
    {"ListOfHalfANumber",
     [](Part& m) {
         m.streams[streamName(0x66711003)].resize(10);
         put(m.entries, 80 + 8, 10, 4);
     },
     ListSize},
    {"LengthStreamOfOddSize",
     [](Part& m) {
         m.streams[streamName(0x8002101F)].resize(10, std::byte{0});
         put(m.entries, 128 + 8, 10, 4);
     },
     ListSize},
    {"ListValueMissing", [](Part& m) { m.streams.erase(streamName(0x8002101F) + u"-00000000"); },
     ListValueMissing},
    {"ListTextOfAnotherSize",
     [](Part& m) { put(m.streams.at(streamName(0x8002101F)), 4, 4, 4); }, ListValueSize},
    {"ListBinaryOfAnotherSize",
     [](Part& m) { put(m.streams.at(streamName(0x66721102)), 8, 1, 4); }, ListValueSize},
    {"ListValueTooMany",
     [](Part& m) { m.streams[streamName(0x66721102) + u"-00000002"] = {}; }, ListValueStray,
     "/__substg1.0_66721102-00000002"},
    {"ListTextNotTerminated",
     [](Part& m) { put(m.streams.at(streamName(0x8002101F) + u"-00000000"), 2, 'x', 2); },
     ListTextEnd},
    {"NamedPropertyWithoutName", [](Part& m) { m.add(0x80030003, std::uint64_t{0}); },
     NamedIdUnknown},
    {"NamedPropertyOfTheLastId", [](Part& m) { m.add(0xFFFF0003, std::uint64_t{0}); },
     NamedIdUnknown},
};

const MessageFault nameFaults[] = {
    {"NoNames", [](Part& m) { m.storages.erase(nameStorage); }, NamesMissing, "/"},
    {"NoGuidStream", [](Part& m) { at(m, nameStorage).streams.erase(streamName(0x00020102)); },
     NamesStreamMissing, "/__nameid_version1.0"},
    {"NoEntryStream", [](Part& m) { at(m, nameStorage).streams.erase(streamName(0x00030102)); },
     NamesStreamMissing, "/__nameid_version1.0"},
    {"NoTextStream", [](Part& m) { at(m, nameStorage).streams.erase(streamName(0x00040102)); },
     NamesStreamMissing, "/__nameid_version1.0"},
    {"StreamOfAnotherTag", [](Part& m) { at(m, nameStorage).streams[streamName(0x101F0102)] = {}; },
     ChildName, "/__nameid_version1.0/__substg1.0_101F0102"},
    {"BucketOfAnotherType",
     [](Part& m) { at(m, nameStorage).streams[streamName(0x1000001F)] = {}; }, ChildName,
     "/__nameid_version1.0/__substg1.0_1000001F"},
    {"StreamOfAnotherName", [](Part& m) { at(m, nameStorage).streams[propertyStreamName] = {}; },
     ChildName, "/__nameid_version1.0/__properties_version1.0"},
    {"GuidStreamOfOddSize",
     [](Part& m) { at(m, nameStorage).streams[streamName(0x00020102)].resize(17); }, NamesGuidSize,
     "/__nameid_version1.0/__substg1.0_00020102"},
    {"GuidTwice",
     [](Part& m) {
         Bytes& guids = at(m, nameStorage).streams[streamName(0x00020102)];
         guids = guids + guids;
     },
     NamesGuidTwice, "/__nameid_version1.0/__substg1.0_00020102"},
    {"GuidThatIsNeverListed", patchName(0x00020102, 0, 0x00020329, 4), NamesGuidTwice,
     "/__nameid_version1.0/__substg1.0_00020102"},
    {"EntryStreamOfOddSize",
     [](Part& m) { at(m, nameStorage).streams[streamName(0x00030102)].resize(25); }, NamesEntrySize,
     "/__nameid_version1.0/__substg1.0_00030102"},
    {"MoreNamesThanIds",
     [](Part& m) {
         at(m, nameStorage).streams[streamName(0x00030102)].resize(std::size_t{0x8000} * 8);
     },
     NamesEntrySize, "/__nameid_version1.0/__substg1.0_00030102"},
    {"IndexOfAnotherName", patchName(0x00030102, 6, 2, 2), NamesEntryIndex,
     "/__nameid_version1.0/__substg1.0_00030102"},
    {"SetZero", patchName(0x00030102, 4, 0, 2), NamesEntryGuid,
     "/__nameid_version1.0/__substg1.0_00030102"},
    {"SetThatIsNotListed", patchName(0x00030102, 4, 8, 2), NamesEntryGuid,
     "/__nameid_version1.0/__substg1.0_00030102"},
    {"TextAtAnOddOffset", patchName(0x00030102, 16, 17, 4), NamesEntryText,
     "/__nameid_version1.0/__substg1.0_00030102"},
    {"TextAfterTheEnd", patchName(0x00030102, 16, 36, 4), NamesEntryText,
     "/__nameid_version1.0/__substg1.0_00030102"},
    {"TextAmongTheTexts", patchName(0x00030102, 16, 4, 4), NamesEntryText,
     "/__nameid_version1.0/__substg1.0_00030102"},
    {"NameTwice", patchName(0x00030102, 16, 0x0002000700000000, 8), NamesTwice,
     "/__nameid_version1.0/__substg1.0_00030102"},
    {"TextLongerThanItsStream", patchName(0x00040102, 16, 18, 4), NamesTextLayout,
     "/__nameid_version1.0/__substg1.0_00040102"},
    {"TextOfOddSize", patchName(0x00040102, 0, 11, 4), NamesTextLayout,
     "/__nameid_version1.0/__substg1.0_00040102"},
    {"TextsCutInASize",
     [](Part& m) { at(m, nameStorage).streams[streamName(0x00040102)].resize(18); },
     NamesTextLayout, "/__nameid_version1.0/__substg1.0_00040102"},
    {"PaddingNotZero", patchName(0x00040102, 14, 1, 1), NamesTextPadding,
     "/__nameid_version1.0/__substg1.0_00040102"},
    {"BucketOfOddSize",
     [](Part& m) { at(m, nameStorage).streams[streamName(0x10140102)].resize(9); },
     NamesBucketSize, "/__nameid_version1.0/__substg1.0_10140102"},
    {"BucketMissing", [](Part& m) { at(m, nameStorage).streams.erase(streamName(0x10140102)); },
     NamesBucketMissing, "/__nameid_version1.0"},
    {"BucketOfATextMissing",
     [](Part& m) { at(m, nameStorage).streams.erase(streamName(0x10150102)); }, NamesBucketMissing,
     "/__nameid_version1.0"},
    {"RecordInAnotherBucket",
     [](Part& m) { at(m, nameStorage).streams[streamName(0x10000102)] = hex("05820000 0600 0000"); },
     NamesBucketStray, "/__nameid_version1.0/__substg1.0_10000102"},
    {"RecordTwice",
     [](Part& m) {
         Bytes& bucket = at(m, nameStorage).streams[streamName(0x10140102)];
         bucket = bucket + bucket;
     },
     NamesBucketStray, "/__nameid_version1.0/__substg1.0_10140102"},
    {"RecordOfNoName", patchName(0x10140102, 6, 3, 2), NamesBucketStray,
     "/__nameid_version1.0/__substg1.0_10140102"},
    {"RecordOfAnotherNumber", patchName(0x10140102, 0, 0x8205 + 31, 4), NamesBucketStray,
     "/__nameid_version1.0/__substg1.0_10140102"},
    {"RecordOfAnotherSet", patchName(0x10140102, 4, 4, 2), NamesBucketStray,
     "/__nameid_version1.0/__substg1.0_10140102"},
    {"RecordOfAnotherChecksum", patchName(0x10160102, 0, 0x0DB683AE + 31, 4), NamesBucketStray,
     "/__nameid_version1.0/__substg1.0_10160102"},
};
// clang-format on

} // namespace

TEST(MessageFaultsTest, GoodMessageHasNoFindings) {
    const CheckResult result = checkBytes(messageFile(goodMessage()));

    expectNone(result);
    EXPECT_EQ(result.recipients, 3U);
    EXPECT_EQ(result.attachments, 2U);
    EXPECT_EQ(result.embeddedMessages, 1U);
    EXPECT_EQ(result.properties, 10U + 3 * 2 + 2 + 2 + 1);
    EXPECT_EQ(result.namedProperties, 3U);
}

TEST(MessageFaultsTest, EachFaultOfAStorageIsFound) {
    for (const MessageFault& fault : storageFaults) {
        SCOPED_TRACE(fault.name);
        Part message = goodMessage();
        fault.change(message);

        expectFinding(checkBytes(messageFile(message)), fault.code, fault.place);
    }
}

TEST(MessageFaultsTest, EachFaultOfAPropertyIsFound) {
    for (const PropertyFault& fault : propertyFaults) {
        SCOPED_TRACE(fault.name);
        Part top = goodTop();
        fault.change(top);

        expectFinding(checkBytes(messageFile(sealedTop(top))), fault.code, fault.place);
    }
}

TEST(MessageFaultsTest, EachFaultOfTheNamesIsFound) {
    for (const MessageFault& fault : nameFaults) {
        SCOPED_TRACE(fault.name);
        Part message = goodMessage();
        fault.change(message);

        expectFinding(checkBytes(messageFile(message)), fault.code, fault.place);
    }
}

TEST(MessageFaultsTest, ClassIdOfAnotherKindIsAdvice) {
    const CheckResult result = checkBytes(fileOf(goodMessage()));

    expectFinding(result, MessageClassId, "/");
    EXPECT_TRUE(result.isGood());
    EXPECT_EQ(result.advice, 1U);
}

// Names of some sets are looked up in small letters.
TEST(MessageFaultsTest, ChecksumOfSmallLettersIsGood) {
    Part message = goodMessage();
    Part& storage = at(message, nameStorage);
    storage.streams.erase(streamName(0x10160102));
    storage.streams[streamName(0x10050102)] = hex("7E80EB42 0700 0100");

    expectNone(checkBytes(messageFile(message)));
}

// Another program's data in an attachment are its own.
TEST(MessageFaultsTest, ObjectOfAnotherProgramIsNotLookedInto) {
    Part message = goodMessage();
    put(at(message, attachment1).streams.at(propertyStreamName), 16, 6, 4);
    at(at(message, attachment1), objectStorage).streams[u"\u0001Ole"] = {};

    const CheckResult result = checkBytes(messageFile(message));

    expectNone(result);
    EXPECT_EQ(result.embeddedMessages, 0U);
}

// A repeated element leaves two entries and the value that came last.
TEST(MessageFaultsTest, OfAPropertyThatIsThereTwiceTheLastSizeCounts) {
    Part top = goodTop();
    top.add(0x10090102, hex("AA"));

    const CheckResult result = checkBytes(messageFile(sealedTop(top)));

    EXPECT_EQ(result.findings.size(), 1U) << result;
    expectFinding(result, PropertyTwice, "/__properties_version1.0");
    EXPECT_TRUE(result.isGood());
}

TEST(MessageFaultsTest, MoreThan2048RecipientsAreAWarning) {
    Part top = goodTop();
    for (std::uint32_t i = 2; i < 2049; ++i) {
        top.storages[u"__recip_version1.0_#" + streamName(i).substr(12)] = recipient();
    }
    const Part message = sealed(top, headerOfMessage(2049, 2) + number(0, 8));

    const CheckResult result = checkBytes(messageFile(message));

    expectFinding(result, PartLimit, "/");
    EXPECT_EQ(result.findings.size(), 1U) << result;
    EXPECT_TRUE(result.isGood());
}

TEST(MessageFaultsTest, MessagesAreEmbeddedToAnyDepth) {
    Part top = goodTop();
    Part inner = innerMessage(top);
    constexpr unsigned depth = 300;
    for (unsigned level = 1; level < depth; ++level) {
        Part attachment;
        attachment.storages[objectStorage] = inner;
        attachment.add(0x37050003, std::uint64_t{5});
        attachment.add(0x3701000D, 0xFFFFFFFF);
        Part message;
        message.storages[attachment0] = sealed(attachment, number(0, 8));
        inner = sealed(message, headerOfMessage(0, 1));
    }
    innerMessage(top) = inner;

    const CheckResult result = checkBytes(messageFile(sealedTop(top)));

    expectNone(result);
    EXPECT_EQ(result.embeddedMessages, depth);
}

TEST(MessageFaultsTest, CompoundFileThatIsNoMessageIsSaidToBeOne) {
    Part other;
    other.hasProperties = false;
    other.streams[u"WordDocument"] = hex("00");

    EXPECT_TRUE(checkCompoundBytes(fileOf(other)).isGood());
    const CheckResult result = checkBytes(fileOf(other));
    expectFinding(result, PropertyStreamMissing, "/");
    expectFinding(result, NamesMissing, "/");
    EXPECT_FALSE(result.isGood());
}

} // namespace olmhost::test
