#ifndef QUORIMP_GEOMETRIC_BLOBS_BINARY_CONNECTED_COMPONENT_ITERATOR_H
#define QUORIMP_GEOMETRIC_BLOBS_BINARY_CONNECTED_COMPONENT_ITERATOR_H

#include "geometric/blobs/binary_connected_component.h"
#include "geometric/blobs/no_delete_pool_allocator_iterator.h"

namespace geometric {

// Walks the components of a pool: the head elements, in pool order.
class BinaryConnectedComponentIterator
    : public NoDeletePoolAllocatorIterator<BinaryConnectedComponent> {
public:
    explicit BinaryConnectedComponentIterator(
        const NoDeletePoolAllocatorIterator<BinaryConnectedComponent>& position)
        : NoDeletePoolAllocatorIterator<BinaryConnectedComponent>(position) {
        skip_to_head();
    }

    BinaryConnectedComponentIterator& operator++() {
        NoDeletePoolAllocatorIterator<BinaryConnectedComponent>::operator++();
        skip_to_head();
        return *this;
    }

private:
    void skip_to_head() {
        while (!is_end() && !element->is_top_level()) {
            NoDeletePoolAllocatorIterator<BinaryConnectedComponent>::operator++();
        }
    }
};

}  // namespace geometric

#endif
