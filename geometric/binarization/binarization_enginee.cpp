#include "geometric/binarization/binarization_enginee.h"

#include "geometric/binarization/omin_binarization.h"
#include "geometric/binarization/otsu_binarization.h"
#include "geometric/binarization/sauvola_binarization.h"
#include "geometric/binarization/sauvola_binarization_original.h"
#include "geometric/binarization/wolf_binarization_original.h"

namespace geometric {

BinarizationEnginee::BinarizationEnginee(const common::Image* input, common::BasicImage* output,
                                         BinarizationMethod method)
    : binarization(nullptr) {
    switch (static_cast<unsigned int>(method)) {
        case BinarizationSauvola:
            binarization = new SauvolaBinarization(input, output);
            break;
        case BinarizationOmin:
            binarization = new OminBinarization(input, output);
            break;
        case BinarizationSauvolaOriginal:
            binarization = new SauvolaBinarizationOriginal(input, output);
            break;
        case BinarizationWolfOriginal:
            binarization = new WolfBinarizationOriginal(input, output);
            break;
        case BinarizationOtsu:
            binarization = new OtsuBinarization(input, output);
            break;
        default:
            // Numbers above 4 have no class.
            break;
    }
}

BinarizationEnginee::~BinarizationEnginee() {
    delete binarization;
}

int BinarizationEnginee::perfomr_binarization() {
    return binarization->run_binarization() ? 0 : -1;
}

}  // namespace geometric
