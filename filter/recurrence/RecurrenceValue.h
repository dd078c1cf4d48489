#ifndef OLMKIT_FILTER_RECURRENCE_RECURRENCEVALUE_H
#define OLMKIT_FILTER_RECURRENCE_RECURRENCEVALUE_H

#include <cstdint>

#include "filter/boundary/HostStream.h"
#include "filter/recurrence/OLMRecurrence.h"

// Writes a parsed recurrence as an AppointmentRecurrencePattern structure ([MS-OXOCAL] 2.2.1.44.5),
// for appointments and tasks alike. `stream` is borrowed. Returns the number of bytes written: 76,
// 80 or 84, as the pattern type requires. Throws qor::Exception: ErrShortWrite, and what the
// getters of OLMRecurrence throw.
uint64_t writeRecurrenceValue(HostStream* stream, const OLMRecurrence& recurrence);

#endif
