#include "cli/extract/ItemWriter.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "cli/manifest/ListedFile.h"
#include "cli/terminal/ExtractionText.h"
#include "cli/terminal/Interrupt.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

// Returns the faults of an entry, or an empty text.
std::string faultText(const olmhost::Extraction& extraction, std::uint64_t entry) {
    std::string text;
    for (const olmhost::EntryFault& fault : extraction.faults) {
        if (fault.entryIndex == entry) {
            text += (text.empty() ? "" : ", ") + fault.text;
        }
    }
    return text;
}

std::string namelessWarning(const AttachmentRow& attachment) {
    return (attachment.name.empty() ? std::string("an attachment")
                                    : "the attachment \"" + attachment.name + "\"") +
           " is missing: it " + attachment.error;
}

AttachmentRow attachmentRow(const olmhost::AttachmentAccount& account,
                            const olmhost::Extraction& extraction) {
    AttachmentRow row;
    appendUtf8(row.name, account.name);
    row.size = account.size;
    if (!account.member.has_value()) {
        row.error = "names no file";
        return row;
    }
    const olmhost::MemberRead& member = extraction.members[*account.member];
    row.url = member.name;
    if (member.entryIndex.has_value()) {
        row.declaredSize = member.size;
    }
    row.error = member.fault;
    if (row.error.empty() && account.size.value_or(0) < member.bytesRead) {
        row.error = "it is longer than a message file can hold, and was cut off";
    }
    return row;
}

// Makes the row that of an item without a message, because of the output error.
void fail(ItemOutcome& outcome) {
    outcome.row.error = outputErrorText(outcome.outputError);
    outcome.row.sha256.clear();
    outcome.row.attachments.clear();
}

// Waits for the hashes of a message and its attachments. Returns false when the library failed.
bool enterHashes(ItemOutcome& outcome) {
    outcome.row.sha256 = outcome.messageHash.get();
    bool isGood = !outcome.row.sha256.empty();
    for (std::size_t place = 0; place < outcome.attachmentHashes.size(); ++place) {
        if (HashText& hash = outcome.attachmentHashes[place]; hash.valid()) {
            AttachmentRow& attachment = outcome.row.attachments[place];
            attachment.sha256 = hash.get();
            isGood = isGood && !attachment.sha256.empty();
        }
    }
    return isGood;
}

// Adds warnings to the outcome: what the message lacks, and what may be wrong in it.
void warn(const WantedItem& wanted, const olmhost::Extraction& extraction, ItemOutcome& outcome) {
    ManifestRow& row = outcome.row;
    const auto addLoss = [&](const std::string& text) {
        row.warnings.push_back(text);
        outcome.hasLosses = true;
    };
    for (const olmhost::MemberRead& member : extraction.members) {
        if (!member.fault.empty()) {
            addLoss(attachmentLoss(member));
            outcome.reportedEntries.insert(
                member.entryIndex.value_or(olmhost::EntryFault::noEntry));
        }
    }
    for (const AttachmentRow& attachment : row.attachments) {
        if (!attachment.url.has_value()) {
            addLoss(namelessWarning(attachment));
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
        addLoss(std::string(cutText));
    }
}

} // namespace

bool ItemOutcome::isHashed() const {
    return isReady(messageHash) && std::ranges::all_of(attachmentHashes, isReady);
}

std::size_t ItemOutcome::heldBytes() const {
    // Names and hashes of an attachment are of no certain size; more than these are rare.
    constexpr std::size_t rowBytes = 1024;
    return row.attachments.size() * rowBytes +
           (attachments != nullptr ? attachments->heldBytes() : 0);
}

ItemOutcome ItemWriter::write(const WantedItem& wanted) {
    ItemOutcome outcome;
    if (keep(wanted, outcome)) {
        return outcome;
    }
    ManifestRow& row = outcome.row = wanted.row;
    const olmhost::Extraction extraction = extract(row, outcome);
    outcome.isInterrupted =
        extraction.end != olmhost::ExtractionEnd::Whole && Interrupt::isRequested();
    if (!outcome.isInterrupted) {
        row.result = extraction.result;
        row.status = extraction.status;
        if (extraction.end == olmhost::ExtractionEnd::Whole) {
            finish(wanted, outcome);
            addAttachments(extraction, outcome);
        } else {
            explain(extraction, outcome);
        }
        warn(wanted, extraction, outcome);
        outcome.faults = extraction.faults;
    }
    if (outcome.message.has_value() && outcome.attachments != nullptr) {
        outcome.attachments->finish();
    } else {
        outcome.attachments.reset();
    }
    message.discard();
    return outcome;
}

