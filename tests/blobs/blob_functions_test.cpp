// The blob family through the C interface.

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "blobs/blob_images.h"
#include "geometric/blobs/connected_component_calculator.h"
#include "geometric/blobs/runs_in_image.h"
#include "quorimp/quorimp.h"

namespace {

using common::BasicImage;

ImageCApi record_of(BasicImage& image) {
    ImageCApi record = {
        image.width, image.height, 0, 0, 1, image.image_type == common::IMAGE_TYPE_BINARY ? 1 : 0,
        image.data};
    return record;
}

std::vector<unsigned char> bytes_of(const BasicImage& image) {
    return std::vector<unsigned char>(image.data, image.data + image.data_size);
}

class BlobHandle : public ::testing::Test {
protected:
    BlobHandle() : handle(create_blob_calculator()) {}
    ~BlobHandle() override { delete_blob_calculator(handle); }
    void* handle;
};

TEST(BlobFunctions, FormulationAddsUpAndOnlyFourSelectsTheFourNeighbourhood) {
    delete_blob_calculator(nullptr);  // a no-op
    BasicImage image = blob_test::binary_from_art({"#.#", ".#.", "#.#"}, true);
    ImageCApi record = record_of(image);
    for (auto [setting, expected] : {std::pair{8, 1}, std::pair{0, 1}, std::pair{4, 5}}) {
        void* handle = create_blob_calculator();
        ASSERT_NE(handle, nullptr);
        set_neighborhood(handle, setting);
        EXPECT_EQ(perform_blob_formulation(handle, &record), expected) << setting;
        EXPECT_EQ(perform_blob_formulation(handle, &record), 2 * expected) << setting;
        delete_blob_calculator(handle);
    }
}

TEST_F(BlobHandle, LabelImageIsWrittenIntoAClearedCallerArray) {
    BasicImage image = blob_test::binary_from_art({"#..#", "#..."}, true);
    ImageCApi record = record_of(image);
    std::vector<int> labels(6 * 4, -7);
    calculate_label_image(handle, &record, labels.data(), 1);
    EXPECT_EQ(labels, (std::vector<int>{0, 0, 0, 0, 0, 0,  //
                                        0, 1, 0, 0, 2, 0,  //
                                        0, 1, 0, 0, 0, 0,  //
                                        0, 0, 0, 0, 0, 0}));

    void* blank_handle = create_blob_calculator();
    BasicImage blank(2, 4, common::IMAGE_TYPE_BINARY, 300, 300);
    ImageCApi blank_record = record_of(blank);
    calculate_label_image(blank_handle, &blank_record, labels.data(), 0);
    EXPECT_EQ(std::vector<int>(labels.begin(), labels.begin() + 8), std::vector<int>(8, 0));
    EXPECT_EQ(labels[10], 2) << "beyond the label image";
    delete_blob_calculator(blank_handle);
}

std::vector<std::size_t> requested_sizes;
void* recording_malloc(size_t bytes) {
    requested_sizes.push_back(bytes);
    return std::malloc(bytes);
}

TEST_F(BlobHandle, ContoursComeFromTheCallersAllocator) {
    BasicImage image = blob_test::binary_from_art({"##..#", "##...", "....#"}, true);
    ImageCApi record = record_of(image);
    int* x = nullptr;
    int* y = nullptr;
    requested_sizes.clear();
    const int count = obtain_blob_contours_one_by_one(handle, &record, &x, &y, recording_malloc);
    ASSERT_EQ(count, 6);
    EXPECT_EQ(requested_sizes, (std::vector<std::size_t>{24, 24}));
    EXPECT_EQ(std::vector<int>(x, x + 6), (std::vector<int>{0, 1, 1, 0, 4, 4}));
    EXPECT_EQ(std::vector<int>(y, y + 6), (std::vector<int>{0, 0, 1, 1, 0, 2}));
    std::free(x);
    std::free(y);
}

TEST_F(BlobHandle, DimensionsTopPointsAndRuns) {
    BasicImage image = blob_test::binary_from_art({"...##", "#..##", "#....", "#...."}, true);
    ImageCApi record = record_of(image);
    int heights[2] = {};
    int widths[2] = {};
    obtain_blob_dimension_histogram(handle, &record, heights, widths);
    EXPECT_EQ(heights[0], 2);
    EXPECT_EQ(widths[0], 2);
    EXPECT_EQ(heights[1], 3);
    EXPECT_EQ(widths[1], 1);
    int x[2] = {};
    int y[2] = {};
    obtain_blob_top_points(handle, &record, x, y);
    EXPECT_EQ(x[0], 3);
    EXPECT_EQ(y[0], 0);
    EXPECT_EQ(x[1], 0);
    EXPECT_EQ(y[1], 1);
    const auto* runs =
        static_cast<const geometric::RunsInImage*>(obtain_runs_image(handle, &record));
    ASSERT_NE(runs, nullptr);
    ASSERT_EQ(runs->size(), 4u);
    EXPECT_EQ((*runs)[1].size(), 2u);
    EXPECT_EQ((*runs)[1][1].first_x, 3);

    void* counting = create_blob_calculator();
    static_cast<geometric::ConnectedComponentCalculator*>(counting)->keep_runs = false;
    EXPECT_EQ(obtain_runs_image(counting, &record), nullptr);
    delete_blob_calculator(counting);
}

// Four blobs: 2 pixels, a 3 by 2 block of 6, a 1 by 4 bar of 4, and a 5 by 4 block of 20.
class ScaleImage : public ::testing::Test {
protected:
    ScaleImage()
        : binary(blob_test::binary_from_art(
              {"##.........#####", "...###..#..#####", "...###..#..#####", "........#..#####",
               "........#......."},
              true)),
          scale(10, 32, common::IMAGE_TYPE_GREY, 300, 300) {}

