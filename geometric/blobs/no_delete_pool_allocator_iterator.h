#ifndef QUORIMP_GEOMETRIC_BLOBS_NO_DELETE_POOL_ALLOCATOR_ITERATOR_H
#define QUORIMP_GEOMETRIC_BLOBS_NO_DELETE_POOL_ALLOCATOR_ITERATOR_H

#include <list>
#include <vector>

namespace geometric {

// Walks every element of a `NoDeletePoolAllocator` in pool order: through each chunk, then on to
// the next chunk.
template <typename T>
class NoDeletePoolAllocatorIterator {
public:
    using ChunkIterator = typename std::list<std::vector<T>>::iterator;

    // Stands on the first element of the chunk `node` or of a later one, or at the end.
    NoDeletePoolAllocatorIterator(ChunkIterator node, ChunkIterator end_node)
        : element(nullptr), chunk_end(nullptr), node(node), end_node(end_node) {
        enter_chunk();
    }

    T& operator*() const { return *element; }
    T* operator->() const { return element; }

    NoDeletePoolAllocatorIterator& operator++() {
        if (++element == chunk_end) {
            ++node;
            enter_chunk();
        }
        return *this;
    }

    bool is_end() const { return node == end_node; }

    bool operator==(const NoDeletePoolAllocatorIterator& other) const {
        if (is_end() && other.is_end()) {
            return true;
        }
        return element == other.element;
    }
    bool operator!=(const NoDeletePoolAllocatorIterator& other) const { return !(*this == other); }

    T* element;
    T* chunk_end;
    ChunkIterator node;
    ChunkIterator end_node;

private:
    // Only the first chunk of a pool can be empty, and then the pool is.
    void enter_chunk() {
        while (node != end_node && node->empty()) {
            ++node;
        }
        if (node == end_node) {
            element = nullptr;
            chunk_end = nullptr;
        } else {
            element = node->data();
            chunk_end = node->data() + node->size();
        }
    }
};

}  // namespace geometric

#endif
