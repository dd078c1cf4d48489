#include "filter/storage/MapiNamedPropMap.h"

#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakehost/FakeHost.h"
#include "tests/unit/storage/Thrown.h"

using namespace fakehost;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr unsigned int noteColour = 0x8B000003;
constexpr unsigned int noteHeight = 0x8B030003;
constexpr unsigned int taskStart = 0x81040040;
constexpr unsigned short stringList = 0x101F;

constexpr const char* guidName = "__substg1.0_00020102";
constexpr const char* entryName = "__substg1.0_00030102";
constexpr const char* stringName = "__substg1.0_00040102";

const Bytes noteGuid = hex("0E 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46");
const Bytes taskGuid = hex("03 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46");

// The map with its lists open, for names that no table has.
class OpenMap : public MapiNamedPropMap {
public:
    using MapiNamedPropMap::guidList;
    using MapiNamedPropMap::stringList;
};

class MapiNamedPropMapTest : public testing::Test {
protected:
    MapiNamedPropMapTest() { map->initialize(root); }

    [[nodiscard]] Bytes stream(const std::string& name) const {
        return host.message().stream("__nameid_version1.0/" + name);
    }
    [[nodiscard]] std::vector<std::string> names() const {
        return host.message().names("__nameid_version1.0");
    }

    FakeHost host;
    HostStream* root = host.newRoot();
    std::optional<OpenMap> map{std::in_place};
};

MapiNamedProp stringRow(const char* name, unsigned int crc, MapiGUIDIndex set) {
    return {0, name, crc, true, set};
}

} // namespace

TEST_F(MapiNamedPropMapTest, MessageWithoutNamedPropertiesHasThreeEmptyStreams) {
    map->finalizeMappings();

    EXPECT_THAT(host.message().paths(),
                ElementsAre("__nameid_version1.0", "__nameid_version1.0/__substg1.0_00020102",
                            "__nameid_version1.0/__substg1.0_00030102",
                            "__nameid_version1.0/__substg1.0_00040102"));
    EXPECT_EQ(stream(guidName), Bytes());
    EXPECT_EQ(stream(entryName), Bytes());
    EXPECT_EQ(stream(stringName), Bytes());
}

TEST_F(MapiNamedPropMapTest, FirstNoteMappingIsWrittenToEntryAndBucket) {
    EXPECT_EQ(map->mapNamedProp(noteColour), 0x80000003u);
    map->finalizeMappings();

    EXPECT_THAT(names(), ElementsAre(guidName, entryName, stringName, "__substg1.0_10020102"));
    EXPECT_EQ(stream(guidName), noteGuid);
    EXPECT_EQ(stream(entryName), hex("00 8B 00 00  06 00  00 00"));
    EXPECT_EQ(stream("__substg1.0_10020102"), hex("00 8B 00 00  06 00  00 00"));
    EXPECT_EQ(stream(stringName), Bytes());
}

TEST_F(MapiNamedPropMapTest, OnlyKeywordsHasABucketByChecksumAndNoGuid) {
    EXPECT_EQ(map->mapNamedProp("Keywords", stringList), 0x8000101Fu);
    map->finalizeMappings();

    EXPECT_THAT(names(), ElementsAre(guidName, entryName, stringName, "__substg1.0_10150102"));
    EXPECT_EQ(stream(guidName), Bytes());
    EXPECT_EQ(stream(entryName), hex("00 00 00 00  05 00  00 00"));
    EXPECT_EQ(stream("__substg1.0_10150102"), hex("3B 4D DA 2E  05 00  00 00"));
    EXPECT_EQ(stream(stringName), hex("10 00 00 00") + utf16(u"Keywords"));
}

TEST_F(MapiNamedPropMapTest, NothingIsWrittenBeforeTheEnd) {
    map->mapNamedProp(noteColour);
    map->mapNamedProp("Keywords", stringList);

    EXPECT_EQ(host.countOf(CallKind::Write), 0);
    EXPECT_THAT(names(), ElementsAre(guidName, entryName, stringName));
}

