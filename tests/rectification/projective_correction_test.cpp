// The correction of a page from four corners, through the C interface and the class: pixels
// against a plain re-computation of the incremental mapping, fills measured by hand from the page
// edges, the binary paths, and the specialised loops against the generic kernel path.

#include "geometric/rectification/projective_correction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "quorimp/quorimp.h"

namespace {

using Bytes = std::vector<unsigned char>;

enum class Kernel { nearest, linear };

// A page as the C interface sees it: packed grey, RGB or BGRA rows.
struct Page {
    int width;
    int height;
    int bytes;
    Bytes pixels;

    unsigned char* at(int x, int y) {
        return pixels.data() + (static_cast<std::size_t>(y) * width + x) * bytes;
    }
};

Page make_page(int width, int height, int bytes,
               const std::function<int(int x, int y, int channel)>& value) {
    Page page{width, height, bytes, Bytes(static_cast<std::size_t>(width) * height * bytes)};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < bytes; ++c) {
                page.at(x, y)[c] = static_cast<unsigned char>(value(x, y, c));
            }
        }
    }
    return page;
}

ImageCApi record_of(Page& page) {
    return ImageCApi{page.width, page.height, 0, 0, page.bytes, 0, page.pixels.data()};
}

// One channel, row by row, truncating after each row as the engine does.
int linear(int left, int right, int below, int below_right, float fx, float fy) {
    const int top = static_cast<unsigned char>(static_cast<int>(right * fx + left * (1 - fx)));
    const int bottom =
        static_cast<unsigned char>(static_cast<int>(below_right * fx + below * (1 - fx)));
    return static_cast<unsigned char>(static_cast<int>(top * (1 - fy) + bottom * fy));
}

// The correction the plain way: unit square onto the corners, the three sums of the mapping
// carried from pixel to pixel and from row to row, the pixel classified by the floors. `channels`
// bytes of each pixel are interpolated; the rest keep what the previous pixel left.
Bytes reference(Page& source, const ControlPointCorners& corners, int width, int height,
                Kernel kernel, int channels, const unsigned char fill[4]) {
    const float x0 = corners.x[0], x1 = corners.x[1], x2 = corners.x[2], x3 = corners.x[3];
    const float y0 = corners.y[0], y1 = corners.y[1], y2 = corners.y[2], y3 = corners.y[3];
    const float sx = (x2 - x3) + (x0 - x1);
    const float sy = (y2 - y3) + (y0 - y1);
    double g = 0, h = 0, a = x1 - x0, b = x2 - x1, d = y1 - y0, e = y2 - y1;
    if (sx != 0 || sy != 0) {
        const double dx1 = x1 - x2, dx2 = x3 - x2, dy1 = y1 - y2, dy2 = y3 - y2;
        const double den = dx1 * dy2 - dy1 * dx2;
        g = (sx * dy2 - sy * dx2) / den;
        h = (sy * dx1 - sx * dy1) / den;
        a = x1 * g + (x1 - x0);
        b = x3 * h + (x3 - x0);
        d = y1 * g + (y1 - y0);
        e = y3 * h + (y3 - y0);
    }
    const int n = source.bytes;
    Bytes out(static_cast<std::size_t>(width) * height * n);
    unsigned char pixel[4] = {0, 0, 0, 0};
    double row_x = x0, row_y = y0, row_w = 1.0;
    for (int j = 0; j < height; ++j) {
        double sum_x = 0, sum_y = 0, sum_w = 0;
        for (int i = 0; i < width; ++i) {
            const double x = (row_x + sum_x) / (row_w + sum_w);
            const double y = (row_y + sum_y) / (row_w + sum_w);
            const int xi = static_cast<int>(std::floor(x));
            const int yi = static_cast<int>(std::floor(y));
            if (xi >= 1 && xi <= source.width - 3 && yi >= 1 && yi <= source.height - 3) {
                const float fx = static_cast<float>(x - xi), fy = static_cast<float>(y - yi);
                for (int c = 0; c < channels; ++c) {
                    pixel[c] = kernel == Kernel::nearest
                                   ? source.at(xi, yi)[c]
                                   : linear(source.at(xi, yi)[c], source.at(xi + 1, yi)[c],
                                            source.at(xi, yi + 1)[c], source.at(xi + 1, yi + 1)[c],
                                            fx, fy);
                }
            } else if (xi >= 0 && xi < source.width && yi >= 0 && yi < source.height) {
                std::memcpy(pixel, source.at(xi, yi), n);
            } else {
                std::memcpy(pixel, fill, n);
            }
            std::memcpy(&out[(static_cast<std::size_t>(j) * width + i) * n], pixel, n);
            sum_x += a / width;
            sum_y += d / width;
            sum_w += g / width;
        }
        row_x += b / height;
        row_y += e / height;
        row_w += h / height;
    }
    return out;
}

