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

// One item on its way through a run.
struct ItemTask {
    WantedItem wanted;
    ItemOutcome outcome;        // valid once it is done
    std::exception_ptr failure; // instead of an outcome
    std::atomic<bool> isDone = false;
};

// Threads that make messages, each with a session of its own. They are started as there is work
// for them. All functions are the main thread's.
class WorkerPool {
public:
    // Both borrowed: the session that lists, and the open output folder.
    WorkerPool(const olmhost::Session& session, OutputDirectory& directory, unsigned mostThreads,
               bool withAttachments)
        : session(session), directory(directory), mostThreads(mostThreads),
          withAttachments(withAttachments) {}
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;
    ~WorkerPool();

    // Takes the task, which is borrowed until it is done or the pool ends; false when there are
    // tasks enough. The session must not be in use.
    bool offer(ItemTask& task);

    // Gives back a task that no thread has begun; null when there is none.
    ItemTask* takeBack();

    // Until the task is done.
    void waitFor(const ItemTask& task);

private:
    struct Worker {
        olmhost::Session session;
        std::thread thread;
    };

    void startWorker();
    void work(olmhost::Session& ownSession);

    const olmhost::Session& session;
    OutputDirectory& directory;
    unsigned mostThreads;
    bool withAttachments; // see ItemWriter
    std::vector<std::unique_ptr<Worker>> workers;

    std::mutex lock; // of what follows
    std::condition_variable hasWork;
    std::condition_variable hasResult;
    std::deque<ItemTask*> queue;
    std::size_t idle = 0; // threads that wait
    bool isEnding = false;
};

} // namespace olmkit

#endif
