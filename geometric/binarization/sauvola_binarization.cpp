#include "geometric/binarization/sauvola_binarization.h"

#include "geometric/binarization/quick_sauvola_engine.h"

namespace geometric {

SauvolaBinarization::SauvolaBinarization(const common::Image* input, common::BasicImage* output)
    : Binarization(input, output) {}

bool SauvolaBinarization::run_binarization_imp(common::Image* grey) {
    perform_quick_sauvola_binarization(grey);
    return true;
}

bool SauvolaBinarization::perform_quick_sauvola_binarization(common::Image* grey) {
    QuickSauvolaEngine engine(grey, output_image, para);
    return engine.run();
}

}  // namespace geometric
