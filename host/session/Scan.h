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
// Nothing leaves breakAt(): what the row callback throws is kept, the rows behind it are dropped
// until the scan pauses, and rethrow() throws it when the module has returned.
class Scan {
public:
    // `file` is borrowed: it gives the entries' names and takes the faults.
    explicit Scan(ArchiveFile& file) : file(file), taker(file) {}

    RowCollector& collector() { return rows; }
    const RowCollector& collector() const { return rows; }

    CensusTaker& censusTaker() { return taker; }

    // Ahead of a run of the scan. `rowCallback` is borrowed until rethrow().
    void begin(const RowCallback& rowCallback);

    // Behind it: throws what the callback threw.
    void rethrow();

    // A break that the module tells of; true asks for a pause.
    bool breakAt(std::uint16_t code) noexcept;

    // A failure that the module tells of.
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
    std::uint64_t itemsBefore = 0; // the entry at hand
    std::uint64_t entriesDone = 0; // which is the index of the entry at hand
    bool pausing = false;
    bool finished = false;
};

} // namespace olmhost

#endif
