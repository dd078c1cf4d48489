#ifndef OLMKIT_FILTER_WRITERS_OLMMSGMAILTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGMAILTAGS_H

#include <array>

#include "filter/xml/TagTable.h"

// Codes of OLMMsgMailWriter. A code is below 0x100, a property tag is not.
enum MailCode : unsigned int {
    MailRoot = 0,
    MailFrom = 1,
    MailTo = 2,
    MailCc = 3,
    MailBcc = 4,
    MailAttachments = 5,
    MailWasSent = 6,
    MailIsRead = 7,
    MailCategories = 8,
};

// clang-format off
inline constexpr auto mailTags = std::to_array<UTXML_STRVALPAIR>({
    // value          element                            becomes
    {MailAttachments, "OPFMessageCopyAttachmentList"},   // attachment storages
    {MailBcc,         "OPFMessageCopyBCCAddresses"},     // recipients of type 3, display list
    {0x1000001F,      "OPFMessageCopyBody"},             // body, plain text
    {MailCc,          "OPFMessageCopyCCAddresses"},      // recipients of type 2, display list
    {MailCategories,  "OPFMessageCopyCategoryList"},     // named property Keywords
    {MailFrom,        "OPFMessageCopyFromAddresses"},    // sender's address and name
    {0x10900003,      "OPFMessageCopyGetFlagStatus"},    // flag status
    {0x10130102,      "OPFMessageCopyHTMLBody"},         // body, HTML
    {0x1042001F,      "OPFMessageCopyInReplyTo"},        // id of the message that this one answers
    {0x1035001F,      "OPFMessageCopyMessageID"},        // internet message id
    {0x30080040,      "OPFMessageCopyModDate"},          // last modification and creation time
    {0x002A0040,      "OPFMessageCopyReceivedTime"},     // receipt time
    {0x1039001F,      "OPFMessageCopyReferences"},       // internet references
    {0x00390040,      "OPFMessageCopySentTime"},         // client submit time
    {0x0037001F,      "OPFMessageCopySubject"},          // subject, its prefix and what follows it
    {0x0070001F,      "OPFMessageCopyThreadTopic"},      // conversation topic
    {MailTo,          "OPFMessageCopyToAddresses"},      // recipients of type 1, display list
    {0x0E1F000B,      "OPFMessageGetHasRichText"},       // nothing: no handler takes a boolean tag
    {MailIsRead,      "OPFMessageGetIsRead"},            // bit of the message flags
    {0x00260003,      "OPFMessageGetPriority"},          // importance, 0x00170003
    {MailWasSent,     "OPFMessageGetWasSent"},           // bit of the message flags
    {MailRoot,        "email"},                          // the item's end
});
// clang-format on

static_assert(mailTags.size() == 22);
static_assert(inByteOrder(mailTags), "ascending byte order of the names, no name twice");

#endif
