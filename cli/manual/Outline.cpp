#include "cli/manual/Outline.h"

#include <algorithm>
#include <string_view>

namespace olmkit {

namespace {

// The library appends the note on a check to the value's name: "FORMAT:{table,csv}".
void readType(const std::string& type, Parameter& parameter) {
    const std::size_t open = type.find(":{");
    parameter.value = type.substr(0, open);
    if (open == std::string::npos) {
        return;
    }
    std::size_t place = open + 2;
    const std::size_t close = std::min(type.find('}', place), type.size());
    while (place < close) {
        const std::size_t end = std::min(type.find(',', place), close);
        parameter.choices.push_back(type.substr(place, end - place));
        place = end + 1;
    }
}

ValueKind valueKindOf(const Parameter& parameter) {
    if (!parameter.choices.empty()) {
        return ValueKind::Choice;
    }
    const auto isCalled = [&parameter](std::string_view word) {
        return parameter.value.starts_with(word) || parameter.names.front().starts_with(word);
    };
    if (isCalled("ARCHIVE")) {
        return ValueKind::Archive;
    }
    if (isCalled("DIR")) {
        return ValueKind::Folder;
    }
    return isCalled("FILE") ? ValueKind::File : ValueKind::Text;
}

void addParameters(const CLI::App& app, std::vector<Parameter>& options,
                   std::vector<Parameter>& arguments) {
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_group().empty()) {
            (option->get_positional() ? arguments : options).push_back(parameterOf(*option));
        }
    }
}

} // namespace

Parameter parameterOf(const CLI::Option& option) {
    Parameter parameter;
    if (option.get_positional()) {
        parameter.names.push_back(option.get_name(true, false));
    } else {
        for (const std::string& name : option.get_snames()) {
            parameter.names.push_back("-" + name);
        }
        for (const std::string& name : option.get_lnames()) {
            parameter.names.push_back("--" + name);
        }
    }
    parameter.description = option.get_description();
    parameter.isRequired = option.get_required();
    parameter.isRepeated = option.get_expected_max() > 1;
    if (option.get_items_expected_max() > 0) {
        readType(option.get_type_name(), parameter);
        parameter.kind = valueKindOf(parameter);
    }
    return parameter;
}

std::string choiceNote(const std::vector<std::string>& names) {
    return "{" + joined(names, ",") + "}";
}

std::string valueText(const Parameter& parameter) {
    return parameter.choices.empty() ? parameter.value : joined(parameter.choices, "|");
}

std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
    std::string text;
    for (const std::string& next : texts) {
        text += (text.empty() ? "" : separator) + next;
    }
    return text;
}

ProgramOutline outlineOf(const CLI::App& app) {
    ProgramOutline program;
    program.name = app.get_name();
    program.description = app.get_description();
    program.footer = app.get_footer();
    std::vector<Parameter> none;
    addParameters(app, program.options, none);
    for (const CLI::App* command : app.get_subcommands({})) {
        if (command->get_group().empty()) {
            continue;
        }
        CommandOutline outline;
        outline.name = command->get_name();
        outline.description = command->get_description();
        outline.footer = command->get_footer();
        addParameters(*command, outline.options, outline.arguments);
        program.commands.push_back(std::move(outline));
    }
    return program;
}

} // namespace olmkit
