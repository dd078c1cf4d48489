#include "host/message/PropertyType.h"

#include <algorithm>
#include <iterator>

namespace olmhost {

namespace {

// clang-format off
constexpr TypeRow types[] = {
    {PtypInteger16,    "PtypInteger16",    "PtypMultipleInteger16",    2, true},
    {PtypInteger32,    "PtypInteger32",    "PtypMultipleInteger32",    4, true},
    {PtypFloating32,   "PtypFloating32",   "PtypMultipleFloating32",   4, true},
    {PtypFloating64,   "PtypFloating64",   "PtypMultipleFloating64",   8, true},
    {PtypCurrency,     "PtypCurrency",     "PtypMultipleCurrency",     8, true},
    {PtypFloatingTime, "PtypFloatingTime", "PtypMultipleFloatingTime", 8, true},
    {PtypErrorCode,    "PtypErrorCode",    nullptr,                    4, true},
    {PtypBoolean,      "PtypBoolean",      nullptr,                    2, true},
    {PtypObject,       "PtypObject",       nullptr,                    0, false},
    {PtypInteger64,    "PtypInteger64",    "PtypMultipleInteger64",    8, true},
    {PtypString8,      "PtypString8",      "PtypMultipleString8",      0, false},
    {PtypString,       "PtypString",       "PtypMultipleString",       0, false},
    {PtypTime,         "PtypTime",         "PtypMultipleTime",         8, true},
    {PtypGuid,         "PtypGuid",         "PtypMultipleGuid",        16, false},
    {PtypBinary,       "PtypBinary",       "PtypMultipleBinary",       0, false},
};
// clang-format on

} // namespace

const TypeRow* findType(std::uint16_t type) {
    const bool isList = (type & multipleValues) != 0;
    const auto single = static_cast<std::uint16_t>(type & ~multipleValues);
    const TypeRow* found = std::ranges::find(types, single, &TypeRow::type);
    if (found == std::end(types) || (isList && found->listName == nullptr)) {
        return nullptr;
    }
    return found;
}

const char* typeName(std::uint16_t type) {
    const TypeRow* found = findType(type);
    if (found == nullptr) {
        return nullptr;
    }
    return (type & multipleValues) != 0 ? found->listName : found->name;
}

} // namespace olmhost
