#ifndef OLMKIT_FILTER_LISTING_OLMEMAILFIELDSTAGS_H
#define OLMKIT_FILTER_LISTING_OLMEMAILFIELDSTAGS_H

#include <array>

#include "filter/listing/OLMFieldCodes.h"

// clang-format off
inline constexpr auto emailFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value           element
    {FieldSecondList,   "OPFMessageCopyCCAddresses"},
    {FieldSender,       "OPFMessageCopyFromAddresses"},
    {FieldModDate,      "OPFMessageCopyModDate"},
    {FieldReceivedTime, "OPFMessageCopyReceivedTime"},
    {FieldSentTime,     "OPFMessageCopySentTime"},
    {FieldSubject,      "OPFMessageCopySubject"},
    {FieldFirstList,    "OPFMessageCopyToAddresses"},
    {FieldItem,         "email"},
    {FieldAddress,      "emailAddress"},
    {FieldOrganizer,    "empty1"},
    {FieldDisplayName,  "empty2"},
    {FieldTitle,        "empty3"},
});
// clang-format on

static_assert(isFieldTable(emailFieldsTags));

#endif
