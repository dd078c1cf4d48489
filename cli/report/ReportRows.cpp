#include "cli/report/ReportRows.h"

#include <string_view>

#include "cli/report/Markup.h"
#include "cli/rows/ItemRow.h"
#include "cli/rows/Moment.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

constexpr std::uint64_t rowsPerBlock = 4000;

std::string printableCell(std::u16string_view text) {
    std::string utf8;
    appendUtf8(utf8, text);
    return printableText(utf8);
}

// Returns the sender of an item, or its organizer.
std::u16string_view senderOf(const olmhost::Row& row) {
    const std::u16string_view sender = row.text(olmhost::TextColumn::Sender);
    return sender.empty() ? row.text(olmhost::TextColumn::Organizer) : sender;
}

} // namespace

void ReportRows::write(std::string& out, const olmhost::Row& row,
                       std::optional<olmhost::ItemKind> kind) {
    if (written % rowsPerBlock == 0) {
        end(out);
        out += "<script type=\"application/json\" class=\"rows\">[\n";
    } else {
        out += ",\n";
    }
    ++written;

    std::string sender = printableCell(senderOf(row));
    std::string to = printableCell(row.text(olmhost::TextColumn::To));
    std::string cc = printableCell(row.text(olmhost::TextColumn::Cc));
    people.add(sender, to, cc);
    JsonObject cells = JsonObject::array();
    cells.push_back(row.index);
    cells.push_back(kind ? static_cast<std::size_t>(*kind) : olmhost::itemKindCount);
    cells.push_back(numberOfFolder(row));
    if (const std::optional<Moment> moment = momentOf(row)) {
        times.add(*moment);
        cells.push_back(
            std::chrono::floor<std::chrono::seconds>(moment->time_since_epoch()).count());
    } else {
        cells.push_back(printableCell(dateOf(row)));
    }
    cells.push_back(std::move(sender));
    cells.push_back(printableCell(labelOf(row)));
    cells.push_back(std::move(to));
    cells.push_back(std::move(cc));
    appendScriptData(out, cells);
}

void ReportRows::end(std::string& out) {
    if (written > 0) {
        out += "\n]</script>\n";
    }
}

std::size_t ReportRows::numberOfFolder(const olmhost::Row& row) {
    // Items of one folder usually come in succession.
    const std::u16string_view folder = nameParts(row).folder;
    if (written == 1 || folder != currentFolder) {
        currentFolder = folder;
        const auto [place, isNew] = folderNumbers.try_emplace(currentFolder, folderPaths.size());
        currentNumber = place->second;
        if (isNew) {
            appendUtf8(folderPaths.emplace_back(), folderOf(row));
        }
    }
    return currentNumber;
}

std::vector<std::string> ReportRows::kindTitles() {
    std::vector<std::string> titles;
    for (std::size_t kind = 0; kind < olmhost::itemKindCount; ++kind) {
        titles.emplace_back(olmhost::nameOf(static_cast<olmhost::ItemKind>(kind)));
    }
    titles.emplace_back("unknown");
    return titles;
}

} // namespace olmkit
