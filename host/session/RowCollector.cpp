#include "host/session/RowCollector.h"

#include <cstring>

#include "filter/boundary/Request.h"

namespace olmhost {

namespace {

constexpr std::size_t firstSpecial = textColumnCount;
constexpr std::size_t locatorColumn = firstSpecial + 2;
constexpr std::size_t columnCount = locatorColumn + 1;

// The first number of a text column's type; that of the others is 0.
constexpr std::uint32_t textType = 25;

// The third number of a format: the values of a column.
constexpr std::uint32_t numberFormat = 1;
constexpr std::uint32_t locatorFormat = 19;

bool isKind(const Column& column, std::size_t place) {
    if (place < firstSpecial) {
        return column.type[0] == textType;
    }
    const std::uint32_t expected = place == locatorColumn ? locatorFormat : numberFormat;
    return column.type[0] == 0 && column.format[2] == expected;
}

} // namespace

void RowCollector::columnDone(std::array<std::uint32_t, 4> numbers) {
    defining.done = numbers;
    defined.push_back(defining);
    defining = {};
}

bool RowCollector::isUsual() const {
    if (defined.size() != columnCount) {
        return false;
    }
    for (std::size_t place = 0; place < columnCount; ++place) {
        if (!isKind(defined[place], place)) {
            return false;
        }
    }
    return true;
}

void RowCollector::putValue(const void* value) {
    if (column >= firstSpecial && column < locatorColumn) {
        std::memcpy(&row.specials[column - firstSpecial], value, sizeof(std::uint32_t));
    } else if (column == locatorColumn) {
        ItemLocator locator = {};
        std::memcpy(&locator, value, sizeof locator);
        row.locatorSize = locator.size;
        row.entry = locator.entryIndex;
        row.item = locator.itemNumber;
    }
}

void RowCollector::beginTag(std::uint32_t tagIndex, std::uint32_t tagId) {
    if (column < spans.size()) {
        spans[column].tagIndex = tagIndex;
        spans[column].tagId = tagId;
    }
}

void RowCollector::endCell() {
    if (column < spans.size()) {
        spans[column].end = characters.size();
    }
    ++column;
}

Row& RowCollector::finish() {
    const std::u16string_view all = characters;
    std::size_t start = 0;
    for (std::size_t place = 0; place < spans.size(); ++place) {
        const Span& span = spans[place];
        const std::size_t end = place < column ? span.end : start;
        row.texts[place] = {all.substr(start, end - start), span.tagId, span.tagIndex};
        start = end;
    }
    return row;
}

void RowCollector::clear() {
    characters.clear();
    spans.fill({});
    column = 0;
    row.specials = {};
    row.locatorSize = 0;
    row.entry = 0;
    row.item = 0;
}

} // namespace olmhost