ControlPointCorners corners_of(int x0, int y0, int x1, int y1, int x2, int y2, int x3, int y3) {
    return ControlPointCorners{{x0, x1, x2, x3}, {y0, y1, y2, y3}};
}

// Runs the C function into an output sized by obtain_output_image_dimension.
Page correct(Page& source, const ControlPointCorners& corners) {
    int width = 0, height = 0;
    EXPECT_EQ(obtain_output_image_dimension(&corners, &width, &height), 0);
    Page output{width, height, source.bytes,
                Bytes(static_cast<std::size_t>(width) * height * source.bytes, 0xEE)};
    ImageCApi in = record_of(source);
    ImageCApi out = record_of(output);
    EXPECT_EQ(perform_projective_correction(&corners, &in, &out), 0);
    return output;
}

const unsigned char kWhite[4] = {255, 255, 255, 255};

TEST(ProjectiveCorrection, ImageRectangleResamplesByAFractionOfAPixel) {
    // 8 by 4 onto itself: column i reads x = 7 i / 8 and row j reads y = 3 j / 4, all exact in
    // binary. Only x in [1, 6) and y in [1, 2) are interpolated; the rest copy the floor pixel.
    Page source = make_page(8, 4, 1, [](int x, int y, int) { return 16 * x + 32 * y; });
    const Page output = correct(source, corners_of(0, 0, 7, 0, 7, 3, 0, 3));
    ASSERT_EQ(output.width, 8);
    ASSERT_EQ(output.height, 4);
    const Bytes expected = {
        0,  0,  16, 32, 48,  64,  80,  96,   // y 0: copies of row 0
        0,  0,  16, 32, 48,  64,  80,  96,   // y 0.75: still row 0
        32, 32, 76, 90, 104, 118, 132, 128,  // y 1.5: 16 x + 32 y, truncated, inside
        64, 64, 80, 96, 112, 128, 144, 160,  // y 2.25: copies of row 2
    };
    EXPECT_EQ(output.pixels, expected);
}

TEST(ProjectiveCorrection, PerspectiveAndParallelogramPagesFollowTheIncrementalMapping) {
    Page grey = make_page(64, 48, 1, [](int x, int y, int) { return (x * 37 + y * 91) % 256; });
    Page rgb = make_page(64, 48, 3, [](int x, int y, int c) { return (x * 13 + y * 7 * c) % 251; });
    for (const ControlPointCorners& corners :
         {corners_of(5, 3, 58, 8, 61, 44, 2, 40), corners_of(8, 4, 40, 12, 36, 44, 4, 36),
          corners_of(20, 2, 44, 2, 63, 47, 0, 47)}) {
        int width = 0, height = 0;
        obtain_output_image_dimension(&corners, &width, &height);
        EXPECT_EQ(correct(grey, corners).pixels,
                  reference(grey, corners, width, height, Kernel::linear, 1, kWhite));
        EXPECT_EQ(correct(rgb, corners).pixels,
                  reference(rgb, corners, width, height, Kernel::linear, 3, kWhite));
    }
}

TEST(ProjectiveCorrection, InterpolationStopsOnePixelFromTheNearAndTwoFromTheFarEdges) {
    // Pages whose first column or row falls exactly on x = 1, x = width - 2 or y = height - 2,
    // with a fixed fill for what lies beyond.
    Page grey = make_page(64, 48, 1, [](int x, int y, int) { return (x * 37 + y * 91) % 256; });
    const unsigned char fill[4] = {7};
    for (const ControlPointCorners& corners :
         {corners_of(1, 1, 8, 1, 8, 4, 1, 4), corners_of(62, 10, 69, 10, 69, 13, 62, 13),
          corners_of(10, 46, 17, 46, 17, 49, 10, 49)}) {
        common::BasicImage input(grey.pixels.data(), 48, 64, common::IMAGE_TYPE_GREY, 300, 300);
        common::BasicImage output;
        geometric::ProjectiveCorrection correction(&input, &output);
        correction.set_control_points({{float(corners.x[0]), float(corners.y[0])},
                                       {float(corners.x[1]), float(corners.y[1])},
                                       {float(corners.x[2]), float(corners.y[2])},
                                       {float(corners.x[3]), float(corners.y[3])}});
        correction.filling_mode = 0;
        correction.filling_pixel[0] = fill[0];
        correction.run_correction();
        ASSERT_EQ(output.width, 8);
        EXPECT_EQ(Bytes(output.data, output.data + output.data_size),
                  reference(grey, corners, 8, 4, Kernel::linear, 1, fill));
    }
}

