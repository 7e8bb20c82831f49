#ifndef QUORIMP_GEOMETRIC_RECTIFICATION_PROJECTIVE_MATRIX_H
#define QUORIMP_GEOMETRIC_RECTIFICATION_PROJECTIVE_MATRIX_H

#include "quorimp/quorimp_export.h"

namespace geometric {

// A projective mapping and its inverse, each a row-major 3 by 3 matrix that acts on row vectors:
// (x, y, 1) times `forward_matrix` is proportional to the mapped point. A new matrix is the
// identity.
class QUORIMP_EXPORT ProjectiveMatrix {
public:
    ProjectiveMatrix();

    // Both matrices become the identity.
    void set_unit_matrix();

    double inverse_matrix[3][3];
    double forward_matrix[3][3];
};

}  // namespace geometric

#endif
