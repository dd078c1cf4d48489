#include "host/compound/EntryName.h"

#include <gtest/gtest.h>

namespace olmhost {

TEST(EntryNameTest, HasOneTo31Units) {
    EXPECT_FALSE(isValidEntryName(u""));
    EXPECT_TRUE(isValidEntryName(u"a"));
    EXPECT_TRUE(isValidEntryName(std::u16string(31, u'a')));
    EXPECT_FALSE(isValidEntryName(std::u16string(32, u'a')));
}

TEST(EntryNameTest, HasNoSeparator) {
    for (const char16_t* name : {u"a/b", u"a\\b", u":a", u"a!"}) {
        EXPECT_FALSE(isValidEntryName(name)) << testing::PrintToString(std::u16string(name));
    }
    EXPECT_TRUE(isValidEntryName(u"__recip_version1.0_#0000000A"));
    EXPECT_TRUE(isValidEntryName(u"\u0005SummaryInformation"));
}

TEST(EntryNameTest, ShorterComesFirst) {
    EXPECT_TRUE(std::is_lt(compareEntryNames(u"z", u"aa")));
    EXPECT_TRUE(std::is_gt(compareEntryNames(u"aa", u"z")));
}

TEST(EntryNameTest, UnitsDecideByTheirCapitals) {
    EXPECT_TRUE(std::is_lt(compareEntryNames(u"ab", u"AC")));
    EXPECT_TRUE(std::is_gt(compareEntryNames(u"B", u"a")));
    EXPECT_TRUE(std::is_gt(compareEntryNames(u"a_", u"ab"))) << "_ comes after B, though before b";
}

struct PairOfNames {
    const char16_t* one;
    const char16_t* other;
    bool areOne;
};

TEST(EntryNameTest, NamesThatDifferOnlyInCaseAreEqual) {
    constexpr PairOfNames pairs[] = {
        {u"AbC", u"aBc", true},
        {u"\u00E4\u00F6", u"\u00C4\u00D6", true}, // Latin with marks
        {u"\u0436", u"\u0416", true},             // Cyrillic
        {u"\u03C2", u"\u03A3", true},             // the final sigma's capital is the sigma's
        {u"\u00FF", u"\u0178", true},             // the capital is far away
        {u"\u1FB3", u"\u1FBC", true},             // its full capital would be two letters
        {u"\u00DF", u"\u1E9E", false},            // the sharp s has no simple capital
        {u"\u00DF", u"SS", false},
        {u"\u0149", u"\u02BCN", false},
        {u"\xD801\xDC28", u"\xD801\xDC00", false}, // pairs of surrogates have no case
        {u"\xD801", u"\xD801", true},
    };
    for (const PairOfNames& pair : pairs) {
        EXPECT_EQ(std::is_eq(compareEntryNames(pair.one, pair.other)), pair.areOne)
            << testing::PrintToString(std::u16string(pair.one));
        if (pair.areOne) {
            EXPECT_EQ(hashEntryName(pair.one), hashEntryName(pair.other));
        }
    }
}

} // namespace olmhost
