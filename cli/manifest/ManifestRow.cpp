#include "cli/manifest/ManifestRow.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

#include "cli/rows/JsonLine.h"

namespace olmkit {

namespace {

JsonObject objectOf(const AttachmentRow& row) {
    JsonObject object;
    object["name"] = orNull(row.name);
    object["url"] = orNull(row.url);
    object["declared_size"] = orNull(row.declaredSize);
    object["path"] = orNull(row.path);
    object["size"] = orNull(row.size);
    object["sha256"] = orNull(row.sha256);
    object["error"] = orNull(row.error);
    return object;
}

// Thrown for a line that is not a row.
class NoRow {};

void require(bool holds) {
    if (!holds) {
        throw NoRow();
    }
}

const JsonObject& valueAt(const JsonObject& object, const char* key) {
    const auto found = object.find(key);
    require(found != object.end());
    return *found;
}

template <typename Number> Number numberOf(const JsonObject& value) {
    if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        require(number <= static_cast<std::uint64_t>(std::numeric_limits<Number>::max()));
        return static_cast<Number>(number);
    }
    require(value.is_number_integer());
    const auto number = value.get<std::int64_t>(); // below 0
    require(std::numeric_limits<Number>::is_signed &&
            number >= static_cast<std::int64_t>(std::numeric_limits<Number>::min()));
    return static_cast<Number>(number);
}

template <typename Number>
std::optional<Number> optionalNumber(const JsonObject& object, const char* key) {
    const JsonObject& value = valueAt(object, key);
    return value.is_null() ? std::nullopt : std::optional(numberOf<Number>(value));
}

std::string requiredText(const JsonObject& value) {
    require(value.is_string());
    return value.get<std::string>();
}

// Returns a text, which must not be empty, or an empty one for null.
std::string textOrNull(const JsonObject& object, const char* key) {
    const JsonObject& value = valueAt(object, key);
    require(!value.is_string() || !value.get_ref<const std::string&>().empty());
    return value.is_null() ? std::string() : requiredText(value);
}

std::string hashOrNull(const JsonObject& object, const char* key) {
    constexpr std::size_t digitCount = 64;
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = textOrNull(object, key);
    require(text.empty() ||
            (text.size() == digitCount && text.find_first_not_of(digits) == std::string::npos));
    return text;
}

const JsonObject& listAt(const JsonObject& object, const char* key) {
    const JsonObject& value = valueAt(object, key);
    require(value.is_array());
    return value;
}

AttachmentRow attachmentOf(const JsonObject& object) {
    require(object.is_object());
    AttachmentRow row;
    row.name = textOrNull(object, "name");
    if (const JsonObject& url = valueAt(object, "url"); !url.is_null()) {
        row.url = requiredText(url);
    }
    row.declaredSize = optionalNumber<std::uint64_t>(object, "declared_size");
    row.path = textOrNull(object, "path");
    row.size = optionalNumber<std::uint64_t>(object, "size");
    row.sha256 = hashOrNull(object, "sha256");
    row.error = textOrNull(object, "error");
    require(row.size.has_value() == !row.sha256.empty());
    require(row.path.empty() || row.size.has_value());
    return row;
}

ManifestRow rowOf(const JsonObject& object) {
    require(object.is_object());
    ManifestRow row;
    row.index = optionalNumber<std::uint64_t>(object, "index");
    row.entry = optionalNumber<std::uint32_t>(object, "entry");
    row.item = optionalNumber<std::uint32_t>(object, "item");
    row.path = textOrNull(object, "path");
    const auto size = optionalNumber<std::uint64_t>(object, "size");
    row.size = size.value_or(0);
    row.sha256 = hashOrNull(object, "sha256");
    row.result = numberOf<std::int32_t>(valueAt(object, "result"));
    row.status = numberOf<std::uint16_t>(valueAt(object, "status"));
    row.error = textOrNull(object, "error");
    for (const JsonObject& warning : listAt(object, "warnings")) {
        row.warnings.push_back(requiredText(warning));
    }
    for (const JsonObject& attachment : listAt(object, "attachments")) {
        row.attachments.push_back(attachmentOf(attachment));
    }
    const bool isWritten = !row.path.empty();
    require(size.has_value() == isWritten && row.sha256.empty() != isWritten &&
            row.error.empty() == isWritten);
    return row;
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
    object["attachments"] = JsonObject::array();
    for (const AttachmentRow& attachment : row.attachments) {
        object["attachments"].push_back(objectOf(attachment));
    }
    std::string line;
    appendLine(line, object);
    return line;
}

std::optional<ManifestRow> readRow(std::string_view line) {
    try {
        return rowOf(JsonObject::parse(line));
    } catch (const NoRow&) {
        return std::nullopt;
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
