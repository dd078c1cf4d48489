#include "host/archive/ArchiveFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <zip.h>

#include "tests/host/archive/ArchiveFixture.h"

namespace olmhost::test {

namespace {

class ArchiveFileTest : public ArchiveFixture {
protected:
    // Returns the outcome of opening `path`: "kind flags: text".
    std::string outcome(const std::string& path) {
        static constexpr const char* kinds[] = {"None",    "Unreadable", "NotAnArchive",
                                                "Damaged", "Encrypted",  "LimitReached"};
        openPath(path);
        EXPECT_EQ(file->isOpen(), directory != nullptr);
        const OpenFailure& failure = file->failure();
        return std::string(kinds[static_cast<int>(failure.kind)]) + " " + std::to_string(flags) +
               ": " + failure.text;
    }

    std::string outcomeOf(std::string_view bytes) { return outcome(write("test.olm", bytes)); }
};

const ZipMember oneDocument = {.name = "a.xml", .data = "<notes/>"};

} // namespace

TEST_F(ArchiveFileTest, OpensAnArchiveAndListsItsRowsInOrder) {
    openZip(ZipBuilder().add(oneDocument).add({.name = "b/"}).add({.name = "b/c"}));

    EXPECT_EQ(file->failure().kind, OpenFailureKind::None);
    ASSERT_EQ(directory->entryCount, 3U);
    ASSERT_EQ(file->contents().entryCount(), 3U);
    const char* expected[] = {"a.xml", "b/", "b/c"};
    for (std::uint64_t index = 0; index < 3; ++index) {
        const ArchiveEntry& row = directory->entries[index];
        EXPECT_STREQ(directory->namePool + row.nameOffset, expected[index]);
        EXPECT_EQ(row.nameLength, std::string_view(expected[index]).size());
        EXPECT_EQ(file->contents().name(index), expected[index]);
    }
    EXPECT_EQ(file->contents().name(3), "");
}

TEST_F(ArchiveFileTest, AMissingFileIsUnreadable) {
    EXPECT_EQ(outcome(folder / "missing.olm"), "Unreadable 0: does not exist");
}

TEST_F(ArchiveFileTest, AFileWithoutPermissionIsUnreadable) {
    const std::string path = write("locked.olm", ZipBuilder().add(oneDocument).bytes());
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    const bool isRoot = ::geteuid() == 0; // root needs no permission
    constexpr uid_t nobody = 65534;
    if (isRoot) {
        ASSERT_EQ(::seteuid(nobody), 0);
    }

    const std::string result = outcome(path);

    if (isRoot) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    EXPECT_EQ(result, "Unreadable 0: can't be read: Permission denied");
}

TEST_F(ArchiveFileTest, ADirectoryIsNotAnArchive) {
    EXPECT_EQ(outcome(folder), "NotAnArchive 0: is a directory");
}

TEST_F(ArchiveFileTest, AnEmptyFileIsNotAnArchive) {
    EXPECT_EQ(outcomeOf(""), "NotAnArchive 0: is empty");
}

TEST_F(ArchiveFileTest, ATextFileIsNotAnArchive) {
    EXPECT_EQ(outcomeOf("Dear all,\nthis is no archive.\n"),
              "NotAnArchive 0: is not a ZIP archive");
    EXPECT_EQ(outcomeOf("P"), "NotAnArchive 0: is not a ZIP archive");
    EXPECT_EQ(outcomeOf(std::string(300000, 'x')), "NotAnArchive 0: is not a ZIP archive");
}

TEST_F(ArchiveFileTest, PipesAndSocketsAreNotArchivesAndDoNotBlock) {
    const std::string pipe = folder / "pipe.olm";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(outcome(pipe), "NotAnArchive 0: is a special file, not an archive");

    const std::string socket = folder / "socket";
    ASSERT_EQ(::mknod(socket.c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_EQ(outcome(socket), "NotAnArchive 0: is a special file, not an archive");

    EXPECT_EQ(outcome("/dev/zero"), "NotAnArchive 0: is a special file, not an archive");
}

TEST_F(ArchiveFileTest, AnArchiveTruncatedAnywhereIsDamaged) {
    const std::string whole = ZipBuilder()
                                  .add(oneDocument)
                                  .add({.name = "b.xml", .data = someText(500), .isDeflated = true})
                                  .bytes();
    for (std::size_t size = 4; size < whole.size(); ++size) {
        EXPECT_EQ(outcomeOf(whole.substr(0, size)),
                  "Damaged 1: is cut off or damaged: it has no readable directory")
            << size << " bytes";
    }
}

TEST_F(ArchiveFileTest, AnArchiveWithBytesMissingInItsDirectoryIsDamaged) {
    const ZipBuilder zip = ZipBuilder().add(oneDocument).add({.name = "b.xml", .data = "<a/>"});
    std::string bytes = zip.bytes();
    bytes.erase(zip.entries().size() + 10, 40);

    EXPECT_EQ(outcomeOf(bytes), "Damaged 1: is cut off or damaged: it has no readable directory");
}

TEST_F(ArchiveFileTest, AnArchiveWithAnOverwrittenDirectoryIsDamaged) {
    const ZipBuilder zip = ZipBuilder().add(oneDocument);
    std::string bytes = zip.bytes();
    bytes.replace(zip.entries().size(), 20, 20, '\xFF');

    EXPECT_EQ(outcomeOf(bytes), "Damaged 1: is cut off or damaged: it has no readable directory");
}

TEST_F(ArchiveFileTest, AnArchiveThatDeclaresMoreEntriesThanItHasIsDamaged) {
    const ZipBuilder zip = ZipBuilder().add(oneDocument);

    for (const std::uint64_t count : {2ULL, 65534ULL, 1ULL << 31, 1ULL << 40, ~0ULL}) {
        EXPECT_EQ(outcomeOf(zip.bytesDeclaring(count)),
                  "Damaged 1: is cut off or damaged: it has no readable directory")
            << count;
    }
}

TEST_F(ArchiveFileTest, AnArchiveWithoutEntriesOpens) {
    openZip(ZipBuilder());

    EXPECT_EQ(directory->entryCount, 0U);
    EXPECT_EQ(open(0), nullptr);
    EXPECT_EQ(open("a"), nullptr);
}

TEST_F(ArchiveFileTest, AnArchiveAfterOtherBytesOpens) {
    openBytes("#!/bin/sh\nexit 1\n" + ZipBuilder().bytes());

    EXPECT_EQ(directory->entryCount, 0U);
}

TEST_F(ArchiveFileTest, AnArchiveWhoseDocumentsAreAllEncryptedIsEncrypted) {
    const ZipMember locked = {.name = "a.xml", .data = "0123456789ab<x/>", .flags = 0x801};
    ZipMember other = locked;
    other.name = "b.xml";

    EXPECT_EQ(outcomeOf(ZipBuilder().add(locked).add({.name = "c"}).add(other).bytes()),
              "Encrypted 2: is encrypted: its documents need a password");
}

TEST_F(ArchiveFileTest, AnArchiveWithOneReadableDocumentIsNotEncrypted) {
    const ZipMember locked = {.name = "a.xml", .data = "0123456789ab<x/>", .flags = 0x801};

    EXPECT_EQ(outcomeOf(ZipBuilder().add(locked).add({.name = "b.xml"}).bytes()), "None 0: ");
}

TEST_F(ArchiveFileTest, AnArchiveWithOnlyAnEncryptedAttachmentIsNotEncrypted) {
    const ZipMember locked = {.name = "a", .data = "0123456789ab<x/>", .flags = 0x801};

    EXPECT_EQ(outcomeOf(ZipBuilder().add(locked).bytes()), "None 0: ");
}

TEST_F(ArchiveFileTest, DocumentsEncryptedWithAesCount) {
    const std::string path = folder / "aes.olm";
    zip_t* zip = zip_open(path.c_str(), ZIP_CREATE, nullptr);
    ASSERT_NE(zip, nullptr);
    const auto index =
        zip_file_add(zip, "a.xml", zip_source_buffer(zip, "<a/>", 4, 0), ZIP_FL_ENC_UTF_8);
    ASSERT_EQ(zip_file_set_encryption(zip, zip_uint64_t(index), ZIP_EM_AES_256, "secret"), 0);
    ASSERT_EQ(zip_close(zip), 0);

    EXPECT_EQ(outcome(path), "Encrypted 2: is encrypted: its documents need a password");
}

TEST_F(ArchiveFileTest, ClosingTheArchiveEndsItsStreams) {
    openZip(ZipBuilder().add(oneDocument));
    ASSERT_NE(open(0), nullptr); // never closed
    EXPECT_EQ(open(1), nullptr);

    directory->stream.close(&directory->stream);

    EXPECT_FALSE(file->isOpen());
    EXPECT_EQ(onlyFault(), "CannotOpen none: there is no entry 1");
}

TEST_F(ArchiveFileTest, OpensAgainAfterTheClose) {
    openZip(ZipBuilder().add(oneDocument));
    directory->stream.close(&directory->stream);

    HostStream* handle = file.get();
    ArchiveOpenRequest request = {};
    ASSERT_EQ(handle->open(&handle, OpenArchive, &request, OpenModeRead), 0);

    EXPECT_EQ(file->contents().name(0), "a.xml");
}

TEST_F(ArchiveFileTest, ASecondOpenWhileOneIsOpenIsRefusedAndHarmless) {
    openZip(ZipBuilder().add(oneDocument));

    HostStream* handle = file.get();
    ArchiveOpenRequest request = {};
    EXPECT_NE(handle->open(&handle, OpenArchive, &request, OpenModeRead), 0);

    EXPECT_EQ(handle, file.get());
    EXPECT_EQ(contents(0U), "<notes/>");
}

TEST_F(ArchiveFileTest, OtherRequestsAndOperationsAreRefused) {
    openZip(ZipBuilder().add(oneDocument));
    HostStream* raw = file.get();
    HostStream* opened = &directory->stream;
    MemberOpenRequest request = {};
    std::uint32_t count = 7;
    char buffer[4] = {};

    EXPECT_NE(raw->open(&raw, OpenMember, &request, OpenModeRead), 0);
    EXPECT_NE(opened->open(&raw, OpenArchive, &request, OpenModeRead), 0);
    EXPECT_EQ(raw, nullptr);
    EXPECT_NE(opened->open(&raw, OpenMember, &request, OpenModeRead), 0) << "no archive named";
    EXPECT_NE(opened->read(opened, buffer, 4, &count), 0);
    EXPECT_EQ(count, 0U);
    EXPECT_NE(opened->write(opened, buffer, 4, &count), 0);
    EXPECT_NE(opened->seek(opened, 0, 0), 0);
}

TEST_F(ArchiveFileTest, AFaultOfOneKindIsReportedOncePerEntry) {
    openZip(ZipBuilder().add(oneDocument).add(oneDocument));

    file->addFault(FaultKind::Damaged, 0, "first");
    file->addFault(FaultKind::Damaged, 0, "second");
    file->addFault(FaultKind::Checksum, 0, "third");
    file->addFault(FaultKind::Damaged, 1, "fourth");
    file->addFault(FaultKind::CannotOpen, EntryFault::noEntry, "fifth");
    file->addFault(FaultKind::CannotOpen, EntryFault::noEntry, "sixth");
    file->addFault(FaultKind::CannotOpen, EntryFault::noEntry, "fifth");

    std::string texts;
    for (const EntryFault& fault : file->faults()) {
        texts += fault.text + " ";
    }
    EXPECT_EQ(texts, "first third fourth fifth sixth ");
}

TEST_F(ArchiveFileTest, AnAccountHoldsFaultsThatWereKnownBefore) {
    openZip(ZipBuilder().add(oneDocument));
    file->addFault(FaultKind::Damaged, 0, "known");
    ReadAccount account;

    file->keepAccount(&account);
    file->addFault(FaultKind::Damaged, 0, "again");
    file->keepAccount(nullptr);
    file->addFault(FaultKind::Damaged, 0, "too late");

    ASSERT_EQ(account.faults.size(), 1U);
    EXPECT_EQ(account.faults[0].text, "again");
    EXPECT_EQ(onlyFault(), "Damaged 0: known");
}

TEST_F(ArchiveFileTest, AnAccountHasOnlyEntriesThatAreRequestedByName) {
    openZip(
        ZipBuilder()
            .add({.name = "dir/whole", .data = std::string(3000, 'w')})
            .add({.name = "wrong", .data = std::string(2000, 'x'), .isDeflated = true, .crc = 1}));
    const std::string longName(sizeof MemberOpenRequest{}.name, 'n');
    ReadAccount account;

    file->keepAccount(&account);
    contents(std::uint64_t{0});
    contents(std::string_view("/dir\\whole"));
    contents(std::string_view("nowhere"));
    for (int time = 0; time < 2; ++time) {
        contents(std::string_view("wrong"));
    }
    open(longName, std::int64_t(0xFFFFFFFFFFFFFF00));
    HostStream* half = open("dir/whole");
    readSome(half, 1000);
    file->keepAccount(nullptr);

    std::vector<std::string> described;
    for (const auto& member : account.members) {
        described.push_back(member->name + " " +
                            (member->entryIndex ? std::to_string(*member->entryIndex) : "none") +
                            " " + std::to_string(member->bytesRead) + "/" +
                            std::to_string(member->size) + " " + member->fault);
    }
    EXPECT_EQ(described,
              (std::vector<std::string>{
                  "/dir\\whole 0 3000/3000 ",
                  "nowhere none 0/0 there is no file named \"nowhere\"",
                  "wrong 1 2000/2000 its checksum is wrong",
                  "wrong 1 2000/2000 its checksum is wrong",
                  longName + " none 0/0 the name is too long to look up: \"" + longName + "\"",
                  "dir/whole 0 1000/3000 ",
              }));
    half->close(half);
}

} // namespace olmhost::test
