// The labelling pass against a plain flood fill, and the measures of the calculator.

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <vector>

#include "blobs/blob_images.h"
#include "geometric/blobs/connected_component_calculator.h"

namespace {

using common::BasicImage;
using geometric::BinaryConnectedComponent;
using geometric::ConnectedComponentCalculator;
using geometric::Geobox;
using geometric::Geocoordinate;

// Checks that two labellings split the pixels in the same way, whatever the numbering.
void expect_same_partition(const std::vector<int>& ours, const std::vector<int>& reference,
                           const std::string& what) {
    ASSERT_EQ(ours.size(), reference.size());
    std::map<int, int> forward;
    std::map<int, int> backward;
    for (std::size_t i = 0; i < ours.size(); ++i) {
        ASSERT_EQ(ours[i] == 0, reference[i] == 0) << what << " pixel " << i;
        if (ours[i] == 0) {
            continue;
        }
        const auto [f, new_f] = forward.insert({ours[i], reference[i]});
        const auto [b, new_b] = backward.insert({reference[i], ours[i]});
        ASSERT_EQ(f->second, reference[i]) << what << " pixel " << i;
        ASSERT_EQ(b->second, ours[i]) << what << " pixel " << i;
    }
}

TEST(CalculatorPass, AgreesWithAFloodFillOnRandomImages) {
    std::mt19937 random(2024);
    for (int width : {1, 2, 31, 32, 33, 63, 64, 65, 97}) {
        for (double density : {0.1, 0.35, 0.5, 0.65, 0.9}) {
            for (bool eight : {true, false}) {
                const int height = 1 + static_cast<int>(random() % 40);
                const BasicImage image = blob_test::random_binary(height, width, density, random);
                int expected_count = 0;
                const std::vector<int> reference =
                    blob_test::flood_labels(image, eight, expected_count);
                ConnectedComponentCalculator calculator;
                calculator.eight_connected = eight;
                std::vector<int> labels;
                calculator.calculate_label_image(image, labels, 0);
                const std::string what = "width " + std::to_string(width) + " density " +
                                         std::to_string(density) + (eight ? " 8" : " 4");
                ASSERT_EQ(calculator.size(), expected_count) << what;
                expect_same_partition(labels, reference, what);

                // Each element is in exactly one chain, and a chain's pixels and box are those of
                // its flood-fill component.
                std::size_t chained = 0;
                int label = 0;
                for (auto it = calculator.begin(); it != calculator.end(); ++it) {
                    ++label;
                    chained += static_cast<std::size_t>(it->count_stroke());
                    unsigned int pixels = 0;
                    Geobox<int> box;
                    for (int y = 0; y < height; ++y) {
                        for (int x = 0; x < width; ++x) {
                            if (labels[y * width + x] == label) {
                                ++pixels;
                                box.reset(Geocoordinate<int>(x, y));
                            }
                        }
                    }
                    ASSERT_EQ(it->count_pixel(), pixels) << what;
                    const Geobox<int> chain = it->get_bounding_box();
                    ASSERT_EQ(
                        std::vector<int>({chain.min_x, chain.max_x, chain.min_y, chain.max_y}),
                        std::vector<int>({box.min_x, box.max_x, box.min_y, box.max_y}))
                        << what;
                }
                ASSERT_EQ(chained, calculator.pool.size()) << what;

                // Without kept runs the chains are the same, by count and by box.
                ConnectedComponentCalculator counting;
                counting.keep_runs = false;
                counting.eight_connected = eight;
                counting.formulate_connected_components(image);
                ASSERT_FALSE(counting.runs_in_image);
                ASSERT_EQ(counting.pool.size(), calculator.pool.size()) << what;
                for (auto a = calculator.begin(), b = counting.begin(); !a.is_end(); ++a, ++b) {
                    ASSERT_EQ(a->count_pixel(), b->count_pixel()) << what;
                    ASSERT_EQ(a->get_bounding_box().area(), b->get_bounding_box().area()) << what;
                }
            }
        }
    }
}

TEST(CalculatorPass, FramesTouchingEveryBorderAtWordBoundaries) {
    for (int width : {31, 32, 33, 63, 64, 65}) {
        const std::string full(static_cast<std::size_t>(width), '#');
        const std::string sides = "#" + std::string(static_cast<std::size_t>(width - 2), '.') + "#";
        ConnectedComponentCalculator calculator;
        calculator.formulate_connected_components(
            blob_test::binary_from_art({full, sides, sides, full}, true));
        ASSERT_EQ(calculator.size(), 1) << width;
        EXPECT_EQ(calculator.begin()->get_bounding_box().area(), 4 * width);
        EXPECT_EQ(calculator.begin()->count_pixel(), static_cast<unsigned int>(2 * width + 4));
    }
}

TEST(CalculatorPass, GreyAndEmptyImages) {
    BasicImage grey(3, 4, common::IMAGE_TYPE_GREY, 300, 300);
    const unsigned char values[] = {0, 255, 255, 3, 255, 254, 255, 255, 255, 255, 255, 0};
    std::copy(values, values + 12, grey.data);
    ConnectedComponentCalculator grey_calculator;
    grey_calculator.formulate_connected_components(grey);
    EXPECT_EQ(grey_calculator.size(), 3);  // the diagonal (0, 0) (1, 1), then (3, 0) and (3, 2)

    ConnectedComponentCalculator calculator;
    EXPECT_TRUE(calculator.isemptyblob());
    calculator.formulate_connected_components(blob_test::binary_from_art({"....", "...."}, true));
    EXPECT_TRUE(calculator.isemptyblob());
    EXPECT_TRUE(calculator.begin() == calculator.end());
    EXPECT_EQ(calculator.size(), 0);
    calculator.formulate_connected_components(
        BasicImage(0, 10, common::IMAGE_TYPE_BINARY, 300, 300));
    EXPECT_TRUE(calculator.isemptyblob());
    Geobox<int> box;
    EXPECT_EQ(calculator.calculate_largest_blob_bounding_box(box), 0);
    EXPECT_EQ(box.max_x, -1000);
}

TEST(CalculatorPass, RepeatedPassesAddAndKeepEveryRunAlive) {
    ConnectedComponentCalculator calculator;
    const BasicImage first = blob_test::binary_from_art({"#.#.", "#.#."});
    calculator.formulate_connected_components(first);
    BinaryConnectedComponent* early = &*calculator.begin();
    const geometric::BinaryRun* early_run = early->stroke.runs[1].run;
    const auto first_runs = calculator.runs_in_image;
    for (int pass = 0; pass < 50; ++pass) {
        calculator.formulate_connected_components(blob_test::binary_from_art({"##.#", "...."}));
    }
    EXPECT_EQ(calculator.size(), 2 + 50 * 2);
    EXPECT_NE(calculator.runs_in_image, first_runs);
    // The strokes of the first pass still read their own runs, and the element has not moved.
    EXPECT_EQ(&*calculator.begin(), early);
    EXPECT_EQ(early_run->first_x, 0);
    EXPECT_EQ(early_run->last_x, 0);
    // Labels cover the components of every pass; the last pass wrote over the first line.
    std::vector<int> labels;
    calculator.calculate_label_image(first, labels, 0);
    EXPECT_EQ(labels, (std::vector<int>{101, 101, 2, 102, 1, 0, 2, 0}));
}

TEST(CalculatorPass, ACopyDuplicatesThePoolAndSharesTheRuns) {
    ConnectedComponentCalculator original;
    original.formulate_connected_components(blob_test::binary_from_art({"#.#", "###"}));
    ConnectedComponentCalculator copy(original);
    EXPECT_EQ(copy.runs_in_image, original.runs_in_image);
    EXPECT_NE(&*copy.begin(), &*original.begin());
    EXPECT_EQ(copy.begin()->next_element, original.begin()->next_element);
    EXPECT_EQ(copy.begin()->stroke.runs[0].run, original.begin()->stroke.runs[0].run);
    copy.formulate_connected_components(blob_test::binary_from_art({"#"}));
    EXPECT_EQ(copy.size(), 2);
    EXPECT_EQ(original.size(), 1);
    original = copy;
    EXPECT_EQ(original.size(), 2);
}

TEST(CalculatorLabels, LabelsFollowComponentOrderInsideABorder) {
    const BasicImage image = blob_test::binary_from_art({"###..#", "#.#..#"});
    ConnectedComponentCalculator calculator;
    std::vector<int> labels;
    calculator.calculate_label_image(image, labels, 2);
    ASSERT_EQ(labels.size(), 10u * 6u);
    std::vector<int> expected(60, 0);
    const char* art[] = {"222001", "202001"};
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 6; ++x) {
            expected[(y + 2) * 10 + x + 2] = art[y][x] - '0';
        }
    }
    EXPECT_EQ(labels, expected);

    // Entries held before are not cleared; new ones are 0.
    std::vector<int> reused(5, 9);
    ConnectedComponentCalculator again;
    again.calculate_label_image(image, reused, 0);
    EXPECT_EQ(reused, (std::vector<int>{2, 2, 2, 9, 9, 1, 2, 0, 2, 0, 0, 1}));
}

