#ifndef OLMKIT_FILTER_XML_WSTRINGUNITS_H
#define OLMKIT_FILTER_XML_WSTRINGUNITS_H

#include <cstdint>

#include "filter/core/WString.h"

// Returns the number of units before the first 0 unit; 0 for null.
inline int countUnits(const uint16_t* units) {
    int count = 0;
    if (units != nullptr) {
        while (units[count] != 0) {
            ++count;
        }
    }
    return count;
}

// Returns the position of the last `unit` in the text, or -1.
inline int lastPosition(const qor::WString& text, uint16_t unit) {
    int position = text.length() - 1;
    while (position >= 0 && text.value()[position] != unit) {
        --position;
    }
    return position;
}

// Replaces the text by at most `count` units, up to the first 0 unit. Null, or a count of 0 or
// less, empties it.
inline void setUnits(qor::WString& text, const uint16_t* units, int count) {
    if (units != nullptr && count > 0) {
        text.assign(units, count);
    } else {
        text.setLength(0);
    }
}

#endif
