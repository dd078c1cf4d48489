#include "filter/core/WString.h"

#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "filter/core/ArrayList.h"
#include "tests/unit/core/AllocationCount.h"
#include "tests/unit/core/IntegerEnds.h"
#include "tests/unit/core/Wide.h"

namespace {

// Returns the text as a value that can be compared and printed. Also checks the terminator.
std::u16string unitsOf(const qor::WString& text) {
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.Move): the state after a move is checked too
    EXPECT_EQ(text.value()[text.length()], 0);
    return std::u16string(text.value(), text.value() + text.length());
}

std::string bytesOf(const qor::WString& text) {
    const qor::String narrow = text.toString();
    return std::string(narrow.value(), static_cast<size_t>(narrow.length()));
}

struct TruthCase {
    const char* text;
    bool isTrue;
    int end; // the position after the word or number
};

template <class Call> long allocationsOf(Call call) {
    const long before = allocationCount();
    call();
    return allocationCount() - before;
}

} // namespace

TEST(WStringTest, NewTextIsEmptyAndPointsToTheSharedBuffer) {
    const qor::WString text;
    const qor::WString other;

    EXPECT_EQ(text.length(), 0);
    EXPECT_EQ(text.capacity(), 0);
    EXPECT_EQ(text.value(), other.value());
    EXPECT_EQ(text.value(), qor::WString::EMPTY_STRING_BUF);
    EXPECT_EQ(text.value(), qor::WString::emptyText());
    EXPECT_EQ(text.value()[0], 0);
}

TEST(WStringTest, EmptyAndShortTextsAllocateNothing) {
    EXPECT_EQ(allocationsOf([] {
                  qor::WString empty;
                  qor::WString copy(empty);
                  qor::WString fromNarrow("");
                  copy = fromNarrow;
                  copy.setLength(0);
                  copy.assign(qor::WString::emptyText(), 0);
              }),
              0);
    EXPECT_EQ(allocationsOf([] {
                  qor::WString text("preserve");
                  qor::WString copy(text);
                  copy.append("-22 units in all");
                  text = copy;
                  qor::WString moved(std::move(text));
              }),
              0);
    EXPECT_EQ(allocationsOf([] { qor::WString text("a text that has 26 units.."); }), 1);
}

TEST(WStringTest, IsNotLargerThanItsBudget) {
    // Two of them are made for each attribute.
    EXPECT_LE(sizeof(qor::WString), 88U);
}

TEST(WStringTest, NarrowTextEndsAtItsZeroByte) {
    EXPECT_EQ(unitsOf(qor::WString("abc\0def")), u"abc");
    EXPECT_EQ(unitsOf(qor::WString("")), u"");
    EXPECT_EQ(unitsOf(qor::WString(static_cast<const char*>(nullptr))), u"");
}

TEST(WStringTest, NarrowTextIsUtf8) {
    EXPECT_EQ(unitsOf(qor::WString("na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80")),
              u"na\u00EFve \u20AC \xD83D\xDE00");
}

