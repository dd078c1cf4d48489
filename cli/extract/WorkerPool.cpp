#include "cli/extract/WorkerPool.h"

#include <algorithm>
#include <system_error>

#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// Tasks that wait: enough to keep a thread busy while the main thread makes a message itself.
constexpr std::size_t queuedPerThread = 32;
constexpr std::size_t maxQueued = 512;

} // namespace

WorkerPool::~WorkerPool() {
    {
        const std::lock_guard hold(lock);
        isEnding = true;
        queue.clear();
    }
    hasWork.notify_all();
    for (const auto& worker : workers) {
        worker->thread.join();
    }
}

bool WorkerPool::offer(ItemTask& task) {
    bool needsWorker = false;
    {
        const std::lock_guard hold(lock);
        needsWorker = idle == 0 && workers.size() < maxThreads;
    }
    if (needsWorker) {
        startWorker();
    }
    const std::lock_guard hold(lock);
    if (queue.size() >= std::min(workers.size() * queuedPerThread, maxQueued)) {
        return false;
    }
    queue.push_back(&task);
    if (idle > 0) {
        hasWork.notify_one();
    }
    return true;
}

ItemTask* WorkerPool::takeBack() {
    const std::lock_guard hold(lock);
    if (queue.empty()) {
        return nullptr;
    }
    ItemTask* const task = queue.front();
    queue.pop_front();
    return task;
}

void WorkerPool::waitFor(const ItemTask& task) {
    std::unique_lock hold(lock);
    hasResult.wait(hold, [&task] { return task.isDone.load(); });
}

// If the system has no more threads or descriptors, the pool continues with the threads it has.
void WorkerPool::startWorker() {
    auto worker = std::make_unique<Worker>();
    if (worker->session.openBeside(session).status != olmhost::OpenStatus::Done) {
        maxThreads = static_cast<unsigned>(workers.size());
        return;
    }
    const Interrupt::Block block; // inherited by the thread
    try {
        worker->thread = std::thread([this, &own = worker->session] { work(own); });
    } catch (const std::system_error&) {
        maxThreads = static_cast<unsigned>(workers.size());
        return;
    }
    workers.push_back(std::move(worker));
}

void WorkerPool::work(olmhost::Session& ownSession) {
    ItemWriter writer(ownSession, directory, ItemWriter::Access::ByPlace, withAttachments);
    std::unique_lock hold(lock);
    while (true) {
        ++idle;
        hasWork.wait(hold, [this] { return isEnding || !queue.empty(); });
        --idle;
        if (isEnding) {
            return;
        }
        ItemTask& task = *queue.front();
        queue.pop_front();
        hold.unlock();
        try {
            task.outcome = writer.write(task.wanted);
        } catch (...) {
            task.failure = std::current_exception();
        }
        hold.lock();
        task.isDone = true;
        hasResult.notify_one();
    }
}

} // namespace olmkit
