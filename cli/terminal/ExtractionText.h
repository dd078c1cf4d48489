#ifndef OLMKIT_CLI_TERMINAL_EXTRACTIONTEXT_H
#define OLMKIT_CLI_TERMINAL_EXTRACTIONTEXT_H

#include <cstdint>
#include <string>
#include <string_view>

#include "host/session/Extraction.h"
#include "host/session/Session.h"
#include "host/stream/MemberRead.h"

namespace olmkit {

// Texts about the extraction of one item: what its message lacks, or why there is none. One line
// each, for the user; they name the attachment or the entry, but not the item.

inline constexpr std::string_view noItemText =
    "there is no item at that place; olmkit list --format csv shows the entry and item of each";
inline constexpr std::string_view notADocumentText =
    "the entry is not a document of mail, contacts, events, tasks or notes";
inline constexpr std::string_view cutText =
    "a part of it is longer than a message file can hold, and was cut off";

// Returns what was lost of an attachment whose reading met a fault.
std::string attachmentLoss(const olmhost::MemberRead& member);

// Returns why the module made no message, for an extraction that ended as Refused or NotBegun.
// `cause` is what is known to be wrong with the entry, or empty.
std::string refusalText(const olmhost::Extraction& extraction, const olmhost::Session& session,
                        std::uint64_t entry, std::string_view cause = {});

} // namespace olmkit

#endif
