#include "cli/extract/ItemQueue.h"

#include <utility>

#include "cli/terminal/Interrupt.h"

namespace olmkit {

ItemQueue::ItemQueue(olmhost::Session& session, OutputDirectory& directory, unsigned jobs,
                     bool withAttachments)
    : writer(session, directory, ItemWriter::Access::ByIndex, withAttachments) {
    if (jobs > 1) {
        pool = std::make_unique<WorkerPool>(session, directory, jobs - 1, withAttachments);
    }
}

void ItemQueue::add(WantedItem wanted, bool isShareable) {
    auto task = std::make_unique<ItemTask>();
    task->wanted = std::move(wanted);
    if (pool == nullptr || !isShareable || !pool->offer(*task)) {
        make(*task);
    }
    tasks.push_back(std::move(task));
}

std::unique_ptr<ItemTask> ItemQueue::next(std::size_t maxLeft) {
    while (isDue(maxLeft) && !Interrupt::isRequested()) {
        if (tasks.front()->isDone) {
            std::unique_ptr<ItemTask> first = std::move(tasks.front());
            tasks.pop_front();
            if (pool != nullptr) {
                pool->releaseResult(*first);
            }
            return first;
        }
        awaitFirst();
    }
    return nullptr;
}

void ItemQueue::clear() {
    pool.reset();
    tasks.clear();
}

bool ItemQueue::isDue(std::size_t maxLeft) const {
    if (tasks.empty()) {
        return false;
    }
    const ItemTask& first = *tasks.front();
    return tasks.size() > maxLeft || (first.isDone && first.outcome.isHashed()) ||
           (pool != nullptr && pool->isFull());
}

// Makes a message that no thread has begun, or waits for the first item when there is none.
void ItemQueue::awaitFirst() {
    const ItemTask& first = *tasks.front();
    if (ItemTask* const task = pool->takeBack(first)) {
        make(*task);
    } else {
        pool->waitFor(first);
    }
}

void ItemQueue::make(ItemTask& task) {
    task.outcome = writer.write(task.wanted);
    task.isDone = true;
    if (pool != nullptr) {
        pool->holdResult(task);
    }
}

} // namespace olmkit
