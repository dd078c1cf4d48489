#ifndef OLMKIT_FILTER_WRITERS_OLMMSGNOTETAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGNOTETAGS_H

#include <array>

#include "filter/xml/TagTable.h"

// Codes of OLMMsgNoteWriter. A code is below 0x100, a property tag is not.
enum NoteCode : unsigned int {
    NoteRoot = 0,
    NoteCategories = 1,
};

// clang-format off
inline constexpr auto noteTags = std::to_array<UTXML_STRVALPAIR>({
    // value         element                       becomes
    {NoteCategories, "OPFNoteCopyCategoryList"}, // named property Keywords
    {0x30070040,     "OPFNoteCopyCreationDate"}, // creation time
    {0x30080040,     "OPFNoteCopyModDate"},      // last modification time
    {0x1000001F,     "OPFNoteCopyNonHTMLText"},  // body, plain text
    {0x10130102,     "OPFNoteCopyText"},         // nothing: no handler takes a binary tag
    {0x0037001F,     "OPFNoteCopyTitle"},        // subject
    {NoteRoot,       "note"},                    // the item's end
});
// clang-format on

static_assert(noteTags.size() == 7);
static_assert(inByteOrder(noteTags), "ascending byte order of the names, no name twice");

#endif
