#include "cli/rows/ItemFilter.h"

#include <algorithm>

#include "cli/rows/ItemRow.h"
#include "cli/rows/NormalText.h"

namespace olmkit {

namespace {

std::optional<std::string> comparable(const std::optional<std::string>& text) {
    return text ? std::optional(comparableText(*text)) : std::nullopt;
}

bool contains(std::u16string_view text, const std::string& part) {
    return comparableText(text).find(part) != std::string::npos;
}

} // namespace

ItemFilter::ItemFilter(const FilterOptions& options)
    : kinds(options.kinds), folders(options.folders.begin(), options.folders.end()),
      from(comparable(options.from)), subject(comparable(options.subject)), since(options.since),
      until(options.until) {}

bool ItemFilter::takesEverything() const {
    return kinds.empty() && folders.empty() && !from && !subject && !since && !until;
}

bool ItemFilter::takes(const olmhost::Row& row) const {
    return takesEverything() || takes(row, RowFacts(row));
}

bool ItemFilter::takes(const olmhost::Row& row, const RowFacts& facts) const {
    if (!kinds.empty() && std::ranges::find(kinds, facts.kind) == kinds.end()) {
        return false;
    }
    if ((since || until) && !takesDate(facts.moment)) {
        return false;
    }
    if (!folders.empty() && !takesFolderOf(row)) {
        return false;
    }
    if (from && !contains(row.text(olmhost::TextColumn::Sender), *from) &&
        !contains(row.text(olmhost::TextColumn::Organizer), *from)) {
        return false;
    }
    return !subject || contains(labelOf(row), *subject);
}

bool ItemFilter::takesFolderOf(const olmhost::Row& row) const {
    const std::u16string folder = folderOf(row);
    return std::ranges::any_of(folders,
                               [&folder](const Glob& glob) { return glob.matches(folder); });
}

bool ItemFilter::takesDate(const std::optional<Moment>& moment) const {
    return moment && (!since || *moment >= *since) && (!until || *moment < *until);
}

} // namespace olmkit
