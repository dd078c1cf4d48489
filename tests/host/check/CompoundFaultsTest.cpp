// One good compound file, and for each rule of its format a file with one field changed.

#include <set>

#include <gtest/gtest.h>

#include "tests/host/check/CheckedFiles.h"

namespace olmhost::test {

namespace {

// Sectors of the good file, in the order in which they come about; 0 to 8 are the long stream, 9
// holds the mini stream.
constexpr std::size_t miniFatAt = 5632;   // sector 10
constexpr std::size_t directoryAt = 6144; // sectors 11 and 12
constexpr std::size_t fatAt = 7168;       // sector 13
constexpr std::size_t goodSize = 7680;

// Mini sectors: 0 and 1 are "s1", 2 is "s2", 3 is "inner". Entries: root, long, s1, s2, storage,
// inner, empty; the last is unused.
Bytes goodFile() {
    MemorySink sink;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    addStream(root, u"long", pattern(4500, 1));
    addStream(root, u"s1", pattern(100, 2));
    addStream(root, u"s2", pattern(64, 3));
    HostStream* storage = createStorage(root, u"storage");
    addStream(storage, u"inner", pattern(1, 4));
    close(storage);
    addStream(root, u"empty", {});
    close(root);
    return sink.bytes;
}

constexpr std::size_t fatEntry(std::size_t sector) {
    return fatAt + 4 * sector;
}

constexpr std::size_t miniFatEntry(std::size_t sector) {
    return miniFatAt + 4 * sector;
}

// The offset of a field in an entry of the directory.
constexpr std::size_t field(std::size_t entry, std::size_t offset) {
    return directoryAt + 128 * entry + offset;
}

// Offsets of fields.
constexpr std::size_t nameSize = 64;
constexpr std::size_t type = 66;
constexpr std::size_t colour = 67;
constexpr std::size_t left = 68;
constexpr std::size_t right = 72;
constexpr std::size_t child = 76;
constexpr std::size_t classId = 80;
constexpr std::size_t state = 96;
constexpr std::size_t created = 100;
constexpr std::size_t modified = 108;
constexpr std::size_t firstSector = 116;
constexpr std::size_t size = 120;

struct Fault {
    const char* name;
    std::size_t offset;
    std::uint64_t value;
    std::size_t width; // bytes
    FindingCode code;
    const char* place;
};

using enum FindingCode;

// clang-format off
const Fault faults[] = {
    {"Signature",              0,  0,          1, HeaderSignature,       "header"},
    {"HeaderWithClassId",      8,  1,          1, HeaderClassId,         "header"},
    {"MinorVersion",           24, 0x3B,       2, HeaderMinorVersion,    "header"},
    {"MajorVersion",           26, 5,          2, HeaderMajorVersion,    "header"},
    {"ByteOrder",              28, 0xFEFF,     2, HeaderByteOrder,       "header"},
    {"SectorShift",            30, 10,         2, HeaderSectorShift,     "header"},
    {"SectorShiftOfVersion4",  30, 12,         2, HeaderSectorShift,     "header"},
    {"MiniSectorShift",        32, 7,          2, HeaderMiniSectorShift, "header"},
    {"ReservedBytes",          39, 1,          1, HeaderReserved,        "header"},
    {"DirectorySectorsCounted", 40, 2,         4, HeaderDirectoryCount,  "header"},
    {"Transaction",            52, 1,          4, HeaderTransaction,     "header"},
    {"MiniLimit",              56, 8192,       4, HeaderMiniLimit,       "header"},

    {"FatCountTooLarge",       44, 2,          4, FatSectorLost,         "DIFAT"},
    {"FatCountFarTooLarge",    44, 0xFFFFFFFF, 4, FatCount,              "header"},
    {"FatCountZero",           44, 0,          4, FatTooShort,           "FAT"},
    {"FatCountTooSmall",       44, 0,          4, DifatTail,             "DIFAT"},
    {"DifatOfOneSector",       68, 3,          4, DifatChain,            "DIFAT"},
    {"DifatOutOfFile",         68, 14,         4, DifatChain,            "DIFAT"},
    {"DifatStartIsFreeMark",   68, 0xFFFFFFFF, 4, DifatChain,            "DIFAT"},
    {"DifatCount",             72, 1,          4, DifatCount,            "header"},
    {"FatElsewhere",           76, 1,          4, FatSectorMark,         "FAT sector 1"},
    {"FatOutOfFile",           76, 14,         4, FatSectorLost,         "DIFAT"},
    {"DifatWithTail",          80, 5,          4, DifatTail,             "DIFAT"},

    {"FatSectorNotMarked",     fatEntry(13), 0xFFFFFFFE, 4, FatSectorMark,  "FAT sector 13"},
    {"FatMarkOnAStream",       fatEntry(3),  0xFFFFFFFD, 4, FatMarkStray,   "FAT"},
    {"DifatMarkOnAStream",     fatEntry(3),  0xFFFFFFFC, 4, FatMarkStray,   "FAT"},
    {"ReservedNumber",         fatEntry(3),  0xFFFFFFFB, 4, FatMarkStray,   "FAT"},
    {"SectorAfterTheEnd",      fatEntry(14), 0xFFFFFFFE, 4, FatPastEnd,     "FAT"},
    {"ChainCutShort",          fatEntry(3),  0xFFFFFFFE, 4, ChainLength,    "entry 1, '/long'"},
    {"ChainCutLeavesOrphans",  fatEntry(3),  0xFFFFFFFE, 4, SectorOrphan,   "sector 4"},
    {"ChainSkipsSectors",      fatEntry(3),  6,          4, SectorOrphan,   "sector 4"},
    {"ChainInACircle",         fatEntry(3),  2,          4, ChainShared,    "entry 1, '/long'"},
    {"ChainIntoItself",        fatEntry(3),  3,          4, ChainShared,    "entry 1, '/long'"},
    {"ChainIntoTheFat",        fatEntry(3),  13,         4, ChainShared,    "entry 1, '/long'"},
    {"ChainIntoTheDirectory",  fatEntry(3),  11,         4, ChainShared,    "entry 1, '/long'"},
    {"ChainOutOfTheFile",      fatEntry(3),  14,         4, ChainOutOfFile, "entry 1, '/long'"},
    {"ChainIntoAFreeSector",   fatEntry(3),  0xFFFFFFFF, 4, ChainIntoFree,  "entry 1, '/long'"},
    {"ChainTooLong",           field(1, size), 4000 + 96, 4, ChainLength,   "entry 1, '/long'"},

    {"DirectoryOutOfFile",     48, 100,        4, DirectoryMissing, "directory"},
    {"DirectoryMissing",       48, 0xFFFFFFFE, 4, DirectoryMissing, "directory"},
    {"DirectoryCutShort",      fatEntry(11), 0xFFFFFFFE, 4, EntryLink,      "entry 0, '/'"},
    {"DirectoryInACircle",     fatEntry(12), 11,         4, ChainShared,    "directory"},
    {"RootOfAnotherType",      field(0, type),     1,    1, RootType,       "entry 0, '/'"},
    {"RootUnused",             field(0, type),     0,    1, RootType,       "entry 0, '/'"},
    {"RootCalledOtherwise",    field(0, 0),        'r',  1, RootName,       "entry 0, '/'"},
    {"RootWithSibling",        field(0, right),    1,    4, RootSiblings,   "entry 0, '/'"},
    {"RootWithLeftSibling",    field(0, left),     1,    4, RootSiblings,   "entry 0, '/'"},
    {"RootWithTime",           field(0, created),  1,    1, RootCreated,    "entry 0, '/'"},
    {"RootWithState",          field(0, state),    1,    4, StorageState,   "entry 0, '/'"},
    {"SecondRoot",             field(4, type),     5,    1, RootTwice,      "entry 4, '/storage'"},
    {"UnusedEntryWithName",    field(7, 0),        'a',  1, UnusedEntry,    "entry 7"},
    {"UnusedEntryWithLink",    field(7, left),     0,    4, UnusedEntry,    "entry 7"},
    {"UnusedEntryWithSize",    field(7, size + 7), 1,    1, UnusedEntry,    "entry 7"},
    {"UnknownType",            field(1, type),     3,    1, EntryType,      "entry 1, '/long'"},
    {"UsedEntryMadeUnused",    field(5, type),     0,    1, EntryLink,      "entry 4, '/storage'"},
    {"NameOfOddSize",          field(1, nameSize), 9,    2, EntryNameLength, "entry 1, '/lon'"},
    {"NameEmpty",              field(1, nameSize), 2,    2, EntryNameLength, "entry 1, '/'"},
    {"NameWithoutSize",        field(1, nameSize), 0,    2, EntryNameLength, "entry 1, '/'"},
    {"NameNotTerminated",      field(1, 8),        'x',  2, EntryNameEnd,   "entry 1, '/long'"},
    {"NameShorterThanItsSize", field(1, nameSize), 12,   2, EntryNameEnd,   "entry 1, '/long\\u0000'"},
    {"BytesAfterTheName",      field(1, 30),       1,    1, EntryNamePadding, "entry 1, '/long'"},
    {"SlashInName",            field(1, 0),        '/',  1, EntryNameCharacter, "entry 1, '//ong'"},
    {"BackslashInName",        field(1, 0),        '\\', 1, EntryNameCharacter, "entry 1, '/\\ong'"},
    {"ColonInName",            field(1, 0),        ':',  1, EntryNameCharacter, "entry 1, '/:ong'"},
    {"ExclamationMarkInName",  field(1, 0),        '!',  1, EntryNameCharacter, "entry 1, '/!ong'"},
    {"UnknownColour",          field(1, colour),   2,    1, EntryColour,    "entry 1, '/long'"},
    {"EntryInNoStorage",       field(4, child), 0xFFFFFFFF, 4, EntryOrphan, "entry 5, 'inner'"},
    {"LinkOutOfDirectory",     field(4, child),    8,    4, EntryLink,      "entry 4, '/storage'"},
    {"LinkToUnusedEntry",      field(4, child),    7,    4, EntryLink,      "entry 4, '/storage'"},
    {"LinkToTheRoot",          field(5, right),    0,    4, EntryShared,    "entry 4, '/storage'"},
    {"LinkToItself",           field(5, left),     5,    4, EntryShared,    "entry 4, '/storage'"},
    {"LinkIntoAnotherTree",    field(5, right),    1,    4, EntryShared,    "entry 4, '/storage'"},
    {"StorageInItself",        field(4, child),    4,    4, EntryShared,    "entry 4, '/storage'"},
    {"StreamWithChild",        field(1, child),    5,    4, StreamChild,    "entry 1, '/long'"},
    {"StreamWithClassId",      field(1, classId),  1,    1, StreamClassId,  "entry 1, '/long'"},
    {"StreamWithState",        field(1, state),    1,    4, StreamState,    "entry 1, '/long'"},
    {"StreamWithTimeOfCreation", field(1, created), 1,   1, StreamTimes,    "entry 1, '/long'"},
    {"StreamWithTimeOfChange", field(1, modified), 1,    1, StreamTimes,    "entry 1, '/long'"},
    {"StreamTooLarge",         field(1, size), 0x80000001, 4, StreamSize,   "entry 1, '/long'"},
    {"UpperHalfOfSize",        field(1, size + 4), 1,    4, StreamSizeHigh, "entry 1, '/long'"},
    {"EmptyStreamWithSector",  field(6, firstSector), 0, 4, StreamEmptyStart, "entry 6, '/empty'"},
    {"StreamOfAnotherSize",    field(1, size),     5121, 4, ChainLength,    "entry 1, '/long'"},
    {"StreamElsewhere",        field(1, firstSector), 1, 4, SectorOrphan,   "sector 0"},
    {"StorageWithSize",        field(4, size),     1,    4, StorageStart,   "entry 4, '/storage'"},
    {"StorageWithSector",      field(4, firstSector), 1, 4, StorageStart,   "entry 4, '/storage'"},
    {"StorageWithState",       field(4, state),    1,    4, StorageState,   "entry 4, '/storage'"},
    {"NamesOutOfOrder",        field(2, 2),        '9',  1, NamesUnordered, "entry 0, '/'"},
    {"SameNameTwice",          field(2, 2),        '2',  1, NamesEqual,     "entry 0, '/'"},
    {"SameNameInCapitals",     field(2, 0), '2' << 16 | 'S', 4, NamesEqual, "entry 0, '/'"},

    {"UpperHalfOfTheMiniStreamsSize", field(0, size + 4), 1, 4, StreamSizeHigh, "entry 0, '/'"},
    {"MiniStreamOfOddSize",    field(0, size),     255,  4, MiniStreamSize, "mini stream"},
    {"MiniStreamTooShort",     field(0, size),     64,   4, MiniFatPastEnd, "mini FAT"},
    {"MiniStreamTooLong",      field(0, size),     1024, 4, ChainLength,    "mini stream"},
    {"MiniStreamElsewhere",    field(0, firstSector), 13, 4, ChainShared,   "mini stream"},
    {"MiniFatElsewhere",       60, 13,         4, ChainShared,     "mini FAT"},
    {"MiniFatMissing",         60, 0xFFFFFFFE, 4, MiniFatTooShort, "mini FAT"},
    {"MiniFatCount",           64, 2,          4, MiniFatCount,    "header"},
    {"MiniSectorAfterTheEnd",  miniFatEntry(4), 0xFFFFFFFE, 4, MiniFatPastEnd, "mini FAT"},
    {"MiniChainCutShort",      miniFatEntry(0), 0xFFFFFFFE, 4, ChainLength, "entry 2, '/s1'"},
    {"MiniChainTooLong",       miniFatEntry(3), 1,          4, ChainShared,
     "entry 5, '/storage/inner'"},
    {"MiniChainIntoAnother",   miniFatEntry(1), 2,          4, ChainShared, "entry 3, '/s2'"},
    {"MiniChainOutOfStream",   miniFatEntry(1), 4,          4, ChainOutOfFile, "entry 2, '/s1'"},
    {"MiniChainIntoFree",      miniFatEntry(0), 0xFFFFFFFF, 4, ChainIntoFree, "entry 2, '/s1'"},
    {"MiniOrphan",             miniFatEntry(0), 0xFFFFFFFE, 4, SectorOrphan, "mini sector 1"},
    {"ShortStreamOfAnotherSize", field(2, size), 64,        4, ChainLength, "entry 2, '/s1'"},
    {"ShortStreamElsewhere",   field(3, firstSector), 0,    4, ChainShared, "entry 3, '/s2'"},
};
// clang-format on

} // namespace

TEST(CompoundFaultsTest, GoodFileHasNoFindings) {
    const Bytes good = goodFile();
    ASSERT_EQ(good.size(), goodSize);

    const CheckResult result = checkCompoundBytes(good);

    expectNone(result);
    EXPECT_EQ(result.fileSize, goodSize);
    EXPECT_EQ(result.sectors, 14U);
    EXPECT_EQ(result.freeSectors, 0U);
    EXPECT_EQ(result.storages, 1U);
    EXPECT_EQ(result.streams, 5U);
}

TEST(CompoundFaultsTest, EachFaultIsFoundInItsPlace) {
    const Bytes good = goodFile();
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.name);
        Bytes bad = good;
        put(bad, fault.offset, fault.value, fault.width);
        ASSERT_NE(bad, good) << "is no fault";

