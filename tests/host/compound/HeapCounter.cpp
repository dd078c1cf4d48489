#include "tests/host/compound/HeapCounter.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t allocated = 0; // bytes
std::size_t maxAllocated = 0;

} // namespace

void* operator new(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    allocated += malloc_usable_size(block);
    maxAllocated = std::max(maxAllocated, allocated);
    return block;
}

void operator delete(void* block) noexcept {
    allocated -= malloc_usable_size(block);
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    operator delete(block);
}

namespace olmhost::test {

HeapCounter::HeapCounter() : start(allocated) {
    maxAllocated = allocated;
}

std::size_t HeapCounter::peak() const {
    return maxAllocated - start;
}

} // namespace olmhost::test
