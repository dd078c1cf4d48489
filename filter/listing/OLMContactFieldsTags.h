#ifndef OLMKIT_FILTER_LISTING_OLMCONTACTFIELDSTAGS_H
#define OLMKIT_FILTER_LISTING_OLMCONTACTFIELDSTAGS_H

#include <array>

#include "filter/listing/OLMFieldCodes.h"

// clang-format off
inline constexpr auto contactFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value           element
    {FieldTitle,        "OPFContactCopyBusinessTitle"},
    {FieldDisplayName,  "OPFContactCopyDisplayName"},
    {FieldModDate,      "OPFContactCopyModDate"},
    {FieldItem,         "contact"},
    {FieldFirstList,    "empty1"},
    {FieldOrganizer,    "empty2"},
    {FieldSubject,      "empty3"},
    {FieldAddress,      "empty4"},
    {FieldSecondList,   "empty5"},
    {FieldSender,       "empty6"},
    {FieldReceivedTime, "empty7"},
    {FieldSentTime,     "empty8"},
});
// clang-format on

static_assert(isFieldTable(contactFieldsTags));

#endif
