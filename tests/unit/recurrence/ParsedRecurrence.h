#ifndef OLMKIT_TESTS_UNIT_RECURRENCE_PARSEDRECURRENCE_H
#define OLMKIT_TESTS_UNIT_RECURRENCE_PARSEDRECURRENCE_H

#include <memory>
#include <optional>
#include <string>

#include "filter/recurrence/OLMRecurrence.h"
#include "filter/recurrence/RecurrenceValue.h"
#include "tests/fakehost/FakeHost.h"

// Returns a document whose recurrence element is open: recurrence().element(...).
fakehost::ItemDocument recurrence();

// Returns the same with a pattern, an interval and a start: 2011-05-02T05:00:00, a Monday.
fakehost::ItemDocument patterned(const std::string& pattern, const std::string& interval = "1");

// Start, end and zone of a recurrence's item.
struct RecurringItem {
    std::string start = "2011-05-02T14:00:00";
    std::string end = "2011-05-02T15:30:00";
    int zoneOffset = 0;
};

// A stream that keeps the bytes written to it.
struct ByteSink : HostStream {
    ByteSink();
    fakehost::Bytes bytes;
};

// The parsed recurrence element of a document, in a host of its own.
class ParsedRecurrence {
public:
    // Reads up to the recurrence's opening tag and constructs the object.
    explicit ParsedRecurrence(const fakehost::ItemDocument& document,
                              const RecurringItem& item = {});
    ParsedRecurrence(const ParsedRecurrence&) = delete;
    ParsedRecurrence& operator=(const ParsedRecurrence&) = delete;

    // Parses the element and returns the code of the exception thrown, if any.
    std::optional<unsigned int> parse();

    // Parses the element; an exception fails the test.
    ParsedRecurrence& parsed();

    // Returns the whole value and expects its size to be the one that writing it returned.
    [[nodiscard]] fakehost::Bytes value() const;

    OLMRecurrence* operator->() { return object.get(); }
    OLMRecurrence& operator*() { return *object; }

    static constexpr unsigned int closingTag = 4;

private:
    fakehost::FakeHost fakeHost;
    std::unique_ptr<OLMXMLParser> parser;
    std::unique_ptr<OLMRecurrence> object;

public:
    fakehost::FakeHost& host = fakeHost;
};

#endif
