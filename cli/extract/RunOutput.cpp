#include "cli/extract/RunOutput.h"

#include <cerrno>

#include "cli/extract/RunDescription.h"
#include "cli/manifest/RunFiles.h"

namespace olmkit {

ExitCode RunOutput::open() {
    if (options.skipsSync) {
        folder.skipSync();
    }
    if (const int error = folder.open(options.directory); error != 0) {
        return refuse(ExitCode::OutputFailed, " can't be written: " + outputErrorText(error));
    }
    record = describeRun(options, session);
    const std::optional<RunRecord> unfinished = recordIn(runfile::unfinished);
    if (const ExitCode code = checkShard(unfinished); code != ExitCode::Done) {
        return code;
    }
    if (options.isResumed && unfinished.has_value()) {
        if (const std::string difference = unfinished->differenceTo(*record); !difference.empty()) {
            return refuse(
                ExitCode::Usage,
                " has an unfinished run that " + difference +
                    "; use the same archive and options, or leave out --resume to start again");
        }
    }
    return begin(unfinished);
}

// Refuses a second shard in one folder, as it would replace the manifest of the first.
ExitCode RunOutput::checkShard(const std::optional<RunRecord>& unfinished) {
    if (!options.shard.has_value()) {
        return ExitCode::Done;
    }
    const std::optional<RunRecord> there =
        unfinished.has_value() ? unfinished : recordIn(runfile::shard);
    const bool isSame = there.has_value() && there->shard() == options.shard;
    if (isSame || (!there.has_value() && !folder.has(runfile::manifest))) {
        return ExitCode::Done;
    }
    const bool hasShard = there.has_value() && there->shard().has_value();
    return refuse(ExitCode::OutputFailed,
                  (hasShard ? " has shard " + there->shard()->text()
                            : std::string(" has the manifest of another run")) +
                      "; give each shard a folder of its own");
}

ExitCode RunOutput::begin(const std::optional<RunRecord>& unfinished) {
    const bool isResumed = options.isResumed && unfinished.has_value();
    if (unfinished.has_value() && !isResumed) {
        messages.error(options.directory +
                       " has an unfinished run, which is started again; use --resume to continue "
                       "such a run");
    }
    // Also those of a run that was killed before it wrote its record.
    int error = folder.removeLeftovers();
    if (error == 0) {
        error = isResumed ? lines.resume() : lines.begin();
    }
    if (error == 0) {
        // Nobody must take the summary of an earlier run for this one's.
        error = folder.remove(runfile::summary);
        error = error == EISDIR ? 0 : error; // writing the summary will fail
    }
    if (error == 0) {
        error = folder.putFile(runfile::unfinished, record->text());
    }
    if (error == 0) {
        // Before the first message is replaced, so that a power cut leaves no run that looks done.
        error = folder.sync();
    }
    if (error != 0) {
        return refuse(ExitCode::OutputFailed, " can't be written: " + outputErrorText(error));
    }
    opened = true;
    return ExitCode::Done;
}

std::optional<RunRecord> RunOutput::recordIn(const char* name) const {
    const std::optional<std::string> text = folder.readFile(name);
    return text.has_value() ? RunRecord::read(*text) : std::nullopt;
}

ExitCode RunOutput::refuse(ExitCode code, const std::string& text) {
    messages.error(options.directory + text);
    return code;
}

int RunOutput::finish() {
    if (const int error = lines.finish(); error != 0) {
        return error;
    }
    int error = options.shard.has_value()
                    ? folder.putFile(runfile::shard, record->sealedText(lines.seal()))
                    : folder.remove(runfile::shard);
    // Without this file the run is complete, so all others are on the disk before it goes.
    error = error == 0 ? folder.sync() : error;
    error = error == 0 ? folder.remove(runfile::unfinished) : error;
    return error == 0 ? folder.syncNames() : error;
}

} // namespace olmkit
