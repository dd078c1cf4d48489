#ifndef OLMKIT_FILTER_LISTING_OLMNOTEFIELDSTAGS_H
#define OLMKIT_FILTER_LISTING_OLMNOTEFIELDSTAGS_H

#include <array>

#include "filter/listing/OLMFieldCodes.h"

// clang-format off
inline constexpr auto noteFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value           element
    {FieldModDate,      "OPFNoteCopyModDate"},
    {FieldSubject,      "OPFNoteCopyTitle"},
    {FieldFirstList,    "empty0"},
    {FieldOrganizer,    "empty1"},
    {FieldAddress,      "empty2"},
    {FieldSecondList,   "empty3"},
    {FieldSender,       "empty4"},
    {FieldReceivedTime, "empty5"},
    {FieldSentTime,     "empty6"},
    {FieldTitle,        "empty7"},
    {FieldDisplayName,  "empty8"},
    {FieldItem,         "note"},
});
// clang-format on

static_assert(isFieldTable(noteFieldsTags));

#endif
