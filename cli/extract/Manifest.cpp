#include "cli/extract/Manifest.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "cli/rows/JsonLine.h"

namespace olmkit {

namespace {

template <typename Number> JsonObject orNull(const std::optional<Number>& value) {
    return value.has_value() ? JsonObject(*value) : JsonObject();
}

JsonObject orNull(const std::string& text) {
    return text.empty() ? JsonObject() : JsonObject(text);
}

} // namespace

Manifest::~Manifest() {
    if (file >= 0) {
        close(file);
    }
    if (!temporary.empty()) {
        directory.remove(temporary);
    }
}

int Manifest::begin() {
    const int error = directory.createTemporary(temporary, file, guard);
    if (error != 0) {
        return error;
    }
    lines.emplace(file);
    return 0;
}

int Manifest::add(const ManifestRow& row) {
    const bool isWritten = !row.path.empty();
    JsonObject object;
    object["index"] = orNull(row.index);
    object["entry"] = orNull(row.entry);
    object["item"] = orNull(row.item);
    object["path"] = orNull(row.path);
    object["size"] = isWritten ? JsonObject(row.size) : JsonObject();
    object["sha256"] = orNull(row.sha256);
    object["result"] = row.result;
    object["status"] = row.status;
    object["error"] = orNull(row.error);
    object["warnings"] = row.warnings;
    appendLine(lines->buffer(), object);
    lines->endRecord();
    return lines->errorNumber();
}

int Manifest::finish() {
    if (!lines->flush()) {
        return lines->errorNumber();
    }
    if (close(std::exchange(file, -1)) != 0) {
        return errno;
    }
    if (const int error = directory.moveTo(temporary, {{}, fileName}); error != 0) {
        return error;
    }
    guard.reset();
    temporary.clear();
    return 0;
}

} // namespace olmkit
