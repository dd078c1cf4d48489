#ifndef OLMKIT_FILTER_LISTING_OLMTASKFIELDSTAGS_H
#define OLMKIT_FILTER_LISTING_OLMTASKFIELDSTAGS_H

#include <array>

#include "filter/listing/OLMFieldCodes.h"

// clang-format off
inline constexpr auto taskFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value           element
    {FieldModDate,      "OPFTaskCopyModDate"},
    {FieldSubject,      "OPFTaskCopyName"},
    {FieldFirstList,    "empty0"},
    {FieldOrganizer,    "empty1"},
    {FieldAddress,      "empty2"},
    {FieldSecondList,   "empty3"},
    {FieldSender,       "empty4"},
    {FieldReceivedTime, "empty5"},
    {FieldSentTime,     "empty6"},
    {FieldTitle,        "empty7"},
    {FieldDisplayName,  "empty8"},
    {FieldItem,         "task"},
});
// clang-format on

static_assert(isFieldTable(taskFieldsTags));

#endif
