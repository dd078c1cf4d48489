#include "host/message/PropertyNames.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "MessageBuilder.h"
#include "host/message/PropertyType.h"

namespace olmhost::test {
namespace {

PropertySet setOf(std::string_view digits) {
    PropertySet set = {};
    std::ranges::copy(hex(digits), set.begin());
    return set;
}

TEST(PropertyNamesTest, TagsHaveTheirNames) {
    EXPECT_STREQ(tagName(0x0037), "PidTagSubject");
    EXPECT_STREQ(tagName(0x0002), "PidTagAlternateRecipientAllowed"); // the first
    EXPECT_STREQ(tagName(0x7FFE), "PidTagAttachmentHidden");          // the last
    EXPECT_EQ(tagName(0x0001), nullptr);
    EXPECT_EQ(tagName(0x0038), nullptr);
    EXPECT_EQ(tagName(0xFFFF), nullptr);
}

TEST(PropertyNamesTest, NamedPropertiesAreFoundOnlyInTheirSet) {
    const PropertySet meeting = setOf("90 DA D8 6E 0B 45 1B 10 98 DA 00 AA 00 3F 13 05");
    const PropertySet appointment = setOf("02 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46");

    EXPECT_STREQ(namedPropertyName(appointment, 0x8216), "PidLidAppointmentRecur");
    EXPECT_EQ(namedPropertyName(meeting, 0x8216), nullptr);
    EXPECT_STREQ(namedPropertyName(meeting, 3), "PidLidGlobalObjectId");
    EXPECT_STREQ(namedPropertyName(publicStringsSet(), u"Keywords"), "PidNameKeywords");
    EXPECT_EQ(namedPropertyName(publicStringsSet(), u"keywords"), nullptr);
    EXPECT_EQ(namedPropertyName(mapiSet(), u"Keywords"), nullptr);
}

TEST(PropertyNamesTest, SetsHaveNamesAndTexts) {
    const PropertySet meeting = setOf("90 DA D8 6E 0B 45 1B 10 98 DA 00 AA 00 3F 13 05");

    EXPECT_STREQ(setName(meeting), "PSETID_Meeting");
    EXPECT_EQ(setText(meeting), "{6ED8DA90-450B-101B-98DA-00AA003F1305}");
    EXPECT_STREQ(setName(publicStringsSet()), "PS_PUBLIC_STRINGS");
    EXPECT_STREQ(setName(mapiSet()), "PS_MAPI");
    EXPECT_EQ(setName(PropertySet{}), nullptr);
}

TEST(PropertyNamesTest, TypesHaveNamesAloneAndInLists) {
    EXPECT_STREQ(typeName(0x001F), "PtypString");
    EXPECT_STREQ(typeName(0x101F), "PtypMultipleString");
    EXPECT_STREQ(typeName(0x1102), "PtypMultipleBinary");
    EXPECT_EQ(typeName(0x100B), nullptr); // there are no lists of booleans
    EXPECT_EQ(typeName(0x0000), nullptr);
    EXPECT_EQ(typeName(0xFFFF), nullptr);
}

} // namespace
} // namespace olmhost::test
