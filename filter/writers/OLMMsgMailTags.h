#ifndef OLMKIT_FILTER_WRITERS_OLMMSGMAILTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGMAILTAGS_H

#include <array>

#include "filter/storage/MapiPropTag.h"
#include "filter/xml/TagTable.h"

// Codes of OLMMsgMailWriter. They are below 0x100; property tags and keys of named properties are
// above.
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
    // value                     element
    {MailAttachments,            "OPFMessageCopyAttachmentList"}, // attachment storages
    {MailBcc,                    "OPFMessageCopyBCCAddresses"},   // recipients of type 3, PidTagDisplayBcc
    {PidTagBody,                 "OPFMessageCopyBody"},
    {MailCc,                     "OPFMessageCopyCCAddresses"},    // recipients of type 2, PidTagDisplayCc
    {MailCategories,             "OPFMessageCopyCategoryList"},   // PidNameKeywords
    {MailFrom,                   "OPFMessageCopyFromAddresses"},  // address and name of the sender
    {PidTagFlagStatus,           "OPFMessageCopyGetFlagStatus"},
    {PidTagHtml,                 "OPFMessageCopyHTMLBody"},
    {PidTagInReplyToId,          "OPFMessageCopyInReplyTo"},
    {PidTagInternetMessageId,    "OPFMessageCopyMessageID"},
    {PidTagLastModificationTime, "OPFMessageCopyModDate"},        // also PidTagCreationTime
    {PidTagReceiptTime,          "OPFMessageCopyReceivedTime"},
    {PidTagInternetReferences,   "OPFMessageCopyReferences"},
    {PidTagClientSubmitTime,     "OPFMessageCopySentTime"},
    {PidTagSubject,              "OPFMessageCopySubject"},        // also its prefix and the rest of it
    {PidTagConversationTopic,    "OPFMessageCopyThreadTopic"},
    {MailTo,                     "OPFMessageCopyToAddresses"},    // recipients of type 1, PidTagDisplayTo
    {PidTagRtfInSync,            "OPFMessageGetHasRichText"},     // nothing: no handler takes a boolean
    {MailIsRead,                 "OPFMessageGetIsRead"},          // bit of PidTagMessageFlags
    {PidTagPriority,             "OPFMessageGetPriority"},        // PidTagImportance
    {MailWasSent,                "OPFMessageGetWasSent"},         // bit of PidTagMessageFlags
    {MailRoot,                   "email"},                        // the item
});
// clang-format on

static_assert(mailTags.size() == 22);
static_assert(inByteOrder(mailTags), "ascending byte order of the names, no name twice");

#endif
