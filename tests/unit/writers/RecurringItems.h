#ifndef OLMKIT_TESTS_UNIT_WRITERS_RECURRINGITEMS_H
#define OLMKIT_TESTS_UNIT_WRITERS_RECURRINGITEMS_H

#include "filter/core/Exception.h"
#include "filter/storage/MsgPropPair.h"
#include "filter/xml/OLMXMLParser.h"
#include "tests/fakehost/Extraction.h"

#include <gtest/gtest.h>
#include <optional>
#include <string_view>
#include <vector>

// What the tests of appointments and tasks share: recurrences, and the parts that every message of
// these kinds has.

// Times of an entry: 100-nanosecond units since 1601, less one second.
inline constexpr uint64_t time1970 = 116444735990000000; // 1970-01-01T00:00:00
inline constexpr uint64_t timeOfOneSecond = time1970 + 10'000'000;
inline constexpr uint64_t timeIn2018 = 131740151470000000; // 2018-06-21T00:39:08

// The entries that every message of that class begins with, and one entry of a property stream.
fakehost::Bytes requiredEntriesOf(std::u16string_view messageClass);
fakehost::Bytes entryBytes(uint32_t tag, uint64_t value);

// The entries behind those that every message begins with.
std::vector<fakehost::PropertyEntry> entriesBehindRequired(const fakehost::StoredMessage& message);

// A stream of the storage of named properties; the tag in eight digits.
fakehost::Bytes nameStream(const fakehost::StoredMessage& message, const char* tag);

// Adds a recurrence as an element of that name: every second week on Monday, from 2011-05-02 to
// 2011-06-27, both at 05:00 universal time, five times.
fakehost::ItemDocument& addWeekly(fakehost::ItemDocument& item, const char* element);

// The 80 bytes of it for an item from 2011-05-02T14:00:00 to 15:30:00, in the zone UTC-05:00.
fakehost::Bytes weeklyValue();

// The same in no zone, for an item that ends at `endOffset` minutes behind the recurrence's start.
fakehost::Bytes weeklyValueWithoutZone(uint32_t startOffset, uint32_t endOffset);

// Adds every third day from 2018-06-18T00:00:00 on, without an end.
fakehost::ItemDocument& addDaily(fakehost::ItemDocument& item, const char* element);

// The 76 bytes of it, in no zone; the offsets are minutes behind the recurrence's start.
fakehost::Bytes dailyValue(uint32_t startOffset, uint32_t endOffset);

// Adds the second Tuesday of every month from 2018-06-18T00:00:00 on, twelve times.
fakehost::ItemDocument& addMonthly(fakehost::ItemDocument& item, const char* element);

// The 84 bytes of it, likewise.
fakehost::Bytes monthlyValue(uint32_t startOffset, uint32_t endOffset);

// The recurrence's own elements of addDaily(), for elements that the test opens itself.
fakehost::ItemDocument& addDailyContents(fakehost::ItemDocument& item);

// The item broken behind each event in turn. `element` is its recurrence, made by addDaily(): an
// item that breaks between that element's opening and the interval's closing tag fails.
void expectOnlyACutRecurrenceFails(const fakehost::ItemDocument& item, const char* element);

// A writer on the first item of a document, for failures of one call and for what no message
// shows. `Writer` has the inside of a writer open.
template <class Writer> class RecurringWriterTest : public testing::Test {
protected:
    RecurringWriterTest() { request.output = host.newOutput(); }

    // Opens the document and puts the reader ahead of the item.
    void openDocument(const fakehost::ItemDocument& item) {
        host.entry("Local/items.xml", item);
        parser.emplace(host.openArchive(), 0);
        OLMXMLTag root;
        ASSERT_EQ(parser->nextTag(root), 1);
        writer.emplace(&request);
    }

    // The same, and begins the message: calls of the host count from here.
    void begin(const fakehost::ItemDocument& item) {
        openDocument(item);
        ASSERT_EQ(writer->initilizeWriter(*parser), 0u);
        host.forgetCalls();
        openBefore = host.openHandles();
    }

    // Handles the item's elements and gives the progress values.
    std::vector<int> run() {
        std::vector<int> progress;
        do {
            progress.push_back(writer->writeNode(*parser));
        } while (progress.back() != 100 && progress.size() < 1000);
        return progress;
    }

    // The entries added since begin().
    [[nodiscard]] std::vector<fakehost::PropertyEntry> added() const {
        constexpr int requiredCount = 7;
        std::vector<fakehost::PropertyEntry> entries;
        for (int index = requiredCount; index < writer->properties.size(); ++index) {
            const MsgPropPair* pair = writer->properties.get(index);
            entries.push_back({pair->tag, pair->flags, pair->value});
        }
        return entries;
    }

    [[nodiscard]] fakehost::StoredMessage message() const { return host.message(request.output); }

    fakehost::FakeHost host;
    SODOSPECIALARC request{};
    std::optional<OLMXMLParser> parser;
    std::optional<Writer> writer;
    int openBefore = 0; // handles that were open when begin() ended
};

// The inside of a writer with a recurrence, and a switch that makes its entries fail.
template <class Writer> class OpenRecurringWriter : public Writer {
public:
    using Writer::Writer;

    using Writer::endText;
    using Writer::expectedProps;
    using Writer::handledProps;
    using Writer::hasRecurrence;
    using Writer::properties;
    using Writer::recipientCount;
    using Writer::rootStorage;
    using Writer::rootTag;
    using Writer::startText;

    void addProperty(unsigned int tag, unsigned long long value) override {
        if (refusal.has_value()) {
            throw qor::Exception(*refusal, "refused", nullptr, nullptr, 0);
        }
        Writer::addProperty(tag, value);
    }

    std::optional<unsigned int> refusal; // code of the exception in an entry's place
};

#endif