TEST_F(MapiNamedPropMapTest, KeyMappedTwiceIsTwoProperties) {
    EXPECT_EQ(map->mapNamedProp(noteColour), 0x80000003u);
    EXPECT_EQ(map->mapNamedProp(noteColour), 0x80010003u);
    map->finalizeMappings();

    const Bytes both = hex("00 8B 00 00  06 00  00 00"
                           "00 8B 00 00  06 00  01 00");
    EXPECT_EQ(stream(entryName), both);
    EXPECT_EQ(stream("__substg1.0_10020102"), both);
    EXPECT_EQ(stream(guidName), noteGuid);
}

TEST_F(MapiNamedPropMapTest, SetsAreNumberedInOrderOfFirstUse) {
    EXPECT_EQ(map->mapNamedProp(noteColour), 0x80000003u);
    EXPECT_EQ(map->mapNamedProp(taskStart), 0x80010040u);
    EXPECT_EQ(map->mapNamedProp(noteHeight), 0x80020003u);
    map->finalizeMappings();

    // 0x8B00 ^ 6 is 2 modulo 31, 0x8104 ^ 8 is 21, 0x8B03 ^ 6 is 1.
    EXPECT_EQ(stream(guidName), noteGuid + taskGuid);
    EXPECT_EQ(stream(entryName), hex("00 8B 00 00  06 00  00 00"
                                     "04 81 00 00  08 00  01 00"
                                     "03 8B 00 00  06 00  02 00"));
    EXPECT_EQ(stream("__substg1.0_10020102"), hex("00 8B 00 00  06 00  00 00"));
    EXPECT_EQ(stream("__substg1.0_10150102"), hex("04 81 00 00  08 00  01 00"));
    EXPECT_EQ(stream("__substg1.0_10010102"), hex("03 8B 00 00  06 00  02 00"));
}

TEST_F(MapiNamedPropMapTest, SetsUsedInAnotherOrderHaveOtherNumbers) {
    map->mapNamedProp(taskStart);
    map->mapNamedProp(noteColour);
    map->finalizeMappings();

    EXPECT_EQ(stream(guidName), taskGuid + noteGuid);
    EXPECT_EQ(stream(entryName), hex("04 81 00 00  06 00  00 00"
                                     "00 8B 00 00  08 00  01 00"));
}

TEST_F(MapiNamedPropMapTest, KeywordsMappedTwiceHasOneNameRecord) {
    EXPECT_EQ(map->mapNamedProp("Keywords", stringList), 0x8000101Fu);
    EXPECT_EQ(map->mapNamedProp("Keywords", stringList), 0x8001101Fu);
    map->finalizeMappings();

    EXPECT_EQ(stream(entryName), hex("00 00 00 00  05 00  00 00"
                                     "00 00 00 00  05 00  01 00"));
    EXPECT_EQ(stream("__substg1.0_10150102"), hex("3B 4D DA 2E  05 00  00 00"
                                                  "3B 4D DA 2E  05 00  01 00"));
    EXPECT_EQ(stream(stringName), hex("10 00 00 00") + utf16(u"Keywords"));
}

TEST_F(MapiNamedPropMapTest, TypeOfAStringNameIsThatOfTheCaller) {
    EXPECT_EQ(map->mapNamedProp("Keywords", 0x001F), 0x8000001Fu);
}

// 0x8093 and 0x8051 with the kind word 6 are both in bucket 26.
TEST_F(MapiNamedPropMapTest, NamesThatCollideShareABucketInOrderOfMapping) {
    map->mapNamedProp(0x8093001F);
    map->mapNamedProp(0x8062001F);
    map->mapNamedProp(0x8051001F);
    map->finalizeMappings();

    EXPECT_THAT(names(), ElementsAre(guidName, entryName, stringName, "__substg1.0_101A0102",
                                     "__substg1.0_10080102"));
    EXPECT_EQ(stream("__substg1.0_101A0102"), hex("93 80 00 00  06 00  00 00"
                                                  "51 80 00 00  06 00  02 00"));
    EXPECT_EQ(stream("__substg1.0_10080102"), hex("62 80 00 00  06 00  01 00"));
}

