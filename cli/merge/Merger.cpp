#include "cli/merge/Merger.h"

#include <algorithm>
#include <cerrno>
#include <set>

#include "cli/manifest/RunFiles.h"
#include "cli/manifest/SummaryFile.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

constexpr std::uint64_t maxShownShards = 10;

} // namespace

Merger::Merger(const MergeOptions& options, Messages& messages)
    : options(options), messages(messages), manifest(target) {}

ExitCode Merger::run() {
    for (const auto step :
         {&Merger::openShards, &Merger::compare, &Merger::findMissing, &Merger::openTarget,
          &Merger::join, &Merger::joinSummaries, &Merger::sync}) {
        if (const ExitCode code = (this->*step)(); code != ExitCode::Done) {
            return code;
        }
    }
    return hasLosses ? ExitCode::Partial : ExitCode::Done;
}

ExitCode Merger::refuse(ExitCode code, const std::string& text) {
    messages.error(text);
    return code;
}

ExitCode Merger::outputFailed(const std::string& name, int errorNumber) {
    return refuse(ExitCode::OutputFailed,
                  name + " can't be written: " + outputErrorText(errorNumber));
}

ExitCode Merger::openShards() {
    for (const std::string& path : options.directories) {
        if (const ExitCode code = shards.emplace_back(path).open(messages);
            code != ExitCode::Done) {
            return code;
        }
    }
    return ExitCode::Done;
}

// Compares the records: all shards have to be of one run.
ExitCode Merger::compare() {
    const ShardFolder& first = shards.front();
    for (const ShardFolder& shard : shards) {
        const std::string difference = shard.record().differenceTo(first.record());
        if (!difference.empty()) {
            return refuse(ExitCode::Partial, shard.path() + " " + difference + " than " +
                                                 first.path() +
                                                 "; only shards of one extraction can be joined");
        }
        if (shard.shard().count != first.shard().count) {
            return refuse(ExitCode::Partial, shard.path() + " has shard " + shard.shard().text() +
                                                 ", but " + first.path() + " has shard " +
                                                 first.shard().text() +
                                                 "; only shards of one extraction can be joined");
        }
    }
    return ExitCode::Done;
}

ExitCode Merger::findMissing() {
    const std::uint64_t count = shards.front().shard().count;
    std::set<std::uint64_t> present;
    for (const ShardFolder& shard : shards) {
        present.insert(shard.shard().number);
    }
    const std::uint64_t missingCount = count - present.size();
    if (missingCount == 0) {
        return ExitCode::Done;
    }
    std::string missing;
    for (std::uint64_t number = 1, shown = 0; number <= count && shown < maxShownShards; ++number) {
        if (!present.contains(number)) {
            missing += (shown++ == 0 ? "" : ", ") + Shard{number, count}.text();
        }
    }
    return refuse(ExitCode::Partial,
                  std::to_string(missingCount) + (missingCount == 1 ? " shard is" : " shards are") +
                      " missing: " + missing + (missingCount > maxShownShards ? ", ..." : ""));
}

ExitCode Merger::openTarget() {
    const std::string& path = options.target();
    if (options.skipsSync) {
        target.skipSync();
    }
    int error = target.open(path);
    if (error == 0) {
        const bool isShard = std::ranges::any_of(shards, [this](const ShardFolder& shard) {
            return target.isSameAs(shard.directory());
        });
        if (!isShard && (target.has(runfile::manifest) || target.has(runfile::unfinished))) {
            return refuse(ExitCode::OutputFailed,
                          path + " has another extraction; give a new folder");
        }
        error = target.removeLeftovers();
    }
    if (error == 0) {
        error = manifest.begin();
    }
    return error == 0 ? ExitCode::Done : outputFailed(path, error);
}

ExitCode Merger::join() {
    int error = 0;
    while (ShardFolder* const shard = nextShard()) {
        if (Interrupt::isRequested()) {
            target.remove(runfile::manifestPart);
            return ExitCode::Interrupted;
        }
        const std::uint64_t index = shard->nextIndex();
        const std::string line = shard->nextLine();
        if (!skipEqualLines(index, line)) {
            target.remove(runfile::manifestPart);
            return refuse(ExitCode::Partial, "two folders have shard " + shard->shard().text() +
                                                 " with different results for item " +
                                                 std::to_string(index) +
                                                 "; give only the right one. Nothing was joined");
        }
        if (error = add(*shard, line); error != 0) {
            break;
        }
    }
    if (error == 0) {
        error = manifest.finish();
    }
    if (error == 0) {
        error = target.remove(runfile::shard);
    }
    done = error == 0;
    return done ? ExitCode::Done : outputFailed(options.target(), error);
}

