#include "host/archive/Archive.h"

#include "tests/host/archive/ArchiveFixture.h"

namespace olmhost::test {

namespace {

using ArchiveTest = ArchiveFixture;

// "Entwürfe" both ways.
const std::string composedName = "Entw\xC3\xBCrfe/a_0000";
const std::string decomposedName = "Entwu\xCC\x88rfe/a_0000";

} // namespace

TEST_F(ArchiveTest, EntriesOpenByIndex) {
    openZip(
        ZipBuilder()
            .add({.name = "a.xml", .data = "stored"})
            .add({.name = "b.xml", .data = "deflated", .isDeflated = true})
            .add({.name = "c.xml", .data = "stored, ZIP64", .hasZip64 = true})
            .add({.name = "d.xml", .data = "deflated, 64", .isDeflated = true, .hasZip64 = true}));

    EXPECT_EQ(contents(0U), "stored");
    EXPECT_EQ(contents(1U), "deflated");
    EXPECT_EQ(contents(2U), "stored, ZIP64");
    EXPECT_EQ(contents(3U), "deflated, 64");
    EXPECT_EQ(contents(0U), "stored") << "a second time";
    EXPECT_TRUE(file->faults().empty());
}

TEST_F(ArchiveTest, EntriesPastFourGigabytesOpen) {
    constexpr std::uint64_t start = std::uint64_t{5} << 30;
    const std::string bytes = ZipBuilder(start)
                                  .add({.name = "a.xml", .data = "stored"})
                                  .add({.name = "b", .data = someText(90000), .isDeflated = true})
                                  .bytes();
    const std::string path = write("far.olm", "");
    std::filesystem::resize_file(path, start); // a hole
    std::ofstream(path, std::ios::binary | std::ios::app)
        .write(bytes.data(), std::streamsize(bytes.size()));

    ASSERT_EQ(openPath(path), 0) << file->failure().text;

    EXPECT_EQ(contents(0U), "stored");
    EXPECT_TRUE(contents("b") == someText(90000));
    EXPECT_TRUE(file->faults().empty());
}

TEST_F(ArchiveTest, EmptyEntriesOpenAndEndAtOnce) {
    openZip(ZipBuilder()
                .add({.name = "stored"})
                .add({.name = "deflated", .isDeflated = true})
                .add({.name = "nothing", .method = 8, .packed = ""}));

    for (std::uint64_t index = 0; index < 3; ++index) {
        EXPECT_EQ(contents(index), "") << index;
    }
    EXPECT_TRUE(file->faults().empty());
}

TEST_F(ArchiveTest, ARowAfterTheLastIsAFault) {
    openZip(ZipBuilder().add({.name = "a"}));

    EXPECT_EQ(open(1), nullptr);

    EXPECT_EQ(onlyFault(), "CannotOpen none: there is no entry 1");
}

TEST_F(ArchiveTest, ANameThatFillsItsFieldIsAFault) {
    const std::string longName(512, 'n');
    openZip(ZipBuilder().add({.name = longName, .data = "never seen"}));

    EXPECT_EQ(open(longName, std::int64_t(0xFFFFFFFFFFFFFF00)), nullptr);

    EXPECT_EQ(onlyFault(),
              "CannotOpen none: the name is too long to look up: \"" + longName + "\"");
}

TEST_F(ArchiveTest, ANameOf511BytesIsFound) {
    const std::string longName(511, 'n');
    openZip(ZipBuilder().add({.name = longName, .data = "seen"}));

    EXPECT_EQ(contents(std::string_view(longName)), "seen");
}

TEST_F(ArchiveTest, ANameOf65535BytesIsListed) {
    const std::string longName(0xFFFF, 'n');
    openZip(ZipBuilder().add({.name = longName, .data = "seen"}).add({.name = "b"}));

    EXPECT_EQ(file->contents().name(0), longName);
    EXPECT_EQ(file->contents().name(1), "b");
    EXPECT_EQ(contents(0U), "seen");
}

TEST_F(ArchiveTest, AnUnknownNameIsAFaultThatQuotesIt) {
    openZip(ZipBuilder().add({.name = "a"}));

    EXPECT_EQ(open("A"), nullptr);
    EXPECT_EQ(open("../a"), nullptr);
    EXPECT_EQ(open("/etc/passwd"), nullptr);
    EXPECT_EQ(open(""), nullptr);

    ASSERT_EQ(file->faults().size(), 4U);
    EXPECT_EQ(file->faults()[0].text, "there is no file named \"A\"");
    EXPECT_EQ(file->faults()[1].text, "there is no file named \"../a\"");
    EXPECT_EQ(file->faults()[2].text, "there is no file named \"/etc/passwd\"");
    EXPECT_EQ(file->faults()[3].text, "there is no file named \"\"");
}

TEST_F(ArchiveTest, ARepeatedNameFindsTheFirstFile) {
    openZip(ZipBuilder()
                .add({.name = "Accounts/"})
                .add({.name = "a", .data = "first"})
                .add({.name = "Accounts/"})
                .add({.name = "a", .data = "second"}));

    EXPECT_EQ(contents("a"), "first");
    EXPECT_EQ(contents(3U), "second");
}

TEST_F(ArchiveTest, ADirectoryOpensNothing) {
    openZip(ZipBuilder().add({.name = "Accounts/"}).add({.name = "Accounts"}));

    EXPECT_EQ(open(0), nullptr);
    EXPECT_EQ(onlyFault(), "CannotOpen 0: it is a directory");
    EXPECT_EQ(open("Accounts/"), nullptr);
    EXPECT_EQ(file->faults().back().text, "there is no file named \"Accounts/\"");
}

TEST_F(ArchiveTest, AFileIsFoundNextToADirectoryOfItsName) {
    openZip(ZipBuilder().add({.name = "a/"}).add({.name = "a", .data = "file"}));

    EXPECT_EQ(contents("a"), "file");
    EXPECT_TRUE(file->faults().empty());
}

TEST_F(ArchiveTest, BackslashesAndALeadingSlashOrDotAreReadAsPlainNames) {
    openZip(ZipBuilder().add({.name = "Local/b_0000", .data = "found"}));

    for (const char* name : {"Local/b_0000", "Local\\b_0000", "/Local/b_0000", "./Local/b_0000",
                             "\\Local\\b_0000", ".\\Local\\b_0000"}) {
        EXPECT_EQ(contents(name), "found") << name;
    }
    for (const char* name : {"//Local/b_0000", "././Local/b_0000", "/./Local/b_0000",
                             "Local//b_0000", "local/b_0000"}) {
        EXPECT_EQ(open(name), nullptr) << name;
    }
}

TEST_F(ArchiveTest, AnExactNameIsPreferredToThePlainOne) {
    openZip(ZipBuilder()
                .add({.name = "a/b", .data = "plain"})
                .add({.name = "a\\b", .data = "backslash"})
                .add({.name = "./a/b", .data = "dot"}));

    EXPECT_EQ(contents("a/b"), "plain");
    EXPECT_EQ(contents("a\\b"), "backslash");
    EXPECT_EQ(contents("./a/b"), "dot");
    EXPECT_EQ(contents("/a\\b"), "plain");
}

TEST_F(ArchiveTest, ADecomposedNameIsFoundByItsComposedForm) {
    openZip(ZipBuilder().add({.name = "x"}).add({.name = decomposedName, .data = "found"}));

    EXPECT_EQ(contents(std::string_view(composedName)), "found");
    EXPECT_EQ(contents("\\Entw\xC3\xBCrfe\\a_0000"), "found");
    EXPECT_EQ(contents(std::string_view(decomposedName)), "found");
}

TEST_F(ArchiveTest, AComposedNameIsFoundByItsDecomposedForm) {
    openZip(ZipBuilder().add({.name = "x"}).add({.name = composedName, .data = "found"}));

    EXPECT_EQ(contents(std::string_view(decomposedName)), "found");
}

TEST_F(ArchiveTest, OfBothFormsTheExactOneIsFound) {
    openZip(ZipBuilder()
                .add({.name = decomposedName, .data = "decomposed"})
                .add({.name = composedName, .data = "composed"}));

    EXPECT_EQ(contents(std::string_view(decomposedName)), "decomposed");
    EXPECT_EQ(contents(std::string_view(composedName)), "composed");
}

TEST_F(ArchiveTest, OfSeveralMatchingFormsTheFirstRowIsFound) {
    // Two accents whose order the normal form fixes: four ways to write one name.
    const std::string asked = "a\xCC\x80\xCC\xA3";  // grave, dot below
    const std::string second = "a\xCC\xA3\xCC\x80"; // dot below, grave
    const std::string composed = "\xE1\xBA\xA1\xCC\x80";
    openZip(ZipBuilder()
                .add({.name = second + "/"})
                .add({.name = second, .data = "second"})
                .add({.name = composed, .data = "composed"}));

    EXPECT_EQ(contents(std::string_view(asked)), "second");
}

TEST_F(ArchiveTest, Utf8NamesWithoutTheFlagStayAsTheyAre) {
    openZip(ZipBuilder().add({.name = composedName, .data = "found", .flags = 0}));

    EXPECT_EQ(file->contents().name(0), composedName);
}

TEST_F(ArchiveTest, NamesInCodePage437AreConverted) {
    openZip(ZipBuilder().add({.name = "Entw\x81rfe", .data = "found", .flags = 0}));

    EXPECT_EQ(file->contents().name(0), "Entw\xC3\xBCrfe");
    EXPECT_EQ(contents("Entw\xC3\xBCrfe"), "found");
}

TEST_F(ArchiveTest, OnlyAnEncryptedEntryFails) {
    openZip(ZipBuilder()
                .add({.name = "a.xml", .data = "readable"})
                .add({.name = "b.xml", .data = "0123456789abcdef", .flags = 0x801}));

    EXPECT_EQ(open(1), nullptr);
    EXPECT_EQ(open("b.xml"), nullptr);
    EXPECT_EQ(contents(0U), "readable");
    EXPECT_EQ(onlyFault(), "Encrypted 1: it is encrypted");
}

TEST_F(ArchiveTest, OnlyAnEntryOfAnotherMethodFails) {
    openZip(ZipBuilder()
                .add({.name = "a", .data = "strange", .method = 12})
                .add({.name = "b", .data = "readable"}));

    EXPECT_EQ(open(0), nullptr);
    EXPECT_EQ(contents(1U), "readable");
    EXPECT_EQ(onlyFault(), "CannotOpen 0: it is compressed with a method that is not supported: "
                           "compression method 12");
}

TEST_F(ArchiveTest, OnlyAnEntryAfterTheFilesEndFails) {
    openZip(ZipBuilder()
                .add({.name = "a", .data = "lost", .offset = 0x7FFFFF00})
                .add({.name = "b", .data = "readable"}));

    EXPECT_EQ(open(0), nullptr);
    EXPECT_EQ(contents(1U), "readable");
    ASSERT_EQ(file->faults().size(), 1U);
    EXPECT_EQ(file->faults()[0].kind, FaultKind::Damaged);
    EXPECT_EQ(file->faults()[0].entryIndex, 0U);
    EXPECT_EQ(file->faults()[0].text.substr(0, 24), "its data can't be found:");
}

TEST_F(ArchiveTest, AnEntryAboveTheLargestSizeIsRefused) {
    Limits limits;
    limits.largestEntry = 100;
    openZip(ZipBuilder()
                .add({.name = "a", .data = std::string(100, 'a')})
                .add({.name = "b", .data = std::string(101, 'b')}),
            limits);

    EXPECT_EQ(contents(0U), std::string(100, 'a'));
    EXPECT_EQ(open(1), nullptr);
    EXPECT_EQ(onlyFault(), "LimitReached 1: it has 101 bytes, more than the limit of 100");
}

TEST_F(ArchiveTest, AnEntryAboveTheLargestRatioIsRefused) {
    Limits limits;
    limits.largestRatio = 20;
    limits.ratioFrom = 10000;
    openZip(ZipBuilder()
                .add({.name = "small", .data = std::string(10000, 'a'), .isDeflated = true})
                .add({.name = "plain", .data = someText(20000), .isDeflated = true})
                .add({.name = "bomb", .data = std::string(50000, 'a'), .isDeflated = true}),
            limits);
    const std::string packedSize = std::to_string(deflated(std::string(50000, 'a')).size());

    EXPECT_EQ(contents(0U), std::string(10000, 'a'));
    EXPECT_EQ(contents(1U), someText(20000));
    EXPECT_EQ(open(2), nullptr);
    EXPECT_EQ(onlyFault(), "LimitReached 2: it has 50000 bytes out of " + packedSize +
                               ", more than the limit of 20 to 1");
}

TEST_F(ArchiveTest, AnEntryThatDeclaresAHugeSizeIsRefusedByDefault) {
    openZip(ZipBuilder().add(
        {.name = "a", .data = "tiny", .isDeflated = true, .size = std::uint64_t{1} << 62}));

    EXPECT_EQ(open(0), nullptr);
    ASSERT_EQ(file->faults().size(), 1U);
    EXPECT_EQ(file->faults()[0].kind, FaultKind::LimitReached);
}

TEST_F(ArchiveTest, AHundredThousandRowsAreListedAndFound) {
    constexpr int count = 100000;
    ZipBuilder zip;
    for (int row = 0; row < count; ++row) {
        const std::string number = std::to_string(row);
        zip.add({.name = "Accounts/a/message_" + number + ".xml", .data = "mail " + number});
    }
    openZip(zip);

    ASSERT_EQ(directory->entryCount, std::uint64_t{count});
    for (int row = 0; row < count; row += 997) {
        const std::string number = std::to_string(row);
        const std::string name = "Accounts/a/message_" + number + ".xml";
        EXPECT_EQ(file->contents().name(std::uint64_t(row)), name);
        EXPECT_EQ(contents(std::string_view(name)), "mail " + number);
    }
    EXPECT_TRUE(file->faults().empty());
}

} // namespace olmhost::test
