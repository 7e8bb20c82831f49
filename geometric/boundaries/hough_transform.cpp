#include "geometric/boundaries/hough_transform.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "geometric/blobs/connected_component_calculator.h"
#include "geometric/boundaries/bounding_line_judger.h"
#include "geometric/boundaries/bounding_lines_operator.h"
#include "geometric/primitives/geoline_adaptive_least_square.h"

namespace geometric {

namespace {

constexpr double kDegreesToRadians = 0.017453292519943295;
constexpr float kFloatEpsilon = 1.1920928955078125e-7f;
constexpr double kDoubleEpsilon = 2.220446049250313e-16;
constexpr double kFitTolerance = 0.01;
constexpr double kWellFormedFraction = 0.6;

// The line through two points in single precision; near vertical when the x are equal.
GeolineBase line_through(const HoughTransform::DoubleEndLine& ends, float& a, float& b, float& c) {
    const float x0 = static_cast<float>(ends.first.first);
    const float y0 = static_cast<float>(ends.first.second);
    const float x1 = static_cast<float>(ends.second.first);
    const float y1 = static_cast<float>(ends.second.second);
    if (std::abs(x0 - x1) <= kFloatEpsilon) {
        a = 1.0f;
        b = 0.0f;
        c = -x0;
    } else {
        a = (y0 - y1) / (x0 - x1);
        b = -1.0f;
        c = y1 - x1 * a;
    }
    return GeolineBase(a, b, c);
}

// Mean and sample deviation scaling: 1 / n each when the values do not vary, otherwise the
// values within three deviations of the mean spread over 0 .. 1.
std::vector<double> normalise(const std::vector<double>& values) {
    const std::size_t n = values.size();
    double mean = 0.0;
    for (double value : values) {
        mean += value;
    }
    mean /= static_cast<double>(n);
    double squares = 0.0;
    for (double value : values) {
        squares += (value - mean) * (value - mean);
    }
    const double deviation = std::sqrt(squares / static_cast<double>(n - 1));
    std::vector<double> out(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double v = values[i];
        if (deviation <= kDoubleEpsilon) {
            out[i] = 1.0 / static_cast<double>(n);
        } else if (v > mean + 3.0 * deviation) {
            out[i] = 1.0;
        } else if (v < mean - 3.0 * deviation) {
            out[i] = 0.0;
        } else {
            out[i] = (v - mean) / (3.0 * deviation) * 0.5 + 0.5;
        }
    }
    return out;
}

// Sum of the points' distances from the line, truncated to whole pixels after every addition.
int distance_sum(const GeolineBase& line, const std::vector<Geocoordinate<double>>& points) {
    const double norm = std::sqrt(line.a * line.a + line.b * line.b);
    int sum = 0;
    for (const Geocoordinate<double>& point : points) {
        const double d = std::abs(line.a * point.x + line.b * point.y + line.c) / norm;
        sum = static_cast<int>(sum + d);
    }
    return sum;
}

}  // namespace

HoughTransform::HoughTransform(int width, int height)
    : rho_count(0),
      theta_count(0),
      rho_offset(0.0f),
      theta_step_radians(0.0),
      image_width(width),
      image_height(height),
      image(nullptr) {
    initialize_hough_table();
}

HoughTransform::HoughTransform(common::Image* image)
    : rho_count(0),
      theta_count(0),
      rho_offset(0.0f),
      theta_step_radians(0.0),
      image_width(image->get_width()),
      image_height(image->get_height()),
      image(image) {
    initialize_hough_table();
}

void HoughTransform::initialize_hough_table() {
    theta_step_radians = theta_step * kDegreesToRadians;
    theta_count = static_cast<int>(180.0f / theta_step);
    rho_offset = static_cast<float>(std::sqrt(2.0) * std::max(image_width, image_height) * 0.5);
    // Twice the rounded offset, so that half the rows is exactly the rounded offset.
    rho_count = static_cast<int>(2.0 * std::floor(rho_offset + 0.5));
    sin_table.resize(static_cast<std::size_t>(theta_count));
    cos_table.resize(static_cast<std::size_t>(theta_count));
    for (int i = 0; i < theta_count; ++i) {
        sin_table[i] = std::sin(i * theta_step_radians);
        cos_table[i] = std::cos(i * theta_step_radians);
    }
}

void HoughTransform::set_up_accumulator_map(std::vector<unsigned int>& votes,
                                            std::vector<int> const& xs,
                                            std::vector<int> const& ys) const {
    votes.assign(static_cast<std::size_t>(rho_count) * theta_count, 0u);
    const std::size_t count = std::min(xs.size(), ys.size());
    for (std::size_t i = 0; i < count; ++i) {
        const float x = static_cast<float>(xs[i] - image_width * 0.5);
        const float y = static_cast<float>(ys[i] - image_height * 0.5);
        for (int t = 0; t < theta_count; ++t) {
            const int row =
                static_cast<int>(y * sin_table[t] + x * cos_table[t] + rho_offset + 0.5);
            // Points off the image may fall outside the map; they do not vote there.
            if (row >= 0 && row < rho_count) {
                ++votes[static_cast<std::size_t>(row) * theta_count + t];
            }
        }
    }
    if (smooth_accumulator != 0) {
        smooth_accumulator_map(votes);
    }
}

void HoughTransform::set_up_accumulator_map(std::vector<unsigned int>& votes) const {
    std::vector<int> xs;
    std::vector<int> ys;
    if (image != nullptr) {
        for (int y = 0; y < image->get_height(); ++y) {
            for (int x = 0; x < image->get_width(); ++x) {
                if (image->get_pixel(x, y) == 1) {
                    xs.push_back(x);
                    ys.push_back(y);
                }
            }
        }
    }
    set_up_accumulator_map(votes, xs, ys);
}

void HoughTransform::smooth_accumulator_map(std::vector<unsigned int>& votes) const {
    if (rho_count - 1 < 2) {
        return;
    }
    // In place: the row above has already been smoothed when it is read.
    for (int r = 1; r <= rho_count - 2; ++r) {
        unsigned int* above = votes.data() + static_cast<std::size_t>(r - 1) * theta_count;
        unsigned int* own = above + theta_count;
        unsigned int* below = own + theta_count;
        for (int t = 0; t < theta_count; ++t) {
            own[t] = (above[t] + own[t] + below[t]) / 3u;
        }
    }
}

void HoughTransform::peak(std::vector<unsigned int> const& votes, std::vector<int> const& lows,
                          std::vector<int> const& highs, int& rho, int& theta,
                          unsigned int& value) const {
    value = 0;
    for (int r = 0; r < rho_count; ++r) {
        const unsigned int* row = votes.data() + static_cast<std::size_t>(r) * theta_count;
        for (std::size_t range = 0; range < lows.size(); ++range) {
            const int last = std::min(highs[range], theta_count - 1);
            for (int t = std::max(lows[range], 0); t <= last; ++t) {
                if (row[t] > value) {
                    value = row[t];
                    rho = r;
                    theta = t;
                }
            }
        }
    }
}

void HoughTransform::peak(std::vector<unsigned int> const& votes, int& rho, int& theta,
                          unsigned int& value) const {
    value = 0;
    if (votes.empty() || theta_count < 1) {
        rho = 0;
        theta = 0;
        return;
    }
    const std::size_t index =
        static_cast<std::size_t>(std::max_element(votes.begin(), votes.end()) - votes.begin());
    value = votes[index];
    rho = static_cast<int>(index / static_cast<std::size_t>(theta_count));
    theta = static_cast<int>(index % static_cast<std::size_t>(theta_count));
}

bool HoughTransform::supporting_double_end_line(int rho, int theta, int& x0, int& y0, int& x1,
                                                int& y1) const {
    const int r = rho - rho_count / 2;
    const double s = sin_table[static_cast<std::size_t>(theta)];
    const double c = cos_table[static_cast<std::size_t>(theta)];
    if (theta < 45 || theta > 135) {
        y0 = 0;
        y1 = image_height;
        x0 = static_cast<int>((r + s * (image_height / 2)) / c + image_width * 0.5);
        x1 = static_cast<int>((r - s * (image_height - image_height / 2)) / c + image_width * 0.5);
        return false;
    }
    x0 = 0;
    x1 = image_width;
    y0 = static_cast<int>((r + c * image_width * 0.5) / s + image_height * 0.5);
    y1 = static_cast<int>((r - c * (image_width - image_width * 0.5)) / s + image_height * 0.5);
    return true;
}

bool HoughTransform::estimate_double_end_line(int rho, int theta, DoubleEndLine& ends) const {
    return supporting_double_end_line(rho, theta, ends.first.first, ends.first.second,
                                      ends.second.first, ends.second.second);
}

bool HoughTransform::estimate_double_end_line(int rho, int theta,
                                              std::vector<DoubleEndLine>& ends) const {
    DoubleEndLine line;
    const bool horizontal = estimate_double_end_line(rho, theta, line);
    ends.push_back(line);
    return horizontal;
}

void HoughTransform::obtain_angle_search_range(int centre, int half_width, std::vector<int>& lows,
                                               std::vector<int>& highs) {
    if (centre - half_width < 0) {
        lows.push_back(0);
        highs.push_back(centre + half_width);
        lows.push_back(centre - half_width + 180);
        highs.push_back(179);
    } else if (centre + half_width < 180) {
        lows.push_back(centre - half_width);
        highs.push_back(centre + half_width);
    } else {
        lows.push_back(centre - half_width);
        highs.push_back(179);
        lows.push_back(0);
        highs.push_back(centre + half_width - 180);
    }
}

void HoughTransform::collect_parallel_lines(std::vector<unsigned int> const& votes,
                                            std::vector<int> const& lows,
                                            std::vector<int> const& highs, unsigned int threshold,
                                            std::vector<ParallelCandidate>& candidates) const {
    for (int r = 0; r < rho_count; ++r) {
        const unsigned int* row = votes.data() + static_cast<std::size_t>(r) * theta_count;
        for (std::size_t range = 0; range < lows.size(); ++range) {
            const int last = std::min(highs[range], theta_count - 1);
            for (int t = std::max(lows[range], 0); t <= last; ++t) {
                if (row[t] >= threshold) {
                    ParallelCandidate candidate;
                    candidate.votes = row[t];
                    estimate_double_end_line(r, t, candidate.ends);
                    candidate.rho = r;
                    candidate.theta = t;
                    candidates.push_back(candidate);
                }
            }
        }
    }
}

bool HoughTransform::perform_parallel_line_selection(
    std::vector<unsigned int> const& votes, std::vector<int> const& lows,
    std::vector<int> const& highs, unsigned int threshold, DoubleEndLine const& reference,
    bool horizontal, DoubleEndLine& ends, int& rho, int& theta) const {
    std::vector<ParallelCandidate> candidates;
    collect_parallel_lines(votes, lows, highs, threshold, candidates);
    if (candidates.empty()) {
        return false;
    }
    int best = -1;
    if (!select_best_parallel_line(reference, candidates, best, horizontal)) {
        return false;
    }
    const ParallelCandidate& chosen = candidates[static_cast<std::size_t>(best)];
    ends = chosen.ends;
    rho = chosen.rho;
    theta = chosen.theta;
    return true;
}

bool HoughTransform::select_hough_line_same_direction(std::vector<unsigned int> const& votes,
                                                      DoubleEndLine const& reference_ends,
                                                      int theta, unsigned int reference_votes,
                                                      bool horizontal, DoubleEndLine& ends,
                                                      int& rho, int& theta_out) const {
    std::vector<int> lows;
    std::vector<int> highs;
    obtain_angle_search_range(
        theta, horizontal ? near_horizontal_angle_range : near_vertical_angle_range, lows, highs);
    unsigned int threshold = static_cast<unsigned int>(static_cast<float>(reference_votes) *
                                                       parallel_threshold_fraction);
    for (int attempt = 0; attempt < parallel_threshold_attempts; ++attempt) {
        if (perform_parallel_line_selection(votes, lows, highs, threshold, reference_ends,
                                            horizontal, ends, rho, theta_out)) {
            return true;
        }
        threshold >>= 1;
    }
    return false;
}

bool HoughTransform::select_best_parallel_line(DoubleEndLine const& reference,
                                               std::vector<ParallelCandidate> const& candidates,
                                               int& best, bool horizontal) const {
    const int dimension = horizontal ? image_height : image_width;
    const float distance_threshold =
        static_cast<float>(dimension) * minimum_parallel_distance_fraction;
    const int angle_tolerance =
        horizontal ? near_horizontal_angle_range : near_vertical_angle_range;
    std::vector<unsigned int> kept_votes;
    std::vector<float> kept_distances;
    std::vector<int> kept_indices;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        float distance = 0.0f;
        bool side = false;
        if (is_parallel_line_qualified(reference, candidates[i].ends, distance, side,
                                       angle_tolerance, distance_threshold)) {
            kept_votes.push_back(candidates[i].votes);
            kept_distances.push_back(distance);
            kept_indices.push_back(static_cast<int>(i));
        }
    }
    if (kept_indices.empty()) {
        return false;
    }
    best = obtain_best_parallel_line_index(kept_votes, kept_distances, kept_indices);
    return best >= 0;
}