TEST(ProjectiveCorrection, GreyFillIsTheLighterHalfOfTheEdgeSamples) {
    // The left edge lies 16 pixels outside. Samples: row 5 below the top edge and row 58 above
    // the bottom edge at x = 0, 7, ..., 63; column 58 left of the right edge at y = 0, 7, ..., 63.
    // The left edge never enters the image and gives none.
    Page source = make_page(64, 64, 1, [](int x, int y, int) { return 100 + (3 * x + y) % 97; });
    const ControlPointCorners corners = corners_of(-16, 0, 63, 0, 63, 63, -16, 63);
    std::vector<int> samples;
    for (int k = 0; k <= 63; k += 7) {
        samples.push_back(source.at(k, 5)[0]);
        samples.push_back(source.at(k, 58)[0]);
        samples.push_back(source.at(58, k)[0]);
    }
    std::sort(samples.rbegin(), samples.rend());
    float sum = 0;
    for (int i = 0; i < 15; ++i) {
        sum += samples[i];
    }
    const unsigned char fill[4] = {static_cast<unsigned char>(static_cast<int>(sum / 15.0f))};

    const Page output = correct(source, corners);
    ASSERT_EQ(output.width, 80);
    EXPECT_EQ(output.pixels, reference(source, corners, 80, 64, Kernel::linear, 1, fill));
    EXPECT_EQ(output.pixels[0], fill[0]);  // the first column lies outside
}

TEST(ProjectiveCorrection, RgbFillIsTheMeanColourOfTheBrighterHalfEarlierFirst) {
    // Ten red samples on row 5, then ten green ones on row 58, both of luma 76, then ten dark
    // ones on column 58: the brighter half is the ten red and the first five green.
    Page source = make_page(64, 64, 3, [](int x, int y, int c) {
        if (y == 5)
            return c == 0 ? 255 : 0;
        if (y == 58)
            return c == 1 ? 130 : 0;
        if (x == 58)
            return 10;
        return 90 + c;
    });
    const ControlPointCorners corners = corners_of(-16, 0, 63, 0, 63, 63, -16, 63);
    const unsigned char fill[4] = {170, 43, 0};
    const Page output = correct(source, corners);
    EXPECT_EQ(output.pixels, reference(source, corners, 80, 64, Kernel::linear, 3, fill));
    EXPECT_EQ(Bytes(output.pixels.begin(), output.pixels.begin() + 3), Bytes(fill, fill + 3));
}

// A binary page of `width` by `height` with its own stride; `black` says which pixels are set.
struct BinaryPage {
    int width;
    int height;
    int stride;
    Bytes bits;

    bool black(int x, int y) const { return (bits[y * stride + x / 8] >> (7 - x % 8)) & 1; }
};

BinaryPage make_binary(int width, int height, const std::function<bool(int, int)>& black) {
    const int stride = (width + 31) / 32 * 4;
    BinaryPage page{width, height, stride, Bytes(static_cast<std::size_t>(stride) * height, 0)};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (black(x, y)) {
                page.bits[y * stride + x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
            }
        }
    }
    return page;
}

TEST(ProjectiveCorrection, BinaryPagesAreCorrectedAsGreyAndThresholded) {
    // Black text strokes on white; the left edge outside, where the fill is white.
    const BinaryPage source =
        make_binary(70, 50, [](int x, int y) { return (x / 3 + y / 5) % 4 == 0 && y > 8; });
    Page grey =
        make_page(70, 50, 1, [&](int x, int y, int) { return source.black(x, y) ? 0 : 255; });
    const ControlPointCorners corners = corners_of(-9, 2, 66, 6, 69, 47, -4, 49);
    int width = 0, height = 0;
    obtain_output_image_dimension(&corners, &width, &height);
    const Bytes expected = reference(grey, corners, width, height, Kernel::nearest, 1, kWhite);

    BinaryPage input = source;
    // Padding bits of the caller's output stay as they were.
    BinaryPage output = make_binary(width, height, [](int, int) { return false; });
    std::fill(output.bits.begin(), output.bits.end(), 0x5A);
    ImageCApi in{input.width, input.height, 0, 0, 3, 1, input.bits.data()};
    ImageCApi out{output.width, output.height, 0, 0, 0, 1, output.bits.data()};
    EXPECT_EQ(perform_projective_correction(&corners, &in, &out), 0);

    EXPECT_EQ(input.bits, source.bits);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < output.stride * 8; ++x) {
            const bool bit = (output.bits[y * output.stride + x / 8] >> (7 - x % 8)) & 1;
            const bool want =
                x < width ? expected[y * width + x] < 129 : ((0x5A >> (7 - x % 8)) & 1) != 0;
            ASSERT_EQ(bit, want) << x << ", " << y;
        }
    }

    // The same page through an output that owns its buffer: reset, then threshold 128.
    common::BasicImage binary(input.bits.data(), input.height, input.width,
                              common::IMAGE_TYPE_BINARY, 300, 300);
    common::BasicImage owned;
    geometric::ProjectiveCorrection correction(&binary, &owned);
    correction.set_control_points({{-9, 2}, {66, 6}, {69, 47}, {-4, 49}});
    EXPECT_TRUE(correction.run_correction());
    ASSERT_EQ(owned.image_type, common::IMAGE_TYPE_BINARY);
    ASSERT_EQ(owned.width, width);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            ASSERT_EQ(owned.get_pixel(x, y),
                      output.bits[y * output.stride + x / 8] >> (7 - x % 8) & 1u);
        }
    }
}

