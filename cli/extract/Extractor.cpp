#include "cli/extract/Extractor.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "cli/rows/ItemRow.h"
#include "cli/rows/Moment.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// What the module answers to an index that no item has.
constexpr std::int32_t resultFailed = 18;
constexpr std::uint16_t statusFailed = 2;

// Items that may be done, or under way, behind one that is not.
constexpr std::size_t mostTasks = 1024;

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

unsigned jobsOf(const ExtractOptions& options) {
    return options.jobs != 0 ? options.jobs : std::max(std::thread::hardware_concurrency(), 1U);
}

std::optional<timespec> timeOf(const olmhost::Row& row) {
    const std::optional<Moment> moment = momentOf(row);
    if (!moment.has_value()) {
        return std::nullopt;
    }
    const auto seconds = std::chrono::floor<std::chrono::seconds>(*moment);
    const std::chrono::nanoseconds rest = *moment - seconds;
    return timespec{static_cast<time_t>(seconds.time_since_epoch().count()),
                    static_cast<long>(rest.count())};
}

} // namespace

Extractor::Extractor(const ExtractOptions& options, olmhost::Session& session, Output& output,
                     Messages& messages)
    : options(options), session(session), output(output), messages(messages),
      progress(messages, archiveName(options.archive)), listed(session), selection(options),
      paths(options.layout), runOutput(options, session, messages),
      items(session, runOutput.directory(), ItemWriter::Access::ByIndex, options.attachments) {
    if (const unsigned jobs = jobsOf(options); jobs > 1 && !options.isDryRun) {
        pool = std::make_unique<WorkerPool>(session, runOutput.directory(), jobs - 1,
                                            options.attachments);
    }
}

Extractor::~Extractor() = default;

ExitCode Extractor::run() {
    const bool isAtEnd = walk();
    if (isAtEnd && !isStopped() && !session.isOlmArchive()) {
        isOlm = false;
        return exitCode();
    }
    if (!isStopped() && openOutput()) {
        finishTasks(0);
        if (isAtEnd) {
            refuseIndexesLeft();
        }
        writePlaces();
    }
    dropTasks();
    progress.finish();
    endOutput(isAtEnd);
    return exitCode();
}

void Extractor::closeBooks(bool isAtEnd) {
    if (isStopped()) {
        return; // another run may go on, and closes them then
    }
    summary.close(session, isAtEnd ? options.extent() : RunExtent::Selection);
    for (const std::string& finding : summary.findings()) {
        messages.error(archiveTitle(options.archive) + ": " + finding);
        hasLosses = true;
    }
    if (const int error = summary.write(runOutput.directory()); error != 0) {
        outputFailed(options.directory + "/" + Summary::fileName, error);
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
        noteFaults();
        writeNoted();
    }
    return isAtEnd;
}

void Extractor::note(const olmhost::Row& row) {
    MessagePath path = paths.next(row);
    summary.list(kindOf(row));
    listed.reach(row.entry);
    const ItemPlace place = {row.entry, row.item};
    const bool isPlaceWanted = selection.takesPlace(place);
    const bool isRowWanted = selection.takesRow(row);
    if (!isPlaceWanted && !isRowWanted) {
        return;
    }
    WantedItem wanted;
    wanted.row.entry = row.entry;
    wanted.row.item = row.item;
    wanted.kind = kindOf(row);
    wanted.path = std::move(path);
    if (options.hasTimestamps) {
        wanted.time = timeOf(row);
    }
    if (isPlaceWanted) {
        ++numbers.known;
        summary.request(wanted.kind);
        notedPlaces.emplace(place, wanted);
    }
    if (isRowWanted) {
        ++numbers.known;
        summary.request(wanted.kind);
        wanted.row.index = row.index;
        noted.push_back(std::move(wanted));
    }
}

void Extractor::noteFaults() {
    const std::vector<olmhost::EntryFault>& found = session.faults();
    for (; faultsNoted < found.size(); ++faultsNoted) {
        faultyEntries.insert(found[faultsNoted].entryIndex);
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
        ++numbers.known;
        finishRow(row, "", "");
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
        summary.request({});
        WantedItem wanted;
        wanted.row.entry = place.entry;
        wanted.row.item = place.item;
        wanted.path = paths.ofUnlisted(place.entry, place.item);
        wanted.isListed = false;
        submit(std::move(wanted));
    }
    finishTasks(0);
}

void Extractor::submit(WantedItem wanted) {
    if (options.isDryRun) {
        plan(wanted);
        return;
    }
    auto task = std::make_unique<ItemTask>();
    task->wanted = std::move(wanted);
    if (pool == nullptr || !isForWorkers(task->wanted) || !pool->offer(*task)) {
        task->outcome = items.write(task->wanted);
        task->isDone = true;
    }
    tasks.push_back(std::move(task));
    finishTasks(mostTasks);
}

