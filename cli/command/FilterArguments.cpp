#include <algorithm>
#include <vector>

#include "cli/command/Arguments.h"
#include "cli/rows/Glob.h"
#include "cli/rows/ItemRow.h"
#include "cli/rows/Moment.h"

namespace olmkit {

namespace {

constexpr const char* group = "Which items (all that keep every rule)";

std::string checkKind(const std::string& text) {
    if (std::ranges::find(kindNames(), text) != kindNames().end()) {
        return "";
    }
    if (text == "group") {
        return "a list can't tell a group from a contact; give contact for both";
    }
    return "there is no kind '" + text + "'; the kinds are " + enumerated(kindNames());
}

std::string checkFolder(const std::string& text) {
    const std::string error = Glob(text).error();
    return error.empty() ? ""
                         : "'" + text + "' is no pattern for a folder: " + error +
                               "; give one as Local/Notes, '*/Inbox' or '**/Sent*'";
}

std::string checkDate(const std::string& text) {
    return readPeriod(text) ? ""
                            : "'" + text +
                                  "' is no date; give YYYY, YYYY-MM, YYYY-MM-DD, "
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
                      const char* description) {
    return command.add_option(name, texts, description)->allow_extra_args(false)->group(group);
}

void addDates(CLI::App& command, FilterOptions& options) {
    const auto checkOrder = [&options](const char* name) {
        if (options.since && options.until && *options.since >= *options.until) {
            throw CLI::ValidationError(name, "no date lies between --since and --until");
        }
    };
    command
        .add_option_function<std::string>(
            "--since",
            [&options, checkOrder](const std::string& text) {
                options.since = readPeriod(text).value().begin;
                checkOrder("--since");
            },
            "Only items of that date or later: a year, a month, a day, or "
            "YYYY-MM-DDThh:mm[:ss], in universal time. The date is the one of the table")
        ->type_name("DATE")
        ->check(CLI::Validator(checkDate, ""))
        ->group(group);
    command
        .add_option_function<std::string>(
            "--until",
            [&options, checkOrder](const std::string& text) {
                options.until = readPeriod(text).value().end;
                checkOrder("--until");
            },
            "Only items of that date or earlier; all of that year, month, day or minute counts")
        ->type_name("DATE")
        ->check(CLI::Validator(checkDate, ""))
        ->group(group);
}

} // namespace

std::string enumerated(std::span<const std::string_view> names) {
    std::string text;
    for (std::size_t place = 0; place < names.size(); ++place) {
        text += place == 0 ? "" : place + 1 == names.size() ? " and " : ", ";
        text += names[place];
    }
    return text;
}

void addFilter(CLI::App& command, FilterOptions& options) {
    static const std::string kindHelp = "Only items of that kind: " + enumerated(kindNames()) +
                                        ". A group counts as a contact. Several may be given, "
                                        "also with commas";
    addTexts(command, "--kind", options.kinds, kindHelp.c_str())
        ->type_name("KIND")
        ->delimiter(',')
        ->check(CLI::Validator(checkKind, ""));
    addTexts(command, "--folder", options.folders,
             "Only items in that folder, as the table shows it, or below it: * and ? stand for "
             "text within a level, ** for any levels, [a-z] for a character, \\ takes a meaning "
             "away, as in '**/\\[Mail]'. Case counts. Several may be given")
        ->type_name("GLOB")
        ->check(CLI::Validator(checkFolder, ""));
    addText(command, "--from", options.from,
            "Only items whose sender or organizer has that text in it, in any case");
    addText(command, "--subject", options.subject,
            "Only items whose subject, or display name, has that text in it, in any case");
    addDates(command, options);
}

} // namespace olmkit
