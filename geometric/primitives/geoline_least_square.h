#ifndef QUORIMP_GEOMETRIC_PRIMITIVES_GEOLINE_LEAST_SQUARE_H
#define QUORIMP_GEOMETRIC_PRIMITIVES_GEOLINE_LEAST_SQUARE_H

#include "geometric/primitives/geoline_base.h"
#include "quorimp/quorimp_export.h"

namespace geometric {

// A line kept as the result of a plain least squares fit; it adds nothing to its base.
class QUORIMP_EXPORT GeolineLeastSquare : public GeolineBase {
public:
    GeolineLeastSquare() = default;
};

}  // namespace geometric

#endif
