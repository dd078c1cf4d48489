#include "cli/extract/HashThread.h"

#include <utility>

#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

constexpr std::size_t mostBlocks = 4; // that are not hashed yet

} // namespace

HashThread::~HashThread() {
    if (!thread.joinable()) {
        return;
    }
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_all();
    thread.join();
}

void HashThread::add(Sha256& hash, std::vector<std::byte> block) {
    if (!thread.joinable()) {
        const Interrupt::Block noSignals;
        thread = std::thread([this] { run(); });
    }
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return tasks.size() < mostBlocks; });
    tasks.push_back({&hash, std::move(block)});
    lock.unlock();
    changed.notify_all();
}

std::vector<std::byte> HashThread::emptyBlock() {
    std::vector<std::byte> block;
    {
        const std::lock_guard lock(mutex);
        if (!emptyBlocks.empty()) {
            block = std::move(emptyBlocks.back());
            emptyBlocks.pop_back();
        }
    }
    block.clear();
    block.reserve(blockSize);
    return block;
}

void HashThread::finish() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return tasks.empty(); });
}

void HashThread::run() {
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [this] { return isEnding || !tasks.empty(); });
        if (tasks.empty()) {
            return;
        }
        Task& task = tasks.front();
        lock.unlock();
        task.hash->add(task.block);
        lock.lock();
        emptyBlocks.push_back(std::move(task.block));
        tasks.pop_front();
        changed.notify_all();
    }
}

} // namespace olmkit
