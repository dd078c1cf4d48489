#ifndef OLMKIT_FILTER_WRITERS_OLMMSGMAILWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGMAILWRITER_H

#include <cstdint>

#include "filter/boundary/Archive.h"
#include "filter/core/String.h"
#include "filter/core/WString.h"
#include "filter/storage/OLMMsgWriter.h"

// Writes one mail as a message of class IPM.Note ([MS-OXOMSG]).
//
// Each recipient and each attachment is written to its own storage when its tag is read; the bytes
// of an attachment come from another entry of the archive. A display list is written at the end of
// its group, the message flags and the counts at the end of the item. A value whose stream can't be
// made is left out; a recipient or an attachment whose storage can't be made ends the item with a
// qor::Exception.
class OLMMsgMailWriter : public OLMMsgWriter {
public:
    // Neither pointer is owned, and both must outlive the writer. `archive` is the ArchiveDirectory
    // that contains the attachments. Makes no storage.
    OLMMsgMailWriter(SODOSPECIALARC* request, void* archive);

    // Returns 0. Throws qor::Exception ErrTagTable when the reader refuses the table, and what the
    // base class throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Adds the message flags, then does what the base class does.
    unsigned int finalizeNode(OLMXMLParser& parser) override;

    ~OLMMsgMailWriter() override = default;

    // As in the base class, with the number of attachments.
    unsigned int writeMessageHeader(void* stream) override;

    // Handles the elements that become anything but one property with the text as its value.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

    // Adds the address and the name of the sender, each when the tag has its attribute, even an
    // empty one. Neither replaces the other. Returns true.
    virtual bool writeFromAddr(OLMXMLTag& tag);

    // Writes the person that the tag describes as the next recipient and adds it to the display
    // list of its type: 1 is To, 2 Cc, 3 Bcc. An empty attribute counts as missing, and the address
    // replaces a missing name. A tag without both still is a recipient. Returns true.
    virtual bool writeRecipientAddr(unsigned int recipientType, OLMXMLTag& tag);

protected:
    // Adds the subject, its prefix and the rest of it, or nothing for an element without text.
    void handleSubject(OLMXMLParser& parser);

    // Adds the HTML body: a byte order mark and UTF-16LE text. Throws qor::Exception ErrShortWrite.
    void handleHTMLBody(OLMXMLParser& parser);

    // Adds the time of the last modification, which is also that of the creation.
    void handleModTime(OLMXMLParser& parser);

    // Reads the truth value of the element MailWasSent or MailIsRead into the message flags.
    void handleFlagTag(unsigned int code, OLMXMLParser& parser);

    // Adds the importance.
    void handlePriority(OLMXMLParser& parser);

    // Writes every opening tag up to the end of the recipient group that `groupTag` opened, and the
    // display list of the group. Returns false for any other tag, and then reads nothing.
    bool processAddressGrp(const OLMXMLTag& groupTag, OLMXMLParser& parser);

    // Appends the text and a separator to the display list of that type, if it has one.
    void appendRecipientVal(unsigned int recipientType, const qor::WString& value);

    // Removes the final separator from the list and writes it, with a terminator, as the value of
    // `tag`. Returns the number of bytes written, terminator included, or 0 when the stream can't
    // be made; then the list is unchanged. Throws qor::Exception ErrShortWrite.
    uint64_t writeRecipientDisplay(unsigned int tag, qor::WString& list);

    // Writes every opening tag up to the end of the attachment list. Returns true.
    bool processAttachGrp(OLMXMLParser& parser);

    // Writes the attachment that the tag describes. When its entry can't be opened it has no data;
    // when the tag names no entry it has no properties, but still counts.
    void writeAttachment(const OLMXMLTag& tag);

    // Opens the entry of that name in the archive. Returns a stream, which the caller closes, or
    // null on failure. The name is cut at 512 bytes.
    HostStream* openAttachmentNode(const qor::String& name);

    ArchiveDirectory* archiveHandle; // not owned
    uint32_t attachmentCount = 0;    // storages made so far, even those without properties
    uint32_t messageFlags = 0;
    qor::WString toDisplayList; // each ends in a separator while its group is read
    qor::WString ccDisplayList;
    qor::WString bccDisplayList;

private:
    qor::WString* displayListOf(unsigned int recipientType);
};

#endif
