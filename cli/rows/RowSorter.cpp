#include "cli/rows/RowSorter.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <tuple>

#include "cli/rows/Moment.h"
#include "cli/rows/NormalText.h"

namespace olmkit {

namespace {

std::int64_t dateNumber(std::string_view text) {
    const std::optional<Moment> moment = readMoment(std::u16string(text.begin(), text.end()));
    return moment ? moment->time_since_epoch().count() : std::numeric_limits<std::int64_t>::min();
}

} // namespace

void RowSorter::add(const olmhost::Row& row, std::string_view line) {
    HeldRow held = {0, {}, keep(line)};
    if (order.column->number != nullptr) {
        held.number = static_cast<std::int64_t>(order.column->number(row));
    } else {
        std::string text;
        order.column->appendText(text, row);
        if (order.column->isDate) {
            held.number = dateNumber(text);
        } else {
            held.text = keep(comparableText(text));
        }
    }
    rows.push_back(held);
}

void RowSorter::sort() {
    const auto isLess = [](const HeldRow& left, const HeldRow& right) {
        return std::tie(left.number, left.text) < std::tie(right.number, right.text);
    };
    std::ranges::stable_sort(rows, [&](const HeldRow& left, const HeldRow& right) {
        return order.isDescending ? isLess(right, left) : isLess(left, right);
    });
}

std::string_view RowSorter::keep(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    auto* place = static_cast<char*>(texts.allocate(text.size(), 1));
    std::memcpy(place, text.data(), text.size());
    return {place, text.size()};
}

} // namespace olmkit
