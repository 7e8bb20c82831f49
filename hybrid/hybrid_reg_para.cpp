#include "hybrid/hybrid_reg_para.h"

namespace hybrid {

HybridRegPara::HybridRegPara() : use_line_registration(1) {}

}  // namespace hybrid
