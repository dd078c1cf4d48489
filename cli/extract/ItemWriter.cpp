#include "cli/extract/ItemWriter.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "cli/extract/LossText.h"
#include "cli/files/Sha256.h"
#include "cli/terminal/Interrupt.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

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
        row.error = "it is longer than a message file can hold, and was cut there";
    }
    return row;
}

// The output took no message, so the row tells of none.
void fail(ItemOutcome& outcome) {
    outcome.row.error = outputErrorText(outcome.outputError);
    outcome.row.sha256.clear();
    outcome.row.attachments.clear();
}

// Waits for the hashes of a message and its attachments. False when the library has failed.
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

// Says in the outcome what the message lacks, and what may be wrong in it.
void warn(const WantedItem& wanted, const olmhost::Extraction& extraction, ItemOutcome& outcome) {
    ManifestRow& row = outcome.row;
    const auto addLoss = [&](const std::string& text) {
        row.warnings.push_back(text);
        outcome.hasLosses = true;
    };
    for (const olmhost::MemberRead& member : extraction.members) {
        if (!member.fault.empty()) {
            addLoss(attachmentLoss(member));
            outcome.faultyEntries.insert(member.entryIndex.value_or(olmhost::EntryFault::noEntry));
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
        addLoss("a part of it is longer than a message file can hold, and was cut there");
    }
}

} // namespace

bool ItemOutcome::isHashed() const {
    return isReady(messageHash) && std::ranges::all_of(attachmentHashes, isReady);
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
            judge(extraction, outcome);
        }
        warn(wanted, extraction, outcome);
        outcome.faults = extraction.faults;
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

// Enters the attachments of a message that is finished in its row; their hashes follow.
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

// Whether what an earlier run has told of the item still holds.
bool ItemWriter::keep(const WantedItem& wanted, ItemOutcome& outcome) const {
    const std::optional<ManifestRow> row = readRow(wanted.keptLine);
    if (!row.has_value() || row->index != wanted.row.index || row->entry != wanted.row.entry ||
        row->item != wanted.row.item || row->path != wanted.path.text()) {
        return false;
    }
    if (!isThere(row->path, row->size, row->sha256)) {
        return false;
    }
    for (const AttachmentRow& attachment : row->attachments) {
        if (!attachment.path.empty() &&
            !isThere(attachment.path, attachment.size.value_or(0), attachment.sha256)) {
            return false;
        }
    }
    outcome.row = *row;
    outcome.line = wanted.keptLine;
    outcome.hasLosses = !row->warnings.empty();
    return true;
}

// Whether a file of that content is in the folder.
bool ItemWriter::isThere(const std::string& path, std::uint64_t size,
                         const std::string& sha256) const {
    int file = -1;
    if (directory.openFile(path, file) != 0) {
        return false;
    }
    std::uint64_t foundSize = 0;
    const std::string found = sha256OfFile(file, foundSize);
    close(file);
    return foundSize == size && found == sha256;
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
        outcome.isInterrupted = error == EINTR;
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