TEST(WStringTest, EachInvalidSequenceBecomesOneReplacement) {
    EXPECT_EQ(unitsOf(qor::WString("a\xFF"
                                   "b")),
              u"a\uFFFDb");
    EXPECT_EQ(unitsOf(qor::WString("a\xE2\x82")), u"a\uFFFD");
    EXPECT_EQ(unitsOf(qor::WString("\xED\xA0\x80")), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(unitsOf(qor::WString("\xC0\xAF")), u"\uFFFD\uFFFD");
}

TEST(WStringTest, CopyIsIndependent) {
    for (const char* narrow : {"", "short", "a text that is too long for the object itself"}) {
        qor::WString text(narrow);
        qor::WString copy(text);
        qor::WString assigned("something that was there before, and was long as well");
        assigned = text;

        text.append("!");

        EXPECT_EQ(copy, qor::WString(narrow));
        EXPECT_EQ(assigned, qor::WString(narrow));
    }
}

TEST(WStringTest, CopyKeepsZeroUnitsWithinTheText) {
    const qor::WString text = wide(std::u16string(u"a\0b", 3));

    EXPECT_EQ(unitsOf(qor::WString(text)), std::u16string(u"a\0b", 3));
}

TEST(WStringTest, CopyTakesTheCachedHash) {
    qor::WString text("Keywords");
    const int hash = text.hashCode();
    text.buffer()[0] = 'X'; // without the cache's knowledge

    qor::WString copy(text);
    qor::WString assigned;
    assigned = text;

    EXPECT_EQ(copy.hashCode(), hash);
    EXPECT_EQ(assigned.hashCode(), hash);
    copy.resetHash();
    EXPECT_NE(copy.hashCode(), hash);
}

TEST(WStringTest, FirstUnitsAreTakenByCount) {
    const qor::WString text("RE: Tide table");

    EXPECT_EQ(unitsOf(qor::WString(text, 3)), u"RE:");
    EXPECT_EQ(unitsOf(qor::WString(text, 14)), u"RE: Tide table");
    EXPECT_EQ(unitsOf(qor::WString(text, 15)), u"RE: Tide table");
    EXPECT_EQ(unitsOf(qor::WString(text, highest)), u"RE: Tide table");
    EXPECT_EQ(unitsOf(qor::WString(text, 0)), u"");
    EXPECT_EQ(unitsOf(qor::WString(text, -1)), u"");
    EXPECT_EQ(unitsOf(qor::WString(text, lowest)), u"");
    EXPECT_EQ(unitsOf(qor::WString(qor::WString(), 5)), u"");
}

TEST(WStringTest, FirstUnitsDoNotTakeTheHash) {
    const qor::WString text("Keywords");
    (void)text.hashCode();

    EXPECT_EQ(qor::WString(text, 3).hashCode(), qor::WString("Key").hashCode());
}

TEST(WStringTest, MoveTakesTheTextAndLeavesAnEmptyOne) {
    for (const char* narrow : {"", "short", "a text that is too long for the object itself"}) {
        qor::WString text(narrow);
        const int hash = text.hashCode();

        qor::WString moved(std::move(text));
        EXPECT_EQ(moved, qor::WString(narrow));
        EXPECT_EQ(moved.hashCode(), hash);

        qor::WString assigned("what was there before is given back to the heap now");
        assigned = std::move(moved);
        EXPECT_EQ(unitsOf(assigned), unitsOf(qor::WString(narrow)));

        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move): intended
        EXPECT_EQ(unitsOf(moved), u"");
        moved.append("usable again");
        EXPECT_EQ(unitsOf(moved), u"usable again");
    }
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<qor::WString>);
}

TEST(WStringTest, AssigningATextToItselfChangesNothing) {
    qor::WString text("a text that is too long for the object itself");
    qor::WString& same = text;

    text = same;
    text = std::move(same);

    EXPECT_EQ(unitsOf(text), u"a text that is too long for the object itself");
}

TEST(WStringTest, AssignTakesTheGivenNumberOfUnits) {
    const uint16_t units[] = {'a', 'b', 'c', 'd'};
    qor::WString text("before");

    text.assign(units, 3);

    EXPECT_EQ(unitsOf(text), u"abc");
}

TEST(WStringTest, AssignEndsAtTheFirstZeroUnit) {
    const uint16_t units[] = {'a', 0, 'c', 'd'};
    qor::WString text;

    text.assign(units, 4);
    EXPECT_EQ(unitsOf(text), u"a");
    EXPECT_GE(text.capacity(), 4);

    text.assign(units + 1, 3);
    EXPECT_EQ(unitsOf(text), u"");
}

TEST(WStringTest, AssignOfNothingEmptiesTheText) {
    const uint16_t units[] = {'a'};
    for (const int count : {0, -1, lowest}) {
        qor::WString text("before");
        text.assign(units, count);
        EXPECT_EQ(unitsOf(text), u"");
    }
    qor::WString text("before");
    text.assign(nullptr, 3);
    EXPECT_EQ(unitsOf(text), u"");
}

TEST(WStringTest, AssignAcceptsUnitsOfTheTextItself) {
    qor::WString text("0123456789");

    text.assign(text.value() + 3, 4);
    EXPECT_EQ(unitsOf(text), u"3456");

    text.assign(text.value(), 2);
    EXPECT_EQ(unitsOf(text), u"34");
}

TEST(WStringTest, SetLengthTruncatesOrPadsWithSpaces) {
    qor::WString text("abcdef");

    text.setLength(3);
    EXPECT_EQ(unitsOf(text), u"abc");
    text.setLength(5);
    EXPECT_EQ(unitsOf(text), u"abc  ");
    text.setLength(30);
    EXPECT_EQ(unitsOf(text), u"abc" + std::u16string(27, u' '));
    text.setLength(0);
    EXPECT_EQ(unitsOf(text), u"");
    text.setLength(2);
    EXPECT_EQ(unitsOf(text), u"  ");
}

