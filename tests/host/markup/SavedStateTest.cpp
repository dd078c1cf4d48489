#include "host/markup/SavedState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/markup/EntitySupport.h"
#include "tests/host/markup/Puller.h"

namespace {

using olmtest::abc;
using olmtest::MemoryDocument;
using olmtest::Puller;

using Events = std::vector<std::string>;

// ASCII as UTF-16.
std::string wide(const std::string& ascii, bool littleEndian, bool withMark) {
    std::string bytes = !withMark ? "" : littleEndian ? "\xFF\xFE" : "\xFE\xFF";
    for (const char c : ascii) {
        bytes += littleEndian ? std::string{c, '\0'} : std::string{'\0', c};
    }
    return bytes;
}

const std::string mixed =
    "<root n='1'>  <a xml:space='preserve'>one &amp; two</a><b/> <!-- no --><c><d>x<e>y</e>z</d>\n"
    "<f> </f><g><![CDATA[<]]>&#65;</g></c>stray<h a='&lt;'><i></i></h ><x y='2'/></root >\n<!-- "
    "-->";

std::string nested(int depth) {
    std::string bytes;
    for (int i = 0; i < depth; ++i) {
        bytes.append("<").append(1, static_cast<char>('a' + i % 12));
        bytes.append(" n='").append(std::to_string(i)).append("'>");
        bytes.append(i % 3 == 0 ? "text" : "");
    }
    for (int i = depth - 1; i >= 0; --i) {
        bytes.append("</").append(1, static_cast<char>('a' + i % 12)).append(">");
        bytes.append(i % 2 == 1 ? "<z/>" : "");
    }
    return bytes;
}

struct Document {
    const char* name;
    std::string bytes;
    bool isReadWithoutFix = false; // see EntitySupport
};

std::vector<Document> documents() {
    const std::string latinNames =
        "<?xml version='1.0' encoding='ISO-8859-1'?><r\xE9p><\xE9l\xE8ve>\xE9t\xE9<\xFC/>"
        "</\xE9l\xE8ve><a>b</a></r\xE9p>";
    const std::string declared =
        "<!DOCTYPE root [<!ENTITY t '<a>1</a><b/>2<c>3</c>'><!ENTITY s 'text'><!ENTITY u "
        "'&s;<h>&t;&s;</h>4'><!ATTLIST d q CDATA 'default'>]><root>&s;<d>&t;&s;</d>&t;<e>&s;</e>"
        "&u;</root>";
    const std::string wideNames = "<root><a>\xC3\xA9</a></root>";
    return {
        {"Mixed", mixed},
        {"Utf8Mark", "\xEF\xBB\xBF" + mixed},
        {"Utf8Names",
         "<\xC3\xA9t\xC3\xA9><\xE6\x97\xA5 \xC3\xA9='1'>\xF0\x9F\x98\x80</\xE6\x97\xA5>"
         "<a/></\xC3\xA9t\xC3\xA9>"},
        {"Utf16Le", wide(mixed, true, false)},
        {"Utf16Be", wide(mixed, false, false)},
        {"Utf16LeMark", wide(mixed, true, true)},
        {"Utf16BeMark", wide(mixed, false, true)},
        {"Utf16Declared", wide("<?xml version='1.0' encoding='UTF-16'?>" + mixed, true, true)},
        {"Latin1", latinNames},
        {"Ascii", "<?xml version='1.0' encoding='us-ascii'?>" + mixed},
        {"TypeDeclaration", declared},
        {"TypeDeclarationWithoutFix", declared, true},
        {"SelfClosedRoot", "<a x='1'/>"},
        {"SelfClosedRootBehindSpace", "\n<a x='1'/> "},
        {"MadeUpNames", "<x><x><x>1</x><a/></x><x/><b>2</b></x>"},
        {"Nested", nested(20)},
        {"NestedToTheLast", nested(7)},
        {"NestedBeyondTheLast", nested(8)},
        {"MismatchAtTheRoot", "<root><a>1</a><b>2</b></toor>"},
        {"MismatchOfAnAncestor", "<root>\n<a><b><c>1</c>\r\n<d/> </x></a></root>"},
        {"MismatchWithAMadeUpName", "<root>\n<a><b>1</b></x></root>"},
        {"MismatchInside", "<root><a><b>1</b><c>\xC3\xA9</d></a></root>"},
        {"MismatchInUtf16", wide("<root>\n<a><b>1</b></x></root>", true, true)},
        {"Cut", "<root><a>1</a><b><c>2</c>tail"},
        {"CutInAClosingTag", "<root><a>1</a></roo"},
        {"InvalidByte", "<root><a>1</a>\n<b>\xC3\xA9\xFF</b></root>"},
        {"Junk", "<root><a/></root>junk"},
        {"TwoRoots", "<root><a/></root><root/>"},
        {"EmptyRoot", "<root></root>"},
        {"ReferencesAndSpace", "<root> <a> &#32; </a> <b>&lt;</b><c> x</c></root>"},
        {"WideText", wide(wideNames, true, false)},
    };
}

class SavedStateTest : public testing::TestWithParam<std::tuple<Document, std::uint32_t>> {
protected:
    SavedStateTest() {
        if (std::get<0>(GetParam()).isReadWithoutFix) {
            withoutFix.emplace();
        }
    }

