#include "host/session/Scan.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "filter/boundary/Routines.h"
#include "host/archive/ArchiveContents.h"

namespace olmhost {

void Scan::begin(const RowCallback& rowCallback) {
    callback = &rowCallback;
    pausing = false;
    taker.watch();
}

void Scan::rethrow() {
    callback = nullptr;
    taker.unwatch();
    if (thrown != nullptr) {
        std::rethrow_exception(std::exchange(thrown, nullptr));
    }
}

bool Scan::breakAt(std::uint16_t code) noexcept {
    if (code == BreakRow) {
        deliver();
        return false;
    }
    if (code == BreakEntry) {
        endEntry();
        return pausing;
    }
    if (code == BreakArchive) {
        finished = true;
    }
    return false;
}

void Scan::endEntry() {
    rows.clear();
    try {
        taker.endEntry(entriesDone, items - itemsBefore);
    } catch (...) {
        thrown = std::current_exception();
        pausing = true;
    }
    itemsBefore = items;
    ++entriesDone;
}

void Scan::bail(std::uint32_t /*failure*/) noexcept {
    if (callback == nullptr) {
        // During an extraction there is one cause: the request could not be locked. The module
        // would continue with a null pointer. An allocated block can always be locked here, so
        // something has overwritten the process's memory.
        std::fputs("olmhost: the module can't lock a block that is allocated\n", stderr);
        std::abort();
    }
    rows.clear();
    try {
        // Usually the reason was just reported by the function that failed.
        const auto& faults = file.faults();
        if (faults.empty() || faults.back().entryIndex != entriesDone) {
            file.addFault(FaultKind::CannotOpen, entriesDone, "it can't be read as a document");
        }
    } catch (...) {
        thrown = std::current_exception();
        pausing = true;
    }
}

void Scan::deliver() {
    try {
        Row& row = rows.finish();
        row.index = items++;
        row.entryName = file.contents().name(row.entry);
        if (thrown == nullptr && (*callback)(row) == RowAnswer::Pause) {
            pausing = true;
        }
    } catch (...) {
        thrown = std::current_exception();
        pausing = true;
    }
    rows.clear();
}

} // namespace olmhost