TEST(WStringTest, SetLengthBelowZeroEmptiesTheText) {
    qor::WString text("abc");
    text.setLength(-1);
    EXPECT_EQ(unitsOf(text), u"");

    qor::WString empty;
    empty.setLength(lowest);
    EXPECT_EQ(unitsOf(empty), u"");
}

TEST(WStringTest, EmptyingKeepsTheBuffer) {
    qor::WString text("a text that is too long for the object itself");
    const int capacity = text.capacity();
    const uint16_t* value = text.value();

    text.setLength(0);

    EXPECT_EQ(text.capacity(), capacity);
    EXPECT_EQ(text.value(), value);
}

TEST(WStringTest, AppendKeepsZeroUnits) {
    const uint16_t units[] = {'x', 0, 'y', 0};
    qor::WString text("a");

    text.append(units, 4);

    EXPECT_EQ(unitsOf(text), std::u16string(u"ax\0y\0", 5));
}

TEST(WStringTest, AppendOfNothingChangesNothing) {
    const uint16_t units[] = {'x'};
    qor::WString text("abc");

    text.append(units, 0);
    text.append(units, -1);
    text.append(units, lowest);
    text.append(nullptr, 4);
    text.append(static_cast<const char*>(nullptr));
    text.append("");

    EXPECT_EQ(unitsOf(text), u"abc");
}

TEST(WStringTest, AppendAcceptsUnitsOfTheTextItself) {
    qor::WString text("0123456789");

    text.append(text.value(), text.length()); // within the object
    text.append(text.value(), text.length()); // from the object to the heap
    text.append(text.value() + 38, 2);

    EXPECT_EQ(unitsOf(text), u"012345678901234567890123456789012345678989");
}

TEST(WStringTest, AppendedNarrowTextIsUtf8) {
    qor::WString text("a");

    text.append("\xE2\x82\xAC");
    text.append("\xF0\x9F\x98\x80\xFF");

    EXPECT_EQ(unitsOf(text), u"a\u20AC\xD83D\xDE00\uFFFD");
}

TEST(WStringTest, TextsOfEveryLengthUpTo200AreKept) {
    std::u16string expected;
    qor::WString grown;
    for (int length = 0; length < 200; ++length) {
        const qor::WString text = wide(expected);
        EXPECT_EQ(unitsOf(text), expected);
        EXPECT_EQ(unitsOf(grown), expected);
        EXPECT_EQ(unitsOf(qor::WString(text)), expected);
        EXPECT_LE(length, grown.capacity());

        const auto unit = static_cast<uint16_t>('A' + length % 26);
        grown.append(&unit, 1);
        expected += static_cast<char16_t>(unit);
    }
}

TEST(WStringTest, AppendingManyPiecesAllocatesFewBlocks) {
    const std::vector<uint16_t> piece(1024, 'x');
    qor::WString text;

    const long blocks = allocationsOf([&] {
        for (int i = 0; i < 4096; ++i) {
            text.insureCapacity(text.length() + 1024);
            text.append(piece.data(), 1024);
        }
    });

    EXPECT_EQ(text.length(), 4096 * 1024);
    EXPECT_LT(blocks, 40);
}

TEST(WStringTest, InsureCapacityGrowsAndNeverShrinks) {
    qor::WString text("abc");

    text.insureCapacity(1000);
    EXPECT_GE(text.capacity(), 1000);
    EXPECT_EQ(unitsOf(text), u"abc");

    const int capacity = text.capacity();
    for (const int count : {10, 0, -1, lowest}) {
        text.insureCapacity(count);
        EXPECT_EQ(text.capacity(), capacity);
    }
    EXPECT_EQ(unitsOf(text), u"abc");
}

TEST(WStringTest, InsureCapacityOfAnEmptyTextLeavesItEmpty) {
    for (const int count : {-1, 0, 1, 25, 26, 1000}) {
        qor::WString text;
        text.insureCapacity(count);
        EXPECT_GE(text.capacity(), count);
        EXPECT_EQ(unitsOf(text), u"");
    }
}

