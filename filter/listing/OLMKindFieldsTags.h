#ifndef OLMKIT_FILTER_LISTING_OLMKINDFIELDSTAGS_H
#define OLMKIT_FILTER_LISTING_OLMKINDFIELDSTAGS_H

#include <array>

#include "filter/listing/OLMFieldCodes.h"

// The elements of each item kind that appear in the listing. A code that a kind has no element for
// is bound to a name that no archive contains, so that every table holds every code.

// clang-format off

inline constexpr auto emailFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value            element
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

inline constexpr auto calFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value            element
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

inline constexpr auto contactFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value            element
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

inline constexpr auto taskFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value            element
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

inline constexpr auto noteFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value            element
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

inline constexpr auto contactGrpFieldsTags = std::to_array<UTXML_STRVALPAIR>({
    // value            element
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

static_assert(isFieldTable(emailFieldsTags));
static_assert(isFieldTable(calFieldsTags));
static_assert(isFieldTable(contactFieldsTags));
static_assert(isFieldTable(taskFieldsTags));
static_assert(isFieldTable(noteFieldsTags));
static_assert(isFieldTable(contactGrpFieldsTags));

#endif
