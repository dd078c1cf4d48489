#include "filter/listing/OLMEMailAddr.h"

#include <gmock/gmock.h>

#include "tests/fakehost/Scan.h"
#include "tests/fakehost/Text.h"

namespace {

using fakehost::CallKind;
using fakehost::FakeHost;
using fakehost::patternText;
using fakehost::Scan;
using testing::ElementsAre;
using testing::IsEmpty;

const uint16_t* units(const std::u16string& text) {
    return reinterpret_cast<const uint16_t*>(text.c_str());
}

std::u16string copyOf(const uint16_t* text, int64_t length) {
    return {text, text + length};
}

TEST(OLMEMailAddrTest, NewAddressIsEmptyAndNeverNull) {
    OLMEMailAddr address;

    ASSERT_NE(address.getAddress(), nullptr);
    ASSERT_NE(address.getName(), nullptr);
    EXPECT_EQ(address.getAddress()[0], 0);
    EXPECT_EQ(address.getName()[0], 0);
    EXPECT_EQ(address.getAddressLen(), 0);
    EXPECT_EQ(address.getNameLen(), 0);
}

TEST(OLMEMailAddrTest, TextsAreCopiedUpToTheirTerminator) {
    OLMEMailAddr address;
    std::u16string source = u"a@x";
    source += u'\0';
    source += u"y";

    address.setAddress(units(source));
    address.setName(units(u"An Na"));
    source[0] = u'z';

    EXPECT_EQ(copyOf(address.getAddress(), address.getAddressLen()), u"a@x");
    EXPECT_EQ(copyOf(address.getName(), address.getNameLen()), u"An Na");
    EXPECT_EQ(address.getAddress()[3], 0);
}

TEST(OLMEMailAddrTest, NullAndEmptyTextClearIt) {
    const uint16_t noUnits[] = {0};
    OLMEMailAddr address;
    for (const uint16_t* empty : {static_cast<const uint16_t*>(nullptr), noUnits}) {
        address.setAddress(units(u"a"));
        address.setName(units(u"b"));
        address.setAddress(empty);
        EXPECT_EQ(address.getAddressLen(), 0);
        EXPECT_EQ(address.getAddress()[0], 0);
        EXPECT_EQ(address.getNameLen(), 1);
        address.setName(empty);
        EXPECT_EQ(address.getNameLen(), 0);
        EXPECT_EQ(address.getName()[0], 0);
    }
}

TEST(OLMEMailAddrTest, TextsAreClearedSeparatelyOrTogether) {
    OLMEMailAddr address;
    const auto fill = [&] {
        address.setAddress(units(u"a"));
        address.setName(units(u"bc"));
    };

    fill();
    address.clearAddress();
    EXPECT_EQ(address.getAddressLen(), 0);
    EXPECT_EQ(address.getNameLen(), 2);
    fill();
    address.clearName();
    EXPECT_EQ(address.getAddressLen(), 1);
    EXPECT_EQ(address.getNameLen(), 0);
    fill();
    address.clear();
    EXPECT_EQ(address.getAddressLen(), 0);
    EXPECT_EQ(address.getNameLen(), 0);
}

TEST(OLMEMailAddrTest, TypeIsKept) {
    OLMEMailAddr address;

    address.setType(-3);

    EXPECT_EQ(address.getType(), -3);
}

class OLMEMailAddrOutputTest : public testing::Test {
protected:
    FakeHost host;
    Scan scan{host};
    OLMEMailAddr address;
};

TEST_F(OLMEMailAddrOutputTest, OnlyTheAddressIsSentAndTheAnswerReturned) {
    address.setAddress(units(u"a@x"));
    address.setName(units(u"An Na"));
    SoRoutine answering = reinterpret_cast<SoRoutine>(
        +[](const uint16_t*, uint16_t length, uint32_t charset, uint64_t, uint64_t user1) {
            FakeHost::current().record(CallKind::Routine, "put " + std::to_string(length), charset,
                                       user1);
            return int32_t{-42};
        });
    VwSetSoRtn(SoRtnPutTextId, answering, scan.proc());

    EXPECT_EQ(address.outputToChunker(scan.proc()), -42);

    EXPECT_THAT(host.callTexts(CallKind::Routine), ElementsAre("put 3"));
    EXPECT_EQ(host.calls().back().user0, CharsetUtf16);
    EXPECT_EQ(host.calls().back().user1, Scan::user1Mark);
}

TEST_F(OLMEMailAddrOutputTest, EmptyAddressReturns0WithoutACall) {
    address.setName(units(u"An Na"));

    EXPECT_EQ(address.outputToChunker(scan.proc()), 0);

    EXPECT_THAT(host.callTexts(CallKind::Routine), IsEmpty());
}

TEST_F(OLMEMailAddrOutputTest, FileOutputDoesNothing) {
    address.setAddress(units(u"a@x"));

    EXPECT_EQ(address.outputToFile(scan.proc()), 0);
    EXPECT_EQ(address.outputToFile(nullptr), 0);

    EXPECT_THAT(host.callTexts(CallKind::Routine), IsEmpty());
}

TEST_F(OLMEMailAddrOutputTest, CountIsTruncatedTo16Bits) {
    for (const auto& [length, count] :
         {std::pair{65535, 65535}, {65536, 0}, {65537, 1}, {131073, 1}}) {
        SCOPED_TRACE(length);
        const std::u16string text = patternText(static_cast<size_t>(length));
        address.setAddress(units(text));
        host.forgetCalls();

        address.outputToChunker(scan.proc());

        EXPECT_THAT(host.callTexts(CallKind::Routine),
                    ElementsAre("SoRtnPutText(" +
                                fakehost::inQuotes(text.substr(0, static_cast<size_t>(count))) +
                                ", " + fakehost::number(static_cast<uint64_t>(count)) +
                                ", 0x14B00000)"));
    }
    host.takeMisuses(); // no cell is open here, which is irrelevant to this test
}

} // namespace
