#ifndef QUORIMP_GEOMETRIC_BINARIZATION_OMIN_BINARIZATION_H
#define QUORIMP_GEOMETRIC_BINARIZATION_OMIN_BINARIZATION_H

#include <boost/shared_ptr.hpp>
#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/binarization/binarization.h"
#include "geometric/binarization/image.h"
#include "geometric/binarization/image_pyramid.h"
#include "geometric/binarization/omin_para.h"
#include "quality/resolution_estimator.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Multi-scale binarization. One local window cannot suit body text and headlines at once, so the
// page is binarized at several scales of an image pyramid with one window of a fixed number of
// pixels, which covers four times the page area at each coarser scale. Each scale keeps the blobs
// whose size suits it and records them in a scale map, in which every pixel names the scale that
// judges it. A flood extends the map to the pixels between blobs, and the full-size grey image is
// then compared pixel by pixel with the threshold its scale computed for it.
//
// Bright pixels and flat surroundings get no threshold at the first scale: the map marks them as
// belonging to no scale, they stop the flood, and they stay background.
//
// The scale limits carry over into a second run of the same object; an object is meant for one
// run.
class QUORIMP_EXPORT OminBinarization : public Binarization {
public:
    typedef ResolutionEstimator::EstimatedCharacter EstimatedCharacter;

    // Leaves the image pointers to be assigned later.
    OminBinarization();
    OminBinarization(const common::Image* input, common::BasicImage* output);

    // The size of the characters that the window is made for.
    int obtain_rough_character_size() const;

    // Always true.
    bool run_binarization_imp(common::Image* grey) override;

    OminPara para;
    boost::shared_ptr<ImagePyramid> image_pyramid;
    // The text size the window is made for, in pixels of the full image. It starts as 35 pixels
    // measured on heights; a caller may set another.
    EstimatedCharacter estimated_character;

private:
    typedef std::vector<boost::shared_ptr<Image<unsigned char>>> ThresholdMaps;

    // A page no larger than `small_page_dimension` starts at full size.
    void adjust_parameters_from_inputs(const common::Image& grey);
    void create_image_pyramid(const common::Image& grey);
    // Without a usable estimate the coarsest scale moves two further out, and a weak estimate
    // gives a window of at least 25 pixels.
    void adjust_parameters_from_estimated_character();
    void multi_scale_binarization();
    // The grey image of scale `scale` into `out`, which holds the previous scale's image.
    void chose_current_scale_img(common::BasicImage*& out, int scale);
    // Local thresholds of one scale over a `window` by `window` box: the mean m and the deviation
    // s of the box (as `calculate_local_mean_and_std` gives them) make the threshold
    // trunc(m k 0.0078 s + (1 - k) m). Bright pixels, and pixels whose m / s reaches
    // `flat_ratio`, get the threshold 1, which only a pixel of value 0 is below. `binary` takes
    // the pixels below their threshold.
    void perform_sauvola_binarization(const common::BasicImage& image, int window,
                                      Image<unsigned char>& thresholds, common::BasicImage& binary,
                                      double k);
    // Marks the pixels of the first scale that got no threshold as belonging to no scale.
    void initialize_scale_denotion_maps(const Image<unsigned char>& thresholds,
                                        common::BasicImage& scale_map);
    // Paints the blobs of this scale's band into the map; true when a blob was too large for it.
    bool analyze_binary_image(common::BasicImage& binary, common::BasicImage& scale_map, int scale,
                              int minimum_dimension);
    void propagate_image(common::BasicImage& scale_map);
    void post_process_scale_boundary(common::BasicImage& scale_map);
    void post_process_scale_empty_pixels(common::BasicImage& scale_map);
    void create_binary_image_from_scale(const common::BasicImage& scale_map,
                                        const ThresholdMaps& threshold_maps);
};

}  // namespace geometric

#endif
