#ifndef OLMKIT_FILTER_RECURRENCE_OLMRECURRENCE_H
#define OLMKIT_FILTER_RECURRENCE_OLMRECURRENCE_H

#include <cstdint>
#include <memory>

#include "filter/core/Date.h"
#include "filter/core/WString.h"
#include "filter/xml/OLMXMLParser.h"
#include "filter/xml/OLMXMLTag.h"

// Codes of the qor::Exception that ends an item because of its recurrence.
enum RecurrenceError : unsigned int {
    ErrRecurrence = 15,              // the recurrence has no valid value
    ErrRecurrenceTable = 0xFFFFFC18, // -1000: the reader refused the tag table
};

// Frequencies, pattern types and end types of [MS-OXOCAL] 2.2.1.44.1.
enum RecurFrequency : uint32_t {
    RecurDaily = 0x200A,
    RecurWeekly = 0x200B,
    RecurMonthly = 0x200C,
    RecurYearly = 0x200D,
    RecurUncounted = 0x200E, // of no pattern text; its interval stays as read
};

enum RecurPattern : uint32_t {
    PatternDay = 0,
    PatternWeek = 1,
    PatternMonthDay = 2, // a day of the month
    PatternMonthNth = 3, // the Nth of the given days in the month
};

enum RecurEnd : uint32_t {
    EndsAtDate = 0x2021,
    EndsAfterCount = 0x2022,
    EndsNever = 0x2023,
};

// The recurrence of one appointment or task: reads the element and derives the fields of the packed
// MAPI value (see writeRecurrenceValue()).
//
// Order of calls: parseRecurrence() once, then the four getters and the members. Derived members
// are valid only after parseRecurrence(). A recurrence date is in minutes since 1601-01-01T00:00 in
// the local time of the zone, modulo 2^32. Where it says so, an operation throws qor::Exception
// ErrRecurrence when a date that it needs is missing.
class OLMRecurrence {
public:
    // Adds the tag table to the parser, which has just read the opening tag of the recurrence.
    // `start` and `end` are those of the item, as ISO 8601 text; `zoneOffset` is in minutes, local
    // time less universal time, without daylight saving. Throws qor::Exception ErrRecurrenceTable
    // when the reader refuses the table.
    OLMRecurrence(OLMXMLParser& parser, const qor::WString& start, const qor::WString& end,
                  int zoneOffset);
    ~OLMRecurrence() = default;
    OLMRecurrence(const OLMRecurrence&) = delete;
    OLMRecurrence& operator=(const OLMRecurrence&) = delete;

    // Reads up to the first tag whose id is `closingTag`, or to the end of the document, and
    // derives offset, interval and first occurrence. Throws qor::Exception ErrRecurrence for a
    // missing start date, an announced but missing end date, a weekly pattern without a day, and a
    // daily or weekly interval that is 0 in minutes, modulo 2^32.
    void parseRecurrence(OLMXMLParser& parser, unsigned int closingTag);

    // Returns the start as a recurrence date. Throws ErrRecurrence.
    uint32_t getStartDate() const;

    // Returns the end as a recurrence date. Unless an end date was announced this is the fixed date
    // of a recurrence without end, whatever endDate and endType are. Throws ErrRecurrence.
    uint32_t getEndDate() const;

    // Return the minutes from the start of the recurrence to the start and the end of the item. One
    // millisecond is added to the start alone. Throw ErrRecurrence.
    int64_t getStartTimeOffset() const;
    int64_t getEndTimeOffset() const;

    // Returns the minutes since 1601 in universal time, modulo 2^32. A millisecond is added first,
    // for dates just before a full minute. Dates before 1970 are rounded toward 1970.
    uint32_t qorDateToRecurDate(const qor::Date& date) const;

    // Adds an hour to timeZoneOffset unless the start is a local midnight. Throws ErrRecurrence.
    void adjustTimeZoneOffset();

    // Converts a daily interval to minutes and a yearly one to 12 months. 0 stays 0.
    void modifyPeriod();

    // Sets firstDateTime. Throws ErrRecurrence.
    void calcFirstDateTime();

    // Returns firstDateTime of a weekly recurrence. Throws ErrRecurrence.
    uint32_t calculateWeeklyFDT() const;

    // Returns firstDateTime of a monthly or yearly recurrence: the minutes from 1601-01-01 to the
    // first day of `month` in that year, or 0 without a month.
    int64_t calculateMonthlyFDT() const;

    // Reads the element that `tag` opens. An element that is not in the table is left unread.
    void mapTagToValue(const OLMXMLTag& tag, OLMXMLParser& parser);

    // Each reads the text of the current element, which is empty when it has none.
    double readDateFromXML(OLMXMLParser& parser) const;       // a Julian date
    uint32_t readIntFromXml(OLMXMLParser& parser) const;      // modulo 2^32
    bool readBoolFromXml(OLMXMLParser& parser) const;         // a number: "true" is false
    RecurEnd transEndTypeFromXml(OLMXMLParser& parser) const; // depends on hasEndDate
    uint32_t transWeekFromXml(OLMXMLParser& parser) const;    // 1 to 5, 0 for any other number
    void transPatternAndFreqFromXml(OLMXMLParser& parser);    // unknown text changes nothing

    // Returns the days of the element, bit 0 for Sunday; 0 when its number is 0 or it is not an
    // element of days.
    uint32_t transTagToDateFlag(const OLMXMLTag& tag, OLMXMLParser& parser) const;

    // Reads the list of days whose opening tag was read last, up to its end, and returns all days.
    uint32_t transDaysFromXml(OLMXMLParser& parser) const;

    uint32_t recurFrequency = RecurDaily; // RecurFrequency
    uint32_t patternType = PatternDay;    // RecurPattern
    uint32_t firstDateTime = 0;           // minutes into the interval; derived
    uint32_t period = 0;                  // interval: minutes (daily), weeks or months
    uint32_t daysOfWeek = 0;              // bit 0 for Sunday to bit 6 for Saturday
    uint32_t weekOfMonth = 1;             // 1 to 5; 0 for any other number
    uint32_t dayOfMonth = 1;
    uint64_t month = 0;           // 1 to 12; 0 without a month
    uint32_t endType = EndsNever; // RecurEnd
    uint32_t occurrenceCount = 0;
    bool hasEndDate = false; // announced; independent of endType
    int32_t timeZoneOffset;  // minutes to add to universal time
    std::unique_ptr<qor::Date> endDate;
    std::unique_ptr<qor::Date> startDate; // local midnight of the first day
    std::unique_ptr<qor::Date> itemStart; // never null
    std::unique_ptr<qor::Date> itemEnd;   // never null
};

#endif
