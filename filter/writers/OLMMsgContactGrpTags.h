#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCONTACTGRPTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCONTACTGRPTAGS_H

#include <array>

#include "filter/storage/MapiPropTag.h"
#include "filter/xml/TagTable.h"

// Codes of OLMMsgContactGrpWriter. They are below 0x100; property tags and keys of named
// properties are above.
enum ContactGrpCode : unsigned int {
    ContactGrpRoot = 0,
    ContactGrpMembers = 1,
    ContactGrpCategories = 2,
};

// clang-format off
inline constexpr auto contactGrpTags = std::to_array<UTXML_STRVALPAIR>({
    // value                     element
    {ContactGrpCategories,       "OPFGroupCopyCategoryList"}, // PidNameKeywords
    {PidTagSubject,              "OPFGroupCopyDisplayName"},  // also PidLidDistributionListName
    {ContactGrpMembers,          "OPFGroupCopyMemberList"},   // PidLidDistributionListMembers, ...OneOffMembers
    {PidTagLastModificationTime, "OPFGroupCopyModDate"},
    {PidTagHtml,                 "OPFGroupCopyNotes"},        // nothing: no handler takes a binary value
    {PidTagBody,                 "OPFGroupCopyNotesPlain"},
    {ContactGrpRoot,             "group"},                    // the item
});
// clang-format on

static_assert(contactGrpTags.size() == 7);
static_assert(inByteOrder(contactGrpTags), "ascending byte order of the names, no name twice");

#endif
