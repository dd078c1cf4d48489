#include "cli/merge/ShardFolder.h"

#include <unistd.h>

#include <cerrno>

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
    const ExitCode code = checkLines(messages);
    return code == ExitCode::Done ? checkSeal(messages) : code;
}

// A manifest that lost lines would leave their items out.
ExitCode ShardFolder::checkSeal(Messages& messages) const {
    const std::string name = folderPath + "/" + runfile::manifest;
    const std::optional<ManifestSeal>& expected = ownRecord->seal();
    if (!expected.has_value()) {
        messages.error(folderPath + "/" + runfile::shard +
                       " does not describe the manifest; extract this shard again");
        return ExitCode::Partial;
    }
    int file = -1;
    if (const int error = folder.openFile(runfile::manifest, file); error != 0) {
        messages.error(name + " can't be read: " + errorText(error));
        return ExitCode::Unreadable;
    }
    const std::optional<ManifestSeal> found = sealOfFile(file);
    const int error = errno;
    close(file);
    if (!found.has_value()) {
        messages.error(name + " can't be read: " + errorText(error));
        return ExitCode::Unreadable;
    }
    if (*found != *expected) {
        messages.error(name + " has changed since it was written: it has " +
                       std::to_string(found->lines) + " of " + std::to_string(expected->lines) +
                       " lines or other contents; extract this shard again");
        return ExitCode::Partial;
    }
    return ExitCode::Done;
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
