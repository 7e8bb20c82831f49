// Chains of strokes: the chain operations on hand-linked elements, the chains that the labelling
// pass builds for small shapes, contours, drawing, and the grey-level measures of a component.

#include <gtest/gtest.h>

#include <vector>

#include "blobs/blob_images.h"
#include "geometric/blobs/binary_connected_component.h"
#include "geometric/blobs/connected_component_calculator.h"

namespace {

using common::BasicImage;
using geometric::BinaryConnectedComponent;
using geometric::ConnectedComponentCalculator;
using geometric::Geobox;
using geometric::Geocoordinate;
using Points = std::vector<std::pair<int, int>>;

Points boundary(const BinaryConnectedComponent& component, bool keep_all) {
    std::vector<int> x;
    std::vector<int> y;
    component.get_boundary(x, y, keep_all);
    Points points;
    for (std::size_t i = 0; i < x.size(); ++i) {
        points.push_back({x[i], y[i]});
    }
    return points;
}

// One pass; `elements` in pool order, `components` the heads in iterator order.
struct Pass {
    explicit Pass(const std::vector<std::string>& art, bool eight_connected = true)
        : image(blob_test::binary_from_art(art, true)) {
        calculator.eight_connected = eight_connected;
        calculator.formulate_connected_components(image);
        for (auto it = calculator.pool.begin(); !it.is_end(); ++it) {
            elements.push_back(&*it);
        }
        for (auto it = calculator.begin(); !it.is_end(); ++it) {
            components.push_back(&*it);
        }
    }
    BasicImage image;
    ConnectedComponentCalculator calculator;
    std::vector<BinaryConnectedComponent*> elements;
    std::vector<BinaryConnectedComponent*> components;
};

TEST(ChainOperations, MergeKeepsTheFirstHeadAndStaleCachesAreFollowed) {
    std::vector<BinaryConnectedComponent> e(5);
    for (int i = 0; i < 5; ++i) {
        e[i].stroke.pixel_count = static_cast<unsigned int>(i + 1);
        e[i].stroke.min_x = i;
        e[i].stroke.max_x = 3 * i;
        e[i].stroke.min_y = e[i].stroke.max_y = 10 * i;
    }
    e[0].merge(e[1]);
    e[2].merge(e[3]);
    EXPECT_EQ(e[1].get_first_element(), &e[0]);
    EXPECT_EQ(e[1].first_element_cache, &e[0]);
    EXPECT_FALSE(e[1] == e[3]);
    e[1].merge(e[3]);  // the head of 3's chain goes behind the tail: 0 1 2 3
    EXPECT_TRUE(e[1] == e[3]);
    EXPECT_EQ(e[2].first_element_cache, &e[0]);
    e[4].merge(e[3]);  // 4 0 1 2 3: every cached head is stale now
    EXPECT_EQ(e[3].get_first_element(), &e[4]);
    EXPECT_EQ(e[0].get_last_element(), &e[3]);
    EXPECT_FALSE(e[0].is_top_level());

    EXPECT_EQ(e[4].count_stroke(), 5);
    EXPECT_EQ(e[1].count_stroke(), 3);
    EXPECT_EQ(e[1].count_pixel(), 15u);
    const Geobox<int> box = e[2].get_bounding_box();
    EXPECT_EQ(std::vector<int>({box.min_x, box.max_x, box.min_y, box.max_y}),
              std::vector<int>({0, 12, 0, 40}));
}

TEST(ComponentShapes, AUJoinsItsLegsAndAnInvertedUIsHeadedByItsFork) {
    Pass u({"#...#", "#...#", "#####"});
    ASSERT_EQ(u.elements.size(), 2u);
    ASSERT_EQ(u.components, std::vector<BinaryConnectedComponent*>{u.elements[0]});
    EXPECT_EQ(u.elements[0]->next_element, u.elements[1]);
    EXPECT_EQ(u.elements[0]->stroke.pixel_count, 7u);
    EXPECT_EQ(u.elements[0]->count_pixel(), 9u);

    Pass arch({"#####", "#...#", "#...#"});
    ASSERT_EQ(arch.elements.size(), 2u);
    ASSERT_EQ(arch.components, std::vector<BinaryConnectedComponent*>{arch.elements[1]});
    EXPECT_EQ(arch.elements[1]->next_element, arch.elements[0]);
    EXPECT_EQ(arch.components[0]->count_stroke(), 2);
    EXPECT_EQ(arch.elements[0]->count_stroke(), 1);
    EXPECT_EQ(arch.elements[0]->count_pixel(), 9u);
    Geocoordinate<int> top;
    arch.components[0]->get_top_point(top);
    EXPECT_EQ(top, Geocoordinate<int>(0, 0));
}

TEST(ComponentShapes, AStrokeSeparatedFromItsRunBeforeContinuesOnTheSameLine) {
    // The middle run forks from the top stroke; the right run then follows the fork, not the run
    // that continued the top stroke, so it continues that stroke a second time.
    Pass pass({"#####", "#.#.#"});
    ASSERT_EQ(pass.elements.size(), 2u);
    EXPECT_EQ(pass.elements[0]->stroke.runs.size(), 3u);
    EXPECT_EQ(pass.elements[0]->stroke.pixel_count, 7u);
    EXPECT_EQ(pass.components, std::vector<BinaryConnectedComponent*>{pass.elements[1]});
}

TEST(ComponentShapes, ComponentsComeInThePoolOrderOfTheirHeads) {
    // The arch starts left of the bar but is headed by its fork, made after the bar.
    Pass pass({"###..#", "#.#..#"});
    EXPECT_EQ(pass.components,
              (std::vector<BinaryConnectedComponent*>{pass.elements[1], pass.elements[2]}));
    std::vector<Geocoordinate<int>> tops;
    pass.calculator.obtain_blob_top_points(pass.image, tops);
    EXPECT_EQ(tops, (std::vector<Geocoordinate<int>>{{5, 0}, {0, 0}}));
}

TEST(ComponentShapes, DiagonalsJoinOnlyWithEightNeighboursAndRingsStaySeparate) {
    const std::vector<std::string> cross = {"#..#", ".##.", "#..#"};
    EXPECT_EQ(Pass(cross, true).components.size(), 1u);
    EXPECT_EQ(Pass(cross, false).components.size(), 5u);

    Pass rings({"#########", "#.......#", "#.#####.#", "#.#...#.#", "#.#.#.#.#", "#.#...#.#",
                "#.#####.#", "#.......#", "#########"});
    ASSERT_EQ(rings.components.size(), 3u);
    EXPECT_EQ(rings.components[0]->count_pixel(), 32u);
    EXPECT_EQ(rings.components[1]->count_pixel(), 16u);
    EXPECT_EQ(rings.components[2]->count_pixel(), 1u);
    EXPECT_EQ(rings.components[1]->get_bounding_box().area(), 25);
}

TEST(ComponentBoundary, AUIsWalkedClockwiseAndPageFramePointsCanBeDropped) {
    Pass pass({"#...#", "#...#", "#####"});
    EXPECT_EQ(boundary(*pass.components[0], true), (Points{{0, 0},
                                                           {0, 1},
                                                           {1, 2},
                                                           {2, 2},
                                                           {3, 2},
                                                           {4, 1},
                                                           {4, 0},
                                                           {4, 1},
                                                           {4, 2},
                                                           {3, 2},
                                                           {2, 2},
                                                           {1, 2},
                                                           {0, 2},
                                                           {0, 1}}));
    // Points on column 1 or line 1 are taken for a page frame; column 0 stays.
    EXPECT_EQ(boundary(*pass.components[0], false),
              (Points{{0, 0}, {2, 2}, {3, 2}, {4, 0}, {4, 2}, {3, 2}, {2, 2}, {0, 2}}));
}

TEST(ComponentBoundary, AWalkThroughTheStartTwiceIsClosed) {
    Pass pass({"..#..", ".#.#.", "#...#"});
    EXPECT_EQ(boundary(*pass.components[0], true),
              (Points{{2, 0}, {3, 1}, {4, 2}, {3, 1}, {1, 1}, {0, 2}, {1, 1}, {2, 0}}));
}

TEST(ComponentBoundary, SmallShapes) {
    Pass square({"....", ".##.", ".##."});
    EXPECT_EQ(boundary(*square.components[0], true), (Points{{1, 1}, {2, 1}, {2, 2}, {1, 2}}));
    Pass dots({"#..", "...", "..#"});
    EXPECT_EQ(boundary(*dots.components[0], false), (Points{{0, 0}}));
    EXPECT_EQ(boundary(*dots.components[1], true), (Points{{2, 2}}));
    Pass one({"...", ".#."});
    EXPECT_TRUE(boundary(*one.components[0], false).empty());
}

TEST(ComponentDrawing, DrawUndrawScaleCoordinatesAndThickness) {
    Pass pass({"##.......", ".#......#", "##......#"});
    BinaryConnectedComponent& c = *pass.components[0];
    std::vector<int> x;
    std::vector<int> y;
    c.get_element_coordinates(x, y);
    EXPECT_EQ(x, (std::vector<int>{0, 1, 1, 0, 1}));
    EXPECT_EQ(y, (std::vector<int>{0, 0, 1, 2, 2}));

    BasicImage image(3, 9, common::IMAGE_TYPE_BINARY, 300, 300);
    c.draw_blob_image(image);
    pass.components[1]->draw_blob_image(image);
    EXPECT_EQ(std::vector<unsigned char>(image.data, image.data + 12),
              (std::vector<unsigned char>{0xC0, 0, 0, 0, 0x40, 0x80, 0, 0, 0xC0, 0x80, 0, 0}));
    c.undraw_blob_image(pass.image);
    EXPECT_EQ(pass.image.data[0], 0x00);
    EXPECT_EQ(pass.image.data[5], 0xFF) << "the padding and the other blob stay";

    BasicImage grey(6, 18, common::IMAGE_TYPE_GREY, 300, 300);
    c.draw_blob_image(grey, 7, 2);
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 18; ++column) {
            const bool inside = column < 4 && (column >= 2 || row / 2 != 1);
            ASSERT_EQ(grey.data[row * 18 + column], inside ? 7 : 0) << row << "," << column;
        }
    }

    BasicImage eroded = blob_test::binary_from_art({".........", "........#", "........."});
    EXPECT_FALSE(c.is_thick_blob(eroded));
    EXPECT_TRUE(pass.components[1]->is_thick_blob(eroded));
}

