#include <memory>
#include <string>
#include <vector>

#include "cli/command/Arguments.h"
#include "cli/command/Command.h"
#include "cli/rows/JsonLine.h"
#include "cli/terminal/Text.h"
#include "host/check/FileCheck.h"

namespace olmkit {

namespace {

// Checks message files against the rules of their formats, and prints what breaks one.
class CheckCommand : public Command {
public:
    CLI::App* define(CLI::App& program) override {
        CLI::App* check = program.add_subcommand(
            "check", "Check message files against the rules of their formats");
        check->add_option("FILE", files, "The message files (.msg)")
            ->type_name("")
            ->required()
            ->check(checkPath);
        check->add_flag("--container", isContainerOnly,
                        "Check only the compound file, whatever is in it");
        check->add_flag("--json", isJson, "Print one JSON object a line for each file");
        check->footer("Examples:\n"
                      "  olmkit check message.msg\n"
                      "  find messages -name '*.msg' -exec olmkit check {} +\n"
                      "  olmkit check --json *.msg | jq -r 'select(.errors > 0).file'\n"
                      "\n"
                      "The container is checked against MS-CFB, the message in it against "
                      "MS-OXMSG. An error\nbreaks the format, and the exit code is 1. Readers "
                      "differ about a warning; advice is\nprinted with --verbose.\n");
        return check;
    }

    ExitCode run(Output& output, Messages& messages) override;

private:
    void print(const std::string& file, const olmhost::CheckResult& result, bool hasAdvice,
               std::string& text) const;

    std::vector<std::string> files;
    bool isContainerOnly = false;
    bool isJson = false;
};

JsonObject objectOf(const std::string& file, const olmhost::CheckResult& result) {
    JsonObject object;
    object["file"] = file;
    object["good"] = result.isGood();
    object["errors"] = result.errors;
    object["warnings"] = result.warnings;
    object["advice"] = result.advice;
    object["size"] = result.fileSize;
    object["storages"] = result.storages;
    object["streams"] = result.streams;
    object["recipients"] = result.recipients;
    object["attachments"] = result.attachments;
    object["embedded_messages"] = result.embeddedMessages;
    object["properties"] = result.properties;
    object["named_properties"] = result.namedProperties;
    object["findings"] = JsonObject::array();
    for (const olmhost::Finding& finding : result.findings) {
        object["findings"].push_back({{"severity", olmhost::severityName(finding.severity)},
                                      {"code", olmhost::findingName(finding.code)},
                                      {"rule", olmhost::findingRule(finding.code)},
                                      {"place", finding.place},
                                      {"text", finding.text}});
    }
    return object;
}

// Returns a line for a finding, such as
// "a.msg: error: sector 12: no chain reaches it (sector-orphan, MS-CFB 2.3)".
std::string lineOf(const std::string& file, const olmhost::Finding& finding) {
    return file + ": " + olmhost::severityName(finding.severity) + ": " + finding.place + ": " +
           finding.text + " (" + olmhost::findingName(finding.code) + ", " +
           olmhost::findingRule(finding.code) + ")";
}

void CheckCommand::print(const std::string& file, const olmhost::CheckResult& result,
                         bool hasAdvice, std::string& text) const {
    if (isJson) {
        appendLine(text, objectOf(file, result));
        return;
    }
    for (const olmhost::Finding& finding : result.findings) {
        if (hasAdvice || finding.severity != olmhost::Severity::Advice) {
            appendPrintable(text, lineOf(file, finding));
            text += '\n';
        }
    }
    const std::uint64_t all = result.errors + result.warnings + result.advice;
    if (const std::uint64_t more = all - result.findings.size(); more > 0) {
        appendPrintable(text, file);
        text.append(": ").append(std::to_string(more)).append(" more findings\n");
    }
}

ExitCode CheckCommand::run(Output& output, Messages& messages) {
    output.endProcessWhenClosed();
    olmhost::CheckOptions options;
    options.kind = isContainerOnly ? olmhost::FileKind::CompoundFile : olmhost::FileKind::Message;
    ExitCode code = ExitCode::Done;
    std::uint64_t goodFiles = 0;
    for (const std::string& file : files) {
        const olmhost::CheckResult result = olmhost::checkFile(file, options);
        if (result.errorNumber != 0) {
            messages.error(file + ": can't be read: " + errorText(result.errorNumber) +
                           "; check the path, then try again");
            code = ExitCode::Unreadable;
            continue;
        }
        goodFiles += result.isGood() ? 1 : 0;
        if (!result.isGood() && code == ExitCode::Done) {
            code = ExitCode::Partial;
        }
        print(file, result, messages.isVerbose(), output.buffer());
        output.endRecord();
    }
    if (!isJson && !messages.isQuiet()) {
        output.buffer() += "no errors in " + std::to_string(goodFiles) + " of " +
                           std::to_string(files.size()) + (files.size() == 1 ? " file" : " files") +
                           '\n';
    }
    return output.finish(code, messages);
}

} // namespace

std::unique_ptr<Command> makeCheck() {
    return std::make_unique<CheckCommand>();
}

} // namespace olmkit
