#include "cli/command/UsageText.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "cli/command/Arguments.h"
#include "cli/command/Suggestion.h"
#include "cli/manual/Outline.h"

namespace olmkit {

namespace {

// The library's errors name an option within an English sentence and have no other reference to it.
// So each text here is made from the definitions and from what was parsed.
class UsageErrorText {
public:
    UsageErrorText(const CLI::ParseError& error, const CLI::App& program)
        : error(error), program(program),
          command(program.get_subcommands().empty() ? nullptr : program.get_subcommands().front()) {
        addOptions(program);
        if (command != nullptr) {
            addOptions(*command);
        }
    }

    std::string text() const {
        switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
        case CLI::ExitCodes::RequiredError:
            return mistyped(missingArgument());
        case CLI::ExitCodes::ExtrasError:
            return mistyped(unexpectedArgument());
        case CLI::ExitCodes::ArgumentMismatch:
        case CLI::ExitCodes::ConversionError:
            return wrongUse();
        case CLI::ExitCodes::ExcludesError:
            return exclusion();
        default:
            return error.what(); // the text of a check of ours, after the argument's name
        }
    }

    std::string helpCommand() const {
        return program.get_name() + (command != nullptr ? " " + command->get_name() : "") +
               " --help";
    }

private:
    void addOptions(const CLI::App& app) {
        const std::vector<const CLI::Option*> own = app.get_options();
        options.insert(options.end(), own.begin(), own.end());
    }

    // A mistyped option or command is left over. It is reported rather than what is missing or
    // unexpected because of it, which is `otherwise`.
    std::string mistyped(const std::string& otherwise) const {
        const std::vector<std::string> left = program.remaining(true);
        const auto option = std::ranges::find_if(
            left, [](const std::string& text) { return text.size() > 1 && text.front() == '-'; });
        if (option != left.end()) {
            return unknownOption(option->substr(0, option->find('=')));
        }
        return command == nullptr && !left.empty() ? unknownCommand(left.front()) : otherwise;
    }

    std::string unexpectedArgument() const {
        const std::vector<std::string> left = program.remaining(true);
        return left.empty() ? error.what() : "unexpected argument '" + left.front() + "'";
    }

    std::string missingArgument() const {
        if (command == nullptr) {
            return "no command was given; the commands are " + commandNames();
        }
        const auto missing = std::ranges::find_if(options, [](const CLI::Option* option) {
            return option->get_required() && option->count() == 0;
        });
        return missing == options.end() ? error.what() : usage(**missing) + " is missing";
    }

    // An option without its value, with one too many, or given too often.
    std::string wrongUse() const {
        const CLI::Option* option = namedOption();
        if (option == nullptr) {
            return error.what();
        }
        if (option->get_items_expected_max() == 0) {
            return option->get_name() + " takes no value";
        }
        if (option->count() > 1 && option->get_expected_max() == 1) {
            return option->get_name() + " may be given only once";
        }
        return option->get_name() + " requires a value: " + usage(*option);
    }

    std::string exclusion() const {
        const auto isGiven = [](const CLI::Option* option) { return option->count() > 0; };
        for (const CLI::Option* option : options) {
            const std::set<CLI::Option*> others = option->get_excludes();
            const auto other = std::ranges::find_if(others, isGiven);
            if (isGiven(option) && other != others.end()) {
                return option->get_name() + " and " + (*other)->get_name() +
                       " can't be used together";
            }
        }
        return error.what();
    }

    // The option that the library's text names first. Where one name is the start of another, the
    // longer one is meant.
    const CLI::Option* namedOption() const {
        const std::string text = error.what();
        const CLI::Option* named = nullptr;
        std::size_t first = std::string::npos;
        for (const CLI::Option* option : options) {
            const std::size_t place = text.find(option->get_name());
            const bool isLonger =
                named != nullptr && option->get_name().size() > named->get_name().size();
            if (place < first || (place == first && isLonger)) {
                first = place;
                named = option;
            }
        }
        return named;
    }

    std::string unknownOption(const std::string& name) const {
        std::vector<std::string> names;
        for (const CLI::Option* option : options) {
            for (const std::string& known : option->get_lnames()) {
                names.push_back("--" + known);
            }
        }
        return "unknown option '" + name + "'" + didYouMean(nearestName(name, names));
    }

    std::string unknownCommand(const std::string& name) const {
        std::vector<std::string> names;
        for (const CLI::App* known : program.get_subcommands(nullptr)) {
            names.push_back(known->get_name());
        }
        const std::string nearest = nearestName(name, names);
        return "unknown command '" + name + "'" +
               (nearest.empty() ? "; the commands are " + commandNames() : didYouMean(nearest));
    }

    static std::string didYouMean(const std::string& name) {
        return name.empty() ? "" : "; did you mean '" + name + "'?";
    }

    std::string commandNames() const {
        std::vector<std::string> names;
        for (const CLI::App* known : program.get_subcommands(nullptr)) {
            names.push_back(known->get_name());
        }
        return enumerated(names, "and");
    }

    // An argument as help writes it: "ARCHIVE", "--format table|csv|jsonl".
    static std::string usage(const CLI::Option& option) {
        const std::string value = valueText(parameterOf(option));
        return option.get_name() + (value.empty() ? "" : " " + value);
    }

    const CLI::ParseError& error;
    const CLI::App& program;
    const CLI::App* command; // null when none was named
    std::vector<const CLI::Option*> options;
};

} // namespace

std::string usageText(const CLI::ParseError& error, const CLI::App& program) {
    const UsageErrorText usage(error, program);
    const std::string text = usage.text();
    return text + (text.ends_with('?') ? " See " : "; see ") + usage.helpCommand();
}

} // namespace olmkit
