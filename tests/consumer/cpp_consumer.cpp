// A C++ program that uses the class interface through the umbrella header. Exits 0 when every
// check holds.
#include <cstdio>
#include <vector>

#include <quorimp/quorimp.hpp>

int main() {
    int failures = 0;

    unsigned char pixels[2 * 3] = {10, 20, 30, 40, 50, 60};
    ImageCApi record = {2, 1, 0, 0, 3, 0, pixels};
    common::BasicImage image;
    quorimp::ImageCApiTransformer::transform_c_api_image_to_image(record, image);
    if (image.get_image_type() != common::IMAGE_TYPE_RGB || image.get_data() != pixels ||
        image.get_pixel(1, 0) != 0x28323Cu) {
        std::fprintf(stderr, "the wrapped record reads wrongly\n");
        ++failures;
    }

    std::vector<geometric::Geocoordinate<float>> square;
    geometric::intialize_control_points(square, 11, 11);
    std::vector<geometric::Geocoordinate<float>> doubled(square);
    for (auto& point : doubled) {
        point.set(2.0f * point.x, 2.0f * point.y);
    }
    geometric::ProjectiveMatrix matrix;
    geometric::ProjectiveMatrixEstimator estimator(100, 100);
    if (!estimator.estimate_matrix_via_correponding_points(doubled, square, matrix) ||
        matrix.forward_matrix[0][0] < 1.999 || matrix.forward_matrix[0][0] > 2.001) {
        std::fprintf(stderr, "the scaling was not recovered\n");
        ++failures;
    }

    ControlPointCorners corners;
    geometric::ControlPointsTransformer<float>::transform(square, corners);
    int width = 0;
    int height = 0;
    obtain_output_image_dimension(&corners, &width, &height);
    if (width != 11 || height != 11) {
        std::fprintf(stderr, "unexpected page size %d x %d\n", width, height);
        ++failures;
    }
    return failures == 0 ? 0 : 1;
}
