#ifndef QUORIMP_GEOMETRIC_BLOBS_RUN_LIST_ALLOCATOR_H
#define QUORIMP_GEOMETRIC_BLOBS_RUN_LIST_ALLOCATOR_H

#include <cstddef>
#include <new>
#include <type_traits>

#include "geometric/blobs/run_list_arena.h"

namespace geometric {

// The allocator of a stroke's run list: from the arena of the calculator that made the stroke, or
// from the heap for a stroke made anywhere else. A copy of a list always goes to the heap, so that
// a copy taken out of a calculator does not depend on the calculator's life.
template <typename T>
class RunListAllocator {
public:
    using value_type = T;
    using propagate_on_container_copy_assignment = std::false_type;
    using propagate_on_container_move_assignment = std::true_type;
    using propagate_on_container_swap = std::true_type;
    using is_always_equal = std::false_type;

    RunListAllocator() noexcept = default;
    explicit RunListAllocator(RunListArena* arena) noexcept : arena(arena) {}
    template <typename U>
    RunListAllocator(const RunListAllocator<U>& other) noexcept : arena(other.arena) {}

    T* allocate(std::size_t count) {
        const std::size_t bytes = count * sizeof(T);
        if (arena != nullptr) {
            return static_cast<T*>(arena->allocate(bytes));
        }
        return static_cast<T*>(::operator new(bytes));
    }

    void deallocate(T* block, std::size_t count) noexcept {
        if (arena != nullptr) {
            arena->deallocate(block, count * sizeof(T));
        } else {
            ::operator delete(block);
        }
    }

    RunListAllocator select_on_container_copy_construction() const { return RunListAllocator(); }

    template <typename U>
    bool operator==(const RunListAllocator<U>& other) const noexcept {
        return arena == other.arena;
    }
    template <typename U>
    bool operator!=(const RunListAllocator<U>& other) const noexcept {
        return arena != other.arena;
    }

    RunListArena* arena = nullptr;
};

}  // namespace geometric

#endif
