#ifndef OLMKIT_FILTER_LISTING_OLMCOLUMNS_H
#define OLMKIT_FILTER_LISTING_OLMCOLUMNS_H

#include <array>

#include "filter/listing/OLMFieldCodes.h"

enum class OLMColumnKind { Text, Special, Locator };

// One column of the listing.
struct OLMColumn {
    OLMColumnKind kind;
    unsigned int number; // by which the column is defined
    unsigned int second; // second number of the definition of a text column
    unsigned int tagId;  // of the cell's text: a number space of its own; 0 for an untagged cell
    unsigned int code;   // the field in the cell; 0 where the cell is made otherwise
};

// The columns in the order of their definitions and of the cells of a row.
// clang-format off
inline constexpr auto olmColumns = std::to_array<OLMColumn>({
    // kind                  number   second     tag id   field
    {OLMColumnKind::Text,    0x13689, 0xC000000, 0,       0},                 // file name
    {OLMColumnKind::Text,    0x1367C, 0,         0x1367C, FieldSender},
    {OLMColumnKind::Text,    0x1366A, 0,         0x1366A, FieldFirstList},
    {OLMColumnKind::Text,    0x1366B, 0,         0x1366B, FieldSecondList},
    {OLMColumnKind::Text,    0x1366D, 0,         0x1366D, FieldSubject},
    {OLMColumnKind::Text,    0x1367D, 0,         0x13683, FieldSentTime},     // not its number
    {OLMColumnKind::Text,    0x1367F, 0,         0x1367F, FieldReceivedTime},
    {OLMColumnKind::Text,    0x13681, 0,         0x13681, FieldModDate},
    {OLMColumnKind::Text,    0x14F21, 0,         0x13727, FieldOrganizer},    // not its number
    {OLMColumnKind::Text,    0x14E3F, 0,         0x13675, FieldDisplayName},  // not its number
    {OLMColumnKind::Text,    0x13676, 0,         0x136D1, FieldTitle},        // not its number
    {OLMColumnKind::Special, 6,       0,         0,       0},                 // specialValue6
    {OLMColumnKind::Special, 7,       0,         0,       0},                 // specialValue7
    {OLMColumnKind::Locator, 0,       0,         0,       0},                 // ItemLocator
});
// clang-format on

static_assert(olmColumns.size() == 14);

#endif
