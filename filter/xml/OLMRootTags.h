#ifndef OLMKIT_FILTER_XML_OLMROOTTAGS_H
#define OLMKIT_FILTER_XML_OLMROOTTAGS_H

#include <array>

#include "filter/xml/TagTable.h"

// What the items of a document are: the value of its root tag.
enum OLMItemType : unsigned int {
    AppointmentItems = 0,
    ContactItems = 1,
    EmailItems = 2,
    NoteItems = 3,
    TaskItems = 4,
    GroupItems = 5,
};

// clang-format off
inline constexpr auto rootTags = std::to_array<UTXML_STRVALPAIR>({
    // value           element
    {AppointmentItems, "appointments"},
    {ContactItems,     "contacts"},
    {EmailItems,       "emails"},
    {GroupItems,       "groups"},
    {NoteItems,        "notes"},
    {TaskItems,        "tasks"},
});
// clang-format on

static_assert(rootTags.size() == 6);
static_assert(inByteOrder(rootTags), "ascending byte order of the names, no name twice");

#endif