TEST(CalculatorMeasures, DimensionsLargestBoxAndSelectedBlobs) {
    const BasicImage image = blob_test::binary_from_art(
        {"##...###", "##......", "......##", "#.....##", "#.......", "#......."});
    ConnectedComponentCalculator calculator;
    std::vector<int> heights = {-1};
    std::vector<int> widths;
    calculator.calculate_blob_dimensions(image, heights, widths);
    EXPECT_EQ(heights, (std::vector<int>{-1, 2, 1, 2, 3}));
    EXPECT_EQ(widths, (std::vector<int>{2, 3, 2, 1}));
    std::vector<int> only_heights;
    calculator.calculate_blob_heights(image, only_heights);
    EXPECT_EQ(only_heights, (std::vector<int>{2, 1, 2, 3}));
    std::vector<int> only_widths;
    calculator.calculate_blob_widths(image, only_widths);
    EXPECT_EQ(only_widths, widths);

    Geobox<int> box;
    EXPECT_EQ(calculator.calculate_largest_blob_bounding_box(box), 4);  // the first of the 2 by 2
    EXPECT_EQ(box.min_x, 0);
    EXPECT_EQ(box.min_y, 0);

    // Positions 0, 2, 2, 3: the repeated 2 ends the selection, so 3 is not drawn.
    BasicImage selected(6, 8, common::IMAGE_TYPE_BINARY, 300, 300);
    calculator.create_images_formulated_with_selected_blobs({2, 0, 2, 3}, selected);
    const BasicImage expected = blob_test::binary_from_art(
        {"##......", "##......", "......##", "......##", "........", "........"});
    EXPECT_EQ(std::vector<unsigned char>(selected.data, selected.data + selected.data_size),
              std::vector<unsigned char>(expected.data, expected.data + expected.data_size));
}

