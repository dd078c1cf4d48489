// The named properties that can be written. Row numbers show nowhere in a message.

#include "filter/storage/MapiNamedPropMap.h"

namespace {

MapiNamedProp numericName(uint32_t propTag, MapiGUIDIndex set) {
    return {propTag, {}, 0, false, set};
}

// The name comes with its hash worked out, so that the table is never written to again.
MapiNamedProp stringName(const char* text, uint32_t crc, MapiGUIDIndex set) {
    const qor::WString name(text);
    return {static_cast<uint32_t>(name.hashCode()), name, crc, true, set};
}

} // namespace

// clang-format off
const MapiNamedProp MapiNamedPropMap::supportedProps[supportedPropCount] = {
    numericName(0x85020040, SetCommon),
    numericName(0x85010003, SetCommon),
    numericName(0x8503000B, SetCommon),
    numericName(0x8062001F, SetAddress),
    numericName(0x8045001F, SetAddress),
    numericName(0x8047001F, SetAddress),
    numericName(0x8046001F, SetAddress),
    numericName(0x8048001F, SetAddress),
    numericName(0x80DB001F, SetAddress),
    numericName(0x801B001F, SetAddress),
    numericName(0x801A001F, SetAddress),
    numericName(0x8083001F, SetAddress),
    numericName(0x8093001F, SetAddress),
    numericName(0x80A3001F, SetAddress),
    numericName(0x804F001F, SetAddress),
    numericName(0x8050001F, SetAddress),
    numericName(0x8051001F, SetAddress),
    numericName(0x8052001F, SetAddress),
    numericName(0x8053001F, SetAddress),
    numericName(0x80541102, SetAddress),
    numericName(0x80551102, SetAddress),
    numericName(0x81040040, SetTask),
    numericName(0x81050040, SetTask),
    numericName(0x810F0040, SetTask),
    numericName(0x811C000B, SetTask),
    numericName(0x81010003, SetTask),
    numericName(0x81020005, SetTask),
    numericName(0x81160102, SetTask),
    numericName(0x8B000003, SetNote),
    numericName(0x8B030003, SetNote),
    numericName(0x8B020003, SetNote),
    numericName(0x8B040003, SetNote),
    numericName(0x8B050003, SetNote),
    numericName(0x8208001F, SetAppointment),
    numericName(0x820D0040, SetAppointment),
    numericName(0x820E0040, SetAppointment),
    numericName(0x82050003, SetAppointment),
    numericName(0x8215000B, SetAppointment),
    numericName(0x82160102, SetAppointment),
    numericName(0x8234001F, SetAppointment),
    stringName("Keywords", 0x2EDA4D3B, SetPublicStrings),
};
// clang-format on
