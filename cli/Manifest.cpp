#include "cli/Manifest.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "cli/JsonLine.h"

namespace olmkit {

namespace {

template <typename Number>
void putOptional(JsonLine& line, const char* key, const std::optional<Number>& value) {
    if (value.has_value()) {
        line.number(key, *value);
    } else {
        line.null(key);
    }
}

void putOptional(JsonLine& line, const char* key, const std::string& value) {
    if (value.empty()) {
        line.null(key);
    } else {
        line.text(key, value);
    }
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
    const int error = directory.createTemporary(temporary, file);
    if (error != 0) {
        temporary.clear();
        return error;
    }
    guard.emplace(directory.descriptor(), temporary);
    lines.emplace(file);
    return 0;
}

int Manifest::add(const ManifestRow& row) {
    JsonLine line(lines->buffer());
    const bool isWritten = !row.path.empty();
    putOptional(line, "index", row.index);
    putOptional(line, "entry", row.entry);
    putOptional(line, "item", row.item);
    putOptional(line, "path", row.path);
    putOptional(line, "size", isWritten ? std::optional(row.size) : std::nullopt);
    putOptional(line, "sha256", row.sha256);
    line.signedNumber("result", row.result);
    line.number("status", row.status);
    putOptional(line, "error", row.error);
    line.end();
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
