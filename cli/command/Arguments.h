#ifndef OLMKIT_CLI_COMMAND_ARGUMENTS_H
#define OLMKIT_CLI_COMMAND_ARGUMENTS_H

#include <charconv>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "cli/command/CompletionOptions.h"
#include "cli/command/ManualOptions.h"
#include "cli/extract/ExtractOptions.h"
#include "cli/info/InfoOptions.h"
#include "cli/merge/MergeOptions.h"
#include "cli/report/ReportOptions.h"
#include "cli/rows/FilterOptions.h"
#include "cli/rows/ListOptions.h"
#include "cli/show/ShowOptions.h"
#include "cli/terminal/TerminalOptions.h"
#include "cli/verify/VerifyOptions.h"

// The arguments of each command: what they are called, what is said about them, and what they are
// read into. `options` is borrowed and filled while the command line is parsed.

namespace olmkit {

void defineInfo(CLI::App& app, InfoOptions& options);
void defineList(CLI::App& app, ListOptions& options);
void defineExtract(CLI::App& app, ExtractOptions& options);
void defineShow(CLI::App& app, ShowOptions& options);
void defineReport(CLI::App& app, ReportOptions& options);
void defineMerge(CLI::App& app, MergeOptions& options);
void defineVerify(CLI::App& app, VerifyOptions& options);
void defineCompletion(CLI::App& app, CompletionOptions& options);
void defineManual(CLI::App& app, ManualOptions& options);

// The options that every command has.
void addTerminal(CLI::App& app, TerminalOptions& options);

// The options that narrow a command down to some items.
void addFilter(CLI::App& command, FilterOptions& options);

// Names in a row, for people: "a, b and c".
std::string enumerated(std::span<const std::string_view> names);

// Decimal digits alone, nothing around them.
template <typename Number> std::optional<Number> readNumber(std::string_view text) {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end) {
        return std::nullopt;
    }
    return number;
}

// The archive that a command reads.
inline void addArchive(CLI::App& command, std::string& archive) {
    command.add_option("ARCHIVE", archive, "The OLM archive; - reads it from standard input")
        ->type_name("")
        ->required();
}

} // namespace olmkit

#endif
