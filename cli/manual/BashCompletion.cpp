#include "cli/manual/BashCompletion.h"

namespace olmkit {

namespace {

// Bash passes "=" and the value after it as separate words. Names of files and folders are left to
// readline when nothing here matches: it knows how the user quotes.
constexpr const char* frame = R"(# bash completion for olmkit
# shellcheck shell=bash disable=SC2207

_olmkit_words() {
    COMPREPLY=($(compgen -W "$1" -- "$2"))
}

_olmkit_folders() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$1")
}

_olmkit_archives() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -X '!*.[oO][lL][mM]' -- "$1"; compgen -d -- "$1")
}

_olmkit_value() {
    case $1 in
@VALUES@    esac
}

_olmkit_takes_value() {
    case $1 in
@TAKERS@    esac
    return 1
}

_olmkit() {
    local word option="" command="" isEnded="" count=0
    local current=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()

    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word == "=" && -n $option ]]; then
            continue
        elif [[ -n $option ]]; then
            option=""
        elif [[ -z $isEnded && $word == "--" ]]; then
            isEnded=1
        elif [[ -z $isEnded && $word == -?* ]]; then
            if _olmkit_takes_value "$command:$word"; then
                option=$word
            fi
        elif [[ -z $command ]]; then
            command=$word
        else
            ((count += 1))
        fi
    done

    if [[ -n $option ]]; then
        if [[ $current == "=" ]]; then
            current=""
        fi
        _olmkit_value "$command:$option" "$current"
    elif [[ -z $isEnded && $current == -* ]]; then
        case $command in
@OPTIONS@        esac
    elif [[ -z $command ]]; then
        _olmkit_words "@COMMANDS@" "$current"
    else
        _olmkit_value "$command:$count" "$current"
    fi
}

complete -o bashdefault -o default -F _olmkit olmkit
)";

void replace(std::string& text, const std::string& mark, const std::string& by) {
    text.replace(text.find(mark), mark.size(), by);
}

void addWord(std::string& words, const std::string& word) {
    words += (words.empty() ? "" : " ") + word;
}

// "extract:-o | extract:--output"
std::string pattern(const std::string& command, const std::vector<std::string>& names) {
    return command + ":" + joined(names, " | " + command + ":");
}

std::string valueCase(const std::string& pattern, const Parameter& parameter) {
    std::string action;
    switch (parameter.kind) {
    case ValueKind::Archive:
        action = "_olmkit_archives \"$2\"";
        break;
    case ValueKind::Folder:
        action = "_olmkit_folders \"$2\"";
        break;
    case ValueKind::Choice:
        action = "_olmkit_words \"" + joined(parameter.choices, " ") + "\" \"$2\"";
        break;
    case ValueKind::File:
    case ValueKind::Text:
    case ValueKind::None:
        return {};
    }
    return "        " + pattern + ") " + action + " ;;\n";
}

class Script {
public:
    explicit Script(const ProgramOutline& program) : program(program) {}

    std::string text() {
        addOptions("*", program.options);
        options +=
            "            '') _olmkit_words \"" + words(program.options) + "\" \"$current\" ;;\n";
        for (const CommandOutline& command : program.commands) {
            addCommand(command);
        }
        std::string script = frame;
        replace(script, "@VALUES@", values);
        replace(script, "@TAKERS@", "        " + takers + ") return 0 ;;\n");
        replace(script, "@OPTIONS@", options);
        replace(script, "@COMMANDS@", commands);
        return script;
    }

private:
    void addCommand(const CommandOutline& command) {
        addWord(commands, command.name);
        addOptions(command.name, command.options);
        options += "            " + command.name + ") _olmkit_words \"" + words(command.options) +
                   " " + words(program.options) + "\" \"$current\" ;;\n";
        for (std::size_t place = 0; place < command.arguments.size(); ++place) {
            const Parameter& argument = command.arguments[place];
            // A repeated argument is the last one.
            const std::string at = argument.isRepeated ? "*" : std::to_string(place);
            values += valueCase(command.name + ":" + at, argument);
        }
    }

    void addOptions(const std::string& command, const std::vector<Parameter>& parameters) {
        for (const Parameter& parameter : parameters) {
            const std::string names = pattern(command, parameter.names);
            values += valueCase(names, parameter);
            if (parameter.hasValue()) {
                takers += (takers.empty() ? "" : " | \\\n            ") + names;
            }
        }
    }

    static std::string words(const std::vector<Parameter>& parameters) {
        std::string text;
        for (const Parameter& parameter : parameters) {
            for (const std::string& name : parameter.names) {
                addWord(text, name);
            }
        }
        return text;
    }

    const ProgramOutline& program;
    std::string commands;
    std::string options; // cases: the options of a command
    std::string values;  // cases: the completion of a value
    std::string takers;  // a pattern: the options with a value
};

} // namespace

std::string bashCompletion(const ProgramOutline& program) {
    return Script(program).text();
}

} // namespace olmkit