// A shard that was given twice is counted once.
ExitCode Merger::joinSummaries() {
    std::set<std::uint64_t> joined;
    for (const ShardFolder& shard : shards) {
        if (!shard.summary().has_value()) {
            totals.reset();
            hasLosses = true;
            messages.error(shard.path() + "/" + runfile::summary +
                           " can't be read, so the joined folder has no summary; extract this "
                           "shard again and merge again");
            // The target may be the folder of a shard, with the summary of that shard alone.
            const int error = target.remove(runfile::summary);
            return error == 0 ? ExitCode::Done
                              : outputFailed(options.target() + "/" + runfile::summary, error);
        }
        if (!joined.insert(shard.shard().number).second) {
            continue;
        }
        if (totals.has_value()) {
            totals->join(*shard.summary());
        } else {
            totals.emplace(*shard.summary());
        }
    }
    totals->closeJoined();
    for (const std::string& finding : totals->numbers().findings) {
        messages.error(options.target() + ": " + finding);
        hasLosses = true;
    }
    const int error = writeSummary(totals->numbers(), manifest.seal(), target);
    return error == 0 ? ExitCode::Done
                      : outputFailed(options.target() + "/" + runfile::summary, error);
}

ExitCode Merger::sync() {
    const int error = target.sync();
    return error == 0 ? ExitCode::Done : outputFailed(options.target(), error);
}

// Returns the shard whose next item has the lowest index, or null when all are at their end.
ShardFolder* Merger::nextShard() {
    ShardFolder* lowest = nullptr;
    for (ShardFolder& shard : shards) {
        if (!shard.isAtEnd() && (lowest == nullptr || shard.nextIndex() < lowest->nextIndex())) {
            lowest = &shard;
        }
    }
    return lowest;
}

// Skips the line of an item in all shards that have it next. Returns false when the lines differ.
bool Merger::skipEqualLines(std::uint64_t index, const std::string& line) {
    return std::ranges::all_of(shards, [&](ShardFolder& shard) {
        if (shard.isAtEnd() || shard.nextIndex() != index) {
            return true;
        }
        const bool isEqual = shard.nextLine() == line;
        shard.skipLine();
        return isEqual;
    });
}

// Adds a line to the joined manifest and its files to the target. Returns 0 or an errno value of
// the target.
int Merger::add(const ShardFolder& shard, const std::string& line) {
    std::optional<ManifestRow> row = readRow(line);
    if (!row.has_value()) {
        messages.error(shard.path() + "/" + runfile::manifest +
                       ": a line can't be read; extract this shard again");
        return EIO;
    }
    ++numbers.items;
    if (row->path.empty()) {
        return manifest.add(line);
    }
    int targetError = 0;
    const std::string fault = fetchAll(shard, *row, targetError);
    if (targetError != 0) {
        return targetError;
    }
    if (fault.empty()) {
        ++numbers.messages;
        return manifest.add(line);
    }
    messages.error(shard.path() + "/" + row->path + ": " + fault + "; extract this shard again");
    hasLosses = true;
    row->path.clear();
    row->sha256.clear();
    row->attachments.clear();
    row->error = "its message was lost before the shards were joined: " + fault;
    return manifest.add(lineOf(*row));
}

// Puts the files of an item in the target, the message last, so that a message that is there has
// all of its attachments. Returns what is wrong with a file, or an empty text.
std::string Merger::fetchAll(const ShardFolder& shard, const ManifestRow& row, int& targetError) {
    std::vector<ListedFile> files = filesOf(row);
    std::rotate(files.begin(), files.begin() + 1, files.end());
    for (const ListedFile& file : files) {
        const std::string fault = fetch(shard, file, targetError);
        if (targetError != 0) {
            return {};
        }
        if (!fault.empty()) {
            return file.path == row.path ? fault : "its attachment " + file.path + ": " + fault;
        }
    }
    return {};
}

// Checks a file and puts it in the target. Returns what is wrong with it, or an empty text.
std::string Merger::fetch(const ShardFolder& shard, const ListedFile& file, int& targetError) {
    switch (stateOf(file, shard.directory())) {
    case FileState::Missing:
        return "the file is missing";
    case FileState::Changed:
        return "the file has changed since it was extracted";
    case FileState::Intact:
        break;
    }
    if (!target.isSameAs(shard.directory())) {
        targetError = target.linkFrom(shard.directory(), file.path, OutputPath::of(file.path));
    }
    return {};
}

} // namespace olmkit