TEST(ProjectiveCorrection, FillIsMeasuredOnlyWhenNeededAndModeZeroKeepsTheCallersColour) {
    Page page = make_page(40, 30, 3, [](int x, int y, int c) { return 60 + x + y + c; });
    common::BasicImage input(page.pixels.data(), 30, 40, common::IMAGE_TYPE_RGB, 300, 300);
    common::BasicImage output;
    geometric::ProjectiveCorrection inside(&input, &output);
    inside.set_control_points({{2, 2}, {37, 3}, {36, 27}, {1, 26}});
    inside.run_correction();
    EXPECT_EQ(Bytes(inside.filling_pixel, inside.filling_pixel + 3), Bytes(3, 255));

    geometric::ProjectiveCorrection outside(&input, &output);
    outside.set_control_points({{-5, 2}, {37, 3}, {36, 27}, {1, 26}});
    outside.filling_mode = 0;
    outside.filling_pixel[0] = 1;
    outside.filling_pixel[1] = 2;
    outside.filling_pixel[2] = 3;
    outside.run_correction();
    EXPECT_EQ(Bytes(output.data, output.data + 3), (Bytes{1, 2, 3}));
    EXPECT_EQ(Bytes(outside.filling_pixel, outside.filling_pixel + 3), (Bytes{1, 2, 3}));
}

TEST(ProjectiveCorrection, BgraLinearWritesTheFirstByteAndCarriesTheOthers) {
    Page page =
        make_page(24, 20, 4, [](int x, int y, int c) { return c == 0 ? 9 * x + y : 40 * c + x; });
    common::BasicImage input(page.pixels.data(), 20, 24, common::IMAGE_TYPE_BGRA, 300, 300);
    common::BasicImage output;
    geometric::ProjectiveCorrection correction(&input, &output);
    correction.set_control_points({{-3, 1}, {22, 0}, {23, 19}, {0, 18}});
    correction.run_correction();
    const ControlPointCorners corners = corners_of(-3, 1, 22, 0, 23, 19, 0, 18);
    const unsigned char fill[4] = {correction.filling_pixel[0], 255, 255, 255};
    EXPECT_EQ(Bytes(output.data, output.data + output.data_size),
              reference(page, corners, output.width, output.height, Kernel::linear, 1, fill));
}

// The loops specialised per kernel and pixel size, one or eight pixels at a time, give the bytes
// of the generic kernel path, on seeded random pages and quadrilaterals, some reaching outside
// the page.
TEST(ProjectiveCorrection, SpecialisedLoopsMatchTheGenericKernelPath) {
    std::mt19937 random(20240611u);
    for (int round = 0; round < 24; ++round) {
        const common::ImageType type = round % 3 == 0   ? common::IMAGE_TYPE_GREY
                                       : round % 3 == 1 ? common::IMAGE_TYPE_RGB
                                                        : common::IMAGE_TYPE_BINARY;
        const int width = 40 + static_cast<int>(random() % 90);
        const int height = 30 + static_cast<int>(random() % 90);
        common::BasicImage source(height, width, type, 300, 300);
        for (std::uint32_t i = 0; i < source.data_size; ++i) {
            source.data[i] = static_cast<unsigned char>(random());
        }
        auto jitter = [&](int limit) {
            return static_cast<float>(static_cast<int>(random() % (2 * limit + 1)) - limit);
        };
        const std::vector<geometric::Geocoordinate<float>> corners = {
            {jitter(12), jitter(12)},
            {width - 1 + jitter(12), jitter(12)},
            {width - 1 + jitter(12), height - 1 + jitter(12)},
            {jitter(12), height - 1 + jitter(12)}};

        // Generic kernel path; one pixel at a time; eight at a time where the processor can.
        Bytes results[3];
        for (int variant = 0; variant < 3; ++variant) {
            common::BasicImage input(source);
            common::BasicImage output;
            geometric::ProjectiveCorrection correction(&input, &output);
            correction.set_control_points(corners);
            correction.specialised_loops = variant != 0;
            correction.wide_loops = variant == 2;
            correction.run_correction();
            results[variant].assign(output.data, output.data + output.data_size);
        }
        ASSERT_FALSE(results[0].empty());
        ASSERT_EQ(results[1], results[0]) << "round " << round;
        ASSERT_EQ(results[2], results[0]) << "round " << round;
    }
}

}  // namespace
