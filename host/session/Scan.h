#ifndef OLMKIT_HOST_SESSION_SCAN_H
#define OLMKIT_HOST_SESSION_SCAN_H

#include <cstdint>
#include <exception>

#include "host/archive/ArchiveFile.h"
#include "host/session/CensusTaker.h"
#include "host/session/RowCollector.h"
#include "host/session/Session.h"

namespace olmhost {

// The listing of one archive as the module's routines drive it.
//
// breakAt() throws nothing: what the row callback throws is kept, the rows after it are dropped
// until the scan pauses, and rethrow() throws it when the module has returned.
class Scan {
public:
    // `file` is borrowed: it has the entries' names and collects the faults.
    explicit Scan(ArchiveFile& file) : file(file), taker(file) {}

    RowCollector& collector() { return rows; }
    const RowCollector& collector() const { return rows; }

    CensusTaker& censusTaker() { return taker; }

    // Call it before a run of the scan. `rowCallback` is borrowed until rethrow().
    void begin(const RowCallback& rowCallback);

    // Call it after the run: throws what the callback threw.
    void rethrow();

    // Handles a break in the listing. Returns true to request a pause.
    bool breakAt(std::uint16_t code) noexcept;

    // Handles a failure of the module.
    void bail(std::uint32_t failure) noexcept;

    bool isFinished() const { return finished; }
    std::uint64_t itemCount() const { return items; }

private:
    void deliver();
    void endEntry();

    ArchiveFile& file;
    RowCollector rows;
    CensusTaker taker;
    const RowCallback* callback = nullptr;
    std::exception_ptr thrown;
    std::uint64_t items = 0;       // delivered or dropped: the index of the next row
    std::uint64_t itemsBefore = 0; // the current entry
    std::uint64_t entriesDone = 0; // the index of the current entry
    bool pausing = false;
    bool finished = false;
};

} // namespace olmhost

#endif
