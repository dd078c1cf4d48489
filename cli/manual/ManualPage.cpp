#include "cli/manual/ManualPage.h"

#include <sstream>
#include <string_view>

#include "cli/terminal/ExitCode.h"

namespace olmkit {

namespace {

// Escapes text so that roff prints it unchanged.
std::string escaped(std::string_view text) {
    std::string out;
    if (!text.empty() && (text.front() == '.' || text.front() == '\'')) {
        out = "\\&";
    }
    for (const char character : text) {
        switch (character) {
        case '\\':
            out += "\\e";
            break;
        case '-':
            out += "\\-";
            break;
        case '\'':
            out += "\\(aq";
            break;
        case '`':
            out += "\\(ga";
            break;
        case '^':
            out += "\\(ha";
            break;
        case '~':
            out += "\\(ti";
            break;
        default:
            out += character;
        }
    }
    return out;
}

std::string bold(std::string_view text) {
    return "\\fB" + escaped(text) + "\\fP";
}

std::string italic(std::string_view text) {
    return "\\fI" + escaped(text) + "\\fP";
}

// Returns the name of an argument or of an option's value, or its choices.
std::string valueName(const Parameter& parameter, const std::string& name) {
    if (parameter.choices.empty()) {
        return italic(name);
    }
    std::string text;
    for (const std::string& choice : parameter.choices) {
        text += (text.empty() ? "" : "|") + bold(choice);
    }
    return text;
}

std::string parameterText(const Parameter& parameter, bool isArgument) {
    std::string text = ".TP\n";
    if (isArgument) {
        text += valueName(parameter, parameter.names.front()) + "\n";
    } else {
        std::string names;
        for (const std::string& name : parameter.names) {
            names += (names.empty() ? "" : ", ") + bold(name);
        }
        text += names + (parameter.hasValue() ? " " + valueName(parameter, parameter.value) : "") +
                "\n";
    }
    return text + escaped(parameter.description) + "\n";
}

std::string synopsis(const ProgramOutline& program, const CommandOutline& command) {
    std::string text = bold(program.name) + " " + bold(command.name);
    bool hasMore = false;
    for (const Parameter& option : command.options) {
        if (option.isRequired) {
            text += " " + bold(option.names.front()) + " " + valueName(option, option.value);
        } else {
            hasMore = true;
        }
    }
    text += hasMore ? " [" + italic("options") + "]" : "";
    for (const Parameter& argument : command.arguments) {
        const std::string name =
            valueName(argument, argument.names.front()) + (argument.isRepeated ? "..." : "");
        text += argument.isRequired ? " " + name : " [" + name + "]";
    }
    return text;
}

// Follows the layout of help: lines that begin with blanks are printed unchanged, others are
// filled.
std::string footerText(const std::string& footer) {
    std::istringstream lines(footer);
    std::string text;
    bool isExample = false;
    bool isNew = true; // a paragraph begins
    for (std::string line; std::getline(lines, line);) {
        const bool isIndented = line.starts_with("  ");
        if (isIndented != isExample) {
            text += isIndented ? ".PP\n.RS 4\n.nf\n" : ".fi\n.RE\n";
            isExample = isIndented;
            isNew = !isIndented;
        }
        if (line.empty()) {
            isNew = true;
            continue;
        }
        if (isNew && !isIndented) {
            text += ".PP\n";
        }
        isNew = false;
        text += escaped(isIndented ? std::string_view(line).substr(2) : line) + "\n";
    }
    return text + (isExample ? ".fi\n.RE\n" : "");
}

std::string commandText(const ProgramOutline& program, const CommandOutline& command) {
    std::string text = ".SS " + escaped(command.name) + "\n" + synopsis(program, command) +
                       "\n.PP\n" + escaped(command.description) + ".\n";
    for (const Parameter& argument : command.arguments) {
        text += parameterText(argument, true);
    }
    for (const Parameter& option : command.options) {
        text += parameterText(option, false);
    }
    return text + footerText(command.footer);
}

std::string exitCodes() {
    std::string text = ".SH EXIT STATUS\n";
    for (const ExitRow& row : exitRows()) {
        text += ".TP\n" + bold(std::to_string(static_cast<int>(row.code))) + "\n" +
                escaped(row.meaning) + "\n";
    }
    return text;
}

constexpr const char* environmentSection =
    ".SH ENVIRONMENT\n"
    ".TP\n\\fBNO_COLOR\\fP\n"
    "If set and not empty, text is not coloured, unless "
    "\\fB\\-\\-color always\\fP is given.\n"
    ".TP\n\\fBTERM\\fP\n"
    "On a terminal of type \\fBdumb\\fP there are neither colours "
    "nor a progress bar.\n"
    ".TP\n\\fBTMPDIR\\fP\n"
    "The folder for the temporary copy of an archive that comes through a pipe, "
    "by default \\fI/tmp\\fP.\n";

} // namespace

std::string manualPage(const ProgramOutline& program, const std::string& version) {
    std::string text =
        ".TH OLMKIT 1 \"\" \"" + escaped(program.name + " " + version) + "\" \"User Commands\"\n";
    text += ".SH NAME\n" + program.name + " \\- read OLM archives\n.SH SYNOPSIS\n";
    std::string separator;
    for (const CommandOutline& command : program.commands) {
        text += separator + synopsis(program, command) + "\n";
        separator = ".br\n";
    }
    text += ".SH DESCRIPTION\n" + escaped(program.description) +
            "\n.PP\nResults go to standard output, everything else to standard error.\n"
            ".SH OPTIONS\nThese may come before or after the command.\n";
    for (const Parameter& option : program.options) {
        text += parameterText(option, false);
    }
    text += ".SH COMMANDS\n";
    for (const CommandOutline& command : program.commands) {
        text += commandText(program, command);
    }
    return text + exitCodes() + environmentSection;
}

} // namespace olmkit
