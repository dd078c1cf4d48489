#ifndef OLMKIT_FILTER_LISTING_OLMCONTACTGRPFIELDSTAGS_H
#define OLMKIT_FILTER_LISTING_OLMCONTACTGRPFIELDSTAGS_H

#include <array>

#include "filter/listing/OLMFieldCodes.h"

// clang-format off
inline constexpr auto contactGrpFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value           element
    {FieldSubject,      "OPFGroupCopyDisplayName"},
    {FieldModDate,      "OPFGroupCopyModDate"},
    {FieldTitle,        "empty0"},
    {FieldFirstList,    "empty1"},
    {FieldOrganizer,    "empty2"},
    {FieldDisplayName,  "empty3"},
    {FieldAddress,      "empty4"},
    {FieldSecondList,   "empty5"},
    {FieldSender,       "empty6"},
    {FieldReceivedTime, "empty7"},
    {FieldSentTime,     "empty8"},
    {FieldItem,         "group"},
});
// clang-format on

static_assert(isFieldTable(contactGrpFieldsTags));

#endif
