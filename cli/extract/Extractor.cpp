#include "cli/extract/Extractor.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "cli/manifest/RunFiles.h"
#include "cli/manifest/SummaryFile.h"
#include "cli/rows/RowFacts.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// The module's answer to an index without an item.
constexpr std::int32_t resultFailed = 18;
constexpr std::uint16_t statusFailed = 2;

// Items that may be finished or in progress after one that is not.
constexpr std::size_t maxQueued = 1024;

// Returns how messages name an item: "item 3, an email, number 1 in entry 7 (mail.xml)".
std::string itemTitle(const ManifestRow& row, std::string_view kind,
                      const olmhost::Session& session) {
    if (!row.entry.has_value()) {
        return "item " + std::to_string(row.index.value_or(0));
    }
    std::string title = row.index.has_value() ? "item " + std::to_string(*row.index) + ", " : "";
    if (!kind.empty()) {
        title += kind.front() == 'a' || kind.front() == 'e' ? "an " : "a ";
        title.append(kind).append(", ");
    }
    return title + "number " + std::to_string(row.item.value_or(0)) + " in " +
           entryTitle(session, *row.entry);
}

unsigned jobsOf(const ExtractOptions& options) {
    if (options.isDryRun) {
        return 1;
    }
    return options.jobs != 0 ? options.jobs : std::max(std::thread::hardware_concurrency(), 1U);
}

timespec timespecOf(Moment moment) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
    const std::chrono::nanoseconds rest = moment - seconds;
    return {static_cast<time_t>(seconds.time_since_epoch().count()),
            static_cast<long>(rest.count())};
}

} // namespace

Extractor::Extractor(const ExtractOptions& options, olmhost::Session& session, Output& output,
                     Messages& messages)
    : options(options), session(session), output(output), messages(messages),
      progress(messages, archiveName(options.archive)), listed(session), selection(options),
      paths(options.layout), faultLog(session), runOutput(options, session, messages),
      queue(session, runOutput.directory(), jobsOf(options), options.attachments) {}

ExitCode Extractor::run() {
    const bool isAtEnd = walk();
    if (isAtEnd && !isStopped() && !session.isOlmArchive()) {
        isOlm = false;
        return exitCode();
    }
    if (!isStopped() && openOutput()) {
        finishItems(0);
        if (isAtEnd) {
            failMissingIndexes();
        }
        writePlaces();
    }
    queue.clear();
    progress.finish();
    endOutput(isAtEnd);
    return exitCode();
}

// Lists the archive until no more rows are wanted. Returns whether it reached the archive's end.
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
        faultLog.update();
        writeNoted();
    }
    return isAtEnd;
}

void Extractor::note(const olmhost::Row& row) {
    OutputPath path = paths.next(row);
    const RowFacts facts(row);
    totals.list(facts.kind);
    listed.reach(row.entry);
    const ItemPlace place = {row.entry, row.item};
    const bool isPlaceWanted = selection.takesPlace(place);
    const bool isRowWanted = selection.takesRow(row, facts);
    if (!isPlaceWanted && !isRowWanted) {
        return;
    }
    WantedItem wanted;
    wanted.row.entry = row.entry;
    wanted.row.item = row.item;
    wanted.kind = facts.kind;
    wanted.path = std::move(path);
    if (options.hasTimestamps && facts.moment.has_value()) {
        wanted.time = timespecOf(*facts.moment);
    }
    if (isPlaceWanted) {
        ++numbers.known;
        totals.request(wanted.kind);
        notedPlaces.emplace(place, wanted);
    }
    if (isRowWanted) {
        ++numbers.known;
        totals.request(wanted.kind);
        wanted.row.index = row.index;
        noted.push_back(std::move(wanted));
    }
}

bool Extractor::openOutput() {
    if (options.isDryRun || runOutput.isOpen()) {
        return true;
    }
    refusal = runOutput.open();
    isOutputLost = refusal != ExitCode::Done;
    return !isOutputLost;
}

void Extractor::writeNoted() {
    if (noted.empty() || isStopped() || !openOutput()) {
        return;
    }
    for (WantedItem& wanted : noted) {
        if (isStopped()) {
            return;
        }
        wanted.keptLine = runOutput.manifest().keptLines().lineOfIndex(*wanted.row.index);
        submit(std::move(wanted));
    }
    noted.clear();
}

void Extractor::failMissingIndexes() {
    for (const std::uint64_t index : selection.indexesLeft()) {
        if (isStopped()) {
            return;
        }
        totals.request({});
        ManifestRow row;
        row.index = index;
        row.result = resultFailed;
        row.status = statusFailed;
        row.error = "the archive has no such item; its " + std::to_string(session.itemCount()) +
                    " items are numbered from 0";
        totals.finish({});
        ++numbers.known;
        finishRow(row, {}, {});
    }
}

void Extractor::writePlaces() {
    for (const ItemPlace& place : selection.places()) {
        if (isStopped()) {
            return;
        }
        const auto found = notedPlaces.find(place);
        if (found != notedPlaces.end()) {
            submit(found->second);
            continue;
        }
        ++numbers.known;
        totals.request({});
        WantedItem wanted;
        wanted.row.entry = place.entry;
        wanted.row.item = place.item;
        wanted.path = paths.ofUnlisted(place.entry, place.item);
        wanted.isListed = false;
        submit(std::move(wanted));
    }
    finishItems(0);
}

void Extractor::submit(WantedItem wanted) {
    if (options.isDryRun) {
        plan(wanted);
        return;
    }
    const bool canBeShared = isShareable(wanted);
    queue.add(std::move(wanted), canBeShared);
    finishItems(maxQueued);
}

