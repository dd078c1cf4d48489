#ifndef OLMKIT_FILTER_LISTING_OLMFIELDCODES_H
#define OLMKIT_FILTER_LISTING_OLMFIELDCODES_H

#include <algorithm>
#include <cstddef>
#include <span>

#include "filter/xml/TagTable.h"

// The field that an element becomes: the values of the tag tables of all item kinds. They start
// after the values of the root tags, which every reader also knows.
enum OLMFieldCode : unsigned int {
    FieldItem = 6,       // the item's own element
    FieldSender = 7,     // a group with one address
    FieldFirstList = 8,  // a group of addresses
    FieldSecondList = 9, // a group of addresses
    FieldAddress = 10,   // an address in one of the three
    FieldSubject = 11,   // texts from here on
    FieldSentTime = 12,
    FieldReceivedTime = 13,
    FieldModDate = 14,
    FieldOrganizer = 15,
    FieldDisplayName = 16,
    FieldTitle = 17,
};

inline constexpr std::size_t fieldCodeCount = FieldTitle - FieldItem + 1;
inline constexpr std::size_t fieldTextCount = FieldTitle - FieldSubject + 1;

// Returns true for a table in byte order that holds each code exactly once.
constexpr bool isFieldTable(std::span<const UTXML_STRVALPAIR> rows) {
    if (rows.size() != fieldCodeCount || !inByteOrder(rows)) {
        return false;
    }
    for (unsigned int code = FieldItem; code <= FieldTitle; ++code) {
        if (std::ranges::count(rows, code, &UTXML_STRVALPAIR::value) != 1) {
            return false;
        }
    }
    return true;
}

#endif
