#include "cli/manual/FishCompletion.h"

namespace olmkit {

namespace {

std::string quotedText(const std::string& text) {
    std::string out = "'";
    for (const char character : text) {
        if (character == '\'' || character == '\\') {
            out += '\\';
        }
        out += character;
    }
    return out + "'";
}

// Returns the completion of a value; `isArgument` when it belongs to no option.
std::string action(const Parameter& parameter, bool isArgument) {
    // Fish offers files unless they are excluded.
    std::string noFiles = isArgument ? " -f" : " -x";
    switch (parameter.kind) {
    case ValueKind::Archive:
        return (isArgument ? " -k" : " -r -k") + std::string(" -a '(__fish_complete_suffix .olm)'");
    case ValueKind::Folder:
        return noFiles + " -a '(__fish_complete_directories)'";
    case ValueKind::Choice:
        return noFiles + " -a " + quotedText(joined(parameter.choices, " "));
    case ValueKind::File:
        return isArgument ? " -F" : " -r -F";
    case ValueKind::Text:
        return noFiles;
    case ValueKind::None:
        break;
    }
    return {};
}

std::string optionLine(const Parameter& option, const std::string& condition) {
    std::string text = "complete -c olmkit" + condition;
    for (const std::string& name : option.names) {
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    return text + action(option, false) + " -d " + quotedText(option.description) + "\n";
}

} // namespace

std::string fishCompletion(const ProgramOutline& program) {
    std::string text = "# fish completion for olmkit\n\ncomplete -c olmkit -f\n";
    for (const Parameter& option : program.options) {
        text += optionLine(option, "");
    }
    for (const CommandOutline& command : program.commands) {
        text += "\ncomplete -c olmkit -n __fish_use_subcommand -a " + command.name + " -d " +
                quotedText(command.description) + "\n";
        const std::string condition = " -n '__fish_seen_subcommand_from " + command.name + "'";
        for (const Parameter& option : command.options) {
            text += optionLine(option, condition);
        }
        for (const Parameter& argument : command.arguments) {
            text += "complete -c olmkit" + condition + action(argument, true) + "\n";
        }
    }
    return text;
}

} // namespace olmkit