TEST_F(MapiNamedPropMapTest, KeyOrNameWithoutARowThrows) {
    EXPECT_EQ(thrownCode([&] { map->mapNamedProp(0x80010003u); }), unknownCode);
    EXPECT_EQ(thrownCode([&] { map->mapNamedProp(0x8B00001Fu); }), unknownCode);
    EXPECT_EQ(thrownCode([&] { map->mapNamedProp("keywords", stringList); }), unknownCode);
    EXPECT_EQ(thrownCode([&] { map->mapNamedProp("", stringList); }), unknownCode);
}

TEST_F(MapiNamedPropMapTest, StringNameIsNotFoundUnderTheTagZero) {
    EXPECT_EQ(thrownCode([&] { map->mapNamedProp(0u); }), unknownCode);
}

TEST_F(MapiNamedPropMapTest, UnknownKeyTakesNoNumber) {
    EXPECT_EQ(thrownCode([&] { map->mapNamedProp(0u); }), unknownCode);

    EXPECT_EQ(map->mapNamedProp(noteColour), 0x80000003u);
}

// Unlike that of a numeric name, the kind word of a string name does not count three more sets.
TEST_F(MapiNamedPropMapTest, StringNameInAListedSetCountsFromZero) {
    map->guidList.add(SetNote);

    map->finalizeStringProperty(stringRow("Keywords", 0x2EDA4D3B, SetTask), 7);

    // 0x2EDA4D3B is 786058555; with the kind word 3 it is 786058552, which is 15 modulo 31.
    EXPECT_EQ(stream(entryName), hex("00 00 00 00  03 00  07 00"));
    EXPECT_EQ(stream("__substg1.0_100F0102"), hex("3B 4D DA 2E  03 00  07 00"));
    ASSERT_EQ(map->guidList.size(), 2);
    EXPECT_EQ(map->guidList.get(1), SetTask);
}

TEST_F(MapiNamedPropMapTest, ChecksumOfZeroIsCalculated) {
    map->finalizeStringProperty(stringRow("Keywords", 0, SetPublicStrings), 0);

    EXPECT_EQ(stream("__substg1.0_10150102"), hex("3B 4D DA 2E  05 00  00 00"));
}

TEST_F(MapiNamedPropMapTest, ChecksumCoversTheNameInUtf16) {
    EXPECT_EQ(MapiNamedPropMap::calculateCRC32("Keywords"), 0x2EDA4D3Bu);
    EXPECT_EQ(MapiNamedPropMap::calculateCRC32("A"), 0xE9627E44u);
    EXPECT_EQ(MapiNamedPropMap::calculateCRC32(""), 0u);
}

TEST_F(MapiNamedPropMapTest, NameWithoutARowIsNotListed) {
    EXPECT_EQ(thrownCode([&] { map->addStringToList(stringRow("Other", 0, SetTask)); }),
              unknownCode);
    EXPECT_EQ(map->stringList.size(), 0);
}

TEST_F(MapiNamedPropMapTest, NameIsListedOnce) {
    EXPECT_EQ(map->addStringToList(stringRow("Keywords", 0, SetPublicStrings)), 0);
    EXPECT_EQ(map->addStringToList(stringRow("Keywords", 0, SetPublicStrings)), 0);

    ASSERT_EQ(map->stringList.size(), 1);
    EXPECT_EQ(map->stringList.get(0), 40);
}

// The offset counts the names of the table's first rows, which are empty, not those of the list.
TEST_F(MapiNamedPropMapTest, OffsetOfALaterNameCountsTheTablesFirstRows) {
    map->stringList.add(3);
    map->stringList.add(40);

    EXPECT_EQ(map->addStringToList(stringRow("Keywords", 0, SetPublicStrings)), 4);
}

TEST_F(MapiNamedPropMapTest, NumberPastTheTableInTheNameListThrows) {
    map->stringList.add(41);

    EXPECT_EQ(thrownCode([&] { map->writeStringStream(); }), unknownCode);
    EXPECT_EQ(stream(stringName), Bytes());
}

