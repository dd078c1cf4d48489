#include "cli/Extractor.h"

#include <utility>

#include "cli/Interrupt.h"
#include "cli/ItemRow.h"

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
        write(wanted);
        if (!wanted.row.path.empty() && wanted.row.error.empty()) {
            messages.tell(options.archive + ": " + itemTitle(wanted.row, "", session) +
                          ": the entry has no item of that number, so the message is empty");
        }
    }
}

void Extractor::write(Wanted& wanted) {
    ManifestRow& row = wanted.row;
    const std::size_t faultsBefore = session.faults().size();
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
        judge(row, extraction, faultsBefore);
    }
    message.discard();
    finishRow(row, wanted.kind);
    if (row.error.empty() && extraction.isCut) {
        hasCutMessages = true;
        messages.tell(options.archive + ": " + itemTitle(row, wanted.kind, session) +
                      ": a part of it is longer than a message file can hold, and was cut there");
    }
}

// Says in `row` why an item is not written.
void Extractor::judge(ManifestRow& row, const olmhost::Extraction& extraction,
                      std::size_t faultsBefore) {
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
    row.error = refusalText(row, extraction.end, faultsBefore);
}

std::string Extractor::refusalText(const ManifestRow& row, olmhost::ExtractionEnd end,
                                   std::size_t faultsBefore) const {
    std::string faultText;
    const auto& faults = session.faults();
    // An entry that could not be listed was found wrong before.
    const std::size_t first = row.index.has_value() ? faultsBefore : 0;
    for (std::size_t place = first; place < faults.size(); ++place) {
        if (faults[place].entryIndex == row.entry) {
            faultText += "; the entry: " + faults[place].text;
        }
    }
    std::string text = "the module refused the item";
    if (row.result == resultNoItem) {
        text = "there is no item at that place";
    } else if (end == olmhost::ExtractionEnd::NotBegun && faultText.empty()) {
        text = "the module writes no messages of this kind yet";
    }
    return text + " (result " + std::to_string(row.result) + ", status " +
           std::to_string(row.status) + ")" + faultText;
}

void Extractor::finishRow(const ManifestRow& result, const std::string& kind) {
    ManifestRow row = result;
    ++requested;
    if (row.error.empty()) {
        ++written;
    } else {
        row.path.clear();
        row.sha256.clear();
        messages.tell(options.archive + ": " + itemTitle(row, kind, session) + ": " + row.error);
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
    return written == requested && !hasCutMessages ? ExitCode::Done : ExitCode::Partial;
}

} // namespace olmkit
