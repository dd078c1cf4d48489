#include <expat.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/markup/EntitySupport.h"
#include "tests/host/markup/Puller.h"

namespace {

using olmhost::EntitySupport;
using olmhost::FaultKind;
using olmtest::abc;
using olmtest::MemoryDocument;
using olmtest::Puller;
using testing::HasSubstr;

using Events = std::vector<std::string>;

enum class Expat { AsItIs, WithoutFix };

// Reads documents with a type declaration in one of the two ways. Where the expat in use lacks the
// fix, the two are one.
class WayOfReading {
public:
    explicit WayOfReading(Expat expat) {
        if (expat == Expat::WithoutFix) {
            withoutFix.emplace();
        }
    }
    static std::string name(Expat expat) {
        return expat == Expat::AsItIs ? "AsItIs" : "WithoutFix";
    }

private:
    std::optional<EntitySupport::WithoutFix> withoutFix;
};

const auto bothWays = testing::Values(Expat::AsItIs, Expat::WithoutFix);

class EntityTest : public testing::TestWithParam<std::tuple<std::uint32_t, Expat>> {
protected:
    MemoryDocument document(const std::string& bytes) {
        return MemoryDocument(bytes, std::get<0>(GetParam()));
    }
    Events events(const std::string& bytes) {
        MemoryDocument made = document(bytes);
        return olmtest::eventsOf(made);
    }

private:
    WayOfReading way{std::get<Expat>(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(ReadSizes, EntityTest,
                         testing::Combine(testing::Values(1, 2, 3, 7, 65536), bothWays),
                         [](const auto& row) {
                             return "Bytes" + std::to_string(std::get<0>(row.param)) +
                                    WayOfReading::name(std::get<1>(row.param));
                         });

// Long documents, which take too long with reads of several sizes.
class LongEntityTest : public testing::TestWithParam<Expat> {
private:
    WayOfReading way{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Expat, LongEntityTest, bothWays,
                         [](const auto& row) { return WayOfReading::name(row.param); });

TEST_P(EntityTest, InternalEntitiesAreExpanded) {
    EXPECT_EQ(events("<!DOCTYPE a [<!ENTITY e 'E&#38;amp;'><!ENTITY t '<b x=\"&e;\">in</b><c/>'>]>"
                     "<a y='&e;'>1&e;2&t;3</a>"),
              (Events{"<1 y='E&'", "#1E&2", "<2 x='E&'", "#in", "</2", "<3", "</3", "</1", "end"}));
}

TEST_P(EntityTest, ExternalEntitiesEndTheDocument) {
    MemoryDocument made = document("<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/hostname'>]>"
                                   "<a>1&e;2<b/></a>");
    EXPECT_EQ(olmtest::eventsOf(made), (Events{"<1", "#1", "end"}));
    ASSERT_EQ(made.faults.size(), 1U);
    EXPECT_EQ(made.faults[0].kind, FaultKind::BrokenMarkup);
    EXPECT_THAT(made.faults[0].text, HasSubstr("external entities are not supported"));
}

TEST_P(EntityTest, DeclarationsOutsideTheDocumentEndIt) {
    for (const char* type :
         {"<!DOCTYPE a SYSTEM 'a.dtd'>", "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p.ent'> %p;]>"}) {
        MemoryDocument made = document(std::string(type) + "<a>&lost;</a>");
        EXPECT_EQ(olmtest::eventsOf(made), Events{"end"}) << type;
        EXPECT_EQ(made.faults.size(), 1U) << type;
    }
}

TEST_P(EntityTest, AStandaloneDocumentNeedsNoOutsideDeclarations) {
    EXPECT_EQ(events("<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 'a.dtd'><a>t</a>"),
              (Events{"<1", "#t", "</1", "end"}));
}

TEST_P(LongEntityTest, EntitiesThatMultiplyAreStopped) {
    std::string bytes = "<!DOCTYPE a [<!ENTITY l0 'lol'>";
    for (int i = 1; i < 12; ++i) {
        const std::string inner = "&l" + std::to_string(i - 1) + ";";
        bytes += "<!ENTITY l" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k) {
            bytes += inner;
        }
        bytes += "'>";
    }
    MemoryDocument made(bytes + "]><a>&l11;</a>");
    Puller puller(made);
    puller.addMap(abc());
    EXPECT_EQ(puller.nextTag(), 0);
    EXPECT_EQ(puller.nextTag(), -1);
    ASSERT_EQ(made.faults.size(), 1U);
    EXPECT_EQ(made.faults[0].kind, FaultKind::LimitReached);
}

TEST_P(EntityTest, StartTagsThatEntitiesMakeLongReachTheLimit) {
    MemoryDocument made = document("<!DOCTYPE a [<!ENTITY e '0123456789'>]><a><b x='&e;&e;'/></a>");

    made.bounds.longestAttribute = 20;
    EXPECT_EQ(olmtest::eventsOf(made).back(), "end");
    ASSERT_EQ(made.faults.size(), 1U);
    EXPECT_EQ(made.faults[0].kind, FaultKind::LimitReached);
}

// "<!DOCTYPE root [...]>" with `count` entities, each of which has `before`, the one declared
// before it, and `after`. The innermost is "e0" with the text `innermost`.
std::string nestedEntities(int count, const std::string& innermost, const std::string& before,
                           const std::string& after) {
    std::string bytes = "<!DOCTYPE root [<!ENTITY e0 '" + innermost + "'>";
    for (int i = 1; i < count; ++i) {
        bytes.append("<!ENTITY e").append(std::to_string(i)).append(" '").append(before);
        bytes.append("&e").append(std::to_string(i - 1)).append(";").append(after).append("'>");
    }
    return bytes + "]>";
}

// 3,001 bytes in entities of entities. Expat reports the innermost one in pieces, and parsing
// pauses after the first of them where it may: an expat without the fix then drops the rest of the
// outer ones.
const std::string nestedTexts =
    nestedEntities(4, std::string(600, 'x') + "\n" + std::string(399, 'y'), std::string(300, 'b'),
                   std::string(367, 'a'));
const std::string textOfNested = std::string(900, 'b') + std::string(600, 'x') + "\n" +
                                 std::string(399, 'y') + std::string(1101, 'a');

TEST_P(EntityTest, NoTextIsLostInNestedEntities) {
    ASSERT_EQ(textOfNested.size(), 3001U);
    EXPECT_EQ(events(nestedTexts + "<root><a>&e3;</a><b>&e3;.</b></root>"),
              (Events{"<100", "<1", "#" + textOfNested, "</1", "<2", "#" + textOfNested + ".",
                      "</2", "</100", "end"}));
}

// More than 1 MB of tags makes the parser pause where it may.
TEST_P(LongEntityTest, NoTagIsLostInNestedEntities) {
    std::string many;
    for (int i = 0; i < 5000; ++i) {
        many += "<a/>";
    }
    MemoryDocument made(nestedEntities(4, many, many + "<b/>", "<c/>" + many) +
                        "<root>&e3;</root>");
    const Events read = olmtest::eventsOf(made);
    EXPECT_EQ(std::ranges::count(read, "<1"), 7 * 5000);
    EXPECT_EQ(std::ranges::count(read, "<2"), 3);
    EXPECT_EQ(std::ranges::count(read, "<3"), 3);
    EXPECT_EQ(read.back(), "end");
    EXPECT_TRUE(made.faults.empty());
}

TEST_P(EntityTest, AReaderContinuesInNestedEntities) {
    const std::string declared =
        nestedEntities(3, std::string(700, 'x') + "<b>in</b>", "<a>1</a>", "<c>2</c>");
    const std::string bytes = declared + "<root>&e2;<d>&e2;</d></root>";
    MemoryDocument straight = document(bytes);
    Puller first(straight);
    first.addMap(abc());
    std::vector<tagUTXMLSaveData> states;
    Events all;
    do {
        states.push_back(first.save());
        all.push_back(first.event());
    } while (all.back() != "end");
    EXPECT_TRUE(straight.faults.empty());
    EXPECT_EQ(std::ranges::count(all, "#in"), 2);

    for (std::size_t at = 0; at < states.size(); ++at) {
        MemoryDocument made = document(bytes);
        Puller puller(made);
        puller.addMap(abc());
        ASSERT_EQ(puller.restore(states[at]), 0);
        EXPECT_EQ(puller.rest(), Events(all.begin() + static_cast<std::ptrdiff_t>(at), all.end()))
            << "after event " << at;
    }
}

TEST_P(LongEntityTest, ALongChainOfEntitiesEndsWithoutACrash) {
    for (const char* use : {"<root><a>&e59999;</a></root>", "<root><a x='&e59999;'/></root>"}) {
        MemoryDocument made(nestedEntities(60000, "x", "", "") + use);
        const Events read = olmtest::eventsOf(made);
        if (EntitySupport::isSound()) {
            EXPECT_TRUE(made.faults.empty());
            EXPECT_THAT(read, testing::Contains(HasSubstr("x")));
        } else {
            EXPECT_EQ(read, Events{"end"});
            ASSERT_EQ(made.faults.size(), 1U);
            EXPECT_EQ(made.faults[0].kind, FaultKind::LimitReached);
            EXPECT_THAT(made.faults[0].text, HasSubstr("more entities than the limit of 10000"));
        }
    }
}

TEST_P(LongEntityTest, EntitiesThatExpandALotAreDeliveredInPieces) {
    // 60 bytes per reference become 50,000; below what expat considers an attack.
    std::string bytes = "<!DOCTYPE root [<!ENTITY t '" + std::string(50000, 't') + "'><!ENTITY e '";
    for (int i = 0; i < 500; ++i) {
        bytes += "<a/>";
    }
    bytes += "'>]><root><b>";
    for (int i = 0; i < 100; ++i) {
        bytes += "&t;";
    }
    bytes += "</b>";
    for (int i = 0; i < 100; ++i) {
        bytes += "&e;";
    }
    MemoryDocument made(bytes + "<c>last</c></root>");
    Puller puller(made);
    puller.addMap(abc());
    EXPECT_EQ(puller.event(), "<100");
    EXPECT_EQ(puller.event(), "<2");
    const std::string text = puller.text();
    EXPECT_EQ(text, std::string(5000000, 't'));
    EXPECT_EQ(puller.event(), "</2");
    for (int i = 0; i < 50000; ++i) {
        ASSERT_EQ(puller.event(), "<1");
        ASSERT_EQ(puller.event(), "</1");
    }
    EXPECT_EQ(puller.rest(), (Events{"<3", "#last", "</3", "</100", "end"}));
    EXPECT_TRUE(made.faults.empty());
}

// An independent look at what the parser relies on: expat alone, suspended once.
TEST(EntitySupportTest, TheProbeFindsWhatExpatDoes) {
    struct Reading {
        XML_Parser parser;
        std::string text;
    };
    Reading reading{XML_ParserCreate(nullptr), ""};
    XML_SetUserData(reading.parser, &reading);
    XML_SetCharacterDataHandler(reading.parser, [](void* user, const XML_Char* bytes, int size) {
        auto& reading = *static_cast<Reading*>(user);
        reading.text.append(bytes, static_cast<std::size_t>(size));
        if (reading.text.ends_with('x')) {
            XML_StopParser(reading.parser, XML_TRUE);
        }
    });
    const std::string bytes = nestedTexts + "<root>&e3;</root>";
    ASSERT_EQ(XML_Parse(reading.parser, bytes.data(), static_cast<int>(bytes.size()), 1),
              XML_STATUS_SUSPENDED);
    XML_ResumeParser(reading.parser);
    XML_ParserFree(reading.parser);

    EXPECT_EQ(EntitySupport::isSound(), reading.text == textOfNested);
    const XML_Expat_Version version = XML_ExpatVersionInfo();
    if (std::tie(version.major, version.minor) >= std::tuple(2, 7)) {
        EXPECT_TRUE(EntitySupport::isSound());
    }
}

TEST(EntitySupportTest, WithoutTheFixWhatOneChunkAddsIsBounded) {
    const std::string start = "<!DOCTYPE root [<!ENTITY t '" + std::string(1000, 't') +
                              "'><!ENTITY e '<a/><a/><a/><a/><a/><a/>'>]><root><b>before</b>";
    const auto times = [](int count, const char* reference) {
        std::string bytes;
        for (int i = 0; i < count; ++i) {
            bytes += reference;
        }
        return bytes;
    };
    const EntitySupport::WithoutFix withoutFix(100'000);
    for (const auto& [reference, fits] : {std::pair("&t;", 90), std::pair("&e;", 150)}) {
        MemoryDocument allowed(start + "<c>" + times(fits, reference) + "</c></root>");
        EXPECT_THAT(olmtest::eventsOf(allowed), testing::Contains("</3")) << reference;
        EXPECT_TRUE(allowed.faults.empty()) << reference;

        MemoryDocument refused(start + "<c>" + times(2 * fits, reference) + "</c></root>");
        const Events read = olmtest::eventsOf(refused);
        EXPECT_THAT(read, testing::Contains("#before")) << reference;
        EXPECT_THAT(read, testing::Not(testing::Contains("</3"))) << reference;
        ASSERT_EQ(refused.faults.size(), 1U) << reference;
        EXPECT_EQ(refused.faults[0].kind, FaultKind::LimitReached);
        EXPECT_THAT(refused.faults[0].text, HasSubstr("more than the limit of 100000 bytes"));
    }
}

// The bound is on what a chunk adds, not on a document: without entities nothing exceeds it.
TEST(EntitySupportTest, WithoutTheFixLongDocumentsAreReadWhole) {
    const EntitySupport::WithoutFix withoutFix(100'000);
    std::string bytes = "<!DOCTYPE root [<!ENTITY e 'x'>]><root><a>" + std::string(500'000, 'y');
    bytes += "</a><b>&e;</b></root>";
    MemoryDocument made(bytes);
    EXPECT_EQ(olmtest::eventsOf(made), (Events{"<100", "<1", "#" + std::string(500'000, 'y'), "</1",
                                               "<2", "#x", "</2", "</100", "end"}));
    EXPECT_TRUE(made.faults.empty());
}

} // namespace