    MemoryDocument document() const {
        return MemoryDocument(std::get<0>(GetParam()).bytes, std::get<1>(GetParam()));
    }

    // Returns the events of a reader that restores the state `begin`, and its fault.
    struct Story {
        Events events;
        std::string fault;
        bool operator==(const Story&) const = default;
    };
    static std::string faultOf(const MemoryDocument& made) {
        return made.faults.empty() ? "" : made.faults.back().text;
    }

private:
    std::optional<olmhost::EntitySupport::WithoutFix> withoutFix;
};

INSTANTIATE_TEST_SUITE_P(Documents, SavedStateTest,
                         testing::Combine(testing::ValuesIn(documents()),
                                          testing::Values(1U, 2U, 7U, 65536U)),
                         [](const auto& row) {
                             return std::get<0>(row.param).name +
                                    ("By" + std::to_string(std::get<1>(row.param)));
                         });

// After each event of a document: the state, and the events after it.
TEST_P(SavedStateTest, AFreshReaderContinuesFromEveryState) {
    MemoryDocument straight = document();
    Puller first(straight);
    first.addMap(abc());
    std::vector<tagUTXMLSaveData> places{first.save()};
    Events events;
    do {
        events.push_back(first.event(3));
        places.push_back(first.save());
    } while (events.back() != "end");

    for (std::size_t at = 0; at < places.size(); ++at) {
        const Events expected(events.begin() +
                                  static_cast<std::ptrdiff_t>(std::min(at, events.size() - 1)),
                              events.end());
        for (const bool rootFirst : {false, true}) {
            SCOPED_TRACE(testing::Message()
                         << "after event " << at << ", root first " << rootFirst);
            MemoryDocument made = document();
            Puller puller(made);
            puller.addMap(abc());
            if (rootFirst) {
                puller.nextTag();
            }
            ASSERT_EQ(puller.restore(places[at]), 0);
            EXPECT_TRUE(puller.attributes.empty() || rootFirst);

            const tagUTXMLSaveData again = puller.save();
            EXPECT_EQ(std::memcmp(&again, &places[at], sizeof again), 0) << "the place is the same";
            EXPECT_EQ(puller.rest(1024), expected);
            EXPECT_EQ(faultOf(made), faultOf(straight));
            EXPECT_LE(made.faults.size(), 1U);
        }
    }
}

// The same within one reader, back and forth.
TEST_P(SavedStateTest, TheSameReaderContinuesFromEveryState) {
    MemoryDocument made = document();
    Puller puller(made);
    puller.addMap(abc());
    std::vector<tagUTXMLSaveData> places{puller.save()};
    Events events;
    do {
        events.push_back(puller.event());
        places.push_back(puller.save());
    } while (events.back() != "end");

    for (std::size_t step = 0; step < places.size(); ++step) {
        const std::size_t at = step % 2 == 0 ? step / 2 : places.size() - 1 - step / 2;
        const Events expected(events.begin() +
                                  static_cast<std::ptrdiff_t>(std::min(at, events.size() - 1)),
                              events.end());
        ASSERT_EQ(puller.restore(places[at]), 0);
        EXPECT_EQ(puller.rest(), expected) << "after event " << at;
    }
    EXPECT_LE(made.faults.size(), 1U) << "a fault is reported once";
}

// States saved while text is unread, partly read, announced and skipped.
TEST_P(SavedStateTest, AStateInTextContinuesInTheText) {
    MemoryDocument straight = document();
    Puller first(straight);
    first.addMap(abc());
    while (first.nextTag() == 0) {
        const tagUTXMLSaveData unread = first.save();
        const std::string whole = first.text();
        if (whole == "(none)") {
            continue;
        }
        for (std::uint32_t taken = 0; taken <= 2; ++taken) {
            MemoryDocument made = document();
            Puller puller(made);
            ASSERT_EQ(puller.restore(unread), 0);
            std::int16_t status = 0;
            const std::u16string head = puller.read(taken, status);
            const tagUTXMLSaveData amid = puller.save();
            const std::string tail = puller.text();

            MemoryDocument other = document();
            Puller later(other);
            ASSERT_EQ(later.restore(amid), 0);
            EXPECT_EQ(later.text(), tail) << "after " << taken << " units of " << whole;
        }

        MemoryDocument made = document();
        Puller puller(made);
        ASSERT_EQ(puller.restore(unread), 0);
        EXPECT_EQ(puller.next(), UTXML_CONTENT_PENDING);
        const tagUTXMLSaveData announced = puller.save();
        EXPECT_EQ(UTXMLSkipContent(&puller.reader), 0);
        const tagUTXMLSaveData skipped = puller.save();

        ASSERT_EQ(puller.restore(announced), 0);
        EXPECT_EQ(puller.text(), whole);
        ASSERT_EQ(puller.restore(announced), 0);
        EXPECT_NE(puller.next(), UTXML_CONTENT_PENDING) << "it was announced before";
        ASSERT_EQ(puller.restore(skipped), 0);
        EXPECT_EQ(puller.text(), "(none)");
        EXPECT_NE(puller.next(), UTXML_CONTENT_PENDING);
    }
}

// After a restore elements can be skipped, and so can the root if it was read.
TEST_P(SavedStateTest, ElementsReadAfterARestoreCanBeSkipped) {
    MemoryDocument straight = document();
    Puller first(straight);
    first.addMap(abc());
    std::vector<tagUTXMLSaveData> places;
    while (first.nextTag() == 0) {
        places.push_back(first.save());
    }
    for (const tagUTXMLSaveData& place : places) {
        const auto skipNext = [&](Puller& puller) {
            puller.addMap(abc());
            EXPECT_EQ(puller.restore(place), 0);
            if (puller.nextTag() == 0 && (puller.tag.flags & UTXML_CLOSING_TAG) == 0) {
                puller.skip(puller.tag);
            }
            return puller.rest();
        };
        const auto walkNext = [&](Puller& puller) {
            puller.addMap(abc());
            EXPECT_EQ(puller.restore(place), 0);
            if (puller.nextTag() == 0 && (puller.tag.flags & UTXML_CLOSING_TAG) == 0) {
                for (int depth = 1; depth > 0;) {
                    if (puller.nextTag() < 0) {
                        break;
                    }
                    depth += (puller.tag.flags & UTXML_CLOSING_TAG) == 0 ? 1 : -1;
                }
            }
            return puller.rest();
        };
        MemoryDocument one = document();
        MemoryDocument two = document();
        Puller skipper(one);
        Puller walker(two);
        EXPECT_EQ(skipNext(skipper), walkNext(walker));
    }
}

TEST(SavedStateCostTest, RestoringInALongDocumentIsOneSeekAndReadsLittle) {
    std::string bytes = "<root>";
    for (int i = 0; i < 20000; ++i) {
        bytes += "<a><b>" + std::to_string(i) + "</b></a>";
    }
    MemoryDocument made(bytes + "</root>");
    Puller first(made);
    first.addMap(abc());
    first.nextTag();
    std::vector<tagUTXMLSaveData> places;
    for (int i = 0; i < 20000; ++i) {
        places.push_back(first.save());
        ASSERT_EQ(first.nextTag(), 0);
        ASSERT_EQ(first.skip(first.tag), 0);
    }

    MemoryDocument again(made.bytes);
    Puller puller(again);
    puller.addMap(abc());
    puller.nextTag();
    for (const int item : {19999, 10000, 3, 15000}) {
        const std::uint64_t bytesBefore = again.bytesRead;
        const int seeksBefore = again.seeks;
        ASSERT_EQ(puller.restore(places[item]), 0);
        EXPECT_EQ(puller.event(), "<1");
        EXPECT_EQ(puller.event(), "<2");
        EXPECT_EQ(puller.event(), std::string("#").append(std::to_string(item)));
        EXPECT_LE(again.seeks - seeksBefore, 1);
        EXPECT_LE(again.bytesRead - bytesBefore, 4096U);
    }
}

TEST(SavedStateCostTest, RestoringTheCurrentStateTouchesNoStream) {
    MemoryDocument made("<root><a/></root>");
    Puller puller(made);
    puller.addMap(abc());
    puller.nextTag();
    const tagUTXMLSaveData place = puller.save();
    const int reads = made.reads;
    ASSERT_EQ(puller.restore(place), 0);
    EXPECT_EQ(made.reads, reads);
    EXPECT_EQ(made.seeks, 0);
    EXPECT_EQ(puller.rest(), (Events{"<1", "</1", "</100", "end"}));
}

TEST(SavedStateIdTest, AClosingTagAfterARestoreHasTheIdOfTheCurrentMaps) {
    const UTXML_STRVALPAIR rows[] = {{42, "a"}, {43, "root"}};
    MemoryDocument made("<root><a><b/></a></root>");
    Puller first(made);
    first.nextTag();
    first.nextTag();
    first.nextTag();
    const tagUTXMLSaveData place = first.save();

    MemoryDocument again(made.bytes);
    Puller puller(again);
    puller.addMap(abc());
    puller.nextTag();
    ASSERT_EQ(puller.restore(place), 0);
    puller.addMap(rows);
    EXPECT_EQ(puller.rest(), (Events{"</2", "</42", "</100", "end"}))
        << "the root's opening tag was read with the earlier map";
}

TEST(SavedStateIdTest, TheRootReadBeforeARestoreCanBeSkippedAfterIt) {
    MemoryDocument made("<root><a><b/></a><c/></root>");
    Puller puller(made);
    puller.addMap(abc());
    puller.nextTag();
    const UTXMLTagRecord root = puller.tag;
    puller.nextTag();
    const UTXMLTagRecord inner = puller.tag;
    const tagUTXMLSaveData place = puller.save();
    puller.rest();

    ASSERT_EQ(puller.restore(place), 0);
    EXPECT_NE(puller.skip(inner), 0);
    EXPECT_EQ(puller.skip(root), 0);
    EXPECT_EQ(puller.rest(), Events{"end"});
}

TEST(SavedStateFaultTest, AStreamThatCannotBeMovedRefusesARestore) {
    MemoryDocument made("<root><a/><b/></root>");
    Puller puller(made);
    puller.addMap(abc());
    puller.nextTag();
    const tagUTXMLSaveData place = puller.save();
    puller.rest();
    made.failsSeeking = true;
    EXPECT_NE(puller.restore(place), 0);
    EXPECT_LT(puller.next(), 0);
    made.failsSeeking = false;
    ASSERT_EQ(puller.restore(place), 0) << "a later try counts";
    EXPECT_EQ(puller.rest(), (Events{"<1", "</1", "<2", "</2", "</100", "end"}));
}

TEST(SavedStateFaultTest, BlocksThatNoReaderFilledAreHarmless) {
    std::uint64_t random = 88172645463325252U;
    const auto next = [&] {
        random ^= random << 13;
        random ^= random >> 7;
        return random ^= random << 17;
    };
    for (int i = 0; i < 3000; ++i) {
        MemoryDocument made(mixed);
        Puller puller(made);
        puller.addMap(abc());
        puller.nextTag();
        puller.nextTag();
        tagUTXMLSaveData block = puller.save();
        auto* const bytes = reinterpret_cast<unsigned char*>(&block);
        for (int k = 0; k < 1 + i % 4; ++k) {
            bytes[next() % sizeof block] = static_cast<unsigned char>(next());
        }
        puller.restore(block);
        for (int k = 0; k < 100 && puller.nextTag() == 0; ++k) {
        }
        EXPECT_LT(puller.next(), 0);
    }
}

TEST(SavedStateFaultTest, AStateOfAnotherDocumentLeadsToAFaultOrTheEnd) {
    MemoryDocument longer(nested(20));
    Puller first(longer);
    std::vector<tagUTXMLSaveData> places;
    while (first.nextTag() == 0) {
        places.push_back(first.save());
    }
    for (const tagUTXMLSaveData& place : places) {
        MemoryDocument made("<root><a>short</a></root>");
        Puller puller(made);
        puller.restore(place);
        EXPECT_EQ(puller.rest().back(), "end");
    }
}

TEST(SavedStateFarTest, StatesBeyond32BitsAreKept) {
    olmhost::SavedState place;
    place.place = (std::uint64_t{1} << 40) + 5;
    place.textRead = (std::uint64_t{1} << 36) + 7;
    place.depth = 3;
    place.flags = olmhost::SavedState::AfterOpening;
    place.names = {1, 2, 3};
    tagUTXMLSaveData block{};
    place.store(block);
    EXPECT_EQ(olmhost::SavedState::from(block), place);
    EXPECT_TRUE(place.isValid());
}

// A stream of which only the far end exists.
class FarDocument : public MemoryDocument {
public:
    using MemoryDocument::MemoryDocument;
    std::int32_t readBytes(void* buffer, std::uint32_t size, std::uint32_t& count) override {
        if (place >= begin) {
            place -= begin;
            const std::int32_t status = MemoryDocument::readBytes(buffer, size, count);
            place += begin;
            return status;
        }
        return statusFailed;
    }
    static constexpr std::uint64_t begin = std::uint64_t{5} << 30;
};

TEST(SavedStateFarTest, AReaderContinuesAfter4GiB) {
    MemoryDocument near("<root><a>1</a><b><c/>2</b></root>");
    Puller first(near);
    first.addMap(abc());
    first.nextTag();
    olmhost::SavedState moved = olmhost::SavedState::from(first.save());
    const std::uint64_t rootLength = moved.place;
    moved.place = FarDocument::begin;
    tagUTXMLSaveData block{};
    moved.store(block);

    FarDocument far(near.bytes.substr(rootLength));
    Puller puller(far);
    puller.addMap(abc());
    ASSERT_EQ(puller.restore(block), 0);
    EXPECT_EQ(puller.event(), "<1");
    EXPECT_EQ(puller.extra, FarDocument::begin + 3);
    const tagUTXMLSaveData inside = puller.save();
    const Events expected{"#1", "</1", "<2", "<3", "</3", "</2", "</100", "end"};
    EXPECT_EQ(puller.rest(), expected);
    ASSERT_EQ(puller.restore(inside), 0);
    EXPECT_EQ(puller.rest(), expected);
}

} // namespace