        expectFinding(checkCompoundBytes(bad), fault.code, fault.place);
    }
}

// What programs that wrote good files are known to have left in them.
const std::set<FindingCode> mildCodes = {
    HeaderClassId,  HeaderMinorVersion, HeaderReserved, HeaderTransaction, RootCreated,
    UnusedEntry,    EntryNamePadding,   StreamClassId,  StreamState,       StreamTimes,
    StreamSizeHigh, StreamEmptyStart,   StorageState,   StorageStart,
};

// Severities are part of what a caller relies on: what breaks a file is an error.
TEST(CompoundFaultsTest, EachFaultHasItsSeverity) {
    const Bytes good = goodFile();
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.name);
        Bytes bad = good;
        put(bad, fault.offset, fault.value, fault.width);
        const CheckResult result = checkCompoundBytes(bad);

        const bool isMild = mildCodes.contains(fault.code);
        EXPECT_EQ(result.errors == 0, isMild) << result;
        EXPECT_EQ(result.isGood(), isMild);
    }
}

TEST(CompoundFaultsTest, EveryColourButTheRightOneIsFound) {
    const Bytes good = goodFile();
    for (std::size_t entry = 1; entry <= 6; ++entry) {
        SCOPED_TRACE(entry);
        Bytes bad = good;
        bad[field(entry, colour)] ^= std::byte{1};

        const CheckResult result = checkCompoundBytes(bad);

        EXPECT_GT(result.errors + result.advice, 0U);
    }
}

