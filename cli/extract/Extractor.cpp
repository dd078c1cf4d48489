#include "cli/extract/Extractor.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "cli/rows/RowFacts.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// Items that may be finished or in progress after one that is not.
constexpr std::size_t maxQueued = 1024;

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
    : options(options), session(session), output(output), selection(options), paths(options.layout),
      results(options, session, messages),
      queue(session, results.directory(), jobsOf(options), options.attachments) {}

ExitCode Extractor::run() {
    const bool isAtEnd = walk();
    if (isAtEnd && !isStopped() && !session.isOlmArchive()) {
        return ExitCode::NotAnArchive;
    }
    if (!isStopped() && results.openOutput()) {
        finishItems(0);
        if (isAtEnd) {
            failMissingIndexes();
        }
        writePlaces();
    }
    queue.clear();
    results.end(isAtEnd);
    return results.exitCode();
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
        results.faults().update();
        writeNoted();
    }
    return isAtEnd;
}

void Extractor::note(const olmhost::Row& row) {
    OutputPath path = paths.next(row);
    const RowFacts facts(row);
    results.list(row, facts);
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
        results.request(wanted.kind);
        notedPlaces.emplace(place, wanted);
    }
    if (isRowWanted) {
        results.request(wanted.kind);
        wanted.row.index = row.index;
        noted.push_back(std::move(wanted));
    }
}

void Extractor::writeNoted() {
    if (noted.empty() || isStopped() || !results.openOutput()) {
        return;
    }
    for (WantedItem& wanted : noted) {
        if (isStopped()) {
            return;
        }
        wanted.keptLine = results.keptLine(*wanted.row.index);
        submit(std::move(wanted));
    }
    noted.clear();
}

void Extractor::failMissingIndexes() {
    for (const std::uint64_t index : selection.indexesLeft()) {
        if (isStopped()) {
            return;
        }
        ManifestRow row;
        row.index = index;
        row.result = olmhost::ModuleFailed;
        row.status = olmhost::moduleStatusFailed;
        row.error = "the archive has no such item; its " + std::to_string(session.itemCount()) +
                    " items are numbered from 0";
        results.request({});
        results.finishFailed(row);
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
        results.request({});
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
           !results.faults().isFaulty(*wanted.row.entry);
}

void Extractor::plan(const WantedItem& wanted) {
    const ManifestRow& row = wanted.row;
    output.buffer() += row.index.has_value()
                           ? std::to_string(*row.index)
                           : std::to_string(*row.entry) + ":" + std::to_string(*row.item);
    output.buffer().append(" ").append(wanted.path.text()).append("\n");
    results.finishPlanned();
    if (!output.endRecord()) {
        results.loseOutput();
    }
}

// Finishes items in order until at most `maxLeft` are in the queue and the first is not ready.
void Extractor::finishItems(std::size_t maxLeft) {
    while (!isStopped()) {
        const std::unique_ptr<ItemTask> task = queue.next(maxLeft);
        if (task == nullptr) {
            return;
        }
        results.finish(*task);
    }
}

} // namespace olmkit
