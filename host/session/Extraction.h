#ifndef OLMKIT_HOST_SESSION_EXTRACTION_H
#define OLMKIT_HOST_SESSION_EXTRACTION_H

#include <cstdint>
#include <functional>
#include <vector>

#include "host/session/AttachmentAccount.h"
#include "host/stream/EntryFault.h"
#include "host/stream/MemberRead.h"

namespace olmhost {

// What the module returns for an extraction.
enum ModuleResult : std::int32_t {
    ModuleDone = 0,    // written, or cancelled
    ModuleNoItem = 15, // the entry or the item's number in it does not exist
    ModuleFailed = 18, // there is no item of that index, or anything else failed
};

// The status with ModuleNoItem and ModuleFailed; otherwise it is 0.
inline constexpr std::uint16_t moduleStatusFailed = 2;

enum class ExtractionEnd {
    Whole,       // the message is written completely
    Cancelled,   // the progress callback cancelled it
    UnknownRoot, // the entry is not a document of a known kind, so there is no message to write
    SinkFailed,  // the sink did not write all bytes
    NotBegun,    // the module failed before it made a storage: it has no writer for that kind of
                 // item, or could not read the document; see faults()
    Refused,     // the module failed; `result` and `status` are all it reports
};

// How one extraction ended. Unless `end` is Whole, the sink does not have a message.
struct Extraction {
    ExtractionEnd end = ExtractionEnd::Refused;
    std::int32_t result = ModuleDone; // a ModuleResult
    std::uint16_t status = 0;         // 0 or moduleStatusFailed
    // A stream of the message is longer than the format allows, and was cut there.
    bool isCut = false;
    // The faults of entries that were read for it, also those known before.
    std::vector<EntryFault> faults;
    // The entries that the item names, its attachments, in order. A missing or damaged one is not a
    // failure of the item.
    std::vector<MemberRead> members;
    // The message's attachments, in order, including those without data.
    std::vector<AttachmentAccount> attachments;
};

// Receives the module's progress value at each step, on the caller's thread; 100 is the last. Other
// values are estimates and may be negative or above 100. Returns non-zero to cancel.
using Progress = std::function<int(std::int32_t value)>;

} // namespace olmhost

#endif