TEST(WStringTest, BufferAllowsChangesInPlace) {
    qor::WString text("RE: x");

    text.buffer()[4] = 'y';

    EXPECT_EQ(unitsOf(text), u"RE: y");
    EXPECT_EQ(text.buffer(), text.value());
}

TEST(WStringTest, SetValueTakesTheGivenNumberOfBytes) {
    qor::WString text("before");

    text.setValue("0123456789", 2, 5);
    EXPECT_EQ(unitsOf(text), u"23456");
    text.setValue("x\xC3\xA9y", 1, 2);
    EXPECT_EQ(unitsOf(text), u"\u00E9");
    text.setValue("x\xC3\xA9y", 1, 1);
    EXPECT_EQ(unitsOf(text), u"\uFFFD") << "a sequence that the count truncates is invalid";
    text.setValue("x\xC3\xA9y", 2, 2);
    EXPECT_EQ(unitsOf(text), u"\uFFFDy");
    text.setValue("a\0b", 0, 3);
    EXPECT_EQ(unitsOf(text), std::u16string(u"a\0b", 3));
}

TEST(WStringTest, SetValueOfNothingEmptiesTheText) {
    qor::WString text("before");
    text.setValue("abc", 0, 0);
    EXPECT_EQ(unitsOf(text), u"");

    text.append("before");
    text.setValue("abc", 0, lowest);
    EXPECT_EQ(unitsOf(text), u"");

    text.append("before");
    text.setValue("abc", -1, 2);
    EXPECT_EQ(unitsOf(text), u"");

    text.append("before");
    text.setValue(nullptr, 0, 2);
    EXPECT_EQ(unitsOf(text), u"");
}

TEST(WStringTest, AppendIntegerWritesEightUpperCaseHexadecimalDigits) {
    qor::WString text("__substg1.0_");

    text.appendInteger(0x3001001F, 8, 16, false, false);
    EXPECT_EQ(unitsOf(text), u"__substg1.0_3001001F");

    text.setLength(0);
    text.appendInteger(0, 8, 16, false, false);
    text.appendInteger(0xABCDEF, 8, 16, false, false);
    text.appendInteger(0xFFFFFFFF, 8, 16, false, false);
    EXPECT_EQ(unitsOf(text), u"0000000000ABCDEFFFFFFFFF");
}

TEST(WStringTest, AppendIntegerNeverTruncatesANumber) {
    qor::WString text;

    text.appendInteger(1234, 2, 10, false, false);
    text.append(" ");
    text.appendInteger(0, 0, 10, false, false);
    text.append(" ");
    text.appendInteger(5, lowest, 10, false, false);
    text.append(" ");
    text.appendInteger(4294967295U, 0, 2, false, false);
    text.append(" ");
    text.appendInteger(35, 3, 36, false, false);

    EXPECT_EQ(unitsOf(text), u"1234 0 5 11111111111111111111111111111111 00Z");
}

TEST(WStringTest, AppendIntegerWithAnInvalidRadixAppendsNothing) {
    qor::WString text("a");

    for (const int radix : {lowest, -16, 0, 1, 37, highest}) {
        text.appendInteger(5, 8, radix, false, false);
    }

    EXPECT_EQ(unitsOf(text), u"a");
}

TEST(WStringTest, TextThatWouldNotFitThrowsBadAllocAndStaysUnchanged) {
    const uint16_t unit = 'x';
    qor::WString text("abc");

    EXPECT_THROW(text.append(&unit, highest), std::bad_alloc);
    EXPECT_THROW(text.appendInteger(1, highest, 10, false, false), std::bad_alloc);

    EXPECT_EQ(unitsOf(text), u"abc");
}

TEST(WStringTest, HashIsThatOfTheBytesOfTheText) {
    const unsigned char bytes[] = {'K', 0, 'e', 0, 'y', 0, 'w', 0, 'o', 0, 'r', 0, 'd', 0, 's', 0};
    const unsigned int hash = qor::Object::hashdata(bytes, sizeof bytes);

    EXPECT_EQ(qor::WString("Keywords").hashCode(), static_cast<int>(hash & 0x7FFFFFFF));
    EXPECT_EQ(qor::WString("Keywords").hashCode(), 0x3C29FB67);
    EXPECT_EQ(qor::WString().hashCode(), 0x011C9DC5);
}

TEST(WStringTest, HashIsCachedByTheFirstCall) {
    qor::WString text("Keywords");
    const int hash = text.hashCode();

    text.buffer()[0] = 'X';

    EXPECT_EQ(text.hashCode(), hash);
    text.resetHash();
    EXPECT_EQ(text.hashCode(), qor::WString("Xeywords").hashCode());
}

