#ifndef OLMKIT_CLI_ROWS_JSONLINE_H
#define OLMKIT_CLI_ROWS_JSONLINE_H

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "cli/terminal/Text.h"

namespace olmkit {

// An object whose members keep the order in which they were set.
using JsonObject = nlohmann::ordered_json;

// Returns the value, or null for std::nullopt.
template <typename Value> JsonObject orNull(const std::optional<Value>& value) {
    return value.has_value() ? JsonObject(*value) : JsonObject();
}

// Returns the text, or null for an empty one.
inline JsonObject orNull(const std::string& text) {
    return text.empty() ? JsonObject() : JsonObject(text);
}

// Returns a value as UTF-8, on one line or with `indent` blanks per level. Invalid bytes in its
// texts become U+FFFD.
inline std::string jsonText(const JsonObject& value, int indent = -1) {
    return value.dump(indent, ' ', false, JsonObject::error_handler_t::replace);
}

// Appends a value for standard output, which may be a terminal: as jsonText(), with what acts on a
// terminal escaped, see appendEscaped(), and a line end.
inline void appendShown(std::string& out, const JsonObject& value, int indent = -1) {
    appendEscaped(out, jsonText(value, indent));
    out += '\n';
}

// Appends a value as one line of a file.
inline void appendLine(std::string& out, const JsonObject& value) {
    out += jsonText(value);
    out += '\n';
}

} // namespace olmkit

#endif
