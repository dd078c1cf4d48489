#ifndef OLMKIT_CLI_MANUAL_OUTLINE_H
#define OLMKIT_CLI_MANUAL_OUTLINE_H

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace olmkit {

// The kind of an argument, or of an option's value.
enum class ValueKind {
    None, // an option without a value
    Archive,
    Folder,
    File,
    Choice, // one of a few texts
    Text,
};

// An option or an argument.
struct Parameter {
    std::vector<std::string> names; // short ones first, with dashes; an argument has one, without
    std::string value;              // the value's name in help; empty for none
    ValueKind kind = ValueKind::None;
    std::vector<std::string> choices;
    std::string description;
    bool isRequired = false;
    bool isRepeated = false;

    bool hasValue() const { return kind != ValueKind::None; }
};

struct CommandOutline {
    std::string name;
    std::string description;
    std::string footer;
    std::vector<Parameter> options; // the command's own, and --help
    std::vector<Parameter> arguments;
};

// The definitions of commands and options in a plain form, from which completions and the manual
// page are made.
struct ProgramOutline {
    std::string name;
    std::string description;
    std::string footer;
    std::vector<Parameter> options; // those of every command, valid anywhere
    std::vector<CommandOutline> commands;
};

Parameter parameterOf(const CLI::Option& option);

// Returns the note on a check that accepts only `names`; parameterOf() reads the choices from it.
std::string choiceNote(const std::vector<std::string>& names);

// Returns the value as help writes it: its name, or the choices with "|" between them.
std::string valueText(const Parameter& parameter);

// Returns the texts with `separator` between them.
std::string joined(const std::vector<std::string>& texts, const std::string& separator);

// Returns the outline of a program. What help doesn't show is left out.
ProgramOutline outlineOf(const CLI::App& app);

} // namespace olmkit

#endif
