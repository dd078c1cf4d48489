#include "filter/writers/OLMMsgNoteWriter.h"

#include "tests/unit/writers/FullItems.h"
#include "tests/unit/writers/ItemMessages.h"

using namespace fakehost;
using testing::ElementsAre;

TEST(OLMMsgNoteWriterTest, FullNoteIsWrittenInDocumentOrder) {
    const StoredMessage message = writeItem(fullNote());

    EXPECT_THAT(
        message.paths(),
        ElementsAre(
            "__nameid_version1.0", "__nameid_version1.0/__substg1.0_00020102",
            "__nameid_version1.0/__substg1.0_00030102", "__nameid_version1.0/__substg1.0_00040102",
            "__substg1.0_10090102", "__substg1.0_001A001F", "__substg1.0_8005101F",
            "__substg1.0_8005101F-00000000", "__substg1.0_8005101F-00000001",
            "__substg1.0_1000001F", "__substg1.0_0037001F", propertyStream,
            "__nameid_version1.0/__substg1.0_10020102", "__nameid_version1.0/__substg1.0_10010102",
            "__nameid_version1.0/__substg1.0_10000102", "__nameid_version1.0/__substg1.0_101D0102",
            "__nameid_version1.0/__substg1.0_101E0102",
            "__nameid_version1.0/__substg1.0_10150102"));
    // The times are 116444735990000000 and 131740151470000000.
    EXPECT_EQ(message.stream(propertyStream),
              streamBegin(noteKind) + hex("1F 10 05 80  06 00 00 00  08 00 00 00 00 00 00 00"
                                          "40 00 07 30  06 00 00 00  80 E9 A5 D4 DE B1 9D 01"
                                          "40 00 08 30  06 00 00 00  80 87 06 43 F8 08 D4 01"
                                          "1F 00 00 10  06 00 00 00  2C 00 00 00 00 00 00 00"
                                          "1F 00 37 00  06 00 00 00  16 00 00 00 00 00 00 00"));
    EXPECT_EQ(message.classId(), hex("0B 0D 02 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
    expectStreams(message, {{"__substg1.0_10090102", Bytes()},
                            {"__substg1.0_001A001F", utf16(u"IPM.StickyNote")},
                            {"__substg1.0_8005101F", hex("0E 00 00 00  08 00 00 00")},
                            {"__substg1.0_8005101F-00000000", terminated(u"Family")},
                            {"__substg1.0_8005101F-00000001", terminated(u"Sea")},
                            {"__substg1.0_1000001F", utf16(u"High water at noon\n \n")},
                            {"__substg1.0_0037001F", utf16(u"Tide table")}});
}

TEST(OLMMsgNoteWriterTest, FullNoteNamesTheKeywordsAfterItsDefaults) {
    const StoredMessage message = writeItem(fullNote());

    expectNameStreams(message, {{"00020102", "0E 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46"},
                                {"00030102", "00 8B 00 00  06 00  00 00"
                                             "03 8B 00 00  06 00  01 00"
                                             "02 8B 00 00  06 00  02 00"
                                             "04 8B 00 00  06 00  03 00"
                                             "05 8B 00 00  06 00  04 00"
                                             "00 00 00 00  05 00  05 00"},
                                {"10020102", "00 8B 00 00  06 00  00 00"},
                                {"10010102", "03 8B 00 00  06 00  01 00"},
                                {"10000102", "02 8B 00 00  06 00  02 00"},
                                {"101D0102", "04 8B 00 00  06 00  03 00"},
                                {"101E0102", "05 8B 00 00  06 00  04 00"},
                                {"10150102", "3B 4D DA 2E  05 00  05 00"}});
    EXPECT_EQ(nameStream(message, "00040102"), hex("10 00 00 00") + utf16(u"Keywords"));
}

TEST(OLMMsgNoteWriterTest, ProgressCountsTheElementsOfTheTable) {
    EXPECT_THAT(extractItem(fullNote()).progress,
                ElementsAre(14, 28, 28, 42, 42, 57, 57, 57, 57, 71, 71, 100));
}
