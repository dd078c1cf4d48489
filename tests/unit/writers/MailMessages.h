#ifndef OLMKIT_TESTS_UNIT_WRITERS_MAILMESSAGES_H
#define OLMKIT_TESTS_UNIT_WRITERS_MAILMESSAGES_H

#include "filter/writers/OLMMsgMailWriter.h"
#include "tests/unit/writers/WriterFrame.h"

// What the tests of the mail writer share.

// The last entry of every mail.
fakehost::Bytes flagsEntry(uint32_t flags);

// The message flags, which have to be the last entry and stand once.
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