TEST(WStringTest, HashOfZeroIsCalculatedAgainByEachCall) {
    // The FNV-1a of these fourteen bytes is 0x80000000.
    qor::WString text("fvfuuvm");
    ASSERT_EQ(text.hashCode(), 0);

    text.buffer()[6] = 'n';

    EXPECT_EQ(text.hashCode(), 0x72076F3B);
}

TEST(WStringTest, EveryChangeResetsTheHash) {
    const uint16_t units[] = {'a'};
    const int hash = qor::WString("a").hashCode();
    const auto hashAfter = [](auto change) {
        qor::WString text("some text");
        (void)text.hashCode();
        change(text);
        return text.hashCode();
    };

    EXPECT_EQ(hashAfter([&](qor::WString& text) { text.assign(units, 1); }), hash);
    EXPECT_EQ(hashAfter([&](qor::WString& text) { text.setValue("a", 0, 1); }), hash);
    EXPECT_EQ(hashAfter([&](qor::WString& text) { text = qor::WString("a"); }), hash);
    EXPECT_EQ(hashAfter([](qor::WString& text) { text.setLength(4); }),
              qor::WString("some").hashCode());
    EXPECT_EQ(hashAfter([&](qor::WString& text) { text.append(units, 1); }),
              qor::WString("some texta").hashCode());
    EXPECT_EQ(hashAfter([](qor::WString& text) { text.append("s"); }),
              qor::WString("some texts").hashCode());
    EXPECT_EQ(hashAfter([](qor::WString& text) { text.appendInteger(1, 1, 10, false, false); }),
              qor::WString("some text1").hashCode());
}

TEST(WStringTest, ChangesWithoutEffectResetTheHashToo) {
    qor::WString text("Keywords");
    (void)text.hashCode();
    text.buffer()[0] = 'X';

    text.setLength(8);

    EXPECT_EQ(text.hashCode(), qor::WString("Xeywords").hashCode());
}

TEST(WStringTest, TextsAreEqualWhenAllUnitsAreEqual) {
    EXPECT_TRUE(qor::WString("abc") == qor::WString("abc"));
    EXPECT_FALSE(qor::WString("abc") == qor::WString("abC"));
    EXPECT_FALSE(qor::WString("abc") == qor::WString("ab"));
    EXPECT_TRUE(qor::WString() == qor::WString(""));
    EXPECT_FALSE(wide(std::u16string(u"a\0b", 3)) == wide(std::u16string(u"a\0c", 3)));
    EXPECT_FALSE(wide(std::u16string(u"a\0", 2)) == qor::WString("a"));

    EXPECT_TRUE(qor::WString("abc").equals(qor::WString("abc")));
    EXPECT_FALSE(qor::WString("abc").equals(qor::WString("abd")));
    EXPECT_FALSE(qor::WString("abc").equals(qor::String("abc")));
    EXPECT_FALSE(qor::WString().equals(qor::ArrayList<long>()));
}

TEST(WStringTest, EqualsIgnoreCaseFoldsOnlyAsciiLetters) {
    EXPECT_TRUE(qor::WString("OPFRecurrenceDaily").equalsIgnoreCase("opfrecurrenceDAILY"));
    EXPECT_TRUE(qor::WString("").equalsIgnoreCase(""));
    EXPECT_TRUE(qor::WString().equalsIgnoreCase(nullptr));
    EXPECT_FALSE(qor::WString("a").equalsIgnoreCase(nullptr));
    EXPECT_FALSE(qor::WString("daily").equalsIgnoreCase("dail"));
    EXPECT_FALSE(qor::WString("dail").equalsIgnoreCase("daily"));
    EXPECT_FALSE(qor::WString("daily").equalsIgnoreCase("weekly"));
    // Neighbours of the letters: "@" and "`", "[" and "{".
    EXPECT_FALSE(qor::WString("@[").equalsIgnoreCase("`{"));
    EXPECT_FALSE(qor::WString("\xC3\x84").equalsIgnoreCase("\xC3\xA4"));
    // Elsewhere the Kelvin sign and the dotless i fold to ASCII letters.
    EXPECT_FALSE(qor::WString("\xE2\x84\xAA").equalsIgnoreCase("k"));
    EXPECT_FALSE(qor::WString("\xC4\xB1").equalsIgnoreCase("I"));
}

