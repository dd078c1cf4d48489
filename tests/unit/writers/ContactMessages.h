#ifndef OLMKIT_TESTS_UNIT_WRITERS_CONTACTMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_CONTACTMESSAGES_H

#include "filter/writers/OLMMsgContactWriter.h"
#include "tests/fakehost/Extraction.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

// What the tests of the contact writer share: contacts, and the parts that every message of one
// has.
namespace contacts {

inline constexpr const char* propertyStream = "__properties_version1.0";
inline constexpr const char* addressAttribute = "OPFContactEmailAddressAddress";

// Named ids: the high half of their keys.
inline constexpr uint32_t wholeBusiness = 0x801B;
inline constexpr uint32_t wholeHome = 0x801A;

fakehost::PropertyEntry entry(uint32_t tag, uint64_t value);

// The whole property stream of a contact: the header, what every contact begins with, and these.
fakehost::Bytes propertyBytes(const std::vector<fakehost::PropertyEntry>& entries);

// The entries between what every contact begins with and the two whole addresses at the end.
std::vector<fakehost::PropertyEntry> ownEntries(const fakehost::StoredMessage& message);

// One entry of the stream of named properties: numeric name of the only set, or "Keywords".
fakehost::Bytes nameEntry(uint32_t namedId, uint16_t number);
fakehost::Bytes keywordsEntry(uint16_t number);

// The tags that the message's own stream of named properties gives to a numeric name.
std::vector<uint32_t> tagsOf(const fakehost::StoredMessage& message, uint32_t namedId);

// The bytes under those tags; each entry of such a tag has to count two bytes more.
std::vector<fakehost::Bytes> namedValues(const fakehost::StoredMessage& message, uint32_t namedId);

// The one whole address of that named id.
fakehost::Bytes wholeAddress(const fakehost::StoredMessage& message, uint32_t namedId);

// __substg1.0_ and a tag.
std::string valueStream(uint32_t tag);
std::string valueStream(uint32_t tag, uint32_t index);

// Every element that a contact can have, in the order of the alphabet.
fakehost::ItemDocument fullContact();

// The writer with its inside open.
class OpenContactWriter : public OLMMsgContactWriter {
public:
    using OLMMsgContactWriter::OLMMsgContactWriter;

    using OLMMsgContactWriter::addressParts;
    using OLMMsgContactWriter::constructWholeAddr;
    using OLMMsgContactWriter::expectedProps;
    using OLMMsgContactWriter::handledProps;
    using OLMMsgContactWriter::handleDupProps;
    using OLMMsgContactWriter::handleEmailAddress;
    using OLMMsgContactWriter::handleNamedStrProp;
    using OLMMsgContactWriter::namedProps;
    using OLMMsgContactWriter::properties;
    using OLMMsgContactWriter::readStringValue;
    using OLMMsgContactWriter::rootStorage;
    using OLMMsgContactWriter::rootTag;
    using OLMMsgContactWriter::storeAddrPart;
};

// A writer on the first contact of a document, for failures of one call and for what no message
// shows.
class ContactWriterTest : public testing::Test {
protected:
    ContactWriterTest();

    // Opens the document and puts the reader ahead of the contact.
    void openDocument(const fakehost::ItemDocument& item);

    // The same, and begins the message: calls of the host count from here.
    void begin(const fakehost::ItemDocument& item);

    // Moves behind the next opening tag.
    void enterElement();

    // Handles the contact's elements and gives the progress values.
    std::vector<int> run();

    // The entries added since begin().
    [[nodiscard]] std::vector<fakehost::PropertyEntry> added() const;

    [[nodiscard]] fakehost::StoredMessage message() const { return host.message(request.output); }

    fakehost::FakeHost host;
    SODOSPECIALARC request{};
    std::optional<OLMXMLParser> parser;
    std::optional<OpenContactWriter> writer;
    int openBefore = 0; // handles that were open when begin() ended
};

} // namespace contacts

#endif