// Another session reads a document up to the item, so it gets first items only. What is wrong with
// a document is known to the session that has read all of it.
bool Extractor::isShareable(const WantedItem& wanted) const {
    return wanted.row.index.has_value() && wanted.row.item == 1U &&
           !faultLog.isFaulty(*wanted.row.entry);
}

void Extractor::plan(const WantedItem& wanted) {
    const ManifestRow& row = wanted.row;
    output.buffer() += row.index.has_value()
                           ? std::to_string(*row.index)
                           : std::to_string(*row.entry) + ":" + std::to_string(*row.item);
    output.buffer() += " " + wanted.path.text() + "\n";
    ++numbers.requested;
    ++numbers.written;
    if (!output.endRecord()) {
        isOutputLost = true;
    }
}

// Finishes items in order until at most `maxLeft` are in the queue and the first is not ready.
void Extractor::finishItems(std::size_t maxLeft) {
    while (!isStopped()) {
        const std::unique_ptr<ItemTask> task = queue.next(maxLeft);
        if (task == nullptr) {
            return;
        }
        finish(*task);
    }
}

void Extractor::finish(ItemTask& task) {
    if (task.failure != nullptr) {
        std::rethrow_exception(task.failure);
    }
    ItemOutcome& outcome = task.outcome;
    if (!outcome.isInterrupted) {
        ItemWriter::place(task.wanted, runOutput.directory(), outcome);
    }
    if (outcome.isInterrupted) {
        return;
    }
    if (outcome.outputError != 0) {
        outputFailed(options.directory + "/" + task.wanted.path.text(), outcome.outputError);
    }
    hasLosses = hasLosses || outcome.hasLosses;
    faultLog.add(outcome.faults, outcome.reportedEntries);
    const ManifestRow& row = outcome.row;
    const auto whole = static_cast<std::uint64_t>(std::ranges::count_if(
        row.attachments, [](const AttachmentRow& attachment) { return attachment.error.empty(); }));
    totals.finish({task.wanted.kind, row.error.empty(), whole, row.attachments.size() - whole});
    finishRow(row, outcome.line, task.wanted.kind);
}

// `line` is the row's line in the manifest when that is known already.
void Extractor::finishRow(const ManifestRow& row, const std::string& line, std::string_view kind) {
    ++numbers.requested;
    if (row.error.empty()) {
        ++numbers.written;
        numbers.bytes += row.size;
    }
    if (!row.warnings.empty()) {
        ++numbers.warned;
    }
    report(row, kind);
    isAtLimit = isAtLimit ||
                (!row.error.empty() &&
                 (options.failsFast || numbers.failed() >= options.maxErrors.value_or(UINT64_MAX)));
    nextIndex = row.index.has_value() ? *row.index + 1 : nextIndex;
    if (options.isDryRun) {
        return;
    }
    progress.update(numbers.requested, 0, numbers.bytes, numbers.failed(), passedShare());
    if (const int error = runOutput.manifest().add(line.empty() ? lineOf(row) : line); error != 0) {
        outputFailed(options.directory + "/" + runfile::manifest, error);
        isOutputLost = true;
    }
}

void Extractor::report(const ManifestRow& row, std::string_view kind) {
    const auto titled = [&](const std::string& text) {
        return archiveTitle(options.archive) + ": " + itemTitle(row, kind, session) + ": " + text;
    };
    if (!row.error.empty()) {
        messages.error(titled(row.error));
    } else if (messages.isVerbose() && !options.isDryRun) {
        messages.detail("wrote " + options.directory + "/" + row.path);
    }
    for (const std::string& warning : row.warnings) {
        messages.warn(titled(warning));
    }
}

// Returns how much of the run is done, from 0 to 1: the share of the archive that is listed, times
// the share of its wanted items that are finished.
double Extractor::passedShare() const {
    return listed.value() * static_cast<double>(numbers.requested) /
           static_cast<double>(numbers.known);
}

void Extractor::endOutput(bool isAtEnd) {
    if (!runOutput.isOpen()) {
        return;
    }
    reconcile(isAtEnd);
    if (const int error = isStopped() ? runOutput.breakOff(nextIndex) : runOutput.finish();
        error != 0) {
        outputFailed(options.directory + "/" + runfile::manifest, error);
    }
}

void Extractor::reconcile(bool isAtEnd) {
    if (isStopped()) {
        return; // the run that resumes this one will
    }
    totals.close(session, isAtEnd ? options.extent() : RunExtent::Selection);
    for (const std::string& finding : totals.numbers().findings) {
        messages.error(archiveTitle(options.archive) + ": " + finding);
        hasLosses = true;
    }
    if (const int error = writeSummary(totals.numbers(), runOutput.directory()); error != 0) {
        outputFailed(options.directory + "/" + runfile::summary, error);
    }
}

void Extractor::outputFailed(const std::string& name, int errorNumber) {
    if (stopsEverything(errorNumber)) {
        isOutputLost = true;
    }
    hasOutputFailed = true;
    messages.error(name + " can't be written: " + outputErrorText(errorNumber));
}

bool Extractor::isStopped() const {
    return isOutputLost || isAtLimit || Interrupt::isRequested();
}

ExitCode Extractor::exitCode() const {
    if (Interrupt::isRequested()) {
        return ExitCode::Interrupted;
    }
    if (refusal != ExitCode::Done) {
        return refusal;
    }
    if (hasOutputFailed || (options.isDryRun && isOutputLost)) {
        return ExitCode::OutputFailed;
    }
    if (!isOlm) {
        return ExitCode::NotAnArchive;
    }
    if (isAtLimit && !options.failsFast) {
        return ExitCode::LimitReached;
    }
    return numbers.failed() == 0 && !hasLosses ? ExitCode::Done : ExitCode::Partial;
}

} // namespace olmkit
