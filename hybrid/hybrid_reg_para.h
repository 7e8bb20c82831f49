#ifndef QUORIMP_HYBRID_HYBRID_REG_PARA_H
#define QUORIMP_HYBRID_HYBRID_REG_PARA_H

#include "hybrid/projective_registration_para.h"
#include "quorimp/quorimp_export.h"

namespace hybrid {

// The thresholds of a corrector: those of every registration, and the choice of its edge search.
class QUORIMP_EXPORT HybridRegPara : public ProjectiveRegistrationPara {
public:
    HybridRegPara();

    // Non-zero: the edge search of the strategy line; 0: the older bounding line search.
    int use_line_registration;
};

}  // namespace hybrid

#endif
