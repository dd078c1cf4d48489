#include "cli/extract/RunResults.h"

#include <algorithm>
#include <exception>

#include "cli/manifest/RunFiles.h"
#include "cli/manifest/SummaryFile.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

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

} // namespace

RunResults::RunResults(const ExtractOptions& options, const olmhost::Session& session,
                       Messages& messages)
    : options(options), session(session), messages(messages),
      progress(messages, archiveName(options.archive)), listed(session),
      output(options, session, messages), faultLog(session) {}

bool RunResults::openOutput() {
    if (options.isDryRun || output.isOpen()) {
        return true;
    }
    refusal = output.open();
    isOutputLost = refusal != ExitCode::Done;
    return !isOutputLost;
}

void RunResults::list(const olmhost::Row& row, const RowFacts& facts) {
    totals.list(facts.kind);
    listed.reach(row.entry);
}

void RunResults::request(std::string_view kind) {
    ++numbers.known;
    totals.request(kind);
}

void RunResults::finish(ItemTask& task) {
    if (task.failure != nullptr) {
        std::rethrow_exception(task.failure);
    }
    ItemOutcome& outcome = task.outcome;
    if (!outcome.isInterrupted && exitCodeOf(outcome.faults) == ExitCode::Unreadable) {
        faultLog.add(outcome.faults, {}); // the message may lack something: it gets no name
        return;
    }
    if (!outcome.isInterrupted) {
        ItemWriter::place(task.wanted, output.directory(), outcome);
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

void RunResults::finishPlanned() {
    ++numbers.requested;
    ++numbers.written;
}

void RunResults::finishFailed(const ManifestRow& row) {
    totals.finish({});
    finishRow(row, {}, {});
}

// `line` is the row's line in the manifest when that is known already.
void RunResults::finishRow(const ManifestRow& row, const std::string& line, std::string_view kind) {
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
    if (const int error = output.manifest().add(line.empty() ? lineOf(row) : line); error != 0) {
        outputFailed(options.directory + "/" + runfile::manifest, error);
        isOutputLost = true;
    }
}

void RunResults::report(const ManifestRow& row, std::string_view kind) {
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
double RunResults::passedShare() const {
    return listed.value() * static_cast<double>(numbers.requested) /
           static_cast<double>(numbers.known);
}

bool RunResults::isStopped() const {
    return isOutputLost || isAtLimit || faultLog.hasReadFailed() || Interrupt::isRequested();
}

void RunResults::end(bool isAtEnd) {
    progress.finish();
    if (!output.isOpen()) {
        return;
    }
    reconcile(isAtEnd);
    if (const int error = isStopped() ? output.breakOff(nextIndex) : output.finish(); error != 0) {
        outputFailed(options.directory + "/" + runfile::manifest, error);
        output.directory().remove(runfile::summary); // the run is not complete
    }
}

void RunResults::reconcile(bool isAtEnd) {
    if (isStopped()) {
        return; // the run that resumes this one will
    }
    totals.close(session, isAtEnd ? options.extent() : RunExtent::Selection);
    for (const std::string& finding : totals.numbers().findings) {
        messages.error(archiveTitle(options.archive) + ": " + finding);
        hasLosses = true;
    }
    const int error = writeSummary(totals.numbers(), output.manifest().seal(), output.directory());
    if (error != 0) {
        outputFailed(options.directory + "/" + runfile::summary, error);
    }
}

void RunResults::outputFailed(const std::string& name, int errorNumber) {
    if (stopsEverything(errorNumber)) {
        isOutputLost = true;
    }
    hasOutputFailed = true;
    messages.error(name + " can't be written: " + outputErrorText(errorNumber));
}

ExitCode RunResults::exitCode() const {
    if (Interrupt::isRequested()) {
        return ExitCode::Interrupted;
    }
    if (refusal != ExitCode::Done) {
        return refusal;
    }
    if (hasOutputFailed || (options.isDryRun && isOutputLost)) {
        return ExitCode::OutputFailed;
    }
    if (faultLog.hasReadFailed()) {
        return ExitCode::Unreadable;
    }
    if (isAtLimit && !options.failsFast) {
        return ExitCode::LimitReached;
    }
    return numbers.failed() == 0 && !hasLosses ? ExitCode::Done : ExitCode::Partial;
}

} // namespace olmkit