TEST_F(MapiNamedPropMapTest, GuidsAreWrittenInTheOrderOfTheList) {
    qor::ArrayList<MapiGUIDIndex> list;
    list.add(SetMeeting);
    list.add(SetPublicStrings);

    map->writeGUIDStream(list);

    EXPECT_EQ(stream(guidName), hex("90 DA D8 6E 0B 45 1B 10 98 DA 00 AA 00 3F 13 05"
                                    "29 03 02 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
}

TEST_F(MapiNamedPropMapTest, EveryShortWriteOfANumberThrowsAndEndsTheWriting) {
    // Two properties with six numbers each, a GUID and a name. Excluded are 15, the GUID's last
    // part, and 17, the name: a short write of these is not noticed.
    for (const int failing : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 16}) {
        SCOPED_TRACE(testing::Message() << "write " << failing);
        FakeHost ownHost;
        OpenMap ownMap;
        ownMap.initialize(ownHost.newRoot());
        ownMap.mapNamedProp(noteColour);
        ownMap.mapNamedProp("Keywords", stringList);
        ownHost.shortenWrite(failing, 1, 0);

        EXPECT_EQ(thrownCode([&] { ownMap.finalizeMappings(); }), shortWriteCode);
        EXPECT_EQ(ownHost.countOf(CallKind::Write), failing + 1);
    }
}

TEST_F(MapiNamedPropMapTest, StorageThatCannotBeMadeThrowsTheHostsStatus) {
    host.failCall(CallKind::CreateStorage, 0, -42);
    OpenMap other;

    EXPECT_EQ(thrownCode([&] { other.initialize(root); }), static_cast<unsigned int>(-42));
}

TEST_F(MapiNamedPropMapTest, StreamThatWasNotMadeTakesNoBytes) {
    FakeHost ownHost;
    HostStream* ownRoot = ownHost.newRoot();
    OpenMap ownMap;
    ownHost.failCall(CallKind::CreateStream, 1);
    ownMap.initialize(ownRoot);

    ownMap.mapNamedProp(noteColour);

    EXPECT_EQ(thrownCode([&] { ownMap.finalizeMappings(); }), shortWriteCode);
}

TEST_F(MapiNamedPropMapTest, BucketThatWasNotMadeTakesNoBytes) {
    map->mapNamedProp(noteColour);
    host.failCall(CallKind::CreateStream, 0);

    EXPECT_EQ(thrownCode([&] { map->finalizeMappings(); }), shortWriteCode);
    EXPECT_EQ(stream(entryName), hex("00 8B 00 00  06 00  00 00"));
}

TEST_F(MapiNamedPropMapTest, BucketBeforeTheStartIsOutOfBounds) {
    OpenMap early;

    const auto code =
        thrownCode([&] { early.writeMappingStream(MapiNamedPropMap::supportedProps[0], 6, 0); });

    EXPECT_EQ(code, qor::errorIndex);
}

TEST_F(MapiNamedPropMapTest, StreamsAreClosedBeforeTheirStorageAndBucketsInOrder) {
    map->mapNamedProp(noteColour); // bucket 2
    map->mapNamedProp(noteHeight); // bucket 1
    map->finalizeMappings();
    root->close(root);
    host.forgetCalls();

    map.reset();

    EXPECT_THAT(host.callsOf("close"),
                ElementsAre("close(__nameid_version1.0/__substg1.0_00020102)",
                            "close(__nameid_version1.0/__substg1.0_00030102)",
                            "close(__nameid_version1.0/__substg1.0_00040102)",
                            "close(__nameid_version1.0/__substg1.0_10010102)",
                            "close(__nameid_version1.0/__substg1.0_10020102)",
                            "close(__nameid_version1.0)"));
    EXPECT_EQ(host.openHandles(), 0);
}

TEST_F(MapiNamedPropMapTest, UninitializedMapClosesNothing) {
    host.forgetCalls();

    { OpenMap early; }

    EXPECT_THAT(host.calls(), IsEmpty());
}
