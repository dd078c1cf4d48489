#ifndef OLMKIT_FILTER_STORAGE_MAPINAMEDPROPKEY_H
#define OLMKIT_FILTER_STORAGE_MAPINAMEDPROPKEY_H

#include <cstdint>

// The numeric named properties that messages contain, by their names in [MS-OXPROPS]. A key is the
// property's long id (LID) in the high 16 bits and the type in the low 16 bits. It is not a tag:
// MapiNamedPropMap returns the tag of the property in a message.
// clang-format off
enum MapiNamedPropKey : uint32_t {
    // PSETID_Common
    PidLidReminderDelta                 = 0x85010003,
    PidLidReminderTime                  = 0x85020040,
    PidLidReminderSet                   = 0x8503000B,
    // PSETID_Address
    PidLidHomeAddress                   = 0x801A001F,
    PidLidWorkAddress                   = 0x801B001F,
    PidLidWorkAddressStreet             = 0x8045001F,
    PidLidWorkAddressCity               = 0x8046001F,
    PidLidWorkAddressState              = 0x8047001F,
    PidLidWorkAddressPostalCode         = 0x8048001F,
    PidLidContactUserField1             = 0x804F001F,
    PidLidContactUserField2             = 0x8050001F,
    PidLidContactUserField3             = 0x8051001F,
    PidLidContactUserField4             = 0x8052001F,
    PidLidDistributionListName          = 0x8053001F,
    PidLidDistributionListOneOffMembers = 0x80541102,
    PidLidDistributionListMembers       = 0x80551102,
    PidLidInstantMessagingAddress       = 0x8062001F,
    PidLidEmail1EmailAddress            = 0x8083001F,
    PidLidEmail2EmailAddress            = 0x8093001F,
    PidLidEmail3EmailAddress            = 0x80A3001F,
    PidLidWorkAddressCountryCode        = 0x80DB001F,
    // PSETID_Appointment
    PidLidBusyStatus                    = 0x82050003,
    PidLidLocation                      = 0x8208001F,
    PidLidAppointmentStartWhole         = 0x820D0040,
    PidLidAppointmentEndWhole           = 0x820E0040,
    PidLidAppointmentSubType            = 0x8215000B,
    PidLidAppointmentRecur              = 0x82160102,
    PidLidTimeZoneDescription           = 0x8234001F,
    // PSETID_Task
    PidLidTaskStatus                    = 0x81010003,
    PidLidPercentComplete               = 0x81020005,
    PidLidTaskStartDate                 = 0x81040040,
    PidLidTaskDueDate                   = 0x81050040,
    PidLidTaskDateCompleted             = 0x810F0040,
    PidLidTaskRecurrence                = 0x81160102,
    PidLidTaskComplete                  = 0x811C000B,
    // PSETID_Note
    PidLidNoteColor                     = 0x8B000003,
    PidLidNoteWidth                     = 0x8B020003,
    PidLidNoteHeight                    = 0x8B030003,
    PidLidNoteX                         = 0x8B040003,
    PidLidNoteY                         = 0x8B050003,
};
// clang-format on

#endif
