#ifndef OLMKIT_TESTS_UNIT_CORE_WIDE_H
#define OLMKIT_TESTS_UNIT_CORE_WIDE_H

#include <string_view>

#include "filter/core/WString.h"

// Returns a text of the module with exactly these units.
inline qor::WString wide(std::u16string_view units) {
    qor::WString text;
    text.append(reinterpret_cast<const uint16_t*>(units.data()), static_cast<int>(units.size()));
    return text;
}

#endif
