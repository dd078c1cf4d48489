#include "cli/files/HashThread.h"

#include <chrono>
#include <system_error>
#include <utility>

#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

constexpr std::size_t maxWaiting = std::size_t{2} << 20;    // bytes that are not hashed yet
constexpr std::size_t maxBlockBytes = std::size_t{4} << 20; // capacity of empty blocks

} // namespace

HashText readyHash(std::string text) {
    std::promise<std::string> made;
    made.set_value(std::move(text));
    return made.get_future();
}

bool isReady(const HashText& hash) {
    return !hash.valid() || hash.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

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

void HashThread::add(const std::shared_ptr<Sha256>& hash, Block block) {
    if (!block.empty()) {
        post({hash, std::move(block), {}});
    }
}

HashText HashThread::end(std::shared_ptr<Sha256> hash) {
    Task task = {std::move(hash), {}, {}};
    HashText text = task.text.get_future();
    post(std::move(task));
    return text;
}

HashThread::Block HashThread::emptyBlock() {
    Block block;
    {
        const std::lock_guard lock(mutex);
        if (!blocks.empty()) {
            block = std::move(blocks.back());
            blocks.pop_back();
            blockBytes -= block.capacity();
        }
    }
    block.reserve(blockSize);
    return block;
}

bool HashThread::start() {
    if (!thread.joinable() && !isRefused) {
        const Interrupt::Block noSignals;
        try {
            thread = std::thread([this] { run(); });
        } catch (const std::system_error&) {
            isRefused = true;
        }
    }
    return !isRefused;
}

void HashThread::post(Task task) {
    if (!start()) {
        work(task);
        return;
    }
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return waiting < maxWaiting; });
    waiting += task.block.size();
    tasks.push_back(std::move(task));
    lock.unlock();
    changed.notify_all();
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
        work(task);
        lock.lock();
        waiting -= task.block.size();
        recycle(std::move(task.block));
        tasks.pop_front();
        changed.notify_all();
    }
}

// Keeps a block for emptyBlock(), unless there are enough.
void HashThread::recycle(Block block) {
    block.clear();
    if (block.capacity() > 0 && blockBytes + block.capacity() <= maxBlockBytes) {
        blockBytes += block.capacity();
        blocks.push_back(std::move(block));
    }
}

void HashThread::work(Task& task) {
    if (task.block.empty()) {
        task.text.set_value(task.hash->end());
    } else {
        task.hash->add(task.block);
    }
}

} // namespace olmkit
