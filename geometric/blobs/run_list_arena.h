#ifndef QUORIMP_GEOMETRIC_BLOBS_RUN_LIST_ARENA_H
#define QUORIMP_GEOMETRIC_BLOBS_RUN_LIST_ARENA_H

#include <cstddef>
#include <vector>

#include "quorimp/quorimp_export.h"

namespace geometric {

// Storage for the run lists of the strokes of one calculator. A text page grows tens of thousands
// of short lists a few entries at a time; taking their blocks from large slabs and keeping freed
// blocks for reuse, by power-of-two size, spares the heap one allocation per growth step. All
// storage is released at once when the arena dies, so every list that uses it must be gone by
// then.
class QUORIMP_EXPORT RunListArena {
public:
    RunListArena() = default;
    RunListArena(const RunListArena&) = delete;
    RunListArena& operator=(const RunListArena&) = delete;
    ~RunListArena();

    void* allocate(std::size_t bytes);
    void deallocate(void* block, std::size_t bytes);

private:
    static constexpr int kClassCount = 40;
    static constexpr std::size_t kSlabBytes = 64 * 1024;
    static constexpr std::size_t kLargestSlabBlock = 4 * 1024;

    struct FreeBlock {
        FreeBlock* next;
    };

    static int size_class(std::size_t bytes);

    FreeBlock* free_blocks_[kClassCount] = {};
    std::vector<void*> slabs_;  // every block ever taken from the heap
    char* slab_next_ = nullptr;
    char* slab_end_ = nullptr;
};

}  // namespace geometric

#endif
