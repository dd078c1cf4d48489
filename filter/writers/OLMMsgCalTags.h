#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCALTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCALTAGS_H

#include <array>

#include "filter/xml/TagTable.h"

// Codes of OLMMsgCalWriter. A code is below 0x100, a property tag is not.
enum CalCode : unsigned int {
    CalRoot = 0,
    CalCategories = 1,
    CalAttendees = 2,
    CalOrganizer = 3,
    CalRecurrence = 4,
    CalTimeZone = 5,
};

// From 0x80000000 up, a value is the key of a named property.
// clang-format off
inline constexpr auto calTags = std::to_array<UTXML_STRVALPAIR>({
    // value         element                                  becomes
    {CalAttendees,  "OPFCalendarEventCopyAttendeeList"},     // recipients
    {CalCategories, "OPFCalendarEventCopyCategoryList"},     // named property Keywords
    {0x10130102,    "OPFCalendarEventCopyDescription"},      // nothing: no handler takes a binary
    {0x1000001F,    "OPFCalendarEventCopyDescriptionPlain"}, // body, plain text
    {0x00610040,    "OPFCalendarEventCopyEndTime"},          // end, as named property 0x820E too
    {0x82050003,    "OPFCalendarEventCopyFreeBusyStatus"},   // busy status
    {0x8208001F,    "OPFCalendarEventCopyLocation"},         // location
    {0x30080040,    "OPFCalendarEventCopyModDate"},          // last modification time
    {CalOrganizer,  "OPFCalendarEventCopyOrganizer"},        // recipient, marked as the organizer
    {CalRecurrence, "OPFCalendarEventCopyRecurrence"},       // recurrence, at the item's end
    {0x85010003,    "OPFCalendarEventCopyReminderDelta"},    // minutes of the reminder
    {0x85020040,    "OPFCalendarEventCopyReminderTime"},     // time of the reminder
    {0x00600040,    "OPFCalendarEventCopyStartTime"},        // start, as named property 0x820D too
    {0x0037001F,    "OPFCalendarEventCopySummary"},          // subject
    {CalTimeZone,   "OPFCalendarEventCopyTimeZone"},         // named property 0x8234, offset
    {0x8503000B,    "OPFCalendarEventGetHasReminder"},       // whether there is a reminder
    {0x8215000B,    "OPFCalendarEventGetIsAllDayEvent"},     // all-day mark
    {0x00360003,    "OPFCalendarEventGetIsPrivate"},         // sensitivity
    {CalRoot,       "appointment"},                          // the item's end
});
// clang-format on

static_assert(calTags.size() == 19);
static_assert(inByteOrder(calTags), "ascending byte order of the names, no name twice");

#endif