olmhost::Extraction ItemWriter::extract(const ManifestRow& row, ItemOutcome& outcome) {
    const auto progress = [](std::int32_t) { return Interrupt::isRequested() ? 1 : 0; };
    const olmhost::AttachmentBytes takeBytes = [&](std::size_t attachment,
                                                   std::span<const std::byte> bytes) {
        attachmentHashes.add(attachment, bytes);
        if (outcome.attachments != nullptr) {
            outcome.attachments->append(attachment, bytes);
        }
    };
    if (withAttachments) {
        outcome.attachments = std::make_unique<AttachmentSpool>(directory);
    }
    message.begin();
    attachmentHashes.begin();
    return row.index.has_value() && access == Access::ByIndex
               ? session.extract(*row.index, message, progress, takeBytes)
               : session.extractAt(*row.entry, *row.item, message, progress, takeBytes);
}

// Enters the attachments of a complete message in its row. Their hashes follow later.
void ItemWriter::addAttachments(const olmhost::Extraction& extraction, ItemOutcome& outcome) {
    attachmentHashes.finish();
    if (!outcome.message.has_value()) {
        return;
    }
    std::vector<AttachmentRow>& rows = outcome.row.attachments;
    for (const olmhost::AttachmentAccount& account : extraction.attachments) {
        AttachmentRow row = attachmentRow(account, extraction);
        outcome.attachmentHashes.push_back(row.size.has_value() ? attachmentHashes.take(rows.size())
                                                                : HashText());
        rows.push_back(std::move(row));
    }
}

// Whether an earlier run has written the item, and all of its files are still as it left them.
bool ItemWriter::keep(const WantedItem& wanted, ItemOutcome& outcome) const {
    const std::optional<ManifestRow> row = readRow(wanted.keptLine);
    if (!row.has_value() || row->index != wanted.row.index || row->entry != wanted.row.entry ||
        row->item != wanted.row.item || row->path != wanted.path.text()) {
        return false;
    }
    const bool isIntact = std::ranges::all_of(filesOf(*row), [this](const ListedFile& file) {
        return stateOf(file, directory) == FileState::Intact;
    });
    if (!isIntact) {
        return false;
    }
    outcome.row = *row;
    outcome.line = wanted.keptLine;
    outcome.hasLosses = !row->warnings.empty();
    return true;
}

void ItemWriter::finish(const WantedItem& wanted, ItemOutcome& outcome) {
    outcome.outputError = message.finish(outcome.message, outcome.messageHash, wanted.time);
    if (outcome.outputError != 0) {
        fail(outcome);
        return;
    }
    outcome.row.size = message.size();
}

void ItemWriter::place(const WantedItem& wanted, OutputDirectory& directory, ItemOutcome& outcome) {
    if (!outcome.message.has_value()) {
        return;
    }
    int error = enterHashes(outcome) ? 0 : EIO;
    if (error == 0 && outcome.attachments != nullptr) {
        error = outcome.attachments->place(wanted.path, wanted.time, outcome.row.attachments);
        outcome.attachments.reset();
        outcome.isInterrupted = error == EINTR && Interrupt::isRequested();
    }
    if (error == 0) {
        error = directory.place(*outcome.message, wanted.path);
    }
    outcome.message.reset();
    if (error == 0) {
        outcome.row.path = wanted.path.text();
        return;
    }
    if (!outcome.isInterrupted) {
        outcome.outputError = error;
        fail(outcome);
    }
}

// Sets the error of an item without a message.
void ItemWriter::explain(const olmhost::Extraction& extraction, ItemOutcome& outcome) {
    switch (extraction.end) {
    case olmhost::ExtractionEnd::SinkFailed:
        outcome.outputError = message.errorNumber();
        outcome.row.error = outputErrorText(outcome.outputError);
        return;
    case olmhost::ExtractionEnd::UnknownRoot:
        outcome.row.error = notADocumentText;
        return;
    case olmhost::ExtractionEnd::Cancelled:
    case olmhost::ExtractionEnd::NotBegun:
    case olmhost::ExtractionEnd::Refused:
    case olmhost::ExtractionEnd::Whole:
        break;
    }
    const std::uint64_t entry = *outcome.row.entry;
    outcome.row.error = refusalText(extraction, session, entry, faultText(extraction, entry));
}

} // namespace olmkit
