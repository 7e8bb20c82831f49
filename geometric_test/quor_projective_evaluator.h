#ifndef QUORIMP_GEOMETRIC_TEST_QUOR_PROJECTIVE_EVALUATOR_H
#define QUORIMP_GEOMETRIC_TEST_QUOR_PROJECTIVE_EVALUATOR_H

#include <vector>

#include "common/image.h"
#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric_test {

// Plausibility tests of four page corners against the image they were found on. A light view:
// both the image and the corners belong to the caller and must outlive it.
class QUORIMP_EXPORT QUORProjectiveEvaluator {
public:
    QUORProjectiveEvaluator(const common::Image* image,
                            const std::vector<geometric::Geocoordinate<float>>* corners);

    // Long side over short side of the page the corners span, at least 1. The sides are counted
    // in whole pixels as the rectified page would have them.
    static float calculate_aspect_ratio(
        const std::vector<geometric::Geocoordinate<float>>& corners);

    // Whether an image could be a photographed or scanned page at all: not thinner than 1 to 7
    // and at least 10 pixels on its short side.
    static bool is_camera_document_image(const common::Image& image);

    // False when a corner lies beyond the image border on its own side: a left corner left of the
    // image, a top corner above it, and so on. The test is one-sided on purpose.
    bool is_corners_within_image() const;

    // Whether the page spans more than `threshold` of the image's width or of its height.
    bool is_largest_dimension_percentage_large(double threshold) const;

    // Whether the page covers more than a fraction of the image area. The fraction is
    // `threshold` for pages of aspect strictly between 1.2 and 1.4, and `threshold` - 0.1 for all
    // others, which with small thresholds lets every such page pass.
    bool is_quadrangle_large(float threshold) const;

protected:
    float obtain_aspect_ratio_from_input_corners() const;

private:
    const common::Image* image;
    const std::vector<geometric::Geocoordinate<float>>* corners;
};

}  // namespace geometric_test

#endif
