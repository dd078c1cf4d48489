#ifndef OLMKIT_HOST_SESSION_EXTRACTION_H
#define OLMKIT_HOST_SESSION_EXTRACTION_H

#include <cstdint>
#include <functional>
#include <vector>

#include "host/session/AttachmentAccount.h"
#include "host/stream/EntryFault.h"
#include "host/stream/MemberRead.h"

namespace olmhost {

enum class ExtractionEnd {
    Whole,       // the message is written, to its last byte
    Cancelled,   // the progress callback ended it
    UnknownRoot, // the entry is no document of a known kind, so there is no message to write
    SinkFailed,  // the sink took less than it was given
    NotBegun,    // the module failed before it made a storage: it has no writer for that kind of
                 // item, or could not read the document, which faults() tells
    Refused,     // the module failed; `result` and `status` are all it tells
};

// How one extraction ended. Unless `end` is Whole, what the sink got is no message.
struct Extraction {
    ExtractionEnd end = ExtractionEnd::Refused;
    std::int32_t result = 0;  // the module's: 0 done or cancelled, 15 no such place, 18 failed
    std::uint16_t status = 0; // the module's: 0, or 2 beside a result that is not 0
    // A stream of the message is longer than the format allows, and was cut there.
    bool isCut = false;
    // What was found wrong with the archive's entries on the way, also what was known before.
    std::vector<EntryFault> faults;
    // The entries that the item names, its attachments, in order. One that is missing or damaged
    // is no failure of the item.
    std::vector<MemberRead> members;
    // The message's attachments, in order, those without data too.
    std::vector<AttachmentAccount> attachments;
};

// Told of every step with the module's progress value, on the caller's thread; 100 is the last.
// Other values tell roughly how far it is, and may be negative or above 100. Non-zero cancels.
using Progress = std::function<int(std::int32_t value)>;

} // namespace olmhost

#endif