bool HoughTransform::is_parallel_line_qualified(DoubleEndLine const& reference,
                                                DoubleEndLine const& candidate, float& distance,
                                                bool& side, int angle_tolerance,
                                                float distance_threshold) {
    float ra;
    float rb;
    float rc;
    float ca;
    float cb;
    float cc;
    const GeolineBase reference_line = line_through(reference, ra, rb, rc);
    const GeolineBase candidate_line = line_through(candidate, ca, cb, cc);
    double difference = std::abs(reference_line.angle() - candidate_line.angle());
    if (difference > 90.0) {
        difference = 180.0 - difference;
    }
    if (difference > angle_tolerance) {
        return false;
    }
    const float mx =
        (static_cast<float>(candidate.first.first) + static_cast<float>(candidate.second.first)) /
        2.0f;
    const float my =
        (static_cast<float>(candidate.first.second) + static_cast<float>(candidate.second.second)) /
        2.0f;
    const float signed_value = ra * mx + rb * my + rc;
    distance = std::abs(signed_value) / std::sqrt(ra * ra + rb * rb);
    side = signed_value > 0.0f;
    return distance >= distance_threshold;
}

int HoughTransform::obtain_best_parallel_line_index(std::vector<unsigned int> const& votes,
                                                    std::vector<float> const& distances,
                                                    std::vector<int> const& indices) const {
    if (indices.size() == 1) {
        return indices[0];
    }
    std::vector<double> vote_values(votes.begin(), votes.end());
    std::vector<double> distance_values(distances.begin(), distances.end());
    const std::vector<double> vote_scores = normalise(vote_values);
    const std::vector<double> distance_scores = normalise(distance_values);
    int best = -1;
    double best_score = 0.0;
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const double score = vote_scores[i] * (1.0 - parallel_distance_weight) +
                             distance_scores[i] * parallel_distance_weight;
        if (score > best_score) {
            best_score = score;
            best = indices[i];
        }
    }
    return best;
}

