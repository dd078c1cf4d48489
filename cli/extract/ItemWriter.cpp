#include "cli/extract/ItemWriter.h"

#include <unistd.h>

#include "cli/extract/Sha256.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// The module's result for a place at which no item can be.
constexpr std::int32_t resultNoItem = 15;

std::string refusalText(const ManifestRow& row, const olmhost::Extraction& extraction) {
    std::string faultText;
    for (const olmhost::EntryFault& fault : extraction.faults) {
        if (fault.entryIndex == row.entry) {
            faultText += "; the entry: " + fault.text;
        }
    }
    std::string text = "the module refused the item";
    if (row.result == resultNoItem) {
        text = "there is no item at that place";
    }
    return text + " (result " + std::to_string(row.result) + ", status " +
           std::to_string(row.status) + ")" + faultText;
}

std::string attachmentWarning(const olmhost::MemberRead& member) {
    if (!member.entryIndex.has_value()) {
        return "an attachment is missing: " + member.fault; // which holds the name
    }
    return "the attachment \"" + member.name + "\" is " +
           (member.bytesRead == 0 ? "missing: " : "damaged: ") + member.fault;
}

// Says in the outcome what the message lacks, and what may be wrong in it.
void warn(const WantedItem& wanted, const olmhost::Extraction& extraction, ItemOutcome& outcome) {
    ManifestRow& row = outcome.row;
    const auto addLoss = [&](const std::string& text) {
        row.warnings.push_back(text);
        outcome.hasLosses = true;
    };
    for (const olmhost::MemberRead& member : extraction.members) {
        ++(member.fault.empty() ? outcome.attachmentsWritten : outcome.attachmentsLost);
        if (!member.fault.empty()) {
            addLoss(attachmentWarning(member));
            outcome.faultyEntries.insert(member.entryIndex.value_or(olmhost::EntryFault::noEntry));
        }
    }
    if (!row.error.empty()) {
        return;
    }
    if (!wanted.isListed) {
        row.warnings.emplace_back("the entry has no item of that number, so the message is empty");
    }
    for (const olmhost::EntryFault& fault : extraction.faults) {
        if (fault.entryIndex == row.entry) {
            addLoss("its document: " + fault.text);
        }
    }
    if (extraction.isCut) {
        addLoss("a part of it is longer than a message file can hold, and was cut there");
    }
}

} // namespace

ItemOutcome ItemWriter::write(const WantedItem& wanted) {
    ItemOutcome outcome;
    if (keep(wanted, outcome)) {
        return outcome;
    }
    ManifestRow& row = outcome.row = wanted.row;
    const auto progress = [](std::int32_t) { return Interrupt::isRequested() ? 1 : 0; };
    message.begin();
    const olmhost::Extraction extraction =
        row.index.has_value() && access == Access::ByIndex
            ? session.extract(*row.index, message, progress)
            : session.extractAt(*row.entry, *row.item, message, progress);
    outcome.isInterrupted =
        extraction.end != olmhost::ExtractionEnd::Whole && Interrupt::isRequested();
    if (!outcome.isInterrupted) {
        row.result = extraction.result;
        row.status = extraction.status;
        if (extraction.end == olmhost::ExtractionEnd::Whole) {
            finish(wanted, outcome);
        } else {
            judge(extraction, outcome);
        }
        warn(wanted, extraction, outcome);
        outcome.faults = extraction.faults;
    }
    message.discard();
    return outcome;
}

// Whether what an earlier run has told of the item still holds.
bool ItemWriter::keep(const WantedItem& wanted, ItemOutcome& outcome) const {
    const std::optional<ManifestRow> row = readRow(wanted.keptLine);
    if (!row.has_value() || row->index != wanted.row.index || row->entry != wanted.row.entry ||
        row->item != wanted.row.item || row->path != wanted.path.text()) {
        return false;
    }
    int file = -1;
    if (directory.openFile(row->path, file) != 0) {
        return false;
    }
    std::uint64_t size = 0;
    const std::string sha256 = sha256OfFile(file, size);
    close(file);
    if (size != row->size || sha256 != row->sha256) {
        return false;
    }
    outcome.row = *row;
    outcome.line = wanted.keptLine;
    outcome.hasLosses = !row->warnings.empty();
    return true;
}

void ItemWriter::finish(const WantedItem& wanted, ItemOutcome& outcome) {
    outcome.outputError = message.finish(outcome.message, wanted.time);
    if (outcome.outputError != 0) {
        outcome.row.error = outputErrorText(outcome.outputError);
        return;
    }
    outcome.row.size = message.size();
    outcome.row.sha256 = message.sha256();
}

void ItemWriter::place(const WantedItem& wanted, OutputDirectory& directory, ItemOutcome& outcome) {
    if (!outcome.message.has_value()) {
        return;
    }
    outcome.outputError = directory.place(*outcome.message, wanted.path);
    outcome.message.reset();
    if (outcome.outputError == 0) {
        outcome.row.path = wanted.path.text();
        return;
    }
    outcome.row.error = outputErrorText(outcome.outputError);
    outcome.row.sha256.clear();
}

// Says in the outcome why the item is not written.
void ItemWriter::judge(const olmhost::Extraction& extraction, ItemOutcome& outcome) {
    switch (extraction.end) {
    case olmhost::ExtractionEnd::SinkFailed:
        outcome.outputError = message.errorNumber();
        outcome.row.error = outputErrorText(outcome.outputError);
        return;
    case olmhost::ExtractionEnd::UnknownRoot:
        outcome.row.error = "the entry is no document of items, so there is no message to write";
        return;
    case olmhost::ExtractionEnd::Cancelled:
    case olmhost::ExtractionEnd::NotBegun:
    case olmhost::ExtractionEnd::Refused:
    case olmhost::ExtractionEnd::Whole:
        break;
    }
    outcome.row.error = refusalText(outcome.row, extraction);
}

} // namespace olmkit
