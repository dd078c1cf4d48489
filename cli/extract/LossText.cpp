#include "cli/extract/LossText.h"

namespace olmkit {

std::string attachmentLoss(const olmhost::MemberRead& member) {
    if (!member.entryIndex.has_value()) {
        return "an attachment is missing: " + member.fault; // which holds the name
    }
    return "the attachment \"" + member.name + "\" is " +
           (member.bytesRead == 0 ? "missing: " : "damaged: ") + member.fault;
}

} // namespace olmkit
