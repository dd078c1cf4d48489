#ifndef OLMKIT_FILTER_WRITERS_OLMMSGNOTETAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGNOTETAGS_H

#include <array>

#include "filter/storage/MapiPropTag.h"
#include "filter/xml/TagTable.h"

// Codes of OLMMsgNoteWriter. They are below 0x100; property tags and keys of named properties are
// above.
enum NoteCode : unsigned int {
    NoteRoot = 0,
    NoteCategories = 1,
};

// clang-format off
inline constexpr auto noteTags = std::to_array<UTXML_STRVALPAIR>({
    // value                     element
    {NoteCategories,             "OPFNoteCopyCategoryList"}, // PidNameKeywords
    {PidTagCreationTime,         "OPFNoteCopyCreationDate"},
    {PidTagLastModificationTime, "OPFNoteCopyModDate"},
    {PidTagBody,                 "OPFNoteCopyNonHTMLText"},
    {PidTagHtml,                 "OPFNoteCopyText"},         // nothing: no handler takes a binary value
    {PidTagSubject,              "OPFNoteCopyTitle"},
    {NoteRoot,                   "note"},                    // the item
});
// clang-format on

static_assert(noteTags.size() == 7);
static_assert(inByteOrder(noteTags), "ascending byte order of the names, no name twice");

#endif
