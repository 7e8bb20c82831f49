#ifndef QUORIMP_GEOMETRIC_REGISTRATION_REGISTRATION_OUTPUT_TYPE_H
#define QUORIMP_GEOMETRIC_REGISTRATION_REGISTRATION_OUTPUT_TYPE_H

namespace geometric {

// The verdict of a registration: what it found out about the two directions of the page.
enum RegistrationOutputType {
    REGISTRATION_RESERVED = -2,             // no result; no search of the engine gives it
    REGISTRATION_FAILED = -1,               // nothing usable
    REGISTRATION_TWO_VANISHING_POINTS = 1,  // a vanishing point in both directions
    REGISTRATION_NO_DISTORTION = 2,         // both directions parallel and aligned with the axes
    REGISTRATION_PARALLEL_ROTATED = 3,      // both directions parallel, not aligned
    REGISTRATION_MIXED = 4,                 // a vanishing point in one direction, parallel other
    REGISTRATION_ONE_VANISHING_POINT = 5,   // a vanishing point in one direction, nothing other
    REGISTRATION_ONE_PARALLEL = 6,          // parallel lines in one direction, nothing other
};

}  // namespace geometric

#endif
