#ifndef QUORIMP_GEOMETRIC_REGISTRATION_VANISHING_POINT_HOR_VER_INFO_H
#define QUORIMP_GEOMETRIC_REGISTRATION_VANISHING_POINT_HOR_VER_INFO_H

#include "geometric/primitives/geocoordinate.h"

namespace geometric {

// What is known of the page's perspective, one record per direction.
struct VanishingPointHorVerInfo {
    // One direction: a vanishing point, or parallel lines at an angle, or nothing.
    struct DirectionInfo {
        explicit DirectionInfo(float parallel_angle = 0.0f)
            : kind(0), has_point(false), is_parallel(false), angle(parallel_angle) {}

        Geocoordinate<double> point;  // in pixels of the searched image; valid with has_point
        int kind;                     // an auxiliary code of the search that found it
        bool has_point;
        bool is_parallel;
        float angle;  // degrees, as GeolineBase::angle; valid with is_parallel
    };

    VanishingPointHorVerInfo() : horizontal(0.0f), vertical(90.0f) {}

    DirectionInfo horizontal;
    DirectionInfo vertical;
};

}  // namespace geometric

#endif