TEST(CompoundFaultsTest, ColoursThatBreakOneRuleAreToldApart) {
    const Bytes good = goodFile();
    Bytes topRed = good;
    ASSERT_EQ(numberAt(good, field(0, child)), 1U);
    put(topRed, field(1, colour), 0, 1);
    expectFinding(checkCompoundBytes(topRed), TreeTopRed, "entry 1, '/long'");

    Bytes allBlack = good;
    Bytes allRed = good;
    for (std::size_t entry = 1; entry <= 6; ++entry) {
        put(allBlack, field(entry, colour), 1, 1);
        put(allRed, field(entry, colour), 0, 1);
    }
    const CheckResult black = checkCompoundBytes(allBlack);
    expectFinding(black, TreeHeight, "entry 0, '/'");
    EXPECT_EQ(black.advice, 1U);
    EXPECT_TRUE(black.isGood()) << black;
    const CheckResult red = checkCompoundBytes(allRed);
    expectFinding(red, TreeTopRed, "entry 5, '/storage/inner'");
    expectFinding(red, TreeRedRed, "entry 2, '/s1'");
}

TEST(CompoundFaultsTest, FileThatIsCutHasAnError) {
    const Bytes good = goodFile();
    for (std::size_t length = 0; length < good.size(); ++length) {
        const Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
        const CheckResult result = checkCompoundBytes(cut);
        EXPECT_GT(result.errors, 0U) << length;
        if (length < 512) {
            expectFinding(result, FileTooShort, "header");
        } else if (length % 512 != 0) {
            expectFinding(result, FileLength, "end of the file");
        }
    }
}