// A run of three pixels on the middle line of an 8 by 3 page. Every pixel lies on the contour,
// so the estimates come from the outline of the 3 by 3 square around each, where the blob itself
// is not background.
TEST(ComponentGrey, AveragesAndCostsOfAThinBlob) {
    Pass pass({"........", "..###...", "........"});
    BasicImage grey(3, 8, common::IMAGE_TYPE_GREY, 300, 300);
    const unsigned char values[24] = {100, 101, 102, 103, 104, 105, 106, 107, 110, 111, 50,  60,
                                      70,  115, 116, 117, 120, 121, 122, 123, 124, 125, 126, 127};
    std::copy(values, values + 24, grey.data);
    BinaryConnectedComponent::BlobNeighborForeBack averages{-1, -1, -1};
    pass.components[0]->fore_back_neighbor(pass.image, pass.image, grey, 3, averages);
    EXPECT_EQ(averages.foreground_average, 0);  // no interior pixel
    EXPECT_EQ(averages.blob_average, 60);
    EXPECT_EQ(averages.background_average, (783 / 7 + 678 / 6 + 799 / 7) / 3);

    BinaryConnectedComponent::BlobNeighborCost cost{0.0, -1.0, -1.0, -1.0};
    pass.components[0]->compression_cost(pass.image, pass.image, grey, 3, averages, cost);
    // With a stride of 4 bytes the "upper" pixels of (2, 1), (3, 1), (4, 1) are grey bytes 6
    // and 5, 7 and 6, 8 and 7 of the page: causal means 107, 87, 92; anticausal 101, 105, 121.
    EXPECT_DOUBLE_EQ(cost.neighbor_cost, 3249 + 2601 + 729 + 2025 + 484 + 2601);
    EXPECT_DOUBLE_EQ(cost.foreground_cost, (100 + 0 + 100) * 0.25);
    EXPECT_DOUBLE_EQ(cost.contour_count, 3.0);
    EXPECT_DOUBLE_EQ(cost.background_cost, 3.0 * (1 + 1 + 4) / 3.0);
}

