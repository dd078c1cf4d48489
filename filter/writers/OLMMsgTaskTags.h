#ifndef OLMKIT_FILTER_WRITERS_OLMMSGTASKTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGTASKTAGS_H

#include <array>

#include "filter/xml/TagTable.h"

// Codes of OLMMsgTaskWriter. A code is below 0x100, a property tag is not.
enum TaskCode : unsigned int {
    TaskRoot = 0,
    TaskCategories = 1,
    TaskRecurrence = 2,
};

// From 0x80000000 up, a value is the key of a named property.
// clang-format off
inline constexpr auto taskTags = std::to_array<UTXML_STRVALPAIR>({
    // value          element                          becomes
    {TaskCategories, "OPFTaskCopyCategoryList"},      // named property Keywords
    {0x810F0040,     "OPFTaskCopyCompletedDateTime"}, // the marks of a complete task and the date
    {0x81050040,     "OPFTaskCopyDueDateTime"},       // due date
    {0x30080040,     "OPFTaskCopyModDate"},           // last modification time
    {0x0037001F,     "OPFTaskCopyName"},              // subject
    {0x10130102,     "OPFTaskCopyNote"},              // nothing: no handler takes a binary tag
    {0x1000001F,     "OPFTaskCopyNotePlain"},         // body, plain text
    {TaskRecurrence, "OPFTaskCopyRecurrence"},        // recurrence, at the item's end
    {0x81040040,     "OPFTaskCopyStartDateTime"},     // start date
    {0x00170003,     "OPFTaskGetPriority"},           // importance, the number as it stands
    {TaskRoot,       "task"},                         // the item's end
});
// clang-format on

static_assert(taskTags.size() == 11);
static_assert(inByteOrder(taskTags), "ascending byte order of the names, no name twice");

#endif
