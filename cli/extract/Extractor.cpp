#include "cli/extract/Extractor.h"

#include <utility>

#include "cli/rows/ItemRow.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// What the module answers to an index that no item has.
constexpr std::int32_t resultFailed = 18;
constexpr std::uint16_t statusFailed = 2;

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
      manifest(directory), items(session, directory) {}

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
        closeBooks(isAtEnd);
    }
    return exitCode();
}

void Extractor::closeBooks(bool isAtEnd) {
    const RunExtent done =
        isAtEnd && options.isEverything() ? RunExtent::Whole : RunExtent::Selection;
    summary.close(session, isStopped() ? RunExtent::Unfinished : done);
    for (const std::string& finding : summary.findings()) {
        messages.tell(options.archive + ": " + finding);
        hasLosses = true;
    }
    if (const int error = summary.write(directory); error != 0) {
        outputFailed(std::string(options.directory) + "/" + Summary::fileName, error);
    }
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
    summary.list(kindOf(row));
    const ItemPlace place = {row.entry, row.item};
    const bool isPlaceWanted = selection.takesPlace(place);
    const bool isIndexWanted = selection.takesIndex(row.index);
    if (!isPlaceWanted && !isIndexWanted) {
        return;
    }
    WantedItem wanted;
    wanted.row.entry = row.entry;
    wanted.row.item = row.item;
    wanted.kind = kindOf(row);
    wanted.path = std::move(path);
    if (isPlaceWanted) {
        summary.request(wanted.kind);
        notedPlaces.emplace(place, wanted);
    }
    if (isIndexWanted) {
        summary.request(wanted.kind);
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
    // One of an earlier run is never to be taken for this one's.
    directory.remove(Summary::fileName);
    isOutputOpen = true;
    return true;
}

void Extractor::writeNoted() {
    if (noted.empty() || isStopped() || (!isOutputOpen && !openOutput())) {
        return;
    }
    for (const WantedItem& wanted : noted) {
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
        summary.request({});
        ManifestRow row;
        row.index = index;
        row.result = resultFailed;
        row.status = statusFailed;
        row.error = "there is no such item: the archive has " +
                    std::to_string(session.itemCount()) + ", numbered from 0";
        summary.finish({});
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
        summary.request({});
        WantedItem wanted;
        wanted.row.entry = place.entry;
        wanted.row.item = place.item;
        wanted.path = paths.ofUnlisted(place.entry, place.item);
        wanted.isListed = false;
        write(wanted);
    }
}

void Extractor::write(const WantedItem& wanted) {
    finish(wanted, items.write(wanted));
}

void Extractor::finish(const WantedItem& wanted, const ItemOutcome& outcome) {
    if (outcome.isInterrupted) {
        return;
    }
    if (outcome.outputError != 0) {
        outputFailed(options.directory + "/" + wanted.path.text(), outcome.outputError);
    }
    hasLosses = hasLosses || outcome.hasLosses;
    told.insert(outcome.faultyEntries.begin(), outcome.faultyEntries.end());
    summary.finish({wanted.kind, outcome.row.error.empty(), outcome.attachmentsWritten,
                    outcome.attachmentsLost});
    finishRow(outcome.row, wanted.kind);
}

void Extractor::finishRow(const ManifestRow& row, const std::string& kind) {
    ++requested;
    const std::string title = options.archive + ": " + itemTitle(row, kind, session) + ": ";
    if (row.error.empty()) {
        ++written;
    } else {
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
