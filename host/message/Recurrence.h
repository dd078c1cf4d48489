#ifndef OLMKIT_HOST_MESSAGE_RECURRENCE_H
#define OLMKIT_HOST_MESSAGE_RECURRENCE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/stream/Export.h"

namespace olmhost {

// One occurrence that differs from the others. What is unchanged has no value.
struct RecurrenceException {
    std::uint32_t start = 0;         // minutes since 1601, in the time zone's local time
    std::uint32_t end = 0;           // likewise
    std::uint32_t originalStart = 0; // likewise
    std::optional<std::u16string> subject;
    std::optional<std::uint32_t> meetingType;
    std::optional<std::uint32_t> reminderDelta; // minutes
    std::optional<bool> isReminderSet;
    std::optional<std::u16string> location;
    std::optional<std::uint32_t> busyStatus;
    std::optional<std::uint32_t> attachment;
    std::optional<std::uint32_t> subType; // 1: whole days
    std::optional<std::uint32_t> color;
};

// How an appointment or a task repeats: a RecurrencePattern (MS-OXOCAL 2.2.1.44.1), and for an
// appointment an AppointmentRecurrencePattern (2.2.1.44.5). Numbers are those of the value; days
// and times are minutes since 1601-01-01, in the time zone's local time.
struct Recurrence {
    // Values of patternType.
    enum Pattern : std::uint16_t {
        Day = 0,
        Week = 1,
        MonthDay = 2,
        MonthNth = 3,
        MonthEnd = 4,
        HijriMonthDay = 10,
        HijriMonthNth = 11,
        HijriMonthEnd = 12,
    };
    // Values of frequency.
    enum Frequency : std::uint16_t { Daily = 0x200A, Weekly, Monthly, Yearly };

    // Values of endType. Some programs write all ones for Never.
    enum End : std::uint32_t { OnDate = 0x2021, AfterCount = 0x2022, Never = 0x2023 };

    static constexpr std::uint32_t noEndDate = 0x5AE980DF;

    std::uint16_t frequency = 0;
    std::uint16_t patternType = 0;
    std::uint16_t calendarType = 0;
    std::uint32_t firstDateTime = 0;
    std::uint32_t period = 0; // minutes when daily, weeks when weekly, otherwise months
    std::uint32_t slidingFlag = 0;
    std::optional<std::uint32_t> dayMask;    // bit 0 is Sunday; of weekly and nth patterns
    std::optional<std::uint32_t> dayOfMonth; // of the other patterns of months
    std::optional<std::uint32_t> week;       // 1 to 4, 5 for the last; of nth patterns
    std::uint32_t endType = 0;
    std::uint32_t occurrenceCount = 0;
    std::uint32_t firstDayOfWeek = 0;         // 0 is Sunday
    std::vector<std::uint32_t> deletedDays;   // midnights
    std::vector<std::uint32_t> modifiedDays;  // midnights
    std::uint32_t startDate = 0;              // midnight
    std::uint32_t endDate = 0;                // midnight of the last day, or noEndDate
    std::optional<std::uint32_t> startOffset; // minutes from midnight to an occurrence's start
    std::optional<std::uint32_t> endOffset;   // and to its end
    std::vector<RecurrenceException> exceptions;
};

// Decodes the value. Returns none when it is cut off, has bytes left over or has an unknown
// pattern; `failure` is then human-readable, part of a sentence.
OLMHOST_EXPORT std::optional<Recurrence> decodeRecurrence(std::span<const std::byte> value,
                                                          std::string& failure);

} // namespace olmhost

#endif
