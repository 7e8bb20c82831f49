#ifndef QUORIMP_GEOMETRIC_BINARIZATION_BINARIZATION_ENGINEE_H
#define QUORIMP_GEOMETRIC_BINARIZATION_BINARIZATION_ENGINEE_H

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/binarization/binarization.h"
#include "geometric/binarization/binarization_method.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Builds one binarization method from its number and runs it:
//
//     common::BasicImage binary;
//     geometric::BinarizationEnginee enginee(&grey, &binary, BinarizationSauvola);
//     if (enginee.binarization != nullptr && enginee.perfomr_binarization() == 0) { ... }
//
// A method number with no class behind it leaves `binarization` null; running it then is the
// caller's fault.
class QUORIMP_EXPORT BinarizationEnginee {
public:
    BinarizationEnginee(const common::Image* input, common::BasicImage* output,
                        BinarizationMethod method);
    ~BinarizationEnginee();

    BinarizationEnginee(const BinarizationEnginee&) = delete;
    BinarizationEnginee& operator=(const BinarizationEnginee&) = delete;

    // 0 when the method's output is valid, -1 otherwise. Exceptions of the method pass through.
    int perfomr_binarization();

    Binarization* binarization;  // owned; null for a method without a class
};

}  // namespace geometric

#endif