bool HoughTransform::obtain_largest_segment_around_selected_hough_line(
    std::vector<int> const& xs, std::vector<int> const& ys,
    std::vector<unsigned int> const& /*votes*/, DoubleEndLine const& ends, int rho, int theta,
    bool horizontal, Geobox<int>& box, bool& well_formed, GeolineBase& line) const {
    well_formed = true;
    const double s = sin_table[static_cast<std::size_t>(theta)];
    const double c = cos_table[static_cast<std::size_t>(theta)];
    const int band = segment_band_width;
    const int low_end = horizontal ? std::min(ends.first.second, ends.second.second)
                                   : std::min(ends.first.first, ends.second.first);
    const int high_end = horizontal ? std::max(ends.first.second, ends.second.second)
                                    : std::max(ends.first.first, ends.second.first);
    std::vector<int> list_x;
    std::vector<int> list_y;
    const std::size_t count = std::min(xs.size(), ys.size());
    for (std::size_t i = 0; i < count; ++i) {
        const int across = horizontal ? ys[i] : xs[i];
        if (across < low_end - band || across > high_end + band) {
            continue;
        }
        const double distance = std::abs((ys[i] - image_height * 0.5) * s +
                                         (xs[i] - image_width * 0.5) * c + rho_offset - rho);
        if (distance <= band) {
            list_x.push_back(xs[i]);
            list_y.push_back(ys[i]);
        }
    }
    if (list_x.empty()) {
        return false;
    }
    std::vector<int> blob_x;
    std::vector<int> blob_y;
    ConnectedComponentCalculator calculator;
    const int pixels =
        calculator.calculate_largest_blob_bounding_box(list_x, list_y, box, blob_x, blob_y);
    if (pixels <= 0 || blob_x.empty()) {
        return false;
    }
    const float fraction = static_cast<float>(pixels) / static_cast<float>(list_x.size());
    if (static_cast<double>(fraction) < kWellFormedFraction) {
        well_formed = false;
    }

    std::vector<Geocoordinate<double>> points;
    for (std::size_t i = 0; i < blob_x.size(); ++i) {
        points.emplace_back(blob_x[i], blob_y[i]);
    }
    GeolineAdaptiveLeastSquare y_on_x;
    y_on_x.fit_adaptive(points, true, kFitTolerance);
    if (horizontal) {
        line = y_on_x;
        return true;
    }
    std::vector<Geocoordinate<double>> swapped;
    for (const Geocoordinate<double>& point : points) {
        swapped.emplace_back(point.y, point.x);
    }
    GeolineAdaptiveLeastSquare x_on_y;
    x_on_y.fit_adaptive(swapped, true, kFitTolerance);
    GeolineBase transformed;
    if (x_on_y.a == 0.0) {
        // x does not change with y: the vertical line through the points' x.
        transformed = GeolineBase(1.0, 0.0, x_on_y.c / x_on_y.b);
    } else {
        transformed = GeolineBase(x_on_y.b / -x_on_y.a, -1.0, x_on_y.c / -x_on_y.a);
    }
    line = distance_sum(transformed, points) > distance_sum(y_on_x, points) ? GeolineBase(y_on_x)
                                                                            : transformed;
    return true;
}

