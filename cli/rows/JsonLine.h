#ifndef OLMKIT_CLI_ROWS_JSONLINE_H
#define OLMKIT_CLI_ROWS_JSONLINE_H

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace olmkit {

// An object whose members keep the order in which they were set.
using JsonObject = nlohmann::ordered_json;

// The value, or null where there is none.
template <typename Value> JsonObject orNull(const std::optional<Value>& value) {
    return value.has_value() ? JsonObject(*value) : JsonObject();
}

// The text, or null for an empty one.
inline JsonObject orNull(const std::string& text) {
    return text.empty() ? JsonObject() : JsonObject(text);
}

// Appends an object as one line of UTF-8; in its texts, broken bytes become U+FFFD.
inline void appendLine(std::string& out, const JsonObject& object) {
    out += object.dump(-1, ' ', false, JsonObject::error_handler_t::replace);
    out += '\n';
}

} // namespace olmkit

#endif
