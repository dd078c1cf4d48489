// The named properties that a message may contain. Row numbers do not appear in a message.

#include "filter/storage/MapiNamedPropKey.h"
#include "filter/storage/MapiNamedPropMap.h"

namespace {

MapiNamedProp numericName(MapiNamedPropKey key, MapiGUIDIndex set) {
    return {key, {}, 0, false, set};
}

// Calculates the hash of the name, so that the table is not written to later.
MapiNamedProp stringName(const char* text, uint32_t crc, MapiGUIDIndex set) {
    const qor::WString name(text);
    return {static_cast<uint32_t>(name.hashCode()), name, crc, true, set};
}

} // namespace

// clang-format off
const MapiNamedProp MapiNamedPropMap::supportedProps[supportedPropCount] = {
    numericName(PidLidReminderTime,                  SetCommon),
    numericName(PidLidReminderDelta,                 SetCommon),
    numericName(PidLidReminderSet,                   SetCommon),
    numericName(PidLidInstantMessagingAddress,       SetAddress),
    numericName(PidLidWorkAddressStreet,             SetAddress),
    numericName(PidLidWorkAddressState,              SetAddress),
    numericName(PidLidWorkAddressCity,               SetAddress),
    numericName(PidLidWorkAddressPostalCode,         SetAddress),
    numericName(PidLidWorkAddressCountryCode,        SetAddress),
    numericName(PidLidWorkAddress,                   SetAddress),
    numericName(PidLidHomeAddress,                   SetAddress),
    numericName(PidLidEmail1EmailAddress,            SetAddress),
    numericName(PidLidEmail2EmailAddress,            SetAddress),
    numericName(PidLidEmail3EmailAddress,            SetAddress),
    numericName(PidLidContactUserField1,             SetAddress),
    numericName(PidLidContactUserField2,             SetAddress),
    numericName(PidLidContactUserField3,             SetAddress),
    numericName(PidLidContactUserField4,             SetAddress),
    numericName(PidLidDistributionListName,          SetAddress),
    numericName(PidLidDistributionListOneOffMembers, SetAddress),
    numericName(PidLidDistributionListMembers,       SetAddress),
    numericName(PidLidTaskStartDate,                 SetTask),
    numericName(PidLidTaskDueDate,                   SetTask),
    numericName(PidLidTaskDateCompleted,             SetTask),
    numericName(PidLidTaskComplete,                  SetTask),
    numericName(PidLidTaskStatus,                    SetTask),
    numericName(PidLidPercentComplete,               SetTask),
    numericName(PidLidTaskRecurrence,                SetTask),
    numericName(PidLidNoteColor,                     SetNote),
    numericName(PidLidNoteHeight,                    SetNote),
    numericName(PidLidNoteWidth,                     SetNote),
    numericName(PidLidNoteX,                         SetNote),
    numericName(PidLidNoteY,                         SetNote),
    numericName(PidLidLocation,                      SetAppointment),
    numericName(PidLidAppointmentStartWhole,         SetAppointment),
    numericName(PidLidAppointmentEndWhole,           SetAppointment),
    numericName(PidLidBusyStatus,                    SetAppointment),
    numericName(PidLidAppointmentSubType,            SetAppointment),
    numericName(PidLidAppointmentRecur,              SetAppointment),
    numericName(PidLidTimeZoneDescription,           SetAppointment),
    stringName("Keywords", 0x2EDA4D3B,               SetPublicStrings), // PidNameKeywords
};
// clang-format on
