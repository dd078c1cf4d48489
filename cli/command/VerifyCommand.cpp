#include <unistd.h>

#include <cerrno>
#include <memory>

#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/files/OutputDirectory.h"
#include "cli/manifest/ManifestReader.h"
#include "cli/manifest/RunFiles.h"
#include "cli/verify/DifferenceWriter.h"
#include "cli/verify/Verifier.h"
#include "cli/verify/VerifyOptions.h"

namespace olmkit {

namespace {

constexpr const char* folderAdvice = "; use the folder that olmkit extract wrote to";

// Compares the files in a folder with the manifest there, and prints what differs. Changes nothing.
class VerifyCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        CLI::App* verify =
            program.add_subcommand("verify", "Compare extracted files with their manifest");
        verify->add_option("DIR", options.directory, "The folder that extract wrote to")
            ->type_name("")
            ->required()
            ->check(checkPath);
        verify->add_flag("--strict", options.strict,
                         "Also report files that the manifest doesn't name");
        verify->add_flag("--json", options.json, "Print one JSON object instead of text");
        verify->footer("Examples:\n"
                       "  olmkit verify messages\n"
                       "  olmkit verify messages --strict\n"
                       "  olmkit verify messages --json\n"
                       "\n"
                       "Reads DIR/manifest.jsonl, and compares the size and the SHA-256 of every "
                       "file that it\nnames. Each file that differs is one line; then the exit "
                       "code is 1.\n");
        return verify;
    }

    ExitCode run(Output& output, Messages& messages) override;

private:
    VerifyOptions options;
};

std::string openFailureText(int error) {
    return error == ENOENT ? std::string("does not exist") + folderAdvice
                           : "can't be read: " + outputErrorText(error) + "; check the path";
}

// Checks all rows. Returns the exit code of what ended the reading early, after a message.
ExitCode checkRows(int file, const std::string& name, Verifier& verifier, Messages& messages) {
    ManifestReader reader(file);
    ManifestRow row;
    auto answer = reader.next(row);
    for (; answer == ManifestReader::Answer::Row; answer = reader.next(row)) {
        verifier.check(row);
    }
    switch (answer) {
    case ManifestReader::Answer::Unreadable:
        messages.error(name + ": can't be read: " + errorText(reader.errorNumber()) +
                       "; check the disk, then try again");
        return ExitCode::Unreadable;
    case ManifestReader::Answer::Invalid:
        messages.error(name + ": line " + std::to_string(reader.lineNumber()) +
                       (reader.isCutOff() ? " is cut off" : " is not a line of a manifest") +
                       "; extract again");
        return ExitCode::NotAnArchive;
    case ManifestReader::Answer::Row:
    case ManifestReader::Answer::End:
        break;
    }
    return ExitCode::Done;
}

ExitCode VerifyCommand::run(Output& output, Messages& messages) {
    OutputDirectory directory;
    if (const int error = directory.openForReading(options.directory); error != 0) {
        messages.error(options.directory + ": can't be read: " + errorText(error) + folderAdvice);
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
    ExitCode code = checkRows(file, name, verifier, messages);
    if (code == ExitCode::Done && !verifier.checkManifest(file)) {
        messages.warn(options.directory + "/" + runfile::summary +
                      " does not exist, so lines that the manifest lost can't be noticed");
    }
    close(file);
    if (code == ExitCode::Done) {
        if (options.strict) {
            verifier.checkOthers(options.directory);
        }
        differences.finish(verifier);
        code = verifier.differenceCount() == 0 ? ExitCode::Done : ExitCode::Partial;
    }
    return output.finish(code, messages);
}

} // namespace

std::unique_ptr<Command> makeVerify() {
    return std::make_unique<VerifyCommand>();
}

} // namespace olmkit