TEST(CompoundFaultsTest, UnknownVersionIsReadBySectorShift) {
    Bytes bad = goodFile();
    put(bad, 26, 7, 2);
    put(bad, 52, 1, 4);
    const CheckResult result = checkCompoundBytes(bad);
    expectFinding(result, HeaderMajorVersion, "header");
    expectFinding(result, HeaderTransaction, "header");

    put(bad, 30, 11, 2);
    const CheckResult hopeless = checkCompoundBytes(bad);
    expectFinding(hopeless, HeaderSectorShift, "header");
    EXPECT_EQ(hopeless.sectors, 0U);
}

TEST(CompoundFaultsTest, OrphansAreOneFinding) {
    Bytes bad = goodFile();
    put(bad, fatEntry(3), 0xFFFFFFFE, 4);
    const CheckResult result = checkCompoundBytes(bad);
    EXPECT_EQ(result.errors, 2U) << result;
    EXPECT_EQ(result.findings.back().text,
              "from here on 5 sectors are not marked as free and belong to nothing");
}

TEST(CompoundFaultsTest, FreedSectorsAreNotOrphans) {
    Bytes freed = goodFile();
    put(freed, field(1, size), 512UL * 8, 4);
    put(freed, fatEntry(7), 0xFFFFFFFE, 4);
    put(freed, fatEntry(8), 0xFFFFFFFF, 4);
    const CheckResult result = checkCompoundBytes(freed);
    expectNone(result);
    EXPECT_EQ(result.freeSectors, 1U);
}

// A name may hold anything: what names an entry in a finding is printable ASCII all the same.
TEST(CompoundFaultsTest, PlacesArePrintable) {
    Bytes bad = goodFile();
    put(bad, field(1, 0), 0x1B, 2);
    put(bad, field(1, 2), 0x202E, 2);
    put(bad, field(1, 4), 0xD800, 2);
    put(bad, field(1, state), 1, 4);
    expectFinding(checkCompoundBytes(bad), StreamState, "entry 1, '/\\u001B\\u202E\\uD800g'");
}

} // namespace olmhost::test
