#include "tests/host/compound/HeapCounter.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t taken = 0; // bytes
std::size_t mostTaken = 0;

} // namespace

void* operator new(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    taken += malloc_usable_size(block);
    mostTaken = std::max(mostTaken, taken);
    return block;
}

void operator delete(void* block) noexcept {
    taken -= malloc_usable_size(block);
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    operator delete(block);
}

namespace olmhost::test {

HeapCounter::HeapCounter() : start(taken) {
    mostTaken = taken;
}

std::size_t HeapCounter::peak() const {
    return mostTaken - start;
}

} // namespace olmhost::test
