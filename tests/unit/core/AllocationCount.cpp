#include "tests/unit/core/AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

long blockCount = 0;

void* allocateBlock(size_t size) {
    ++blockCount;
    void* block = std::malloc(size != 0 ? size : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

} // namespace

long allocationCount() {
    return blockCount;
}

void* operator new(size_t size) {
    return allocateBlock(size);
}
void* operator new[](size_t size) {
    return allocateBlock(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, size_t) noexcept {
    std::free(block);
}