TEST(WStringTest, EqualsIgnoreCaseTakesNarrowTextAsUtf8) {
    EXPECT_TRUE(qor::WString("T\xC3\xA4glich").equalsIgnoreCase("t\xC3\xA4GLICH"));
    EXPECT_TRUE(qor::WString("x\xF0\x9F\x98\x80").equalsIgnoreCase("X\xF0\x9F\x98\x80"));
    EXPECT_FALSE(qor::WString("x\xF0\x9F\x98\x80").equalsIgnoreCase("X\xF0\x9F\x98\x81"));
    EXPECT_FALSE(wide(u"x\xD83D").equalsIgnoreCase("x\xF0\x9F\x98\x80"));
}

TEST(WStringTest, NarrowFormIsUtf8) {
    EXPECT_EQ(bytesOf(qor::WString("")), "");
    EXPECT_EQ(bytesOf(wide(u"na\u00EFve \u20AC \xD83D\xDE00")),
              "na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80");
    EXPECT_EQ(bytesOf(wide(std::u16string(u"a\0b", 3))), std::string("a\0b", 3));
}

TEST(WStringTest, LoneSurrogateIsAReplacementInTheNarrowForm) {
    EXPECT_EQ(bytesOf(wide(u"a\xD83D")), "a\xEF\xBF\xBD");
    EXPECT_EQ(bytesOf(wide(u"\xDE00\xD83D")), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(bytesOf(wide(u"\xD83Dz")), "\xEF\xBF\xBDz");
}

TEST(WStringTest, ToStringIsAvailableThroughTheBaseClass) {
    const qor::WString text("T\xC3\xA4glich");
    const qor::Object& object = text;

    EXPECT_STREQ(object.toString().value(), "T\xC3\xA4glich");
}

TEST(WStringTest, TruthValuesAreWordsOrNumbers) {
    // clang-format off
    const TruthCase rows[] = {
        {"true",        true,  4},
        {"TRUE",        true,  4},
        {"True",        true,  4},
        {"yes",         true,  3},
        {"YeS",         true,  3},
        {" \t\n\v\f\rtrue", true, 10},
        {"true!",       true,  4},
        {"true1",       true,  4},
        {"yes no",      true,  3},
        {"true\xC3\xA9", true, 4},
        {"1",           true,  1},
        {"-1",          true,  2},
        {"1E0",         true,  3},
        {"  2 ",        true,  3},
        {"0.5E1",       true,  5},
        {"99999999999999999999", true, 20},
        {"4294967296",  true,  10},
        {"0",           false, 1},
        {"0E0",         false, 3},
        {"0.5",         false, 3},
        {"-0",          false, 2},
        {"false",       false, 5},
        {"no",          false, 2},
        {"truee",       false, 5},
        {"tru",         false, 3},
        {"yesterday",   false, 9},
        {"y",           false, 1},
        {"t",           false, 1},
        {"on",          false, 2},
        {"E5",          false, 1},
        {"",            false, 0},
        {"   ",         false, 0},
        {"+",           false, 0},
        {".5E1",        false, 0},
        {"\"true\"",    false, 0},
        {"0true",       false, 1},
    };
    // clang-format on
    for (const TruthCase& row : rows) {
        int end = -99;
        EXPECT_EQ(qor::WString(row.text).toBoolean(0, &end), row.isTrue) << row.text;
        EXPECT_EQ(end, row.end) << row.text;
        EXPECT_EQ(qor::WString(row.text).toBoolean(0, nullptr), row.isTrue) << row.text;
    }
}

TEST(WStringTest, TruthValueIsReadFromTheGivenStart) {
    const qor::WString text("false true 0 7");

    EXPECT_FALSE(text.toBoolean(0, nullptr));
    EXPECT_TRUE(text.toBoolean(5, nullptr));
    EXPECT_TRUE(text.toBoolean(6, nullptr));
    EXPECT_FALSE(text.toBoolean(7, nullptr));
    EXPECT_FALSE(text.toBoolean(10, nullptr));
    EXPECT_TRUE(text.toBoolean(12, nullptr));
    for (const int start : {-1, 14, 15, lowest, highest}) {
        int end = -99;
        EXPECT_FALSE(text.toBoolean(start, &end)) << start;
        EXPECT_EQ(end, start);
    }
}
