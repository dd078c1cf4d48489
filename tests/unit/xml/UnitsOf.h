#ifndef OLMKIT_TESTS_UNIT_XML_UNITSOF_H
#define OLMKIT_TESTS_UNIT_XML_UNITSOF_H

#include <string>

#include "filter/core/WString.h"

// Returns the units of a text, including any 0 units.
inline std::u16string unitsOf(const qor::WString& text) {
    return {text.value(), text.value() + text.length()};
}

#endif
