#ifndef OLMKIT_FILTER_WRITERS_OLMMSGTASKTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGTASKTAGS_H

#include <array>

#include "filter/storage/MapiNamedPropKey.h"
#include "filter/storage/MapiPropTag.h"
#include "filter/xml/TagTable.h"

// Codes of OLMMsgTaskWriter. They are below 0x100; property tags and keys of named properties are
// above.
enum TaskCode : unsigned int {
    TaskRoot = 0,
    TaskCategories = 1,
    TaskRecurrence = 2,
};

// clang-format off
inline constexpr auto taskTags = std::to_array<UTXML_STRVALPAIR>({
    // value                     element
    {TaskCategories,             "OPFTaskCopyCategoryList"},      // PidNameKeywords
    {PidLidTaskDateCompleted,    "OPFTaskCopyCompletedDateTime"}, // also the marks of a complete task
    {PidLidTaskDueDate,          "OPFTaskCopyDueDateTime"},
    {PidTagLastModificationTime, "OPFTaskCopyModDate"},
    {PidTagSubject,              "OPFTaskCopyName"},
    {PidTagHtml,                 "OPFTaskCopyNote"},              // nothing: no handler takes a binary value
    {PidTagBody,                 "OPFTaskCopyNotePlain"},
    {TaskRecurrence,             "OPFTaskCopyRecurrence"},        // PidLidTaskRecurrence, at the end of the item
    {PidLidTaskStartDate,        "OPFTaskCopyStartDateTime"},
    {PidTagImportance,           "OPFTaskGetPriority"},           // the number unchanged
    {TaskRoot,                   "task"},                         // the item
});
// clang-format on

static_assert(taskTags.size() == 11);
static_assert(inByteOrder(taskTags), "ascending byte order of the names, no name twice");

#endif
