#ifndef OLMKIT_CLI_EXTRACT_ITEMQUEUE_H
#define OLMKIT_CLI_EXTRACT_ITEMQUEUE_H

#include <cstddef>
#include <deque>
#include <memory>

#include "cli/extract/ItemWriter.h"
#include "cli/extract/WorkerPool.h"
#include "cli/files/OutputDirectory.h"
#include "host/session/Session.h"

namespace olmkit {

// Makes the messages of items, on the main thread and those of a WorkerPool, and returns the
// finished ones in the order in which they were added. All functions are for the main thread.
class ItemQueue {
public:
    // `session`, which lists the archive, and `directory` are borrowed. `jobs` threads make
    // messages, the main thread included.
    ItemQueue(olmhost::Session& session, OutputDirectory& directory, unsigned jobs,
              bool withAttachments);

    // Adds an item. Unless it `isShareable` its message is made at once, by the main thread.
    void add(WantedItem wanted, bool isShareable);

    // Returns the first item and removes it. If it is not finished, waits for it while more than
    // `maxLeft` items are in the queue or finished ones hold much memory, and otherwise returns
    // null. Null too when the queue is empty or the run has been asked to stop.
    std::unique_ptr<ItemTask> next(std::size_t maxLeft);

    // Ends the other threads and discards all items.
    void clear();

private:
    bool isDue(std::size_t maxLeft) const;
    void awaitFirst();
    void make(ItemTask& task);

    ItemWriter writer;
    std::deque<std::unique_ptr<ItemTask>> tasks;
    std::unique_ptr<WorkerPool> pool; // null for one job; destroyed before the tasks it borrows
};

} // namespace olmkit

#endif
