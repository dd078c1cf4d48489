#ifndef OLMKIT_TESTS_UNIT_WRITERS_MAILMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_MAILMESSAGES_H

#include "filter/writers/OLMMsgMailWriter.h"
#include "tests/fakehost/Extraction.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What the tests of the mail writer share: mails, and the parts that every message of one has.

inline constexpr const char* propertyStream = "__properties_version1.0";
inline constexpr const char* addressAttribute = "OPFContactEmailAddressAddress";
inline constexpr const char* nameAttribute = "OPFContactEmailAddressName";
inline constexpr size_t requiredCount = 7;

fakehost::PropertyEntry entry(uint32_t tag, uint64_t value);

// The 32 bytes ahead of the entries, with both counts in both of their places.
fakehost::Bytes headerBytes(uint32_t recipients, uint32_t attachments);

// What every mail begins with: tag, flags, value.
fakehost::Bytes requiredEntries();

// The last entry of every mail.
fakehost::Bytes flagsEntry(uint32_t flags);

// Name of a recipient's or an attachment's storage.
std::string recipientStorage(uint32_t number);
std::string attachmentStorage(uint32_t number);

// The entries between those that every mail begins with and the message flags at the end.
std::vector<fakehost::PropertyEntry> ownEntries(const fakehost::StoredMessage& message);

// The message flags, which have to be the last entry and stand once.
uint64_t messageFlags(const fakehost::StoredMessage& message);

// How many storages directly below the root have a name that begins so.
uint32_t countStorages(const fakehost::StoredMessage& message, const std::string& prefix);

// Every element that a mail can have, in the order of the alphabet. One of its two attachments
// lies in the archive, see tideArchive().
fakehost::ItemDocument fullMail();

// A run with the entry that fullMail() names.
fakehost::ItemRun tideArchive();

// The writer with its inside open.
class OpenMailWriter : public OLMMsgMailWriter {
public:
    using OLMMsgMailWriter::OLMMsgMailWriter;

    using OLMMsgMailWriter::appendRecipientVal;
    using OLMMsgMailWriter::archiveHandle;
    using OLMMsgMailWriter::attachmentCount;
    using OLMMsgMailWriter::bccDisplayList;
    using OLMMsgMailWriter::ccDisplayList;
    using OLMMsgMailWriter::expectedProps;
    using OLMMsgMailWriter::handledProps;
    using OLMMsgMailWriter::handleFlagTag;
    using OLMMsgMailWriter::messageFlags;
    using OLMMsgMailWriter::openAttachmentNode;
    using OLMMsgMailWriter::processAddressGrp;
    using OLMMsgMailWriter::properties;
    using OLMMsgMailWriter::recipientCount;
    using OLMMsgMailWriter::rootStorage;
    using OLMMsgMailWriter::rootTag;
    using OLMMsgMailWriter::toDisplayList;
    using OLMMsgMailWriter::writeRecipientDisplay;
};

// A writer on the first mail of a document, for failures of one call and for what no message
// shows.
class MailWriterTest : public testing::Test {
protected:
    MailWriterTest();

    // Opens the document and puts the reader ahead of the mail.
    void openDocument(const fakehost::ItemDocument& item);

    // The same, and begins the message: calls of the host count from here.
    void begin(const fakehost::ItemDocument& item);

    // Handles the mail's elements and gives the progress values.
    std::vector<int> run();

    // The entries added since begin().
    [[nodiscard]] std::vector<fakehost::PropertyEntry> added() const;

    [[nodiscard]] fakehost::StoredMessage message() const { return host.message(request.output); }

    fakehost::FakeHost host;
    // Entries that the archive has behind the document's, to be set ahead of the opening.
    std::vector<std::pair<std::string, fakehost::Bytes>> entries;
    SODOSPECIALARC request{};
    ArchiveDirectory* archive = nullptr;
    std::optional<OLMXMLParser> parser;
    std::optional<OpenMailWriter> writer;
    int openBefore = 0; // handles that were open when begin() ended
};

#endif