bool HoughTransform::evalute_selected_hough_line(std::vector<int> const& xs,
                                                 std::vector<int> const& ys,
                                                 std::vector<unsigned int> const& votes,
                                                 DoubleEndLine const& ends, int rho, int theta,
                                                 bool horizontal, BoundingLine& line,
                                                 BoundingLine const* other) const {
    Geobox<int> box;
    box.max_x = -1000;
    box.max_y = -1000;
    box.min_x = 99999;
    box.min_y = 99999;
    bool well_formed = true;
    GeolineBase fitted;
    if (!obtain_largest_segment_around_selected_hough_line(xs, ys, votes, ends, rho, theta,
                                                           horizontal, box, well_formed, fitted)) {
        return false;
    }
    const int reference =
        other != nullptr ? other->segment_length : (horizontal ? image_width : image_height);
    const float threshold = static_cast<float>(reference) * minimum_length_fraction;
    const int box_width = box.max_x - box.min_x + 1;
    const int box_height = box.max_y - box.min_y + 1;
    const float squared =
        static_cast<float>(box_width * box_width) + static_cast<float>(box_height * box_height);
    const int segment_length = static_cast<int>(std::sqrt(squared));
    if (segment_length < static_cast<int>(threshold)) {
        return false;
    }
    line.line = fitted;
    line.segment_length = segment_length;
    line.well_formed = well_formed;
    const bool rising = fitted.angle() <= 90.0;
    const float min_x = static_cast<float>(box.min_x);
    const float max_x = static_cast<float>(box.max_x);
    const float min_y = static_cast<float>(box.min_y);
    const float max_y = static_cast<float>(box.max_y);
    if (horizontal) {
        line.first_end.set(min_x, rising ? min_y : max_y);
        line.second_end.set(max_x, rising ? max_y : min_y);
    } else {
        line.first_end.set(rising ? min_x : max_x, min_y);
        line.second_end.set(rising ? max_x : min_x, max_y);
    }
    return true;
}

