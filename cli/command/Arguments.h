#ifndef OLMKIT_CLI_COMMAND_ARGUMENTS_H
#define OLMKIT_CLI_COMMAND_ARGUMENTS_H

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

// What the definitions of several commands' arguments share. Values to parse into are borrowed, and
// filled while the command line is parsed. A check returns what is wrong with a text, or nothing.

namespace olmkit {

// Adds the archive that a command reads.
CLI::Option* addArchive(CLI::App& command, std::string& archive);

// Returns names as a list in a sentence: "a, b and c", with `conjunction` before the last one.
std::string enumerated(const std::vector<std::string>& names, const std::string& conjunction);

// Checks the path of a file or folder: any that is not empty.
std::string checkPath(const std::string& text);

// A check that accepts only `names`, which help and completions then list.
CLI::Validator isOneOf(const std::vector<std::string>& names);

// The texts that an option takes, in the order in which help lists them, each with its meaning.
template <typename Value> using Choices = std::vector<std::pair<std::string, Value>>;

// Adds an option or argument that takes one of a few texts.
template <typename Value>
CLI::Option* addChoice(CLI::App& command, const std::string& name, Value& value,
                       const Choices<Value>& choices, const std::string& description) {
    std::vector<std::string> texts;
    for (const auto& [text, meaning] : choices) {
        texts.push_back(text);
    }
    const auto choose = [&value, choices](const std::string& given) {
        for (const auto& [text, meaning] : choices) {
            if (text == given) {
                value = meaning;
            }
        }
    };
    return command.add_option_function<std::string>(name, choose, description)
        ->check(isOneOf(texts));
}

// Reads a text of decimal digits only. Returns nothing for any other text, and for a number that is
// too large.
template <typename Number> std::optional<Number> readNumber(std::string_view text) {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end) {
        return std::nullopt;
    }
    return number;
}

} // namespace olmkit

#endif
