#ifndef OLMKIT_TESTS_UNIT_WRITERS_CONTACTMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_CONTACTMESSAGES_H

#include "filter/writers/OLMMsgContactWriter.h"
#include "tests/unit/writers/WriterFrame.h"

// What the tests of the contact writer share.

// Named ids: the high half of their keys.
inline constexpr uint32_t wholeBusiness = 0x801B;
inline constexpr uint32_t wholeHome = 0x801A;

// One entry of the stream of named properties: numeric name of the only set, or "Keywords".
fakehost::Bytes nameEntry(uint32_t namedId, uint16_t number);
fakehost::Bytes keywordsEntry(uint16_t number);

// The bytes under the tags of a numeric name; each entry of such a tag has to count two bytes more.
std::vector<fakehost::Bytes> namedValues(const fakehost::StoredMessage& message, uint32_t namedId);

// The one whole address of that named id.
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