// Another session finds an item by reading its document up to it, so it gets none but first items.
// What is wrong with a document only the session that has read all of it can tell.
bool Extractor::isForWorkers(const WantedItem& wanted) const {
    return wanted.row.index.has_value() && wanted.row.item == 1U &&
           !faultyEntries.contains(*wanted.row.entry);
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

// Finishes what is done, in order; waits as long as more than `mostLeft` tasks are left.
void Extractor::finishTasks(std::size_t mostLeft) {
    while (!tasks.empty() && !isStopped()) {
        const ItemTask& first = *tasks.front();
        if (tasks.size() <= mostLeft && !(first.isDone && first.outcome.isHashed())) {
            return;
        }
        if (!first.isDone) {
            awaitFirst();
            continue;
        }
        const std::unique_ptr<ItemTask> task = std::move(tasks.front());
        tasks.pop_front();
        finish(*task);
    }
}

// Waits for the first task, at work meanwhile.
void Extractor::awaitFirst() {
    ItemTask* const task = pool->takeBack();
    if (task == nullptr) {
        pool->waitFor(*tasks.front());
        return;
    }
    task->outcome = items.write(task->wanted);
    task->isDone = true;
}

// Ends the other threads; what they made and nobody has seen goes.
void Extractor::dropTasks() {
    pool.reset();
    tasks.clear();
}

void Extractor::finish(ItemTask& task) {
    if (task.failure != nullptr) {
        std::rethrow_exception(task.failure);
    }
    ItemOutcome& outcome = task.outcome;
    if (outcome.isInterrupted) {
        return;
    }
    ItemWriter::place(task.wanted, runOutput.directory(), outcome);
    if (outcome.isInterrupted) {
        return;
    }
    if (outcome.outputError != 0) {
        outputFailed(options.directory + "/" + task.wanted.path.text(), outcome.outputError);
    }
    hasLosses = hasLosses || outcome.hasLosses;
    told.insert(outcome.faultyEntries.begin(), outcome.faultyEntries.end());
    for (const olmhost::EntryFault& fault : outcome.faults) {
        const bool hasEntry = fault.entryIndex != olmhost::EntryFault::noEntry;
        itemFaults.try_emplace({fault.entryIndex, fault.kind, hasEntry ? "" : fault.text},
                               fault.text);
    }
    const std::string& kind = task.wanted.kind;
    const auto whole = std::ranges::count_if(
        outcome.row.attachments, [](const AttachmentRow& row) { return row.error.empty(); });
    summary.finish({kind, outcome.row.error.empty(), static_cast<std::uint64_t>(whole),
                    outcome.row.attachments.size() - static_cast<std::uint64_t>(whole)});
    finishRow(outcome.row, outcome.line, kind);
}

void Extractor::finishRow(const ManifestRow& row, const std::string& line,
                          const std::string& kind) {
    ++numbers.requested;
    const auto titled = [&](const std::string& text) {
        return archiveTitle(options.archive) + ": " + itemTitle(row, kind, session) + ": " + text;
    };
    if (row.error.empty()) {
        ++numbers.written;
        numbers.bytes += row.size;
        if (messages.isVerbose() && !options.isDryRun) {
            messages.detail("wrote " + options.directory + "/" + row.path);
        }
    } else {
        messages.error(titled(row.error));
        isAtLimit =
            options.failsFast || numbers.failed() >= options.mostErrors.value_or(UINT64_MAX);
    }
    for (const std::string& warning : row.warnings) {
        messages.warn(titled(warning));
    }
    if (!row.warnings.empty()) {
        ++numbers.warned;
    }
    nextIndex = row.index.has_value() ? *row.index + 1 : nextIndex;
    if (options.isDryRun) {
        return;
    }
    progress.update(numbers.requested, 0, numbers.bytes, numbers.failed(), passedShare());
    if (const int error = runOutput.manifest().add(line.empty() ? lineOf(row) : line); error != 0) {
        outputFailed(options.directory + "/" + Manifest::fileName, error);
        isOutputLost = true;
    }
}

// How much of the way the run has come, from 0 to 1: of what is listed so far, and of the items in
// that.
double Extractor::passedShare() const {
    return listed.value() * static_cast<double>(numbers.requested) /
           static_cast<double>(numbers.known);
}

void Extractor::endOutput(bool isAtEnd) {
    if (!runOutput.isOpen()) {
        return;
    }
    closeBooks(isAtEnd);
    if (const int error = isStopped() ? runOutput.breakOff(nextIndex) : runOutput.finish();
        error != 0) {
        outputFailed(options.directory + "/" + Manifest::fileName, error);
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

std::vector<olmhost::EntryFault> Extractor::faults() const {
    std::map<FaultKey, std::string> all = itemFaults;
    for (const olmhost::EntryFault& fault : session.faults()) {
        const bool hasEntry = fault.entryIndex != olmhost::EntryFault::noEntry;
        all.insert_or_assign({fault.entryIndex, fault.kind, hasEntry ? "" : fault.text},
                             fault.text);
    }
    std::vector<olmhost::EntryFault> sorted;
    sorted.reserve(all.size());
    for (const auto& [key, text] : all) {
        sorted.push_back({std::get<olmhost::FaultKind>(key), std::get<std::uint64_t>(key), text});
    }
    return sorted;
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
