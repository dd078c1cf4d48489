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
    ErrRecurrence = 15,              // a recurrence that no value can be made of
    ErrRecurrenceTable = 0xFFFFFC18, // -1000: the reader refused the tag table
};

// How often, as [MS-OXOCAL] counts it.
enum RecurFrequency : uint32_t {
    RecurDaily = 0x200A,
    RecurWeekly = 0x200B,
    RecurMonthly = 0x200C,
    RecurYearly = 0x200D,
    RecurUncounted = 0x200E, // no pattern text yields it; its interval stays as read
};

enum RecurPattern : uint32_t {
    PatternDay = 0,
    PatternWeek = 1,
    PatternMonthDay = 2, // a day of the month
    PatternMonthNth = 3, // the Nth given day of the month
};

enum RecurEnd : uint32_t {
    EndsAtDate = 0x2021,
    EndsAfterCount = 0x2022,
    EndsNever = 0x2023,
};

// The recurrence of one appointment or task: reads the element and works out what the packed MAPI
// value holds (see writeRecurrenceValue()).
//
// Order of calls: parseRecurrence() once, then the four getters and the members. What is derived
// is valid only after parseRecurrence(). A recurrence date is minutes since 1601-01-01T00:00 in
// the zone's local time, modulo 2^32. Every operation that says so throws qor::Exception
// ErrRecurrence where a date that it needs is missing.
class OLMRecurrence {
public:
    // The parser must stand behind the recurrence's opening tag; the tag table that this adds
    // stays in it. `start` and `end` are the item's own, as ISO 8601 text; `zoneOffset` is in
    // minutes, local less universal time, without daylight saving.
    // Throws qor::Exception ErrRecurrenceTable.
    OLMRecurrence(OLMXMLParser& parser, const qor::WString& start, const qor::WString& end,
                  int zoneOffset);
    ~OLMRecurrence() = default;
    OLMRecurrence(const OLMRecurrence&) = delete;
    OLMRecurrence& operator=(const OLMRecurrence&) = delete;

    // Reads up to the first tag whose id is `closingTag`, or to the document's end, and derives
    // offset, interval and first occurrence. Throws qor::Exception ErrRecurrence: no start date;
    // an end date announced and not given; a weekly pattern without a day; a daily or weekly
    // interval that is 0 in minutes, modulo 2^32.
    void parseRecurrence(OLMXMLParser& parser, unsigned int closingTag);

    // Start as a recurrence date. Throws ErrRecurrence.
    uint32_t getStartDate() const;

    // End as a recurrence date, or the fixed date of what never ends when no end date was
    // announced, whatever endDate and endType say. Throws ErrRecurrence.
    uint32_t getEndDate() const;

    // Minutes from the recurrence's start to the item's start and end. Only the item's start gets
    // a millisecond of grace. Throw ErrRecurrence.
    int64_t getStartTimeOffset() const;
    int64_t getEndTimeOffset() const;

    // Minutes since 1601 in universal time, modulo 2^32. A millisecond is added first, for dates
    // just short of the minute; dates ahead of 1970 are cut toward 1970.
    uint32_t qorDateToRecurDate(const qor::Date& date) const;

    // Moves timeZoneOffset by an hour unless the start is a local midnight. Throws ErrRecurrence.
    void adjustTimeZoneOffset();

    // Turns a daily interval into minutes and a yearly one into 12 months; 0 stays.
    void modifyPeriod();

    // Sets firstDateTime. Throws ErrRecurrence, as the two below do.
    void calcFirstDateTime();
    uint32_t calculateWeeklyFDT() const;

    // Minutes from 1601-01-01 to the first of `month` of that year; 0 without a month.
    int64_t calculateMonthlyFDT() const;

    // Takes the element that `tag` opens; one that no row of the table stands for is left unread.
    void mapTagToValue(const OLMXMLTag& tag, OLMXMLParser& parser);

    // Each reads the text of the current element; one without text counts as an empty text.
    double readDateFromXML(OLMXMLParser& parser) const;       // a Julian date
    uint32_t readIntFromXml(OLMXMLParser& parser) const;      // modulo 2^32
    bool readBoolFromXml(OLMXMLParser& parser) const;         // of a number: "true" is false
    RecurEnd transEndTypeFromXml(OLMXMLParser& parser) const; // by hasEndDate as it stands
    uint32_t transWeekFromXml(OLMXMLParser& parser) const;    // 1 to 5, 0 for any other number
    void transPatternAndFreqFromXml(OLMXMLParser& parser);    // unknown text changes nothing

    // The element's days, bit 0 for Sunday; 0 when its number is 0 or it names no days.
    uint32_t transTagToDateFlag(const OLMXMLTag& tag, OLMXMLParser& parser) const;

    // All days of the list whose opening tag was read last; reads up to its end.
    uint32_t transDaysFromXml(OLMXMLParser& parser) const;

    uint32_t recurFrequency = RecurDaily; // RecurFrequency
    uint32_t patternType = PatternDay;    // RecurPattern
    uint32_t firstDateTime = 0;           // minutes into the interval; derived
    uint32_t period = 0;                  // interval: minutes (daily), weeks or months
    uint32_t daysOfWeek = 0;              // bit 0 for Sunday to bit 6 for Saturday
    uint32_t weekOfMonth = 1;             // 1 to 5; 0 for a number that is none of these
    uint32_t dayOfMonth = 1;
    uint64_t month = 0;           // 1 to 12; 0 for none
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
