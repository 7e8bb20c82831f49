#ifndef QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_PROJECTIVE_H
#define QUORIMP_GEOMETRIC_BOUNDARIES_CORNER_CALCULATOR_PROJECTIVE_H

#include <vector>

#include "geometric/primitives/direction.h"
#include "geometric/primitives/geocoordinate.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A virtual page inside the image whose sides run through one or two vanishing points. Each side
// is anchored at an image corner chosen by where the vanishing point lies against the image.
class QUORIMP_EXPORT CornerCalculatorProjective {
public:
    using Point = Geocoordinate<float>;
    using VanishingPoint = Geocoordinate<double>;

    // Where a vanishing point lies against an image of W by H: above, level with or below the
    // image, and left of, over or right of it.
    enum VpPosition {
        VP_POSITION_ABOVE_LEFT = 0,
        VP_POSITION_ABOVE = 1,
        VP_POSITION_ABOVE_RIGHT = 2,
        VP_POSITION_LEFT = 3,
        VP_POSITION_INSIDE = 4,
        VP_POSITION_RIGHT = 5,
        VP_POSITION_BELOW_LEFT = 6,
        VP_POSITION_BELOW = 7,
        VP_POSITION_BELOW_RIGHT = 8,
    };

    CornerCalculatorProjective(int width, int height);

    // The image corners: top left, top right, bottom right, bottom left.
    void obtain_reference_corners(std::vector<Point>& corners) const;

    // Virtual corners from the vanishing points that are flagged for use. False when none is, or
    // when a vanishing point lies where no anchors are defined (inside the image, say).
    bool estimate_virtual_corners(const VanishingPoint& horizontal_vp,
                                  const VanishingPoint& vertical_vp, bool use_horizontal,
                                  bool use_vertical, std::vector<Point>& corners) const;
    bool estimate_two_direction_virtual_corners(const VanishingPoint& horizontal_vp,
                                                const VanishingPoint& vertical_vp,
                                                std::vector<Point>& corners) const;
    bool estimate_horizontal_virtual_corners(const VanishingPoint& vp,
                                             std::vector<Point>& corners) const;
    bool estimate_vertical_virtual_corners(const VanishingPoint& vp,
                                           std::vector<Point>& corners) const;

    // The virtual corners of one vanishing point together with the image corners they stand for.
    bool estimate_cp_pairs(const VanishingPoint& vp, Direction direction,
                           std::vector<Point>& virtual_corners,
                           std::vector<Point>& reference_corners) const;

    // Anchors of the four sides for a horizontal vanishing point: left and right at the top image
    // corners, top and bottom chosen by the vanishing point's zone. False for zones without a
    // rule, the image itself among them.
    bool calculate_horizontal_virtual_reference_point(const VanishingPoint& vp, Point& left,
                                                      Point& right, Point& top,
                                                      Point& bottom) const;
    // The same for a vertical vanishing point: top and bottom at the left image corners, left and
    // right chosen by its zone.
    bool calculate_vertical_virtual_reference_point(const VanishingPoint& vp, Point& left,
                                                    Point& right, Point& top, Point& bottom) const;

    int image_width;
    int image_height;

private:
    bool calculate_two_direction_virtual_reference_point(const VanishingPoint& horizontal_vp,
                                                         const VanishingPoint& vertical_vp,
                                                         Point& left, Point& right, Point& top,
                                                         Point& bottom) const;
    // The zone of `vp`. A coordinate between W - 1 and W (or H - 1 and H) belongs to no column
    // (row) of the table and falls to the default zone, straight below the image.
    VpPosition estimate_vp_position(const VanishingPoint& vp) const;
};

}  // namespace geometric

#endif