bool HoughTransform::get_bounding_lines(std::vector<int> const& xs, std::vector<int> const& ys,
                                        std::vector<BoundingLine>& lines,
                                        std::vector<BoundingLine>& alternatives,
                                        bool& first_line_is_horizontal) {
    if (xs.size() < 10) {
        return false;
    }
    const BoundingLineJudger judger(image_width, image_height);
    std::vector<unsigned int> votes;
    set_up_accumulator_map(votes, xs, ys);

    int rho1 = 0;
    int theta1 = 0;
    unsigned int peak1 = 0;
    peak(votes, rho1, theta1, peak1);
    DoubleEndLine ends1;
    const bool horizontal = estimate_double_end_line(rho1, theta1, ends1);
    first_line_is_horizontal = horizontal;
    BoundingLine line1;
    if (!evalute_selected_hough_line(xs, ys, votes, ends1, rho1, theta1, horizontal, line1,
                                     nullptr) ||
        !judger.formulateBoundingLine(lines, line1, horizontal)) {
        return false;
    }

    DoubleEndLine ends2;
    int rho2 = 0;
    int theta2 = 0;
    if (!select_hough_line_same_direction(votes, ends1, theta1, peak1, horizontal, ends2, rho2,
                                          theta2)) {
        return false;
    }
    BoundingLine line2;
    if (!evalute_selected_hough_line(xs, ys, votes, ends2, rho2, theta2, horizontal, line2,
                                     &line1) ||
        !judger.formulateBoundingLine(lines, line2, horizontal)) {
        return false;
    }

    const int centre = theta1 < 90 ? theta1 + 90 : theta1 - 90;
    std::vector<int> lows;
    std::vector<int> highs;
    obtain_angle_search_range(centre, near_vertical_angle_range, lows, highs);
    int rho3 = 0;
    int theta3 = 0;
    unsigned int peak3 = 0;
    peak(votes, lows, highs, rho3, theta3, peak3);
    DoubleEndLine ends3;
    estimate_double_end_line(rho3, theta3, ends3);
    BoundingLine line3;
    if (!evalute_selected_hough_line(xs, ys, votes, ends3, rho3, theta3, !horizontal, line3,
                                     nullptr) ||
        !judger.formulateBoundingLine(lines, line3, !horizontal)) {
        return false;
    }

    BoundingLine line4;
    DoubleEndLine ends4;
    int rho4 = 0;
    int theta4 = 0;
    if (select_hough_line_same_direction(votes, ends3, theta3, peak3, !horizontal, ends4, rho4,
                                         theta4) &&
        evalute_selected_hough_line(xs, ys, votes, ends4, rho4, theta4, !horizontal, line4,
                                    &line3)) {
        if (!judger.formulateBoundingLine(lines, line4, !horizontal)) {
            return false;
        }
        const float perimeter =
            static_cast<float>(2 * (image_width + image_height)) * minimum_perimeter_fraction;
        if (static_cast<float>(BoundingLinesOperator::obtainSegmentLenSum(lines)) >= perimeter) {
            return true;
        }
    }

    // The search failed with three sides in hand: whatever was found is offered again.
    BoundingLine* found[4] = {&line1, &line2, &line3, &line4};
    for (int i = 0; i < 4; ++i) {
        if (!found[i]->line.is_empty()) {
            judger.formulateBoundingLine(alternatives, *found[i], i < 2 ? horizontal : !horizontal);
        }
    }
    return false;
}

}  // namespace geometric
