#include "cli/manual/ZshCompletion.h"

namespace olmkit {

namespace {

constexpr const char* head = R"(#compdef olmkit
# zsh completion for olmkit

_olmkit() {
    local curcontext="$curcontext" context state state_descr line
    typeset -A opt_args
    local -a commands shared
)";

constexpr const char* middle = R"(    _arguments -C "${shared[@]}" \
        '1:command:->command' '*::argument:->argument' && return 0
    case $state in
    command)
        _describe -t commands command commands
        ;;
    argument)
        curcontext="${curcontext%:*}-$words[1]:"
        case $words[1] in
)";

constexpr const char* foot = R"(        esac
        ;;
    esac
}

if [[ $funcstack[1] == _olmkit ]]; then
    _olmkit "$@"
else
    compdef _olmkit olmkit
fi
)";

// Returns text for single quotes, with a backslash before each character in `special`.
std::string quoted(const std::string& text, std::string_view special) {
    std::string out;
    for (const char character : text) {
        if (character == '\'') {
            out += "'\\''";
            continue;
        }
        if (character == '\\' || special.find(character) != std::string_view::npos) {
            out += '\\';
        }
        out += character;
    }
    return out;
}

std::string action(const Parameter& parameter) {
    switch (parameter.kind) {
    case ValueKind::Archive:
        return "_files -g \"*.(#i)olm(-.)\"";
    case ValueKind::Folder:
        return "_files -/";
    case ValueKind::File:
        return "_files";
    case ValueKind::Choice:
        return "(" + joined(parameter.choices, " ") + ")";
    case ValueKind::Text:
    case ValueKind::None:
        break;
    }
    return " ";
}

// Returns one line for each name of an option; a long name also takes its value after "=".
std::string optionSpecs(const Parameter& option, const std::string& margin) {
    const std::string others = "(" + joined(option.names, " ") + ")";
    std::string text;
    for (const std::string& name : option.names) {
        const bool isLong = name.starts_with("--");
        text.append(margin).append("'");
        text.append(option.isRepeated ? "*" : others).append(name);
        text += option.hasValue() ? (isLong ? "=" : "+") : "";
        text += "[" + quoted(option.description, "[]:") + "]";
        if (option.hasValue()) {
            text += ":" + quoted(option.value, ":") + ":" + quoted(action(option), "");
        }
        text += "'";
    }
    return text;
}

std::string commandCase(const CommandOutline& command) {
    const std::string margin = " \\\n                ";
    std::string text = "        " + command.name + ")\n            _arguments \"${shared[@]}\"";
    for (const Parameter& option : command.options) {
        text += optionSpecs(option, margin);
    }
    for (std::size_t place = 0; place < command.arguments.size(); ++place) {
        const Parameter& argument = command.arguments[place];
        const std::string at = argument.isRepeated ? "*" : std::to_string(place + 1);
        text.append(margin).append("'").append(at);
        text +=
            ":" + quoted(argument.names.front(), ":") + ":" + quoted(action(argument), "") + "'";
    }
    return text + "\n            ;;\n";
}

} // namespace

std::string zshCompletion(const ProgramOutline& program) {
    std::string text = head;
    text += "    commands=(\n";
    for (const CommandOutline& command : program.commands) {
        text += "        '" + command.name + ":" + quoted(command.description, ":") + "'\n";
    }
    text += "    )\n    shared=(";
    for (const Parameter& option : program.options) {
        text += optionSpecs(option, "\n        ");
    }
    text += "\n    )\n";
    text += middle;
    for (const CommandOutline& command : program.commands) {
        text += commandCase(command);
    }
    return text + foot;
}

} // namespace olmkit
