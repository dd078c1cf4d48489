#ifndef OLMKIT_TESTS_UNIT_WRITERS_CONTACTMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_CONTACTMESSAGES_H

#include "filter/writers/OLMMsgContactWriter.h"
#include "tests/unit/writers/WriterFrame.h"

// What the tests of the contact writer share.

// Ids of named properties: the high halves of their keys.
inline constexpr uint32_t wholeBusiness = 0x801B;
inline constexpr uint32_t wholeHome = 0x801A;

// Return an entry of the stream of named properties: a numeric name of the first set, or
// "Keywords".
fakehost::Bytes nameEntry(uint32_t namedId, uint16_t number);
fakehost::Bytes keywordsEntry(uint16_t number);

// Returns the values of a numeric name and expects that the size of each entry counts two bytes
// more.
std::vector<fakehost::Bytes> namedValues(const fakehost::StoredMessage& message, uint32_t namedId);

// Returns the whole address with this id; there must be exactly one.
fakehost::Bytes wholeAddress(const fakehost::StoredMessage& message, uint32_t namedId);

class OpenContactWriter : public OpenWriter<OLMMsgContactWriter> {
public:
    using OpenWriter::OpenWriter;

    using OLMMsgContactWriter::addressParts;
    using OLMMsgContactWriter::constructWholeAddr;
    using OLMMsgContactWriter::handleDupProps;
    using OLMMsgContactWriter::handleEmailAddress;
    using OLMMsgContactWriter::handleNamedStrProp;
    using OLMMsgContactWriter::readStringValue;
    using OLMMsgContactWriter::storeAddrPart;
};

class ContactWriterTest : public WriterTest<OpenContactWriter> {};

#endif
