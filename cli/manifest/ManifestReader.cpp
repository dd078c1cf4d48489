#include "cli/manifest/ManifestReader.h"

#include <optional>
#include <utility>

namespace olmkit {

ManifestReader::Answer ManifestReader::next(ManifestRow& row) {
    const LineReader::Answer answer = reader.next(line);
    if (answer == LineReader::Answer::Unreadable) {
        return Answer::Unreadable;
    }
    if (answer == LineReader::Answer::End) {
        return Answer::End;
    }
    ++lines;
    cutOff = answer == LineReader::Answer::Rest;
    std::optional<ManifestRow> read =
        answer == LineReader::Answer::Line ? readRow(line) : std::nullopt;
    if (!read.has_value()) {
        return Answer::Invalid;
    }
    row = std::move(*read);
    return Answer::Row;
}

} // namespace olmkit
