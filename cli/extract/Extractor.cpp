#include "cli/extract/Extractor.h"

#include <utility>

#include "cli/rows/ItemRow.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// The module's result for a place at which no item can be.
constexpr std::int32_t resultNoItem = 15;

// How messages call an item.
std::string itemTitle(const ManifestRow& row, const std::string& kind,
                      const olmhost::Session& session) {
    if (!row.entry.has_value()) {
        return "item " + std::to_string(row.index.value_or(0));
    }
    std::string title = row.index.has_value() ? "item " + std::to_string(*row.index) + ", " : "";
    if (!kind.empty()) {
        title += (kind.front() == 'a' || kind.front() == 'e' ? "an " : "a ") + kind + ", ";
    }
    return title + "number " + std::to_string(row.item.value_or(0)) + " in " +
           entryTitle(session, *row.entry);
}

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
    } else if (extraction.end == olmhost::ExtractionEnd::NotBegun && faultText.empty()) {
        text = "the module writes no messages of this kind yet";
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

} // namespace

Extractor::Extractor(const ExtractOptions& options, olmhost::Session& session, Messages& messages)
    : options(options), session(session), messages(messages), selection(options),
      manifest(directory), message(directory) {}

ExitCode Extractor::run() {
    const bool isAtEnd = walk();
    if (isAtEnd && !isStopped() && !session.isOlmArchive()) {
        isOlm = false;
        return exitCode();
    }
    if (isOutputOpen || (!isStopped() && openOutput())) {
        if (isAtEnd) {
            refuseIndexesLeft();
        }
        writePlaces();
        if (const int error = manifest.finish(); error != 0) {
            outputFailed(std::string(options.directory) + "/" + Manifest::fileName, error);
        }
    }
    return exitCode();
}

// Whether the archive's end was reached.
bool Extractor::walk() {
    const olmhost::RowCallback noteRow = [this](const olmhost::Row& row) {
        note(row);
        return noted.empty() && !selection.isExhausted() && !Interrupt::isRequested()
                   ? olmhost::RowAnswer::Continue
                   : olmhost::RowAnswer::Pause;
    };
    bool isAtEnd = false;
    while (!isAtEnd && !isStopped() && !selection.isExhausted()) {
        isAtEnd = session.list(noteRow);
        writeNoted();
    }
    return isAtEnd;
}

void Extractor::note(const olmhost::Row& row) {
    MessagePath path = paths.next(row);
    const ItemPlace place = {row.entry, row.item};
    const bool isPlaceWanted = selection.takesPlace(place);
    const bool isIndexWanted = selection.takesIndex(row.index);
    if (!isPlaceWanted && !isIndexWanted) {
        return;
    }
    Wanted wanted;
    wanted.row.entry = row.entry;
    wanted.row.item = row.item;
    wanted.kind = kindOf(row);
    wanted.path = std::move(path);
    if (isPlaceWanted) {
        notedPlaces.emplace(place, wanted);
    }
    if (isIndexWanted) {
        wanted.row.index = row.index;
        noted.push_back(std::move(wanted));
    }
}

bool Extractor::openOutput() {
    int error = directory.open(options.directory);
    if (error == 0) {
        error = manifest.begin();
    }
    if (error != 0) {
        outputFailed(options.directory, error);
        isOutputLost = true;
        return false;
    }
    isOutputOpen = true;
    return true;
}

void Extractor::writeNoted() {
    if (noted.empty() || isStopped() || (!isOutputOpen && !openOutput())) {
        return;
    }
    for (Wanted& wanted : noted) {
        if (isStopped()) {
            return;
        }
        write(wanted);
    }
    noted.clear();
}

void Extractor::refuseIndexesLeft() {
    for (const std::uint64_t index : selection.indexesLeft()) {
        if (isStopped()) {
            return;
        }
        const olmhost::Extraction answer = session.extract(index, message);
        ManifestRow row;
        row.index = index;
        row.result = answer.result;
        row.status = answer.status;
        row.error = "there is no such item: the archive has " +
                    std::to_string(session.itemCount()) + ", numbered from 0";
        finishRow(row, "");
    }
}

