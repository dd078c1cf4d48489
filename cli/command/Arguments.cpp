#include "cli/command/Arguments.h"

#include <algorithm>

#include "cli/manual/Outline.h"

namespace olmkit {

CLI::Option* addArchive(CLI::App& command, std::string& archive) {
    return command
        .add_option("ARCHIVE", archive, "The OLM archive; - reads it from standard input")
        ->type_name("")
        ->required()
        ->check(checkPath);
}

std::string enumerated(const std::vector<std::string>& names, const std::string& conjunction) {
    std::string text;
    for (std::size_t place = 0; place < names.size(); ++place) {
        if (place != 0) {
            text += place + 1 == names.size() ? " " + conjunction + " " : ", ";
        }
        text += names[place];
    }
    return text;
}

std::string checkPath(const std::string& text) {
    return text.empty() ? "the path is empty" : "";
}

CLI::Validator isOneOf(const std::vector<std::string>& names) {
    const auto check = [names](const std::string& text) -> std::string {
        if (std::ranges::find(names, text) != names.end()) {
            return "";
        }
        return "'" + text + "' is not a valid value; use " + enumerated(names, "or");
    };
    return {check, choiceNote(names)};
}

} // namespace olmkit
