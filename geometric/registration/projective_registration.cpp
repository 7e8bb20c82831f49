#include "geometric/registration/projective_registration.h"

#include <cmath>

#include "geometric/boundaries/bounding_lines_operator.h"
#include "geometric/boundaries/corner_calculator_parallel.h"
#include "geometric/boundaries/corner_calculator_parallel_mixed_projective.h"
#include "geometric/boundaries/corner_calculator_projective.h"
#include "geometric/boundaries/corner_examiner.h"
#include "geometric/rectification/control_points.h"

namespace geometric {

namespace {

// A side of the corner quadrilateral, measured as the rectified page size measures it: float
// differences and squares, their sum and root in double, the root narrowed to float.
float side_length(const Geocoordinate<float>& from, const Geocoordinate<float>& to) {
    const float dx = from.x - to.x;
    const float dy = from.y - to.y;
    const float dx2 = dx * dx;
    const float dy2 = dy * dy;
    return static_cast<float>(std::sqrt(static_cast<double>(dx2) + static_cast<double>(dy2)));
}

// The longer of two opposite sides over the shorter; 1 when they are equal.
float side_ratio(float first, float second) {
    if (first > second) {
        return first / second;
    }
    if (second > first) {
        return second / first;
    }
    return 1.0f;
}

void clear_flags(VanishingPointHorVerInfo::DirectionInfo& direction) {
    direction.has_point = false;
    direction.is_parallel = false;
}

int flag_count(const VanishingPointHorVerInfo& info) {
    return static_cast<int>(info.horizontal.has_point) +
           static_cast<int>(info.horizontal.is_parallel) +
           static_cast<int>(info.vertical.has_point) + static_cast<int>(info.vertical.is_parallel);
}

}  // namespace

ProjectiveRegistration::ProjectiveRegistration(const common::Image* image)
    : Registration(image),
      registration_output(REGISTRATION_FAILED),
      page_width(0),
      page_height(0) {}

ProjectiveRegistration::~ProjectiveRegistration() = default;

bool ProjectiveRegistration::obtain_corners() {
    const bool found = para.use_edge_corners ? otain_edge_corners() : obtain_virtual_corners();
    if (!found) {
        corners.clear();
    }
    return found;
}

bool ProjectiveRegistration::has_distortion_detected() const {
    return registration_output >= REGISTRATION_TWO_VANISHING_POINTS &&
           registration_output <= REGISTRATION_MIXED;
}

int ProjectiveRegistration::image_width() const {
    return image->get_width();
}

int ProjectiveRegistration::image_height() const {
    return image->get_height();
}

bool ProjectiveRegistration::is_size_implausible(int page_size, int image_size) const {
    double ratio;
    if (page_size > image_size) {
        ratio = static_cast<double>(page_size) / static_cast<double>(image_size);
    } else {
        // A page smaller than the image is allowed to be 1.5 times smaller than a larger page is
        // allowed to be larger.
        ratio = static_cast<double>(image_size) / static_cast<double>(page_size) / 1.5;
    }
    return ratio > para.maximum_distortion_ratio;
}

bool ProjectiveRegistration::obtain_virtual_corners() {
    if (!transform_vp_2_vc()) {
        return false;
    }
    if (!CornerExaminer::check_constrains(corners, 23.0)) {
        return false;
    }
    calculate_output_dimension(corners, page_width, page_height);

    const int flags_before = flag_count(vanishing_points);
    int dropped = 0;
    // The width of the page is what the vertical direction shapes, and the height the horizontal.
    if (is_size_implausible(page_width, image_width())) {
        clear_flags(vanishing_points.vertical);
        ++dropped;
    }
    if (is_size_implausible(page_height, image_height())) {
        clear_flags(vanishing_points.horizontal);
        ++dropped;
    }
    if (dropped == 0) {
        return true;
    }
    if (dropped == flags_before) {
        return false;
    }
    return transform_vp_2_vc();
}

bool ProjectiveRegistration::otain_edge_corners() {
    if (!perform_edge_corner_searching()) {
        return false;
    }
    if (!CornerExaminer::check_constrains(corners, 40.0)) {
        return false;
    }
    const float top = side_length(corners[0], corners[1]);
    const float bottom = side_length(corners[3], corners[2]);
    const float right = side_length(corners[1], corners[2]);
    const float left = side_length(corners[0], corners[3]);
    const float width_ratio = side_ratio(top, bottom);
    const float height_ratio = side_ratio(left, right);
    calculate_output_dimension(corners, page_width, page_height);

    const float side_limit = 2.0f * para.maximum_distortion_ratio;
    if (is_size_implausible(page_width, image_width()) || width_ratio > side_limit) {
        clear_flags(vanishing_points.vertical);
    }
    if (is_size_implausible(page_height, image_height()) || height_ratio > side_limit) {
        clear_flags(vanishing_points.horizontal);
    }
    return flag_count(vanishing_points) > 0;
}

bool ProjectiveRegistration::transform_vp_2_vc() {
    const VanishingPointHorVerInfo::DirectionInfo& horizontal = vanishing_points.horizontal;
    const VanishingPointHorVerInfo::DirectionInfo& vertical = vanishing_points.vertical;
    const int width = image_width();
    const int height = image_height();

    if (!horizontal.has_point && !vertical.has_point) {
        if (registration_output < 0 || registration_output == REGISTRATION_NO_DISTORTION) {
            return false;
        }
        CornerCalculatorParallel(width, height)
            .estimate_parallel_virtual_corners(horizontal.is_parallel, vertical.is_parallel,
                                               horizontal.angle, vertical.angle, corners);
        return true;
    }
    if (registration_output != REGISTRATION_MIXED) {
        return CornerCalculatorProjective(width, height)
            .estimate_virtual_corners(horizontal.point, vertical.point, horizontal.has_point,
                                      vertical.has_point, corners);
    }
    const CornerCalculatorParallelMixedProjective mixed(width, height);
    if (horizontal.has_point) {
        return mixed.estimate_mixed_virtual_corners(DIRECTION_HORIZONTAL, horizontal.point,
                                                    vertical.angle, corners);
    }
    return mixed.estimate_mixed_virtual_corners(DIRECTION_VERTICAL, vertical.point,
                                                horizontal.angle, corners);
}

bool ProjectiveRegistration::perform_edge_corner_searching() {
    if (boundary_lines.empty()) {
        return false;
    }
    // Only the index of a filled side is recorded; the index lists keep what was found.
    if (boundary_lines.size() < 4) {
        const double right_x = static_cast<double>(image_width() - 1);
        const double bottom_y = static_cast<double>(image_height() - 1);
        const struct {
            int* index;
            BoundingLinePosition position;
            GeolineBase line;
        } borders[4] = {
            {&boundary_property.left_index, BOUNDING_LINE_LEFT, GeolineBase(1.0, 0.0, 0.0)},
            {&boundary_property.right_index, BOUNDING_LINE_RIGHT, GeolineBase(1.0, 0.0, -right_x)},
            {&boundary_property.top_index, BOUNDING_LINE_TOP, GeolineBase(0.0, -1.0, 0.0)},
            {&boundary_property.bottom_index, BOUNDING_LINE_BOTTOM,
             GeolineBase(0.0, -1.0, bottom_y)},
        };
        for (const auto& border : borders) {
            if (*border.index == -1) {
                boundary_lines.push_back(BoundingLine(border.position, border.line));
                *border.index = static_cast<int>(boundary_lines.size()) - 1;
            }
        }
    }
    BoundingLinesOperator::obtainBoundingLineControlPoints(boundary_lines, boundary_property,
                                                           corners);
    return true;
}

}  // namespace geometric
