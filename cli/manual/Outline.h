#ifndef OLMKIT_CLI_MANUAL_OUTLINE_H
#define OLMKIT_CLI_MANUAL_OUTLINE_H

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace olmkit {

// What stands behind an option, or in the place of an argument.
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
    std::string value;              // what help calls the value; empty for none
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
    std::vector<Parameter> options; // its own, and help
    std::vector<Parameter> arguments;
};

// The definitions of commands and options in a plain form: completions and the manual page are made
// of it.
struct ProgramOutline {
    std::string name;
    std::string description;
    std::string footer;
    std::vector<Parameter> options; // of the program, to be given anywhere
    std::vector<CommandOutline> commands;
};

Parameter parameterOf(const CLI::Option& option);

// The texts with `separator` between them.
std::string joined(const std::vector<std::string>& texts, const std::string& separator);

// What is hidden in help is left out.
ProgramOutline outlineOf(const CLI::App& app);

} // namespace olmkit

#endif
