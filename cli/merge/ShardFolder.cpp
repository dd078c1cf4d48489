#include "cli/merge/ShardFolder.h"

#include "cli/manifest/RunFiles.h"
#include "cli/manifest/SummaryFile.h"

namespace olmkit {

ExitCode ShardFolder::open(Messages& messages) {
    if (const int error = folder.openForReading(folderPath); error != 0) {
        messages.error(folderPath + " can't be read: " + errorText(error));
        return ExitCode::Unreadable;
    }
    if (folder.has(runfile::unfinished)) {
        messages.error(folderPath +
                       " has an unfinished run; finish it with extract --resume, then merge");
        return ExitCode::Partial;
    }
    if (const auto text = folder.readFile(runfile::shard)) {
        ownRecord = RunRecord::read(*text);
    }
    if (!ownRecord.has_value() || !ownRecord->shard().has_value()) {
        messages.error(folderPath + " has no shard; give the folders that extract --shard wrote");
        return ExitCode::Partial;
    }
    if (const auto text = folder.readFile(runfile::summary)) {
        ownSummary = readSummary(*text);
    }
    if (const int error = lines.open(folder, runfile::manifest); error != 0) {
        messages.error(folderPath + "/" + runfile::manifest +
                       " can't be read: " + errorText(error));
        return ExitCode::Unreadable;
    }
    return checkLines(messages);
}

ExitCode ShardFolder::checkLines(Messages& messages) const {
    const std::string name = folderPath + "/" + runfile::manifest;
    if (lines.skippedCount() > 0) {
        messages.error(name + " is damaged: " + std::to_string(lines.skippedCount()) +
                       " of its lines can't be read; extract this shard again");
        return ExitCode::Partial;
    }
    for (std::size_t line = 0; line < lines.count(); ++line) {
        if (!shard().takes(lines.index(line))) {
            messages.error(name + " has item " + std::to_string(lines.index(line)) +
                           ", which is not in shard " + shard().text() +
                           "; extract this shard again");
            return ExitCode::Partial;
        }
    }
    return ExitCode::Done;
}

} // namespace olmkit