TEST(CalculatorMeasures, LargestAreaAroundPointsIsThatOfTheUnmarkedPixels) {
    // The outline of a 5 by 5 square at (10, 20): the unmarked inside is 3 by 3.
    std::vector<int> x;
    std::vector<int> y;
    for (int i = 0; i < 5; ++i) {
        for (int j = 0; j < 5; ++j) {
            if (i == 0 || i == 4 || j == 0 || j == 4) {
                x.push_back(10 + i);
                y.push_back(20 + j);
            }
        }
    }
    ConnectedComponentCalculator calculator;
    Geobox<int> box;
    std::vector<int> area_x;
    std::vector<int> area_y;
    EXPECT_EQ(calculator.calculate_largest_blob_bounding_box(x, y, box, area_x, area_y), 9);
    EXPECT_EQ(box.min_x, 11);
    EXPECT_EQ(box.max_x, 13);
    EXPECT_EQ(box.min_y, 21);
    EXPECT_EQ(box.max_y, 23);
    EXPECT_EQ(area_x, (std::vector<int>{11, 12, 13, 11, 12, 13, 11, 12, 13}));
    EXPECT_EQ(area_y, (std::vector<int>{21, 21, 21, 22, 22, 22, 23, 23, 23}));

    // Two corners of a 3 by 3 range leave seven pixels in one area.
    ConnectedComponentCalculator fresh;
    area_x.clear();
    area_y.clear();
    EXPECT_EQ(fresh.calculate_largest_blob_bounding_box({0, 2}, {0, 2}, box, area_x, area_y), 7);
}

}  // namespace
