#ifndef QUORIMP_GEOMETRIC_BINARIZATION_BINARIZATION_H
#define QUORIMP_GEOMETRIC_BINARIZATION_BINARIZATION_H

#include <boost/shared_ptr.hpp>

#include "common/basic_image.h"
#include "common/image.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// The frame shared by every binarization method. A run takes a private working copy of the
// input, clears the output to a binary image of the input's size, brings the copy to grey,
// lets the method threshold it into the output and ends with an optional despeckling pass.
// In the output a set bit is a dark pixel: text or other foreground.
//
// A binary input is copied to the output as it is, without method and without despeckling.
class QUORIMP_EXPORT Binarization {
public:
    // Leaves both image pointers unset, for objects that are given their images later.
    Binarization();

    // Throws `Geometricexception` "the output image is empty" for a null `output`. The input is
    // never changed and neither image is owned.
    Binarization(const common::Image* input, common::BasicImage* output);

    virtual ~Binarization();

    // True when the output holds a valid binary image. An input that is neither binary, grey nor
    // RGB gives false; a method's exceptions pass through.
    bool run_binarization();

    // The working copy of the last run (after a smoothing method, the smoothed image), or the
    // input before any run. Valid as long as this object, or until the next run. An input that is
    // not a `common::BasicImage` cannot be handed out and gives null before the first run.
    void obtain_grayscale_img(common::BasicImage** out);

    // Removes isolated pixels of the output in place when `despeckle_enabled` is set.
    void perform_despeckling();

    const common::Image* input_image;
    common::BasicImage* output_image;
    bool despeckle_enabled;

protected:
    // Grey stays as it is, RGB becomes grey by the weighted rule; any other type gives false.
    bool convert_image_to_grey_level(boost::shared_ptr<common::BasicImage> image);

    // Thresholds the grey working copy into `output_image`, which is cleared and of the input's
    // size.
    virtual bool run_binarization_imp(common::Image* grey) = 0;

    boost::shared_ptr<common::BasicImage> grey_image;
};

}  // namespace geometric

#endif
