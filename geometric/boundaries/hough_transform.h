#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_HOUGH_TRANSFORM_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_HOUGH_TRANSFORM_H

#include <utility>
#include <vector>

#include "common/image.h"
#include "geometric/boundaries/bounding_line.h"
#include "geometric/boundaries/hough_transform_para.h"
#include "geometric/primitives/geobox.h"
#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// Finds up to four page sides in a cloud of contour points: the strongest line, the best line
// parallel to it, the strongest line near the perpendicular, and the best parallel to that one.
// Each vote peak is refined by a fit to the points near it. Votes are counted in a map of
// distance rows and angle columns, distances measured from the image centre.
class QUORIMP_EXPORT HoughTransform : public HoughTransformPara {
public:
    // Two image points where a vote line crosses the image border.
    typedef std::pair<std::pair<int, int>, std::pair<int, int>> DoubleEndLine;

    // One entry of the vote map that may be a parallel of a side.
    struct ParallelCandidate {
        unsigned int votes;
        DoubleEndLine ends;
        int rho;
        int theta;
    };

    HoughTransform(int width, int height);
    // Votes may then be taken from the pixels of value 1 of `image`, which must outlive this
    // object.
    explicit HoughTransform(common::Image* image);

    // True when four sides are found whose segments sum to enough of the image perimeter. On
    // false, `lines` keeps the sides accepted so far, and once three sides were found all found
    // sides are judged again into `alternatives`. `first_line_is_horizontal` is written once the
    // first peak is known. Fewer than 10 points give false at once.
    bool get_bounding_lines(std::vector<int> const& xs, std::vector<int> const& ys,
                            std::vector<BoundingLine>& lines,
                            std::vector<BoundingLine>& alternatives,
                            bool& first_line_is_horizontal);

    int rho_count;
    int theta_count;
    float rho_offset;
    double theta_step_radians;
    int image_width;
    int image_height;
    std::vector<double> sin_table;
    std::vector<double> cos_table;
    common::Image* image;

protected:
    void initialize_hough_table();

    void set_up_accumulator_map(std::vector<unsigned int>& votes, std::vector<int> const& xs,
                                std::vector<int> const& ys) const;
    // Votes of the pixels of value 1 of `image`, rows then columns.
    void set_up_accumulator_map(std::vector<unsigned int>& votes) const;
    void smooth_accumulator_map(std::vector<unsigned int>& votes) const;

    // The largest entry within the angle ranges, rows first; `value` 0 when none is above 0.
    void peak(std::vector<unsigned int> const& votes, std::vector<int> const& lows,
              std::vector<int> const& highs, int& rho, int& theta, unsigned int& value) const;
    // The largest entry of the whole map, the first of equals.
    void peak(std::vector<unsigned int> const& votes, int& rho, int& theta,
              unsigned int& value) const;

    // Where the vote line crosses the image: top and bottom for a near vertical line, left and
    // right otherwise. True for a near horizontal line.
    bool supporting_double_end_line(int rho, int theta, int& x0, int& y0, int& x1, int& y1) const;
    bool estimate_double_end_line(int rho, int theta, DoubleEndLine& ends) const;
    bool estimate_double_end_line(int rho, int theta, std::vector<DoubleEndLine>& ends) const;

    // One or two angle ranges of `half_width` around `centre`, wrapped into 0 .. 179.
    static void obtain_angle_search_range(int centre, int half_width, std::vector<int>& lows,
                                          std::vector<int>& highs);

    void collect_parallel_lines(std::vector<unsigned int> const& votes,
                                std::vector<int> const& lows, std::vector<int> const& highs,
                                unsigned int threshold,
                                std::vector<ParallelCandidate>& candidates) const;
    bool perform_parallel_line_selection(std::vector<unsigned int> const& votes,
                                         std::vector<int> const& lows,
                                         std::vector<int> const& highs, unsigned int threshold,
                                         DoubleEndLine const& reference, bool horizontal,
                                         DoubleEndLine& ends, int& rho, int& theta) const;
    bool select_hough_line_same_direction(std::vector<unsigned int> const& votes,
                                          DoubleEndLine const& reference_ends, int theta,
                                          unsigned int reference_votes, bool horizontal,
                                          DoubleEndLine& ends, int& rho, int& theta_out) const;
    // The position in `candidates` of the chosen parallel of `reference`.
    bool select_best_parallel_line(DoubleEndLine const& reference,
                                   std::vector<ParallelCandidate> const& candidates, int& best,
                                   bool horizontal) const;
    static bool is_parallel_line_qualified(DoubleEndLine const& reference,
                                           DoubleEndLine const& candidate, float& distance,
                                           bool& side, int angle_tolerance,
                                           float distance_threshold);
    // Votes and distances are each normalised and mixed; gives the index of the best score, or
    // -1 when no score is above 0.
    int obtain_best_parallel_line_index(std::vector<unsigned int> const& votes,
                                        std::vector<float> const& distances,
                                        std::vector<int> const& indices) const;

    // Fits a line to the largest connected group of points in the band around the vote line;
    // false when the band holds no group.
    bool obtain_largest_segment_around_selected_hough_line(
        std::vector<int> const& xs, std::vector<int> const& ys,
        std::vector<unsigned int> const& votes, DoubleEndLine const& ends, int rho, int theta,
        bool horizontal, Geobox<int>& box, bool& well_formed, GeolineBase& line) const;
    // Turns a vote peak into a side, long enough against `other` (or the image side).
    bool evalute_selected_hough_line(std::vector<int> const& xs, std::vector<int> const& ys,
                                     std::vector<unsigned int> const& votes,
                                     DoubleEndLine const& ends, int rho, int theta, bool horizontal,
                                     BoundingLine& line, BoundingLine const* other) const;
};

}  // namespace geometric

#endif