void Extractor::writePlaces() {
    for (const ItemPlace& place : selection.places()) {
        if (isStopped()) {
            return;
        }
        const auto found = notedPlaces.find(place);
        if (found != notedPlaces.end()) {
            write(found->second);
            continue;
        }
        Wanted wanted;
        wanted.row.entry = place.entry;
        wanted.row.item = place.item;
        wanted.path = paths.ofUnlisted(place.entry, place.item);
        wanted.isListed = false;
        write(wanted);
    }
}

void Extractor::write(Wanted& wanted) {
    ManifestRow& row = wanted.row;
    const auto progress = [](std::int32_t) { return Interrupt::isRequested() ? 1 : 0; };
    message.begin();
    const olmhost::Extraction extraction =
        row.index.has_value() ? session.extract(*row.index, message, progress)
                              : session.extractAt(*row.entry, *row.item, message, progress);
    if (extraction.end != olmhost::ExtractionEnd::Whole && Interrupt::isRequested()) {
        message.discard();
        return; // as if it had not been begun
    }
    row.result = extraction.result;
    row.status = extraction.status;
    if (extraction.end == olmhost::ExtractionEnd::Whole) {
        row.path = wanted.path.text();
        row.size = message.size();
        const int error = message.commit(wanted.path);
        row.sha256 = message.sha256();
        if (error != 0) {
            row.error = outputErrorText(error);
            outputFailed(options.directory + "/" + row.path, error);
        }
    } else {
        judge(row, extraction);
    }
    message.discard();
    warn(wanted, extraction);
    finishRow(row, wanted.kind);
}

// Says in `row` why an item is not written.
void Extractor::judge(ManifestRow& row, const olmhost::Extraction& extraction) {
    switch (extraction.end) {
    case olmhost::ExtractionEnd::SinkFailed:
        row.error = outputErrorText(message.errorNumber());
        outputFailed(options.directory, message.errorNumber());
        return;
    case olmhost::ExtractionEnd::UnknownRoot:
        row.error = "the entry is no document of items, so there is no message to write";
        return;
    case olmhost::ExtractionEnd::Cancelled:
    case olmhost::ExtractionEnd::NotBegun:
    case olmhost::ExtractionEnd::Refused:
    case olmhost::ExtractionEnd::Whole:
        break;
    }
    row.error = refusalText(row, extraction);
}

// Says in `row` what the item's message lacks, and what may be wrong in it.
void Extractor::warn(Wanted& wanted, const olmhost::Extraction& extraction) {
    ManifestRow& row = wanted.row;
    for (const olmhost::MemberRead& member : extraction.members) {
        if (!member.fault.empty()) {
            addLoss(row, attachmentWarning(member));
            told.insert(member.entryIndex.value_or(olmhost::EntryFault::noEntry));
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
            addLoss(row, "its document: " + fault.text);
        }
    }
    if (extraction.isCut) {
        addLoss(row, "a part of it is longer than a message file can hold, and was cut there");
    }
}

void Extractor::addLoss(ManifestRow& row, const std::string& text) {
    row.warnings.push_back(text);
    hasLosses = true;
}

void Extractor::finishRow(const ManifestRow& result, const std::string& kind) {
    ManifestRow row = result;
    ++requested;
    const std::string title = options.archive + ": " + itemTitle(row, kind, session) + ": ";
    if (row.error.empty()) {
        ++written;
    } else {
        row.path.clear();
        row.sha256.clear();
        messages.tell(title + row.error);
    }
    for (const std::string& warning : row.warnings) {
        messages.tell(title + warning);
    }
    if (!row.warnings.empty()) {
        ++warned;
    }
    if (const int error = manifest.add(row); error != 0) {
        outputFailed(options.directory + "/" + Manifest::fileName, error);
        isOutputLost = true;
    }
}

void Extractor::outputFailed(const std::string& name, int errorNumber) {
    if (stopsEverything(errorNumber)) {
        isOutputLost = true;
    }
    hasOutputFailed = true;
    messages.tell(name + " can't be written: " + outputErrorText(errorNumber));
}

bool Extractor::isStopped() const {
    return isOutputLost || Interrupt::isRequested();
}

ExitCode Extractor::exitCode() const {
    if (Interrupt::isRequested()) {
        return ExitCode::Interrupted;
    }
    if (hasOutputFailed) {
        return ExitCode::OutputFailed;
    }
    if (!isOlm) {
        return ExitCode::NotAnArchive;
    }
    return written == requested && !hasLosses ? ExitCode::Done : ExitCode::Partial;
}

} // namespace olmkit
