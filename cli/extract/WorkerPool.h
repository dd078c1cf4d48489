#ifndef OLMKIT_CLI_EXTRACT_WORKERPOOL_H
#define OLMKIT_CLI_EXTRACT_WORKERPOOL_H

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "cli/extract/ItemWriter.h"
#include "cli/files/OutputDirectory.h"
#include "host/session/Session.h"

namespace olmkit {

// One item of a run.
struct ItemTask {
    WantedItem wanted;
    ItemOutcome outcome;        // valid when `isDone`
    std::exception_ptr failure; // instead of an outcome
    std::atomic<bool> isDone = false;
};

// Threads that make messages, each with a session of its own. They are started when there is work
// for them. All functions are for the main thread.
class WorkerPool {
public:
    // `session`, which lists the archive, and `directory`, which is open before the first offer(),
    // are borrowed.
    WorkerPool(const olmhost::Session& session, OutputDirectory& directory, unsigned maxThreads,
               bool withAttachments);
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;
    ~WorkerPool();

    // Takes a task, which is borrowed until it is done or the pool is destroyed. Returns false when
    // enough tasks wait. The session must not be in use.
    bool offer(ItemTask& task);

    // Returns a task that no thread has begun, or null. When enough results wait, that is `first`
    // or none.
    ItemTask* takeBack(const ItemTask& first);

    // Counts what the result of a task holds: one that the main thread has made, or one that is
    // done and no longer waits. Threads begin no task while the results hold too much.
    void holdResult(const ItemTask& task);
    void releaseResult(const ItemTask& task);
    bool isFull();

    // Waits until the task is done.
    void waitFor(const ItemTask& task);

private:
    struct Worker {
        olmhost::Session session;
        std::thread thread;
    };

    void startWorker();
    bool hasRoom() const;
    void work(olmhost::Session& ownSession);

    const olmhost::Session& session;
    OutputDirectory& directory;
    unsigned maxThreads;
    bool withAttachments; // see ItemWriter
    std::vector<std::unique_ptr<Worker>> workers;

    std::mutex lock; // of the following members
    std::condition_variable hasWork;
    std::condition_variable hasResult;
    std::deque<ItemTask*> queue;
    std::size_t idle = 0; // threads without a task
    std::size_t held = 0; // bytes in the results that wait
    bool isEnding = false;
};

} // namespace olmkit

#endif
