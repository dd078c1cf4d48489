#include "host/message/Message.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MessageBuilder.h"

namespace olmhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Part messagePart() {
    Part part;
    part.isMessage = true;
    return part;
}

class MessageTest : public testing::Test {
protected:
    const Message& open(const Part& part) {
        file = fileOf(part);
        std::string failure;
        message = Message::open(file, failure);
        if (message == nullptr) {
            throw std::runtime_error(failure);
        }
        return *message;
    }

    std::string failureOf(const Part& part) {
        file = fileOf(part);
        std::string failure;
        EXPECT_EQ(Message::open(file, failure), nullptr);
        return failure;
    }

    Bytes file;
    std::unique_ptr<Message> message;
};

TEST_F(MessageTest, PropertiesComeInTheOrderOfTheirEntries) {
    const Message& found = open(messagePart()
                                    .add(0x0E070003, 25)
                                    .add(0x0037001F, utf16(u"Tide"))
                                    .add(0x00170003, 2)
                                    .add(0x0E070003, 26));

    std::vector<std::uint32_t> tags;
    for (const Property& property : found.properties()) {
        tags.push_back(property.tag);
        EXPECT_EQ(property.fault, "");
    }
    EXPECT_THAT(tags, ElementsAre(0x0E070003, 0x0037001F, 0x00170003, 0x0E070003));
    EXPECT_EQ(found.find(0x0E070003)->field, 25U);
    EXPECT_EQ(found.find(0x0E080003), nullptr);
}

TEST_F(MessageTest, TextLosesOnlyItsTerminators) {
    const Message& found = open(messagePart()
                                    .add(0x0037001F, utf16({u"a\0b\0\0", 5}))
                                    .add(0x0070001E, hex("41 E9 00"))
                                    .add(0x0042001F, Bytes())
                                    .add(0x0065001F, hex("41 00 42"))); // half a unit

    EXPECT_EQ(found.text(found.properties(), 0x0037001F), std::u16string(u"a\0b", 3));
    EXPECT_EQ(found.text(found.properties(), 0x0070001E), u"A\u00E9");
    EXPECT_EQ(found.text(found.properties(), 0x0042001F), u"");
    EXPECT_EQ(found.text(found.properties(), 0x0065001F), u"A");
    EXPECT_EQ(found.text(found.properties(), 0x1000001F), u"");
}

TEST_F(MessageTest, LongTextIsReadAcrossSectors) {
    std::u16string text;
    for (char16_t unit = 1; unit < 9001; ++unit) {
        text += unit;
    }
    const Message& found = open(messagePart().add(0x1000001F, utf16(text)));

    EXPECT_EQ(found.text(found.properties(), 0x1000001F), text);
}

TEST_F(MessageTest, NumbersHaveTheWidthOfTheirType) {
    const Message& found = open(messagePart()
                                    .add(0x00020002, 0xFFFFFFFFFFFFFFFE)
                                    .add(0x00030003, 0xFFFFFFFFFFFFFFFD)
                                    .add(0x000B000B, 0x10001)
                                    .add(0x00400040, 0x01D4D268A529D180)
                                    .add(0x001F001F, utf16(u"no number")));

    std::vector<std::uint64_t> numbers;
    for (const Property& property : found.properties()) {
        for (const std::uint64_t number : found.numbers(property)) {
            numbers.push_back(number);
        }
    }
    EXPECT_THAT(numbers, ElementsAre(0xFFFE, 0xFFFFFFFD, 1, 0x01D4D268A529D180));
}

TEST_F(MessageTest, ListsOfNumbersAreInOneStream) {
    const Message& found = open(messagePart()
                                    .add(0x00021002, hex("01 00 FF FF"))
                                    .add(0x00031003, hex("01 00 00 00 02 00 00 00 03"))
                                    .add(0x00401040, hex("01 02 03 04 05 06 07 08")));

    EXPECT_THAT(found.numbers(*found.find(0x00021002)), ElementsAre(1, 0xFFFF));
    EXPECT_THAT(found.numbers(*found.find(0x00031003)), ElementsAre(1, 2));
    EXPECT_THAT(found.numbers(*found.find(0x00401040)), ElementsAre(0x0807060504030201));
}

