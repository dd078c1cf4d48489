#ifndef OLMKIT_FILTER_LISTING_OLMCALFIELDSTAGS_H
#define OLMKIT_FILTER_LISTING_OLMCALFIELDSTAGS_H

#include <array>

#include "filter/listing/OLMFieldCodes.h"

// clang-format off
inline constexpr auto calFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value           element
    {FieldFirstList,    "OPFCalendarEventCopyAttendeeList"},
    {FieldModDate,      "OPFCalendarEventCopyModDate"},
    {FieldOrganizer,    "OPFCalendarEventCopyOrganizer"},
    {FieldSubject,      "OPFCalendarEventCopySummary"},
    {FieldItem,         "appointment"},
    {FieldAddress,      "appointmentAttendee"},
    {FieldDisplayName,  "empty1"},
    {FieldTitle,        "empty2"},
    {FieldSecondList,   "empty3"},
    {FieldSender,       "empty4"},
    {FieldReceivedTime, "empty5"},
    {FieldSentTime,     "empty6"},
});
// clang-format on

static_assert(isFieldTable(calFieldsTags));

#endif