    unsigned char run(bool only, int scale_index, int base_scale, int minimum_dimension,
                      unsigned char use_height) {
        void* handle = create_blob_calculator();
        ImageCApi binary_record = record_of(binary);
        ImageCApi scale_record = record_of(scale);
        const unsigned char result =
            only ? create_scale_img_only(handle, 12.0, 4.0, scale_index, &scale_record,
                                         &binary_record, base_scale, minimum_dimension, use_height)
                 : create_scale_img(handle, 12.0, 4.0, scale_index, &scale_record, &binary_record,
                                    base_scale, minimum_dimension, use_height);
        delete_blob_calculator(handle);
        return result;
    }

    // The bar of column 8, lines 1 to 4, magnified twice with the value 3.
    BasicImage bar_at_twice() {
        BasicImage expected(10, 32, common::IMAGE_TYPE_GREY, 300, 300);
        for (int y = 2; y < 10; ++y) {
            expected.data[y * 32 + 16] = expected.data[y * 32 + 17] = 3;
        }
        return expected;
    }

    BasicImage binary;
    BasicImage scale;
};

TEST_F(ScaleImage, ErasesBlobsOutsideTheLimitsAndPaintsTheRestMagnified) {
    // Scale 2 over base 1: dimension limit 6 / 2 = 3 on the height, magnification 4 / 2.
    EXPECT_EQ(run(false, 2, 1, 6, 1), 1);
    EXPECT_EQ(bytes_of(scale), bytes_of(bar_at_twice()));
    const BasicImage remaining =
        blob_test::binary_from_art({"................", "........#.......", "........#.......",
                                    "........#.......", "........#......."},
                                   true);
    EXPECT_EQ(bytes_of(binary), bytes_of(remaining));
}

TEST_F(ScaleImage, TheOnlyFormKeepsBlobsOutsideTheAreaLimits) {
    EXPECT_EQ(run(true, 2, 1, 6, 1), 1);
    EXPECT_EQ(bytes_of(scale), bytes_of(bar_at_twice()));
    const BasicImage remaining =
        blob_test::binary_from_art({"##.........#####", "........#..#####", "........#..#####",
                                    "........#..#####", "........#......."},
                                   true);
    EXPECT_EQ(bytes_of(binary), bytes_of(remaining));
}

TEST_F(ScaleImage, TheBaseScaleSkipsTheDimensionTestAndPaintsAtOne) {
    // Widths: the block is 3 wide, the bar 1; at the base scale neither is tested.
    EXPECT_EQ(run(false, 1, 1, 100, 0), 1);
    BasicImage expected(10, 32, common::IMAGE_TYPE_GREY, 300, 300);
    for (int y = 1; y < 3; ++y) {
        for (int x = 3; x < 6; ++x) {
            expected.data[y * 32 + x] = 2;
        }
    }
    for (int y = 1; y < 5; ++y) {
        expected.data[y * 32 + 8] = 2;
    }
    EXPECT_EQ(bytes_of(scale), bytes_of(expected));
}

TEST_F(ScaleImage, WidthsAreTestedWithoutUseHeight) {
    // Limit 4 / 2 = 2 at scale 2: the block, 3 wide, is painted; the bar, 1 wide, is erased.
    EXPECT_EQ(run(false, 2, 1, 4, 0), 1);
    EXPECT_EQ(scale.data[2 * 32 + 6], 3);
    EXPECT_EQ(scale.data[2 * 32 + 16], 0);
    EXPECT_FALSE(blob_test::pixel(binary, 8, 2));
}

}  // namespace
