#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCALTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCALTAGS_H

#include <array>

#include "filter/storage/MapiNamedPropKey.h"
#include "filter/storage/MapiPropTag.h"
#include "filter/xml/TagTable.h"

// Codes of OLMMsgCalWriter. They are below 0x100; property tags and keys of named properties are
// above.
enum CalCode : unsigned int {
    CalRoot = 0,
    CalCategories = 1,
    CalAttendees = 2,
    CalOrganizer = 3,
    CalRecurrence = 4,
    CalTimeZone = 5,
};

// clang-format off
inline constexpr auto calTags = std::to_array<UTXML_STRVALPAIR>({
    // value                     element
    {CalAttendees,               "OPFCalendarEventCopyAttendeeList"},     // recipients
    {CalCategories,              "OPFCalendarEventCopyCategoryList"},     // PidNameKeywords
    {PidTagHtml,                 "OPFCalendarEventCopyDescription"},      // nothing: no handler takes a binary value
    {PidTagBody,                 "OPFCalendarEventCopyDescriptionPlain"},
    {PidTagEndDate,              "OPFCalendarEventCopyEndTime"},          // also PidLidAppointmentEndWhole
    {PidLidBusyStatus,           "OPFCalendarEventCopyFreeBusyStatus"},
    {PidLidLocation,             "OPFCalendarEventCopyLocation"},
    {PidTagLastModificationTime, "OPFCalendarEventCopyModDate"},
    {CalOrganizer,               "OPFCalendarEventCopyOrganizer"},        // a recipient, marked as the organizer
    {CalRecurrence,              "OPFCalendarEventCopyRecurrence"},       // PidLidAppointmentRecur, at the end of the item
    {PidLidReminderDelta,        "OPFCalendarEventCopyReminderDelta"},
    {PidLidReminderTime,         "OPFCalendarEventCopyReminderTime"},
    {PidTagStartDate,            "OPFCalendarEventCopyStartTime"},        // also PidLidAppointmentStartWhole
    {PidTagSubject,              "OPFCalendarEventCopySummary"},
    {CalTimeZone,                "OPFCalendarEventCopyTimeZone"},         // PidLidTimeZoneDescription, offset of the recurrence
    {PidLidReminderSet,          "OPFCalendarEventGetHasReminder"},
    {PidLidAppointmentSubType,   "OPFCalendarEventGetIsAllDayEvent"},
    {PidTagSensitivity,          "OPFCalendarEventGetIsPrivate"},
    {CalRoot,                    "appointment"},                          // the item
});
// clang-format on

static_assert(calTags.size() == 19);
static_assert(inByteOrder(calTags), "ascending byte order of the names, no name twice");

#endif
