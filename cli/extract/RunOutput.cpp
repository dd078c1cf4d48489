#include "cli/extract/RunOutput.h"

#include <cerrno>

#include "cli/extract/Summary.h"

namespace olmkit {

ExitCode RunOutput::open() {
    if (const int error = folder.open(options.directory); error != 0) {
        return refuse(ExitCode::OutputFailed, " can't be written: " + outputErrorText(error));
    }
    const RunRecord record(options, session);
    const std::optional<RunRecord> unfinished = recordIn(RunRecord::unfinishedName);
    if (const ExitCode code = checkShard(unfinished); code != ExitCode::Done) {
        return code;
    }
    if (options.isResumed && unfinished.has_value()) {
        if (const std::string difference = unfinished->differenceTo(record); !difference.empty()) {
            return refuse(
                ExitCode::Usage,
                " holds a run that " + difference +
                    ", so this one can't go on with it; leave out --resume to begin anew");
        }
    }
    return begin(record, unfinished);
}

// Two shards in one folder would leave the manifest of the second alone.
ExitCode RunOutput::checkShard(const std::optional<RunRecord>& unfinished) {
    if (!options.shard.has_value()) {
        return ExitCode::Done;
    }
    const std::optional<RunRecord> there =
        unfinished.has_value() ? unfinished : recordIn(RunRecord::shardName);
    const bool isSame = there.has_value() && there->shard() == options.shard;
    if (isSame || (!there.has_value() && !folder.has(Manifest::fileName))) {
        return ExitCode::Done;
    }
    const bool hasShard = there.has_value() && there->shard().has_value();
    return refuse(ExitCode::OutputFailed,
                  (hasShard ? " holds shard " + shardTitle(*there->shard())
                            : std::string(" holds the manifest of another run")) +
                      "; give each shard a folder of its own");
}

ExitCode RunOutput::begin(const RunRecord& record, const std::optional<RunRecord>& unfinished) {
    const bool goesOn = options.isResumed && unfinished.has_value();
    if (unfinished.has_value() && !goesOn) {
        messages.error(options.directory +
                       " holds a run that was not finished; it is begun anew. --resume would have "
                       "gone on with it");
    }
    // Also those of a run that was killed ahead of its record.
    int error = folder.removeLeftovers();
    if (error == 0) {
        error = goesOn ? lines.goOn() : lines.begin();
    }
    if (error == 0) {
        // One of an earlier run is never to be taken for this one's.
        error = folder.remove(Summary::fileName);
        error = error == EISDIR ? 0 : error; // the writing will tell
    }
    if (error == 0) {
        error = folder.putFile(RunRecord::unfinishedName, record.text());
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
    if (options.shard.has_value()) {
        return folder.rename(RunRecord::unfinishedName, RunRecord::shardName);
    }
    if (const int error = folder.remove(RunRecord::shardName); error != 0) {
        return error;
    }
    return folder.remove(RunRecord::unfinishedName);
}

} // namespace olmkit
