#include "cli/extract/ManifestRow.h"

#include <charconv>
#include <system_error>

#include "cli/rows/JsonLine.h"

namespace olmkit {

namespace {

template <typename Number> JsonObject orNull(const std::optional<Number>& value) {
    return value.has_value() ? JsonObject(*value) : JsonObject();
}

JsonObject orNull(const std::string& text) {
    return text.empty() ? JsonObject() : JsonObject(text);
}

template <typename Value> std::optional<Value> valueOf(const JsonObject& object, const char* key) {
    const JsonObject& value = object.at(key);
    return value.is_null() ? std::nullopt : std::optional(value.get<Value>());
}

} // namespace

std::string lineOf(const ManifestRow& row) {
    JsonObject object;
    object["index"] = orNull(row.index);
    object["entry"] = orNull(row.entry);
    object["item"] = orNull(row.item);
    object["path"] = orNull(row.path);
    object["size"] = row.path.empty() ? JsonObject() : JsonObject(row.size);
    object["sha256"] = orNull(row.sha256);
    object["result"] = row.result;
    object["status"] = row.status;
    object["error"] = orNull(row.error);
    object["warnings"] = row.warnings;
    std::string line;
    appendLine(line, object);
    return line;
}

std::optional<ManifestRow> readRow(std::string_view line) {
    try {
        const JsonObject object = JsonObject::parse(line);
        ManifestRow row;
        row.index = valueOf<std::uint64_t>(object, "index");
        row.entry = valueOf<std::uint32_t>(object, "entry");
        row.item = valueOf<std::uint32_t>(object, "item");
        row.path = valueOf<std::string>(object, "path").value_or("");
        row.size = valueOf<std::uint64_t>(object, "size").value_or(0);
        row.sha256 = valueOf<std::string>(object, "sha256").value_or("");
        row.result = object.at("result").get<std::int32_t>();
        row.status = object.at("status").get<std::uint16_t>();
        row.error = valueOf<std::string>(object, "error").value_or("");
        row.warnings = object.at("warnings").get<std::vector<std::string>>();
        return row;
    } catch (const JsonObject::exception&) {
        return std::nullopt;
    }
}

std::optional<std::uint64_t> indexOf(std::string_view line) {
    constexpr std::string_view start = "{\"index\":";
    if (!line.starts_with(start) || !line.ends_with("}\n")) {
        return std::nullopt;
    }
    line.remove_prefix(start.size());
    std::uint64_t index = 0;
    const auto read = std::from_chars(line.data(), line.data() + line.size(), index);
    if (read.ec != std::errc() || *read.ptr != ',') {
        return std::nullopt;
    }
    return index;
}

} // namespace olmkit
