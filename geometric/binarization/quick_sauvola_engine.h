#ifndef QUORIMP_GEOMETRIC_BINARIZATION_QUICK_SAUVOLA_ENGINE_H
#define QUORIMP_GEOMETRIC_BINARIZATION_QUICK_SAUVOLA_ENGINE_H

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/binarization/sauvola_para.h"

namespace geometric {

// The working object of `SauvolaBinarization`, made for one run; not part of the library's
// interface.
//
// A streaming Sauvola threshold T = trunc((s * k / 128 + 1 - k) * m) in float, from a ring of
// integral rows that holds only a few windows of the image at a time. Pixels below `low_gray`
// are foreground and pixels above `high_gray` background without any statistics. The image is
// cut into zones that place the window differently: the rows of the top and bottom margins cut
// the window at the image border, the margin columns of the other rows reach to the border, and
// the centre uses the full window. Outside the centre the deviation comes from tables of square
// roots truncated to three decimals.
class QuickSauvolaEngine {
public:
    // Builds the root tables. `grey` is smoothed in place when the parameters ask for it.
    QuickSauvolaEngine(common::Image* grey, common::BasicImage* output, const SauvolaPara& para);

    // Thresholds the grey image into the output, whose bits must be clear. Throws
    // `Geometricexception` when the window does not fit the image or memory runs out; the output
    // may then be partly written. Always true otherwise.
    bool run();

private:
    // The zones of the image over a ring of `Entry` integral rows. Entries are kept modulo the
    // range of `Entry`: differences of them are the exact window sums as long as no window sum
    // reaches that range.
    template <typename Entry>
    void threshold_zones(unsigned char* pixels, int width, int height, int window, int ring);

    common::Image* grey_image;
    common::BasicImage* output_image;
    SauvolaPara para;
    unsigned char bit_masks[8];
    float root_table_fine[1001];    // variance 0 to 100 in steps of 0.1
    float root_table_middle[451];   // variance 100 to 1000 in steps of 2
    float root_table_coarse[1540];  // variance from 1000 in steps of 10, capped at 128
};

}  // namespace geometric

#endif
