#include "geometric/blobs/run_list_arena.h"

#include <new>

namespace geometric {

RunListArena::~RunListArena() {
    for (void* slab : slabs_) {
        ::operator delete(slab);
    }
}

// The smallest k with 2^k >= bytes, and at least 4 so that a block can hold the free-list link.
int RunListArena::size_class(std::size_t bytes) {
    int k = 4;
    while ((static_cast<std::size_t>(1) << k) < bytes) {
        ++k;
    }
    return k;
}

void* RunListArena::allocate(std::size_t bytes) {
    const int k = size_class(bytes);
    if (FreeBlock* block = free_blocks_[k]) {
        free_blocks_[k] = block->next;
        return block;
    }
    const std::size_t block_bytes = static_cast<std::size_t>(1) << k;
    if (block_bytes > kLargestSlabBlock) {
        slabs_.reserve(slabs_.size() + 1);
        void* block = ::operator new(block_bytes);
        slabs_.push_back(block);
        return block;
    }
    if (static_cast<std::size_t>(slab_end_ - slab_next_) < block_bytes) {
        slabs_.reserve(slabs_.size() + 1);
        slab_next_ = static_cast<char*>(::operator new(kSlabBytes));
        slabs_.push_back(slab_next_);
        slab_end_ = slab_next_ + kSlabBytes;
    }
    void* block = slab_next_;
    slab_next_ += block_bytes;
    return block;
}

void RunListArena::deallocate(void* block, std::size_t bytes) {
    const int k = size_class(bytes);
    FreeBlock* freed = static_cast<FreeBlock*>(block);
    freed->next = free_blocks_[k];
    free_blocks_[k] = freed;
}

}  // namespace geometric
