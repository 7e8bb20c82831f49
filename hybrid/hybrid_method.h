#ifndef QUORIMP_HYBRID_HYBRID_METHOD_H
#define QUORIMP_HYBRID_HYBRID_METHOD_H

namespace hybrid {

// Which searches a corrector runs on a page.
enum HybridMethod {
    HYBRID_EDGE_ONLY = 0,         // the edge search alone, with its line stage
    HYBRID_EDGE_AND_FEATURE = 1,  // the edge search without its line stage, then the feature search
};

}  // namespace hybrid

#endif
