#ifndef QUORIMP_GEOMETRIC_BLOBS_NO_DELETE_POOL_ALLOCATOR_H
#define QUORIMP_GEOMETRIC_BLOBS_NO_DELETE_POOL_ALLOCATOR_H

#include <cstddef>
#include <list>
#include <stdexcept>
#include <utility>
#include <vector>

#include "geometric/blobs/no_delete_pool_allocator_iterator.h"

namespace geometric {

// A pool whose elements never move and are never freed one by one: a list of chunks, each a
// vector that is filled up to its capacity and never reallocated. The first chunk holds 10
// elements and each new chunk twice as many as the full one before it, so a pointer to an element
// stays valid for the life of the pool.
template <typename T>
class NoDeletePoolAllocator {
public:
    using Chunk = std::vector<T>;
    using ChunkList = std::list<Chunk>;
    using iterator = NoDeletePoolAllocatorIterator<T>;

    static constexpr std::size_t kFirstChunkCapacity = 10;
    // The limits of the chunk sizes and of the chunk count that the pool was designed with.
    static constexpr std::size_t kMaximumChunkCapacity = 89478485;
    static constexpr std::size_t kMaximumChunkCount = 0xCCCCCCC;

    NoDeletePoolAllocator() { append_chunk(kFirstChunkCapacity); }

    // The copy holds equal elements in chunks of the same capacities, so that it can grow without
    // moving them either.
    NoDeletePoolAllocator(const NoDeletePoolAllocator& other) { copy_chunks(other); }

    NoDeletePoolAllocator& operator=(const NoDeletePoolAllocator& other) {
        if (this != &other) {
            chunks.clear();
            copy_chunks(other);
        }
        return *this;
    }

    // A new element, made from `arguments`, at the end of the last chunk.
    template <typename... Arguments>
    T* allocate(Arguments&&... arguments) {
        Chunk* last = &chunks.back();
        if (last->size() == last->capacity()) {
            append_chunk(2 * last->size());
            last = &chunks.back();
        }
        last->emplace_back(std::forward<Arguments>(arguments)...);
        return &last->back();
    }

    // Destroys every element; the pool is then as new.
    void clear() {
        chunks.clear();
        append_chunk(kFirstChunkCapacity);
    }

    bool empty() const { return chunks.front().empty(); }

    std::size_t size() const {
        std::size_t count = 0;
        for (const Chunk& chunk : chunks) {
            count += chunk.size();
        }
        return count;
    }

    iterator begin() { return iterator(chunks.begin(), chunks.end()); }
    iterator end() { return iterator(chunks.end(), chunks.end()); }

private:
    void append_chunk(std::size_t capacity) {
        if (capacity > kMaximumChunkCapacity) {
            throw std::length_error("vector too long");
        }
        if (chunks.size() >= kMaximumChunkCount) {
            throw std::length_error("list too long");
        }
        chunks.emplace_back();
        chunks.back().reserve(capacity);
    }

    void copy_chunks(const NoDeletePoolAllocator& other) {
        for (const Chunk& chunk : other.chunks) {
            chunks.emplace_back();
            chunks.back().reserve(chunk.capacity());
            chunks.back().insert(chunks.back().end(), chunk.begin(), chunk.end());
        }
    }

    ChunkList chunks;
};

}  // namespace geometric

#endif
