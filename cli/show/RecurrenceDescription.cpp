#include "cli/show/RecurrenceDescription.h"

#include <array>

#include "cli/show/PropertyDescription.h"
#include "cli/show/TimeText.h"

namespace olmkit {

namespace {

using olmhost::Recurrence;

constexpr std::array<const char*, 7> dayNames = {"sunday",   "monday", "tuesday", "wednesday",
                                                 "thursday", "friday", "saturday"};

JsonObject frequencyName(std::uint16_t frequency) {
    switch (frequency) {
    case Recurrence::Daily:
        return "daily";
    case Recurrence::Weekly:
        return "weekly";
    case Recurrence::Monthly:
        return "monthly";
    case Recurrence::Yearly:
        return "yearly";
    default:
        return nullptr;
    }
}

JsonObject patternName(std::uint16_t pattern) {
    switch (pattern) {
    case Recurrence::Day:
        return "day";
    case Recurrence::Week:
        return "week";
    case Recurrence::MonthDay:
        return "month day";
    case Recurrence::MonthNth:
        return "month nth";
    case Recurrence::MonthEnd:
        return "month end";
    case Recurrence::HijriMonthDay:
        return "hijri month day";
    case Recurrence::HijriMonthNth:
        return "hijri month nth";
    case Recurrence::HijriMonthEnd:
        return "hijri month end";
    default:
        return nullptr;
    }
}

const char* endName(std::uint32_t end) {
    switch (end) {
    case Recurrence::OnDate:
        return "date";
    case Recurrence::AfterCount:
        return "count";
    default:
        return "never";
    }
}

JsonObject dayList(const std::optional<std::uint32_t>& mask) {
    if (!mask.has_value()) {
        return nullptr;
    }
    JsonObject days = JsonObject::array();
    for (std::size_t day = 0; day < dayNames.size(); ++day) {
        if ((*mask >> day & 1) != 0) {
            days.push_back(dayNames[day]);
        }
    }
    return days;
}

JsonObject dateList(const std::vector<std::uint32_t>& days) {
    JsonObject dates = JsonObject::array();
    for (const std::uint32_t day : days) {
        dates.push_back(dayText(day));
    }
    return dates;
}

// Returns when an occurrence on `day` starts or ends. Both are in minutes; a negative offset wraps.
JsonObject momentAt(std::uint32_t day, const std::optional<std::uint32_t>& offset) {
    return offset.has_value() ? JsonObject(minuteText(day + *offset)) : JsonObject();
}

void describeText(JsonObject& described, const char* key,
                  const std::optional<std::u16string>& text) {
    if (text.has_value()) {
        described[key] = utf8Of(*text);
    }
}

// Returns only what the exception changes.
JsonObject describeException(const olmhost::RecurrenceException& exception) {
    JsonObject described;
    described["original_start"] = minuteText(exception.originalStart);
    described["start"] = minuteText(exception.start);
    described["end"] = minuteText(exception.end);
    describeText(described, "subject", exception.subject);
    describeText(described, "location", exception.location);
    const auto number = [&](const char* key, const std::optional<std::uint32_t>& value) {
        if (value.has_value()) {
            described[key] = *value;
        }
    };
    number("meeting_type", exception.meetingType);
    number("reminder_delta", exception.reminderDelta);
    if (exception.isReminderSet.has_value()) {
        described["reminder_set"] = *exception.isReminderSet;
    }
    number("busy_status", exception.busyStatus);
    number("attachment", exception.attachment);
    number("sub_type", exception.subType);
    number("color", exception.color);
    return described;
}

} // namespace

JsonObject describeRecurrence(const Recurrence& recurrence) {
    const bool isDaily = recurrence.frequency == Recurrence::Daily;
    JsonObject described;
    described["frequency"] = frequencyName(recurrence.frequency);
    described["pattern"] = patternName(recurrence.patternType);
    // In days, weeks or months.
    described["interval"] = isDaily ? recurrence.period / minutesPerDay : recurrence.period;
    described["days"] = dayList(recurrence.dayMask);
    described["day_of_month"] = orNull(recurrence.dayOfMonth);
    described["week"] = orNull(recurrence.week);
    described["first_day_of_week"] = recurrence.firstDayOfWeek < dayNames.size()
                                         ? JsonObject(dayNames[recurrence.firstDayOfWeek])
                                         : JsonObject();
    described["start_date"] = dayText(recurrence.startDate);
    described["end"] = endName(recurrence.endType);
    described["end_date"] = recurrence.endDate == Recurrence::noEndDate
                                ? JsonObject()
                                : JsonObject(dayText(recurrence.endDate));
    described["occurrences"] = recurrence.occurrenceCount;
    described["first_start"] = momentAt(recurrence.startDate, recurrence.startOffset);
    described["first_end"] = momentAt(recurrence.startDate, recurrence.endOffset);
    described["after_completion"] = recurrence.slidingFlag != 0;
    described["calendar_type"] = recurrence.calendarType;
    described["first_date_time"] = recurrence.firstDateTime;
    described["deleted"] = dateList(recurrence.deletedDays);
    described["modified"] = dateList(recurrence.modifiedDays);
    described["exceptions"] = JsonObject::array();
    for (const olmhost::RecurrenceException& exception : recurrence.exceptions) {
        described["exceptions"].push_back(describeException(exception));
    }
    return described;
}

} // namespace olmkit
