#include "cli/verify/DifferenceWriter.h"

#include <utility>

#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

JsonObject objectOf(const Difference& difference) {
    JsonObject object;
    object["path"] = difference.path;
    object["problem"] = nameOf(difference.problem);
    object["expected"] = nullptr;
    object["found"] = nullptr;
    if (difference.problem == Problem::Size) {
        object["expected"] = difference.expectedSize;
        object["found"] = difference.size;
    } else if (difference.problem == Problem::Hash) {
        object["expected"] = difference.expectedSha256;
        object["found"] = difference.sha256;
    } else if (difference.problem == Problem::Lines) {
        object["expected"] = difference.expectedLines;
        object["found"] = difference.lines;
    }
    object["reason"] = difference.reason.empty() ? JsonObject() : JsonObject(difference.reason);
    return object;
}

// Returns a number with the right form of its noun.
std::string counted(std::uint64_t count, const char* one, const char* several) {
    return std::to_string(count) + " " + (count == 1 ? one : several);
}

std::string summary(const Verifier& verifier) {
    const std::uint64_t all = verifier.messageCount() + verifier.attachmentCount();
    const std::uint64_t wrong = all - verifier.goodCount();
    const std::uint64_t others = verifier.differenceCount() - wrong;
    std::string text = std::to_string(verifier.goodCount()) + " of " +
                       counted(all, "file", "files") +
                       (all == 1 ? " matches the manifest" : " match the manifest");
    if (others > 0) {
        text += "; " + counted(others, "other difference", "other differences");
    }
    if (const std::uint64_t failed = verifier.failedCount(); failed > 0) {
        text += "; " + counted(failed, "item has", "items have") + " no message";
    }
    return text + "\n";
}

} // namespace

void DifferenceWriter::add(const Difference& difference) {
    if (isJson) {
        differences.push_back(objectOf(difference));
        return;
    }
    appendPrintable(output.buffer(), textOf(difference));
    output.buffer() += '\n';
    output.endRecord();
}

void DifferenceWriter::finish(const Verifier& verifier) {
    if (isJson) {
        JsonObject object;
        object["messages"] = verifier.messageCount();
        object["attachments"] = verifier.attachmentCount();
        object["without_message"] = verifier.failedCount();
        object["good_files"] = verifier.goodCount();
        object["good_bytes"] = verifier.byteCount();
        object["differences"] = std::move(differences);
        appendShown(output.buffer(), object);
    } else {
        output.buffer() += summary(verifier);
    }
    output.flush();
}

} // namespace olmkit
