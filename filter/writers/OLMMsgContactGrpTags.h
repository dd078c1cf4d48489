#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCONTACTGRPTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCONTACTGRPTAGS_H

#include <array>

#include "filter/xml/TagTable.h"

// Codes of OLMMsgContactGrpWriter. A code is below 0x100, a property tag is not.
enum ContactGrpCode : unsigned int {
    ContactGrpRoot = 0,
    ContactGrpMembers = 1,
    ContactGrpCategories = 2,
};

// clang-format off
inline constexpr auto contactGrpTags = std::to_array<UTXML_STRVALPAIR>({
    // value               element                        becomes
    {ContactGrpCategories, "OPFGroupCopyCategoryList"}, // named property Keywords
    {0x0037001F,           "OPFGroupCopyDisplayName"},  // subject, named property 0x8053
    {ContactGrpMembers,    "OPFGroupCopyMemberList"},   // named properties 0x8054 and 0x8055
    {0x30080040,           "OPFGroupCopyModDate"},      // last modification time
    {0x10130102,           "OPFGroupCopyNotes"},        // nothing: no handler takes a binary tag
    {0x1000001F,           "OPFGroupCopyNotesPlain"},   // body, plain text
    {ContactGrpRoot,       "group"},                    // the item's end
});
// clang-format on

static_assert(contactGrpTags.size() == 7);
static_assert(inByteOrder(contactGrpTags), "ascending byte order of the names, no name twice");

#endif
