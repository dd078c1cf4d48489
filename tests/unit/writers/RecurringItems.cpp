#include "tests/unit/writers/RecurringItems.h"

#include <algorithm>

using namespace fakehost;

ItemDocument& addWeekly(ItemDocument& item, const char* element) {
    return item.open(element)
        .element("OPFRecurrenceCopyEndDate", "2011-06-27T05:00:00")
        .element("OPFRecurrenceCopyStartDate", "2011-05-02T05:00:00")
        .element("OPFRecurrenceGetOccurenceCount", "5E0")
        .element("OPFRecurrenceHasEndDate", "1")
        .element("OPFRecurrenceIsNoEnd", "0")
        .element("OPFRecurrenceIsNumbered", "1")
        .open("OPFRecurrencePattern")
        .open("OPFRecurrencePatternDaysOfWeek")
        .element("allDays", "0")
        .element("friday", "0")
        .element("monday", "1")
        .close()
        .element("OPFRecurrencePatternInterval", "2")
        .element("OPFRecurrencePatternType", "OPFRecurrencePatternWeekly")
        .close()
        .close();
}

ItemDocument& addDailyContents(ItemDocument& item) {
    return item.element("OPFRecurrenceCopyStartDate", "2018-06-18T00:00:00")
        .open("OPFRecurrencePattern")
        .element("OPFRecurrencePatternInterval", "3")
        .element("OPFRecurrencePatternType", "OPFRecurrencePatternDaily")
        .close();
}

ItemDocument& addDaily(ItemDocument& item, const char* element) {
    return addDailyContents(item.open(element)).close();
}

ItemDocument& addMonthly(ItemDocument& item, const char* element) {
    return item.open(element)
        .element("OPFRecurrenceCopyStartDate", "2018-06-18T00:00:00")
        .element("OPFRecurrenceGetOccurenceCount", "1.2E1")
        .element("OPFRecurrenceHasEndDate", "0")
        .element("OPFRecurrenceIsNoEnd", "0")
        .open("OPFRecurrencePattern")
        .open("OPFRecurrencePatternDaysOfWeek")
        .element("tuesday", "1")
        .close()
        .element("OPFRecurrencePatternInterval", "1")
        .element("OPFRecurrencePatternType", "OPFRecurrencePatternRelativeMonthly")
        .element("OPFRecurrencePatternWeek", "2")
        .close()
        .close();
}

namespace {

// The fields from ReaderVersion to SlidingFlag (MS-OXOCAL 2.2.1.44.1).
Bytes head(uint16_t frequency, uint16_t pattern, uint32_t first, uint32_t period) {
    return hex("04 30 04 30") + le16(frequency) + le16(pattern) + le16(0) + le32(first) +
           le32(period) + le32(0);
}

struct Tail {
    uint32_t endType;
    uint32_t count;
    uint32_t startDate;
    uint32_t endDate;
    uint32_t startOffset;
    uint32_t endOffset;
};

Bytes bytesOf(const Tail& tail) {
    return le32(tail.endType) + le32(tail.count) + Bytes(12) + le32(tail.startDate) +
           le32(tail.endDate) + hex("06 30 00 00  09 30 00 00") + le32(tail.startOffset) +
           le32(tail.endOffset) + Bytes(10);
}

constexpr uint32_t dayMinutes = 1440;
constexpr uint32_t farEnd = 0x5AE980DF; // 4500-12-31T23:59

// Days since 1601-01-01.
constexpr uint32_t may2011 = 149870;  // 2011-05-02
constexpr uint32_t june2018 = 152474; // 2018-06-18

constexpr uint32_t monday = 2;
constexpr uint32_t tuesday = 4;

} // namespace

// The first Sunday is 18720 minutes into its two weeks; local midnight is 05:00 universal time.
Bytes weeklyValue() {
    return head(0x200B, 1, 18720, 2) + le32(monday) +
           bytesOf({0x2021, 5, may2011 * dayMinutes, (may2011 + 56) * dayMinutes, 540, 630});
}

// 05:00 is not midnight, which counts as daylight saving: an hour is added.
Bytes weeklyValueWithoutZone(uint32_t startOffset, uint32_t endOffset) {
    return head(0x200B, 1, 18720 + 360, 2) + le32(monday) +
           bytesOf({0x2021, 5, may2011 * dayMinutes + 360, (may2011 + 56) * dayMinutes + 360,
                    startOffset, endOffset});
}

Bytes dailyValue(uint32_t startOffset, uint32_t endOffset) {
    return head(0x200A, 0, (june2018 % 3) * dayMinutes, 3 * dayMinutes) +
           bytesOf({0x2023, 0, june2018 * dayMinutes, farEnd, startOffset, endOffset});
}

Bytes monthlyValue(uint32_t startOffset, uint32_t endOffset) {
    return head(0x200C, 3, 0, 1) + le32(tuesday) + le32(2) +
           bytesOf({0x2022, 12, june2018 * dayMinutes, farEnd, startOffset, endOffset});
}

namespace {

// Returns the index of the event that opens the element, or the number of events.
size_t openingOf(const std::vector<ReaderEvent>& events, const std::string& name) {
    const auto found = std::ranges::find_if(events, [&](const ReaderEvent& event) {
        return event.kind == ReaderEvent::Kind::Open && event.name == name;
    });
    return static_cast<size_t>(found - events.begin());
}

} // namespace

void expectOnlyABrokenRecurrenceFails(const ItemDocument& item, const char* element) {
    const std::vector<ReaderEvent> events = item.events();
    const size_t opening = openingOf(events, element);
    const size_t interval = openingOf(events, "OPFRecurrencePatternInterval");
    ASSERT_LT(opening, interval);
    ASSERT_LT(interval, events.size());

    for (size_t count = 2; count <= events.size(); ++count) {
        SCOPED_TRACE(testing::Message() << "broken after event " << count);
        // Opening tag, text, closing tag: without the last one the first counts once more, and the
        // interval is read again, without a text.
        const bool isBroken = count > opening && count < interval + 3;

        const Outcome outcome = extractItem(item.cutAfter(count));

        EXPECT_EQ(outcome.result, isBroken ? VwSpecialFailed : VwSpecialDone);
        EXPECT_EQ(outcome.progress.back(), 100);
        EXPECT_EQ(outcome.message.has(propertyStream), !isBroken);
        EXPECT_EQ(outcome.message.isRootClosed(), !isBroken);
        expectReleased(outcome);
    }
}
