#include "geometric/rectification/projective_matrix.h"

namespace geometric {

ProjectiveMatrix::ProjectiveMatrix() {
    set_unit_matrix();
}

void ProjectiveMatrix::set_unit_matrix() {
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const double value = row == column ? 1.0 : 0.0;
            inverse_matrix[row][column] = value;
            forward_matrix[row][column] = value;
        }
    }
}

}  // namespace geometric
