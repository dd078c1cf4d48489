#ifndef OLMKIT_FILTER_RECURRENCE_RECURRENCEVALUE_H
#define OLMKIT_FILTER_RECURRENCE_RECURRENCEVALUE_H

#include <cstdint>

#include "filter/boundary/HostStream.h"
#include "filter/recurrence/OLMRecurrence.h"

// Writes a parsed recurrence as the AppointmentRecurrencePattern structure of [MS-OXOCAL], which
// appointments and tasks share. `stream` is borrowed. Gives the bytes written: 76, or 80 and 84
// when the pattern has a part of its own. Throws qor::Exception: ErrShortWrite, and what the
// getters of OLMRecurrence throw.
uint64_t writeRecurrenceValue(HostStream* stream, const OLMRecurrence& recurrence);

#endif
