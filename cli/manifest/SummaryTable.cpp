#include "cli/manifest/SummaryTable.h"

#include <algorithm>

#include "cli/terminal/CellText.h"

namespace olmkit {

namespace {

constexpr std::array headings = {"in documents", "listed", "written", "failed"};
constexpr std::size_t firstColumnWidth = 11; // cells

std::string headingLine() {
    std::string line(firstColumnWidth, ' ');
    for (const char* heading : headings) {
        line.append(columnGap, ' ').append(heading);
    }
    return line + "\n";
}

// Returns an empty text for a kind without items.
std::string kindLine(std::string_view name, const KindNumbers& kind) {
    const std::array numbers = {kind.items, kind.listed, kind.written, kind.failed};
    if (std::ranges::count(numbers, 0U) == std::ssize(numbers)) {
        return {};
    }
    std::string line(name);
    line.append(firstColumnWidth - name.size(), ' ');
    for (std::size_t column = 0; column < numbers.size(); ++column) {
        line.append(columnGap, ' ');
        appendRight(line, std::to_string(numbers[column]), cellsOf(headings[column]));
    }
    return line + "\n";
}

std::string attachmentLine(const AttachmentNumbers& attachments) {
    if (attachments.named() == 0) {
        return {};
    }
    return "attachments: " + std::to_string(attachments.named()) + " named, " +
           std::to_string(attachments.written) + " written, " + std::to_string(attachments.lost) +
           " lost\n";
}

} // namespace

std::string summaryTable(const SummaryNumbers& numbers) {
    if (numbers.extent != RunExtent::Whole) {
        return {};
    }
    std::string lines;
    for (std::size_t place = 0; place < summaryKinds.size(); ++place) {
        lines += kindLine(summaryKinds[place], numbers.kinds[place]);
    }
    return lines.empty() ? lines : headingLine() + lines + attachmentLine(numbers.attachments);
}

} // namespace olmkit
