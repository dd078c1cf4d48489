#ifndef OLMKIT_HOST_ARCHIVE_READACCOUNT_H
#define OLMKIT_HOST_ARCHIVE_READACCOUNT_H

#include <memory>
#include <vector>

#include "host/stream/EntryFault.h"
#include "host/stream/MemberRead.h"

namespace olmhost {

// What was read, and which faults were found, while one message was written.
struct ReadAccount {
    std::vector<EntryFault> faults; // in the order of finding, also those known before

    // Entries requested by name, in that order. Shared with their streams, which a module that
    // fails may leave open.
    std::vector<std::shared_ptr<MemberRead>> members;
};

} // namespace olmhost

#endif
