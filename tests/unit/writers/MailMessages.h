#ifndef OLMKIT_TESTS_UNIT_WRITERS_MAILMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_MAILMESSAGES_H

#include "filter/writers/OLMMsgMailWriter.h"
#include "tests/unit/writers/WriterFrame.h"

// What the tests of the mail writer share.

// Returns the last entry of a mail with these flags.
fakehost::Bytes flagsEntry(uint32_t flags);

// Returns the message flags, which must be the last entry and occur once.
uint64_t messageFlags(const fakehost::StoredMessage& message);

class OpenMailWriter : public OpenWriter<OLMMsgMailWriter> {
public:
    using OpenWriter::OpenWriter;

    using OLMMsgMailWriter::appendRecipientVal;
    using OLMMsgMailWriter::archiveHandle;
    using OLMMsgMailWriter::attachmentCount;
    using OLMMsgMailWriter::bccDisplayList;
    using OLMMsgMailWriter::ccDisplayList;
    using OLMMsgMailWriter::handleFlagTag;
    using OLMMsgMailWriter::messageFlags;
    using OLMMsgMailWriter::openAttachmentNode;
    using OLMMsgMailWriter::processAddressGrp;
    using OLMMsgMailWriter::toDisplayList;
    using OLMMsgMailWriter::writeRecipientDisplay;
};

class MailWriterTest : public WriterTest<OpenMailWriter> {};

#endif
