#include "geometric/rectification/projective_matrix_estimator.h"

#include <cmath>
#include <utility>

#include "geometric/boundaries/corner_calculator_projective.h"

namespace geometric {

namespace {

constexpr int kPairs = 4;
constexpr int kUnknowns = 2 * kPairs;

// LU decomposition with partial pivoting of the row-major n by n matrix `a`, in place: the first
// row holding the largest magnitude of a column becomes its pivot row. Only an exactly zero pivot
// counts as singular; there is no tolerance.
template <int N>
bool decompose(double (&a)[N][N], int (&permutation)[N]) {
    for (int i = 0; i < N; ++i) {
        permutation[i] = i;
    }
    for (int column = 0; column < N; ++column) {
        int pivot = column;
        double largest = std::fabs(a[column][column]);
        for (int row = column + 1; row < N; ++row) {
            const double magnitude = std::fabs(a[row][column]);
            if (magnitude > largest) {
                largest = magnitude;
                pivot = row;
            }
        }
        if (a[pivot][column] == 0.0) {
            return false;
        }
        if (pivot != column) {
            std::swap(a[pivot], a[column]);
            std::swap(permutation[pivot], permutation[column]);
        }
        for (int row = column + 1; row < N; ++row) {
            a[row][column] /= a[column][column];
            const double factor = a[row][column];
            for (int k = column + 1; k < N; ++k) {
                a[row][k] -= factor * a[column][k];
            }
        }
    }
    return true;
}

// Solves L U x = P b with the factors of `decompose`.
template <int N>
void solve(const double (&lu)[N][N], const int (&permutation)[N], const double (&b)[N],
           double (&x)[N]) {
    for (int row = 0; row < N; ++row) {
        double sum = b[permutation[row]];
        for (int k = 0; k < row; ++k) {
            sum -= lu[row][k] * x[k];
        }
        x[row] = sum;
    }
    for (int row = N - 1; row >= 0; --row) {
        double sum = x[row];
        for (int k = row + 1; k < N; ++k) {
            sum -= lu[row][k] * x[k];
        }
        x[row] = sum / lu[row][row];
    }
}

bool invert(const double (&matrix)[3][3], double (&inverse)[3][3]) {
    double lu[3][3];
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            lu[row][column] = matrix[row][column];
        }
    }
    int permutation[3];
    if (!decompose(lu, permutation)) {
        return false;
    }
    for (int column = 0; column < 3; ++column) {
        double unit[3] = {0.0, 0.0, 0.0};
        unit[column] = 1.0;
        double solution[3];
        solve(lu, permutation, unit, solution);
        for (int row = 0; row < 3; ++row) {
            inverse[row][column] = solution[row];
        }
    }
    return true;
}

}  // namespace

ProjectiveMatrixEstimator::ProjectiveMatrixEstimator(int width, int height)
    : width(width), height(height) {}

bool ProjectiveMatrixEstimator::estimate_matrix_via_correponding_points(
    const std::vector<Geocoordinate<float>>& first, const std::vector<Geocoordinate<float>>& second,
    ProjectiveMatrix& matrix) const {
    if (first.size() != kPairs || second.size() < kPairs) {
        return false;
    }

    // Row i: x, y, 1, 0, 0, 0, -X x, -X y; row 4 + i: 0, 0, 0, x, y, 1, -Y x, -Y y. The products
    // are taken in float and then widened.
    double a[kUnknowns][kUnknowns];
    double b[kUnknowns];
    for (int i = 0; i < kPairs; ++i) {
        const float X = first[i].x;
        const float Y = first[i].y;
        const float x = second[i].x;
        const float y = second[i].y;
        b[i] = X;
        b[kPairs + i] = Y;

        double* upper = a[i];
        upper[0] = x;
        upper[1] = y;
        upper[2] = 1.0;
        upper[3] = 0.0;
        upper[4] = 0.0;
        upper[5] = 0.0;
        upper[6] = static_cast<double>(-X * x);
        upper[7] = static_cast<double>(-X * y);

        double* lower = a[kPairs + i];
        lower[0] = 0.0;
        lower[1] = 0.0;
        lower[2] = 0.0;
        lower[3] = x;
        lower[4] = y;
        lower[5] = 1.0;
        lower[6] = static_cast<double>(-Y * x);
        lower[7] = static_cast<double>(-Y * y);
    }

    int permutation[kUnknowns];
    if (!decompose(a, permutation)) {
        return false;
    }
    double s[kUnknowns];
    solve(a, permutation, b, s);

    // Transposed against the usual homography so that it acts on row vectors.
    const double forward[3][3] = {{s[0], s[3], s[6]}, {s[1], s[4], s[7]}, {s[2], s[5], 1.0}};
    double inverse[3][3];
    if (!invert(forward, inverse)) {
        return false;
    }
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            matrix.forward_matrix[row][column] = forward[row][column];
            matrix.inverse_matrix[row][column] = inverse[row][column];
        }
    }
    return true;
}

bool ProjectiveMatrixEstimator::estimate_projective_matrix(
    const Geocoordinate<double>& vanishing_point, Direction direction,
    ProjectiveMatrix& matrix) const {
    const bool horizontal = direction == DIRECTION_HORIZONTAL;
    const double along = horizontal ? vanishing_point.x : vanishing_point.y;
    const double extent = horizontal ? static_cast<double>(width) : static_cast<double>(height);
    // A vanishing point over the image itself means no mild perspective can explain it.
    if (0.0 <= along && along <= extent) {
        return false;
    }
    std::vector<Geocoordinate<float>> virtual_corners;
    std::vector<Geocoordinate<float>> reference_corners;
    if (!CornerCalculatorProjective(width, height)
             .estimate_cp_pairs(vanishing_point, direction, virtual_corners, reference_corners)) {
        matrix.set_unit_matrix();
        return false;
    }
    return estimate_matrix_via_correponding_points(virtual_corners, reference_corners, matrix);
}

}  // namespace geometric