TEST_F(MessageTest, ListsOfTextsAndBinaryValuesHaveAStreamPerValue) {
    Part part = messagePart();
    part.add(0x3A58101F, hex("06 00 00 00 04 00 00 00"));
    part.streams[u"__substg1.0_3A58101F-00000000"] = utf16({u"In\0", 3});
    part.streams[u"__substg1.0_3A58101F-00000001"] = utf16({u"T\0", 2});
    part.add(0x80001102, hex("02 00 00 00 00 00 00 00"));
    part.streams[u"__substg1.0_80001102-00000000"] = hex("AB CD");

    const Message& found = open(part);

    const Property* texts = found.find(0x3A58101F);
    ASSERT_EQ(texts->values.size(), 2U);
    EXPECT_EQ(found.text(*texts, texts->values[0]), u"In");
    EXPECT_EQ(found.text(*texts, texts->values[1]), u"T");
    const Property* binary = found.find(0x80001102);
    ASSERT_EQ(binary->values.size(), 1U);
    EXPECT_EQ(binary->values[0].size, 2U);
    EXPECT_EQ(found.bytes(binary->values[0], 100), hex("AB CD"));
    EXPECT_EQ(found.bytes(binary->values[0], 1), hex("AB"));
}

TEST_F(MessageTest, RecipientsAndAttachmentsComeInTheOrderOfTheirNumbers) {
    Part part = messagePart();
    for (const auto& [name, address] : {std::pair{u"__recip_version1.0_#00000001", u"b@x"},
                                        std::pair{u"__recip_version1.0_#0000000A", u"k@x"},
                                        std::pair{u"__recip_version1.0_#00000000", u"a@x"}}) {
        part.storages[name].add(0x3003001F, utf16(address));
    }
    part.storages[u"__attach_version1.0_#00000000"].add(0x37010102, hex("01 02 03"));

    const Message& found = open(part);

    ASSERT_EQ(found.recipients().size(), 3U);
    EXPECT_EQ(found.text(found.recipients()[0], 0x3003001F), u"a@x");
    EXPECT_EQ(found.text(found.recipients()[1], 0x3003001F), u"b@x");
    EXPECT_EQ(found.text(found.recipients()[2], 0x3003001F), u"k@x");
    ASSERT_EQ(found.attachments().size(), 1U);
    Bytes data;
    found.read(found.attachments()[0][0].values[0], [&](std::span<const std::byte> piece) {
        data.insert(data.end(), piece.begin(), piece.end());
    });
    EXPECT_EQ(data, hex("01 02 03"));
}

TEST_F(MessageTest, NamesAreThoseOfTheMessage) {
    Part part = messagePart();
    part.add(0x80000003, 15).add(0x8001000B, 1).add(0x80020003, 1);
    Part& names = part.storages[u"__nameid_version1.0"];
    names.hasProperties = false;
    names.streams[streamName(0x00020102)] = hex("08 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46");
    names.streams[streamName(0x00030102)] = hex("01 85 00 00 06 00 00 00 03 85 00 00 06 00 01 00");

    const Message& found = open(part);

    EXPECT_EQ(found.properties()[0].name->id, 0x8501U);
    EXPECT_EQ(found.properties()[1].name->id, 0x8503U);
    EXPECT_FALSE(found.properties()[2].name.has_value());
}

TEST_F(MessageTest, MissingValueHasAReason) {
    Part part = messagePart();
    part.add(0x0037001F, 4)
        .add(0x3701000D, 4)
        .add(0x00010099, 4)
        .add(0x3A58101F, hex("04 00 00 00"));

    const Message& found = open(part);

    EXPECT_THAT(found.properties()[0].fault, HasSubstr("stream is missing"));
    EXPECT_THAT(found.properties()[1].fault, HasSubstr("object"));
    EXPECT_THAT(found.properties()[2].fault, HasSubstr("type is unknown"));
    EXPECT_THAT(found.properties()[3].fault, HasSubstr("of its values is missing"));
    for (const Property& property : found.properties()) {
        EXPECT_THAT(property.values, IsEmpty());
    }
}

TEST_F(MessageTest, IncompleteEntryAtTheEndIsIgnored) {
    Part part = messagePart();
    part.add(0x0E070003, 1);
    part.entries.resize(part.entries.size() + 15);

    EXPECT_EQ(open(part).properties().size(), 1U);
}

TEST_F(MessageTest, FileWithoutPropertiesIsNotAMessage) {
    Part part = messagePart();
    part.hasProperties = false;

    EXPECT_THAT(failureOf(part), HasSubstr("not a message"));
}

} // namespace
} // namespace olmhost::test