TEST(ComponentGrey, ForegroundCostOfALargeInterior) {
    // A 5 by 5 block of grey 40 with a 3 by 3 inside of 10 .. 18, on a background of 200.
    Pass pass({".......", ".#####.", ".#####.", ".#####.", ".#####.", ".#####.", "......."});
    BasicImage grey(7, 7, common::IMAGE_TYPE_GREY, 300, 300);
    for (int i = 0; i < 49; ++i) {
        const int x = i % 7;
        const int y = i / 7;
        const bool block = x >= 1 && x <= 5 && y >= 1 && y <= 5;
        const bool inside = x >= 2 && x <= 4 && y >= 2 && y <= 4;
        grey.data[i] = static_cast<unsigned char>(inside  ? 10 + (y - 2) * 3 + (x - 2)
                                                  : block ? 40
                                                          : 200);
    }
    BinaryConnectedComponent::BlobNeighborForeBack averages{};
    pass.components[0]->fore_back_neighbor(pass.image, pass.image, grey, 3, averages);
    EXPECT_EQ(averages.foreground_average, 14);
    EXPECT_EQ(averages.blob_average, (126 + 16 * 40) / 25);
    EXPECT_EQ(averages.background_average, 200);
    BinaryConnectedComponent::BlobNeighborCost cost{0.0, 0.0, -1.0, 0.0};
    pass.components[0]->compression_cost(pass.image, pass.image, grey, 3, averages, cost);
    EXPECT_DOUBLE_EQ(cost.foreground_cost, 25.0 * 60.0 / 9.0);  // squares 16 9 4 1 0 1 4 9 16
    EXPECT_DOUBLE_EQ(cost.background_cost, 0.0);
    EXPECT_DOUBLE_EQ(cost.contour_count, 16.0);
}

}  // namespace
