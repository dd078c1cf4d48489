#include "cli/command/FilterArguments.h"

#include <algorithm>
#include <vector>

#include "cli/command/Arguments.h"
#include "cli/rows/Glob.h"
#include "cli/rows/ItemRow.h"
#include "cli/rows/Moment.h"

namespace olmkit {

namespace {

constexpr const char* group = "Filters (an item must match each of them)";

std::string kindList() {
    return enumerated({kindNames().begin(), kindNames().end()}, "and");
}

std::string checkKind(const std::string& text) {
    if (std::ranges::find(kindNames(), text) != kindNames().end()) {
        return "";
    }
    if (text == "group") {
        return "groups are listed as contacts; use contact for both";
    }
    return "there is no kind '" + text + "'; the kinds are " + kindList();
}

std::string checkFolder(const std::string& text) {
    const std::string error = Glob(text).error();
    return error.empty() ? ""
                         : "'" + text + "' is not a folder pattern: " + error +
                               "; use a pattern such as Local/Notes, '*/Inbox' or '**/Sent*'";
}

std::string checkDate(const std::string& text) {
    return readPeriod(text) ? ""
                            : "'" + text +
                                  "' is not a date; use YYYY, YYYY-MM, YYYY-MM-DD, "
                                  "YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss";
}

CLI::Option* addText(CLI::App& command, const char* name, std::optional<std::string>& text,
                     const char* description) {
    return command
        .add_option_function<std::string>(
            name, [&text](const std::string& given) { text = given; }, description)
        ->type_name("TEXT")
        ->group(group);
}

CLI::Option* addTexts(CLI::App& command, const char* name, std::vector<std::string>& texts,
                      const std::string& description) {
    return command.add_option(name, texts, description)->allow_extra_args(false)->group(group);
}

void addDates(CLI::App& command, FilterOptions& options) {
    const auto checkOrder = [&options] {
        if (options.since && options.until && *options.since >= *options.until) {
            throw CLI::ValidationError("--since is later than --until, so no item can match");
        }
    };
    command
        .add_option_function<std::string>(
            "--since",
            [&options, checkOrder](const std::string& text) {
                options.since = readPeriod(text).value().begin;
                checkOrder();
            },
            "Only items of this date or later: a year, month, day or YYYY-MM-DDThh:mm[:ss], in "
            "UTC. The date is the one that the table shows")
        ->type_name("DATE")
        ->check(checkDate)
        ->group(group);
    command
        .add_option_function<std::string>(
            "--until",
            [&options, checkOrder](const std::string& text) {
                options.until = readPeriod(text).value().end;
                checkOrder();
            },
            "Only items of this date or earlier; the whole year, month, day or minute counts")
        ->type_name("DATE")
        ->check(checkDate)
        ->group(group);
}

} // namespace

void addFilter(CLI::App& command, FilterOptions& options) {
    addTexts(command, "--kind", options.kinds,
             "Only items of this kind: " + kindList() +
                 ". A group counts as a contact. May be repeated, or list several kinds with "
                 "commas between them")
        ->type_name("KIND")
        ->delimiter(',')
        ->check(checkKind);
    addTexts(command, "--folder", options.folders,
             "Only items in this folder, as the table shows it, or below it: * and ? match within "
             "a level, ** matches any number of levels, [a-z] matches a character, \\ escapes "
             "one, as in '**/\\[Mail]'. Case matters. May be repeated")
        ->type_name("GLOB")
        ->check(checkFolder);
    addText(command, "--from", options.from,
            "Only items whose sender or organizer contains this text, in any case");
    addText(command, "--subject", options.subject,
            "Only items whose subject or display name contains this text, in any case");
    addDates(command, options);
}

} // namespace olmkit
