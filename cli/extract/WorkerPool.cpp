#include "cli/extract/WorkerPool.h"

#include <sys/resource.h>

#include <algorithm>
#include <system_error>

#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

// Tasks that wait: enough to keep a thread busy while the main thread makes a message itself.
constexpr std::size_t queuedPerThread = 32;
constexpr std::size_t maxQueued = 512;

// Bytes in finished results, which wait for one before them.
constexpr std::size_t maxHeldBytes = std::size_t{32} << 20;

// Descriptors: of a thread, with its archive, its message and its attachments, and of all else.
constexpr rlim_t filesPerThread = 4;
constexpr rlim_t otherFiles = 24;

// Returns how many threads can open files without one too many.
unsigned threadsForFiles(unsigned wanted) {
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return wanted;
    }
    const rlim_t room = limit.rlim_cur > otherFiles ? limit.rlim_cur - otherFiles : 0;
    return static_cast<unsigned>(std::min<rlim_t>(wanted, room / filesPerThread));
}

} // namespace

WorkerPool::WorkerPool(const olmhost::Session& session, OutputDirectory& directory,
                       unsigned maxThreads, bool withAttachments)
    : session(session), directory(directory), maxThreads(threadsForFiles(maxThreads)),
      withAttachments(withAttachments) {}

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

ItemTask* WorkerPool::takeBack(const ItemTask& first) {
    const std::lock_guard hold(lock);
    if (queue.empty() || (!hasRoom() && queue.front() != &first)) {
        return nullptr;
    }
    ItemTask* const task = queue.front();
    queue.pop_front();
    return task;
}

void WorkerPool::holdResult(const ItemTask& task) {
    const std::lock_guard hold(lock);
    held += task.outcome.heldBytes();
}

void WorkerPool::releaseResult(const ItemTask& task) {
    const std::lock_guard hold(lock);
    const bool hadRoom = hasRoom();
    held -= task.outcome.heldBytes();
    if (!hadRoom && hasRoom()) {
        hasWork.notify_all();
    }
}

bool WorkerPool::isFull() {
    const std::lock_guard hold(lock);
    return !hasRoom();
}

// For the owner of the lock.
bool WorkerPool::hasRoom() const {
    return held < maxHeldBytes;
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
        hasWork.wait(hold, [this] { return isEnding || (!queue.empty() && hasRoom()); });
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
        held += task.outcome.heldBytes();
        task.isDone = true;
        hasResult.notify_one();
    }
}

} // namespace olmkit
