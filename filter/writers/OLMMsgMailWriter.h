#ifndef OLMKIT_FILTER_WRITERS_OLMMSGMAILWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGMAILWRITER_H

#include <cstdint>

#include "filter/boundary/Archive.h"
#include "filter/core/String.h"
#include "filter/core/WString.h"
#include "filter/storage/OLMMsgWriter.h"

// Turns one mail into a message of class IPM.Note.
//
// Recipients and attachments are written to storages of their own as their tags are read; an
// attachment's bytes come from another entry of the archive. The message flags, the display lists
// and the counts grow meanwhile: a list is written when its group ends, the rest when the item
// does. A value whose stream can't be made is left out and the item goes on; a recipient or an
// attachment whose storage can't be made ends the item with a qor::Exception.
class OLMMsgMailWriter : public OLMMsgWriter {
public:
    // Neither pointer is owned; both must outlive the writer. `archive` is the ArchiveDirectory
    // that the attachments lie in. Touches no storage.
    OLMMsgMailWriter(SODOSPECIALARC* request, void* archive);

    // 0. Throws qor::Exception: ErrTagTable for a refused table, and what the base throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Adds the message flags and ends as the base does.
    unsigned int finalizeNode(OLMXMLParser& parser) override;

    ~OLMMsgMailWriter() override = default;

    // As the base's, with the number of attachments.
    unsigned int writeMessageHeader(void* stream) override;

    // Takes all that is more than one property from one element's text.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

    // Adds the sender's address and name, each when the tag has its attribute, even an empty one;
    // neither stands in for the other. True.
    virtual bool writeFromAddr(OLMXMLTag& tag);

    // Writes the tag's person as the next recipient and enters it in the display list of its type:
    // 1 To, 2 Cc, 3 Bcc. Empty attributes count as missing; an address stands in for a missing
    // name. A tag with neither makes a recipient all the same. True.
    virtual bool writeRecipientAddr(unsigned int recipientType, OLMXMLTag& tag);

protected:
    // Adds the subject, its prefix and what follows that. Nothing for an element without text.
    void handleSubject(OLMXMLParser& parser);

    // Adds the HTML body as UTF-16LE behind a byte order mark. Throws qor::Exception
    // ErrShortWrite.
    void handleHTMLBody(OLMXMLParser& parser);

    // Adds the time of the last modification, also as that of the creation.
    void handleModTime(OLMXMLParser& parser);

    // Reads the truth value of MailWasSent or MailIsRead into the message flags.
    void handleFlagTag(unsigned int code, OLMXMLParser& parser);

    // Adds the importance.
    void handlePriority(OLMXMLParser& parser);

    // Writes every tag up to the end of the recipient group that `groupTag` opened, and the
    // group's display list. False, and nothing read, for any other tag.
    bool processAddressGrp(const OLMXMLTag& groupTag, OLMXMLParser& parser);

    // Appends the text and a separator to the display list of that type; other types have none.
    void appendRecipientVal(unsigned int recipientType, const qor::WString& value);

    // Cuts the final separator off the list and writes it, with its terminator, as the value of
    // `tag`. Bytes written, terminator included; 0 when the stream can't be made, and then the list
    // is as it was. Throws qor::Exception ErrShortWrite.
    uint64_t writeRecipientDisplay(unsigned int tag, qor::WString& list);

    // Writes every tag up to the end of the attachment list. True.
    bool processAttachGrp(OLMXMLParser& parser);

    // Writes the tag's attachment. One whose entry can't be opened has no data; one that names no
    // entry has no property at all, and counts all the same.
    void writeAttachment(const OLMXMLTag& tag);

    // A stream on the archive's entry of that name, which the caller closes, or null. The host
    // gets the name as it is, cut at 512 bytes.
    HostStream* openAttachmentNode(const qor::String& name);

    ArchiveDirectory* archiveHandle; // not owned
    uint32_t attachmentCount = 0;    // begun so far, also those without a property
    uint32_t messageFlags = 0;
    qor::WString toDisplayList; // each ends in a separator while its group is read
    qor::WString ccDisplayList;
    qor::WString bccDisplayList;

private:
    qor::WString* displayListOf(unsigned int recipientType);
};

#endif
