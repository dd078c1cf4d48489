#include "cli/extract/Merger.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <string_view>

#include "cli/files/Sha256.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

MessagePath pathOf(std::string_view text) {
    MessagePath path;
    for (std::size_t end = text.find('/'); end != std::string_view::npos; end = text.find('/')) {
        path.folders.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    path.file = text;
    return path;
}

} // namespace

Merger::Merger(const MergeOptions& options, Messages& messages)
    : options(options), messages(messages), manifest(target) {}

ExitCode Merger::run() {
    for (const auto step : {&Merger::openSources, &Merger::compare, &Merger::findMissing,
                            &Merger::openTarget, &Merger::join, &Merger::closeBooks}) {
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

ExitCode Merger::openSources() {
    for (const std::string& path : options.directories) {
        Source& source = sources.emplace_back();
        source.path = path;
        if (const ExitCode code = openSource(source); code != ExitCode::Done) {
            return code;
        }
    }
    return ExitCode::Done;
}

ExitCode Merger::openSource(Source& source) {
    if (const int error = source.directory.openForReading(source.path); error != 0) {
        return refuse(ExitCode::Unreadable, source.path + " can't be read: " + errorText(error));
    }
    if (source.directory.has(RunRecord::unfinishedName)) {
        return refuse(ExitCode::Partial, source.path + " holds a run that was not finished; go on "
                                                       "with it by extract --resume, then merge");
    }
    if (const auto text = source.directory.readFile(RunRecord::shardName)) {
        source.record = RunRecord::read(*text);
    }
    if (!source.record.has_value() || !source.record->shard().has_value()) {
        return refuse(ExitCode::Partial,
                      source.path + " holds no shard; give the folders of extract --shard");
    }
    if (const auto text = source.directory.readFile(Summary::fileName)) {
        source.summary = Summary::read(*text);
    }
    if (const int error = source.lines.open(source.directory, Manifest::fileName); error != 0) {
        return refuse(ExitCode::Unreadable, source.path + "/" + Manifest::fileName +
                                                " can't be read: " + errorText(error));
    }
    return ExitCode::Done;
}

// Whether the shards are of one run, and no two tell of an item in different ways.
ExitCode Merger::compare() {
    const Source& first = sources.front();
    for (const Source& source : sources) {
        const std::string difference = source.record->differenceTo(*first.record);
        if (!difference.empty()) {
            return refuse(ExitCode::Partial, source.path + " " + difference + " than " +
                                                 first.path + "; they can't be joined");
        }
        if (source.record->shard()->count != first.record->shard()->count) {
            return refuse(ExitCode::Partial,
                          source.path + " is shard " + shardTitle(*source.record->shard()) +
                              ", but " + first.path + " is shard " +
                              shardTitle(*first.record->shard()) + "; they can't be joined");
        }
        if (const ExitCode code = checkLines(source); code != ExitCode::Done) {
            return code;
        }
    }
    return ExitCode::Done;
}

ExitCode Merger::checkLines(const Source& source) {
    const std::string name = source.path + "/" + Manifest::fileName;
    if (source.lines.brokenCount() > 0) {
        return refuse(ExitCode::Partial,
                      name + " is damaged: " + std::to_string(source.lines.brokenCount()) +
                          " of its lines tell of no item");
    }
    for (std::size_t place = 0; place < source.lines.count(); ++place) {
        const std::uint64_t index = source.lines.index(place);
        if (!source.record->shard()->takes(index)) {
            return refuse(ExitCode::Partial, name + " tells of item " + std::to_string(index) +
                                                 ", which is none of its shard's");
        }
    }
    return ExitCode::Done;
}

ExitCode Merger::findMissing() {
    const std::uint64_t count = sources.front().record->shard()->count;
    std::set<std::uint64_t> numbersThere;
    for (const Source& source : sources) {
        numbersThere.insert(source.record->shard()->number);
    }
    if (numbersThere.size() == count) {
        return ExitCode::Done;
    }
    std::string missing;
    for (std::uint64_t number = 1, told = 0; number <= count && told < 10; ++number) {
        if (!numbersThere.contains(number)) {
            missing += (told++ == 0 ? "" : ", ") + shardTitle({number, count});
        }
    }
    const std::uint64_t missingCount = count - numbersThere.size();
    return refuse(ExitCode::Partial, std::to_string(missingCount) +
                                         (missingCount == 1 ? " shard is" : " shards are") +
                                         " missing: " + missing);
}

ExitCode Merger::openTarget() {
    const std::string& path = options.target();
    int error = target.open(path);
    if (error == 0) {
        const bool isSource = std::ranges::any_of(
            sources, [this](const Source& source) { return target.isSameAs(source.directory); });
        if (!isSource &&
            (target.has(Manifest::fileName) || target.has(RunRecord::unfinishedName))) {
            return refuse(ExitCode::OutputFailed,
                          path + " holds another extraction; give a new folder");
        }
        error = target.removeLeftovers();
    }
    if (error == 0) {
        error = manifest.begin();
    }
    return error == 0 ? ExitCode::Done
                      : refuse(ExitCode::OutputFailed,
                               path + " can't be written: " + outputErrorText(error));
}

ExitCode Merger::join() {
    int error = 0;
    while (Source* const source = nextSource()) {
        if (Interrupt::isRequested()) {
            target.remove(Manifest::partName);
            return ExitCode::Interrupted;
        }
        const std::uint64_t index = source->lines.index(source->next);
        const std::string line = source->lines.line(source->next);
        if (!isRepeatedAsItIs(index, line)) {
            target.remove(Manifest::partName);
            return refuse(ExitCode::Partial, "item " + std::to_string(index) +
                                                 " is told of in two ways; nothing is joined");
        }
        if (error = add(*source, line); error != 0) {
            break;
        }
    }
    if (error == 0) {
        error = manifest.finish();
    }
    if (error == 0) {
        error = target.remove(RunRecord::shardName);
    }
    done = error == 0;
    return done ? ExitCode::Done
                : refuse(ExitCode::OutputFailed,
                         options.target() + " can't be written: " + outputErrorText(error));
}

// Joins the summaries, those of each shard once.
ExitCode Merger::closeBooks() {
    std::set<std::uint64_t> joined;
    for (const Source& source : sources) {
        if (!source.summary.has_value()) {
            summary.reset();
            hasLosses = true;
            messages.error(source.path + "/" + Summary::fileName +
                           " can't be read, so the joined folder has none");
            return ExitCode::Done;
        }
        if (!joined.insert(source.record->shard()->number).second) {
            continue;
        }
        if (summary.has_value()) {
            summary->join(*source.summary);
        } else {
            summary = source.summary;
        }
    }
    summary->closeJoined();
    for (const std::string& finding : summary->findings()) {
        messages.error(options.target() + ": " + finding);
        hasLosses = true;
    }
    const int error = summary->write(target);
    return error == 0
               ? ExitCode::Done
               : refuse(ExitCode::OutputFailed, options.target() + "/" + Summary::fileName +
                                                    " can't be written: " + outputErrorText(error));
}

// The one with the lowest index; null when all are at their end.
Merger::Source* Merger::nextSource() {
    Source* lowest = nullptr;
    for (Source& source : sources) {
        if (source.next < source.lines.count() &&
            (lowest == nullptr ||
             source.lines.index(source.next) < lowest->lines.index(lowest->next))) {
            lowest = &source;
        }
    }
    return lowest;
}

// Passes the line in all sources that have one of that index; false when they are not the same.
bool Merger::isRepeatedAsItIs(std::uint64_t index, const std::string& line) {
    return std::ranges::all_of(sources, [&](Source& source) {
        if (source.next == source.lines.count() || source.lines.index(source.next) != index) {
            return true;
        }
        return source.lines.line(source.next++) == line;
    });
}

int Merger::add(const Source& source, const std::string& line) {
    std::optional<ManifestRow> row = readRow(line);
    if (!row.has_value()) {
        messages.error(source.path + "/" + Manifest::fileName + ": a line can't be read");
        return EIO;
    }
    ++numbers.items;
    if (row->path.empty()) {
        return manifest.add(line);
    }
    int targetError = 0;
    const std::string fault = fetchAll(source, *row, targetError);
    if (targetError != 0 || fault.empty()) {
        numbers.messages += fault.empty() ? 1 : 0;
        return targetError != 0 ? targetError : manifest.add(line);
    }
    messages.error(source.path + "/" + row->path + ": " + fault);
    hasLosses = true;
    row->path.clear();
    row->sha256.clear();
    row->attachments.clear();
    row->error = "its message was lost before the shards were joined: " + fault;
    return manifest.add(lineOf(*row));
}

// Fetches a message, and ahead of it the files of its attachments, so that one that stands has all
// of them.
std::string Merger::fetchAll(const Source& source, const ManifestRow& row, int& targetError) {
    for (const AttachmentRow& attachment : row.attachments) {
        if (attachment.path.empty()) {
            continue;
        }
        const FileRow file = {attachment.path, attachment.size.value_or(0), attachment.sha256};
        const std::string fault = fetch(source, file, targetError);
        if (targetError != 0 || !fault.empty()) {
            return fault.empty() ? "" : "of its attachment " + attachment.path + ": " + fault;
        }
    }
    return fetch(source, {row.path, row.size, row.sha256}, targetError);
}

// Checks a file, and puts it in the target. What is wrong with it, empty when nothing is.
std::string Merger::fetch(const Source& source, const FileRow& row, int& targetError) {
    int file = -1;
    if (source.directory.openFile(row.path, file) != 0) {
        return "the file is missing";
    }
    std::uint64_t size = 0;
    const std::string sha256 = sha256OfFile(file, size);
    close(file);
    if (size != row.size || sha256 != row.sha256) {
        return "the file is not the one that the manifest tells of";
    }
    if (!target.isSameAs(source.directory)) {
        targetError = target.linkFrom(source.directory, row.path, pathOf(row.path));
    }
    return {};
}

} // namespace olmkit
