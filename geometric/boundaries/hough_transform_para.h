#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_HOUGH_TRANSFORM_PARA_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_HOUGH_TRANSFORM_PARA_H

namespace geometric {

// Settings of the page boundary search by Hough transform.
class HoughTransformPara {
public:
    HoughTransformPara()
        : theta_step(1.0f),
          rho_step(1.0f),
          smooth_accumulator(1),
          minimum_length_fraction(0.2f),
          near_horizontal_angle_range(17),
          near_vertical_angle_range(37),
          minimum_parallel_distance_fraction(0.25f),
          parallel_distance_weight(0.3f),
          parallel_threshold_fraction(0.3f),
          parallel_threshold_attempts(2),
          segment_band_width(20),
          minimum_perimeter_fraction(0.3f) {}

    // Degrees per angle column.
    float theta_step;
    // Kept for callers; distances are always counted in whole pixels.
    float rho_step;
    // When not 0 the vote map is smoothed across distances after voting.
    int smooth_accumulator;
    // A side must be at least this fraction of its reference length.
    float minimum_length_fraction;
    // Half width in degrees of the search for a parallel of a horizontal line, and the angle
    // tolerance of such a parallel.
    int near_horizontal_angle_range;
    // The same for a vertical line; also the half width of the search around the perpendicular.
    int near_vertical_angle_range;
    // A parallel lies at least this fraction of the image height (or width) from its reference.
    float minimum_parallel_distance_fraction;
    // Weight of distance against votes when several parallels qualify.
    float parallel_distance_weight;
    // Vote threshold of a parallel, as a fraction of its reference's votes.
    float parallel_threshold_fraction;
    // Thresholds tried for a parallel, each half the one before.
    int parallel_threshold_attempts;
    // Half width of the band of points taken around a peak, in pixels.
    int segment_band_width;
    // The four sides must sum to this fraction of the image perimeter.
    float minimum_perimeter_fraction;
};

}  // namespace geometric

#endif
