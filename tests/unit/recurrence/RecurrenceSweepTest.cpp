// Compares the values of many recurrences with a simple computation of the same.

#include <gmock/gmock.h>

#include "tests/unit/recurrence/ParsedRecurrence.h"
#include "tests/unit/recurrence/PlainRecurrence.h"

using fakehost::Bytes;

namespace {

constexpr uint32_t maskCount = 0x80;

// Counts cases and differences and prints the first few of these: an assertion for each case would
// take longer than the case.
class Comparison {
public:
    void compare(const PlainRecurrence& plain, const std::optional<Bytes>& value) {
        ++cases;
        faults += value ? 0 : 1;
        const std::optional<Bytes> expected = plainValue(plain);
        constexpr int shown = 5;
        if (value != expected && ++differences <= shown) {
            EXPECT_EQ(value, expected) << describe(plain);
        }
    }

    int cases = 0;
    int faults = 0;
    int differences = 0;
};

// A recurrence whose reader is at the end of its document: parsing reads nothing and derives the
// rest from the members, all of which are set for each value.
class DerivedRecurrence {
public:
    DerivedRecurrence() : recurring(fakehost::ItemDocument()) {}

    std::optional<Bytes> valueOf(const PlainRecurrence& plain) {
        setMembers(plain);
        const auto code = recurring.parse();
        recurring.host.forgetCalls();
        if (code) {
            EXPECT_EQ(code, 15u);
            return std::nullopt;
        }
        return recurring.value();
    }

private:
    static std::unique_ptr<qor::Date> dateOf(int64_t minute) {
        return std::make_unique<qor::Date>(2440587.5 + static_cast<double>(minute) / 1440.0);
    }

    void setMembers(const PlainRecurrence& plain) {
        recurring->recurFrequency = plain.pattern.frequency;
        recurring->patternType = plain.pattern.type;
        recurring->firstDateTime = 0xFFFFFFFF;
        recurring->period = plain.interval;
        recurring->daysOfWeek = plain.days;
        recurring->weekOfMonth = plain.week;
        recurring->dayOfMonth = plain.dayOfMonth;
        recurring->month = plain.month;
        recurring->endType = plain.end.type;
        recurring->occurrenceCount = plain.end.count;
        recurring->hasEndDate = plain.end.isAnnounced;
        recurring->timeZoneOffset = plain.zone;
        recurring->startDate = dateOf(universalMinute(plain, plain.firstDay, 0));
        recurring->endDate.reset();
        if (plain.end.hasDate) {
            recurring->endDate = dateOf(universalMinute(plain, plain.lastDay, plain.lastMinute));
        }
        recurring->itemStart = dateOf(universalMinute(plain, plain.firstDay, plain.startMinute));
        recurring->itemEnd = dateOf(universalMinute(plain, plain.firstDay, plain.endMinute));
    }

    ParsedRecurrence recurring;
};

} // namespace

// Every pattern with every end and with every mask, in a document of its own; zones and daylight
// saving alternate.
TEST(RecurrenceSweepTest, ElementsMakeThePlainValue) {
    const std::span<const int> zones = plainZones();
    Comparison comparison;
    for (const PlainPattern& pattern : plainPatterns()) {
        for (uint32_t mask = 0; mask < maskCount; ++mask) {
            for (uint32_t half = 0; half < 2; ++half) {
                const PlainEnd& end = plainEnds()[mask % 3 + 3 * half];
                const int turn = comparison.cases;
                const PlainRecurrence plain = plainRecurrence(
                    pattern, end, zones[turn % zones.size()], turn / zones.size() % 2 == 1, mask);
                ParsedRecurrence recurring(plainDocument(plain), plainItem(plain));
                const bool isParsed = recurring.parse() == std::nullopt;
                comparison.compare(plain,
                                   isParsed ? std::optional(recurring.value()) : std::nullopt);
            }
        }
    }
    EXPECT_EQ(comparison.cases, 6 * 128 * 2);
    EXPECT_EQ(comparison.faults, 2); // a week without days
    EXPECT_EQ(comparison.differences, 0);
}

// Every pattern, end, zone, daylight saving and mask.
TEST(RecurrenceSweepTest, EveryCombinationMakesThePlainValue) {
    Comparison comparison;
    for (const int zone : plainZones()) {
        for (const PlainPattern& pattern : plainPatterns()) {
            DerivedRecurrence derived;
            for (const PlainEnd& end : plainEnds()) {
                for (uint32_t turn = 0; turn < 2 * maskCount; ++turn) {
                    const PlainRecurrence plain =
                        plainRecurrence(pattern, end, zone, turn >= maskCount, turn % maskCount);
                    comparison.compare(plain, derived.valueOf(plain));
                }
            }
        }
    }
    EXPECT_EQ(comparison.cases, 39 * 6 * 6 * 2 * 128);
    EXPECT_EQ(comparison.faults, 39 * 6 * 2);
    EXPECT_EQ(comparison.differences, 0);
}
