#include "cli/command/VerifyCommand.h"

#include <unistd.h>

#include <cerrno>

#include "cli/files/OutputDirectory.h"
#include "cli/manifest/ManifestReader.h"
#include "cli/manifest/RunFiles.h"
#include "cli/terminal/Interrupt.h"
#include "cli/verify/DifferenceWriter.h"
#include "cli/verify/Verifier.h"

namespace olmkit {

namespace {

std::string openFailureText(int error) {
    if (error == ENOENT) {
        return "there is none; give the folder that olmkit extract has written to";
    }
    return "it can't be read: " + outputErrorText(error) + "; check what stands there";
}

// Checks all rows. What ends the reading early is told.
ExitCode checkRows(int file, const std::string& name, Verifier& verifier, Messages& messages) {
    ManifestReader reader(file);
    ManifestRow row;
    auto answer = reader.next(row);
    for (; answer == ManifestReader::Answer::Row; answer = reader.next(row)) {
        verifier.check(row);
    }
    const std::string line = "line " + std::to_string(reader.lineNumber());
    switch (answer) {
    case ManifestReader::Answer::Unreadable:
        messages.error(name + ": it can't be read: " + errorText(reader.errorNumber()) +
                       "; check the disk, then try again");
        return ExitCode::Unreadable;
    case ManifestReader::Answer::Invalid:
        messages.error(name + ": " + line +
                       (reader.isCutOff() ? " is cut off" : " is no line of a manifest") +
                       "; extract again");
        return ExitCode::NotAnArchive;
    case ManifestReader::Answer::Row:
    case ManifestReader::Answer::End:
        break;
    }
    return ExitCode::Done;
}

} // namespace

ExitCode runVerify(const VerifyOptions& options, Output& output, Messages& messages) {
    Interrupt::endAtOnce();
    OutputDirectory directory;
    if (const int error = directory.openForReading(options.directory); error != 0) {
        messages.error(options.directory + " can't be read: " + errorText(error) +
                       "; give the folder that olmkit extract has written to");
        return ExitCode::Unreadable;
    }
    const std::string name = options.directory + "/" + runfile::manifest;
    int file = -1;
    if (const int error = directory.openFile(runfile::manifest, file); error != 0) {
        messages.error(name + ": " + openFailureText(error));
        return ExitCode::Unreadable;
    }

    DifferenceWriter differences(output, options.json);
    Verifier verifier(directory, options.strict,
                      [&](const Difference& difference) { differences.add(difference); });
    const ExitCode code = checkRows(file, name, verifier, messages);
    close(file);
    if (code == ExitCode::Done) {
        if (options.strict) {
            verifier.checkOthers(options.directory);
        }
        differences.finish(verifier);
    }
    output.flush();
    if (output.failed() && !output.isClosed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    if (code != ExitCode::Done) {
        return code;
    }
    return verifier.differenceCount() == 0 ? ExitCode::Done : ExitCode::Partial;
}

} // namespace olmkit
