// C functions of the blob calculator and the scale maps.

#include <cstring>
#include <new>
#include <vector>

#include "common/basic_image.h"
#include "geometric/blobs/connected_component_calculator.h"
#include "quorimp/image_c_api_transformer.h"
#include "quorimp/quorimp.h"

namespace {

using geometric::ConnectedComponentCalculator;

ConnectedComponentCalculator& calculator_of(void* handle) {
    return *static_cast<ConnectedComponentCalculator*>(handle);
}

void wrap(const ImageCApi* source, common::BasicImage& target) {
    quorimp::ImageCApiTransformer::transform_c_api_image_to_image(*source, target);
}

const int kScaleTable[6] = {1, 2, 4, 8, 16, 32};

unsigned char paint_scale_image(void* handle, double maximum_area, double minimum_area, int scale,
                                ImageCApi* scale_image, ImageCApi* binary_image, int base_scale,
                                int minimum_dimension, unsigned char use_height,
                                bool erase_outside_area) {
    ConnectedComponentCalculator& calculator = calculator_of(handle);
    const int dimension_limit = minimum_dimension / kScaleTable[scale - base_scale];
    common::BasicImage scale_wrapped;
    common::BasicImage binary_wrapped;
    wrap(scale_image, scale_wrapped);
    wrap(binary_image, binary_wrapped);
    calculator.formulate_connected_components(binary_wrapped);

    const int magnification = kScaleTable[scale] / kScaleTable[base_scale];
    unsigned char too_large = 0;
    for (auto it = calculator.begin(); !it.is_end(); ++it) {
        const double count = static_cast<double>(it->count_pixel());
        if (count < minimum_area) {
            if (erase_outside_area) {
                it->undraw_blob_image(binary_wrapped);
            }
            continue;
        }
        if (count > maximum_area) {
            if (erase_outside_area) {
                it->undraw_blob_image(binary_wrapped);
            }
            too_large = 1;
            continue;
        }
        if (scale != base_scale) {
            const geometric::Geobox<int> box = it->get_bounding_box();
            const int dimension = use_height != 0 ? box.height() : box.width();
            if (dimension < dimension_limit) {
                it->undraw_blob_image(binary_wrapped);
                continue;
            }
        }
        it->draw_blob_image(scale_wrapped, scale + 1, magnification);
    }
    return too_large;
}

}  // namespace

extern "C" {

void* create_blob_calculator(void) {
    return new (std::nothrow) ConnectedComponentCalculator();
}

void delete_blob_calculator(void* calculator) {
    delete static_cast<ConnectedComponentCalculator*>(calculator);
}

void set_neighborhood(void* calculator, int neighborhood) {
    calculator_of(calculator).eight_connected = neighborhood != 4;
}

int perform_blob_formulation(void* calculator, const ImageCApi* image) {
    common::BasicImage wrapped;
    wrap(image, wrapped);
    ConnectedComponentCalculator& blobs = calculator_of(calculator);
    blobs.formulate_connected_components(wrapped);
    return blobs.size();
}

// Equal to labelling a fresh zero-filled vector and copying it out, without the vector: the
// caller's array is cleared and the labels are written into it directly.
void calculate_label_image(void* calculator, const ImageCApi* image, int* labels, int border) {
    common::BasicImage wrapped;
    wrap(image, wrapped);
    const std::size_t area = static_cast<std::size_t>(image->width + 2 * border) *
                             static_cast<std::size_t>(image->height + 2 * border);
    std::memset(labels, 0, area * sizeof(int));
    calculator_of(calculator).calculate_label_image(wrapped, labels, border);
}

int obtain_blob_contours_one_by_one(void* calculator, const ImageCApi* image, int** x, int** y,
                                    void* (*allocate)(size_t bytes)) {
    common::BasicImage wrapped;
    wrap(image, wrapped);
    std::vector<geometric::Geocoordinate<int>> points;
    calculator_of(calculator).obtain_blob_contours_one_by_one(wrapped, points);
    const std::size_t bytes = 4 * points.size();
    *x = static_cast<int*>(allocate(bytes));
    *y = static_cast<int*>(allocate(bytes));
    if (*x != nullptr && *y != nullptr) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            (*x)[i] = points[i].x;
            (*y)[i] = points[i].y;
        }
    }
    return static_cast<int>(points.size());
}

void obtain_blob_dimension_histogram(void* calculator, const ImageCApi* image, int* heights,
                                     int* widths) {
    common::BasicImage wrapped;
    wrap(image, wrapped);
    std::vector<int> blob_heights;
    std::vector<int> blob_widths;
    calculator_of(calculator).calculate_blob_dimensions(wrapped, blob_heights, blob_widths);
    if (!blob_heights.empty()) {
        std::memcpy(heights, blob_heights.data(), blob_heights.size() * sizeof(int));
        std::memcpy(widths, blob_widths.data(), blob_widths.size() * sizeof(int));
    }
}

void obtain_blob_top_points(void* calculator, const ImageCApi* image, int* x, int* y) {
    common::BasicImage wrapped;
    wrap(image, wrapped);
    std::vector<geometric::Geocoordinate<int>> points;
    calculator_of(calculator).obtain_blob_top_points(wrapped, points);
    for (std::size_t i = 0; i < points.size(); ++i) {
        x[i] = points[i].x;
        y[i] = points[i].y;
    }
}

void* obtain_runs_image(void* calculator, const ImageCApi* image) {
    common::BasicImage wrapped;
    wrap(image, wrapped);
    return calculator_of(calculator).obtain_runs_in_image(wrapped).get();
}

unsigned char create_scale_img(void* calculator, double maximum_area, double minimum_area,
                               int scale, ImageCApi* scale_image, ImageCApi* binary_image,
                               int base_scale, int minimum_dimension, unsigned char use_height) {
    return paint_scale_image(calculator, maximum_area, minimum_area, scale, scale_image,
                             binary_image, base_scale, minimum_dimension, use_height, true);
}

unsigned char create_scale_img_only(void* calculator, double maximum_area, double minimum_area,
                                    int scale, ImageCApi* scale_image, ImageCApi* binary_image,
                                    int base_scale, int minimum_dimension,
                                    unsigned char use_height) {
    return paint_scale_image(calculator, maximum_area, minimum_area, scale, scale_image,
                             binary_image, base_scale, minimum_dimension, use_height, false);
}
}
