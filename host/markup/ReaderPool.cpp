#include "host/markup/ReaderPool.h"

#include <utility>

namespace olmhost {

namespace {

constexpr std::size_t maxKept = 4;

} // namespace

ReaderPool& ReaderPool::ofThread() {
    thread_local ReaderPool pool;
    return pool;
}

std::unique_ptr<MarkupReader> ReaderPool::take() {
    if (kept.empty()) {
        return std::make_unique<MarkupReader>();
    }
    std::unique_ptr<MarkupReader> reader = std::move(kept.back());
    kept.pop_back();
    return reader;
}

void ReaderPool::put(std::unique_ptr<MarkupReader> reader) {
    if (kept.size() < maxKept) {
        kept.push_back(std::move(reader));
    }
}

} // namespace olmhost
