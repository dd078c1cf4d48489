#include "cli/terminal/ExtractionText.h"

namespace olmkit {

std::string attachmentLoss(const olmhost::MemberRead& member) {
    if (!member.entryIndex.has_value()) {
        return "an attachment is missing: " + member.fault; // which holds the name
    }
    return "the attachment \"" + member.name + "\" is " +
           (member.bytesRead == 0 ? "missing: " : "damaged: ") + member.fault;
}

std::string refusalText(const olmhost::Extraction& extraction, const olmhost::Session& session,
                        std::uint64_t entry, std::string_view cause) {
    if (extraction.result == olmhost::ModuleNoItem || entry >= session.entryCount()) {
        return std::string(noItemText);
    }
    std::string text = "no message could be made of it (result " +
                       std::to_string(extraction.result) + ", status " +
                       std::to_string(extraction.status) + ")";
    if (!cause.empty()) {
        text.append(": ").append(cause);
    }
    return text + "; export the archive again";
}

} // namespace olmkit
