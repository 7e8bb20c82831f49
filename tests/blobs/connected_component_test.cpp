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
using geometric::BinaryRun;
using geometric::ConnectedComponentCalculator;
using geometric::Geobox;
using geometric::Geocoordinate;

using Points = std::vector<std::pair<int, int>>;

std::vector<BinaryConnectedComponent*> pool_elements(ConnectedComponentCalculator& calculator) {
    std::vector<BinaryConnectedComponent*> elements;
    for (auto it = calculator.pool.begin(); !it.is_end(); ++it) {
        elements.push_back(&*it);
    }
    return elements;
}

std::vector<BinaryConnectedComponent*> heads(ConnectedComponentCalculator& calculator) {
    std::vector<BinaryConnectedComponent*> result;
    for (auto it = calculator.begin(); !it.is_end(); ++it) {
        result.push_back(&*it);
    }
    return result;
}

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

struct Pass {
    explicit Pass(const std::vector<std::string>& art, bool eight_connected = true)
        : image(blob_test::binary_from_art(art, true)) {
        calculator.eight_connected = eight_connected;
        calculator.formulate_connected_components(image);
        elements = pool_elements(calculator);
        components = heads(calculator);
    }
    BasicImage image;
    ConnectedComponentCalculator calculator;
    std::vector<BinaryConnectedComponent*> elements;
    std::vector<BinaryConnectedComponent*> components;
};

TEST(ChainOperations, MergeKeepsTheFirstHeadAndCachesAreFollowedWhenStale) {
    std::vector<BinaryConnectedComponent> e(5);
    for (int i = 0; i < 5; ++i) {
        const BinaryRun run(i, i + 2 * i);
        e[i].stroke.pixel_count = static_cast<unsigned int>(i + 1);
        e[i].stroke.min_x = run.first_x;
        e[i].stroke.max_x = run.last_x;
        e[i].stroke.min_y = e[i].stroke.max_y = 10 * i;
    }
    e[0].merge(e[1]);  // 0 1
    e[2].merge(e[3]);  // 2 3
    EXPECT_EQ(e[1].get_first_element(), &e[0]);
    EXPECT_EQ(e[1].first_element_cache, &e[0]);
    EXPECT_EQ(e[2].get_last_element(), &e[3]);
    EXPECT_FALSE(e[1] == e[3]);
    e[1].merge(e[3]);  // joins the head of 3's chain: 0 1 2 3
    EXPECT_TRUE(e[1] == e[3]);
    EXPECT_EQ(e[3].get_first_element(), &e[0]);
    EXPECT_EQ(e[3].first_element_cache, &e[0]);
    EXPECT_EQ(e[2].first_element_cache, &e[0]);
    e[4].merge(e[3]);  // 4 0 1 2 3: every cached head is stale now
    EXPECT_EQ(e[3].get_first_element(), &e[4]);
    EXPECT_EQ(e[0].get_last_element(), &e[3]);
    EXPECT_TRUE(e[4].is_top_level());
    EXPECT_FALSE(e[0].is_top_level());

    EXPECT_EQ(e[4].count_stroke(), 5);
    EXPECT_EQ(e[1].count_stroke(), 3);
    EXPECT_EQ(e[1].count_pixel(), 15u);
    const Geobox<int> box = e[2].get_bounding_box();
    EXPECT_EQ(box.min_x, 0);
    EXPECT_EQ(box.max_x, 12);
    EXPECT_EQ(box.min_y, 0);
    EXPECT_EQ(box.max_y, 40);
}

TEST(ComponentShapes, AUIsOneChainOfItsTwoLegs) {
    Pass pass({"#...#", "#...#", "#####"});
    ASSERT_EQ(pass.elements.size(), 2u);
    ASSERT_EQ(pass.components.size(), 1u);
    EXPECT_EQ(pass.calculator.size(), 1);
    BinaryConnectedComponent* head = pass.components[0];
    EXPECT_EQ(head, pass.elements[0]);
    EXPECT_EQ(head->next_element, pass.elements[1]);
    EXPECT_EQ(head->stroke.pixel_count, 7u);
    EXPECT_EQ(head->count_pixel(), 9u);
    EXPECT_EQ(head->count_stroke(), 2);
    Geocoordinate<int> top(-5, -5);
    head->get_top_point(top);
    EXPECT_EQ(top, Geocoordinate<int>(0, 0));
}

TEST(ComponentShapes, AnInvertedUForksAndTheBranchHeadsTheChain) {
    Pass pass({"#####", "#...#", "#...#"});
    ASSERT_EQ(pass.elements.size(), 2u);
    ASSERT_EQ(pass.components.size(), 1u);
    EXPECT_EQ(pass.components[0], pass.elements[1]);
    EXPECT_EQ(pass.elements[1]->next_element, pass.elements[0]);
    EXPECT_EQ(pass.components[0]->count_stroke(), 2);
    EXPECT_EQ(pass.elements[0]->count_stroke(), 1);
    EXPECT_EQ(pass.elements[0]->count_pixel(), 9u);
    Geocoordinate<int> top;
    pass.components[0]->get_top_point(top);
    EXPECT_EQ(top, Geocoordinate<int>(0, 0));
}

TEST(ComponentShapes, AStrokeSeparatedFromItsRunBeforeContinuesOnTheSameLine) {
    // The middle run forks from the top stroke; the right run is then not next to the run that
    // continued the top stroke, so it continues that stroke a second time.
    Pass pass({"#####", "#.#.#"});
    ASSERT_EQ(pass.elements.size(), 2u);
    EXPECT_EQ(pass.elements[0]->stroke.runs.size(), 3u);
    EXPECT_EQ(pass.elements[0]->stroke.pixel_count, 7u);
    EXPECT_EQ(pass.elements[1]->stroke.pixel_count, 1u);
    ASSERT_EQ(pass.components.size(), 1u);
    EXPECT_EQ(pass.components[0], pass.elements[1]);
}

TEST(ComponentShapes, ComponentsComeInThePoolOrderOfTheirHeads) {
    // The arch starts left of the bar but is headed by its fork, made after the bar.
    Pass pass({"###..#", "#.#..#"});
    ASSERT_EQ(pass.components.size(), 2u);
    EXPECT_EQ(pass.components[0], pass.elements[1]);
    EXPECT_EQ(pass.components[1], pass.elements[2]);
    std::vector<Geocoordinate<int>> tops;
    pass.calculator.obtain_blob_top_points(pass.image, tops);
    EXPECT_EQ(tops, (std::vector<Geocoordinate<int>>{{5, 0}, {0, 0}}));
}

TEST(ComponentShapes, DiagonalsJoinOnlyWithEightNeighbours) {
    const std::vector<std::string> art = {"#..#", ".##.", "#..#"};
    EXPECT_EQ(Pass(art, true).components.size(), 1u);
    EXPECT_EQ(Pass(art, false).components.size(), 5u);
    const std::vector<std::string> two = {"#.", ".#"};
    EXPECT_EQ(Pass(two, true).components.size(), 1u);
    EXPECT_EQ(Pass(two, false).components.size(), 2u);
}

TEST(ComponentShapes, NestedRingsStaySeparate) {
    Pass pass({"#########", "#.......#", "#.#####.#", "#.#...#.#", "#.#.#.#.#", "#.#...#.#",
               "#.#####.#", "#.......#", "#########"});
    ASSERT_EQ(pass.components.size(), 3u);
    EXPECT_EQ(pass.components[0]->count_pixel(), 32u);
    EXPECT_EQ(pass.components[1]->count_pixel(), 16u);
    EXPECT_EQ(pass.components[2]->count_pixel(), 1u);
    const Geobox<int> inner = pass.components[1]->get_bounding_box();
    EXPECT_EQ(inner.min_x, 2);
    EXPECT_EQ(inner.max_x, 6);
    EXPECT_EQ(inner.min_y, 2);
    EXPECT_EQ(inner.max_y, 6);
}

TEST(ComponentShapes, TheKeptRunsAreOptional) {
    const std::vector<std::string> art = {"##..#", "#...#", "#.###"};
    Pass kept(art);
    ConnectedComponentCalculator counted;
    counted.keep_runs = false;
    counted.formulate_connected_components(kept.image);
    EXPECT_FALSE(counted.runs_in_image);
    std::vector<BinaryConnectedComponent*> counted_heads = heads(counted);
    ASSERT_EQ(counted_heads.size(), kept.components.size());
    for (std::size_t i = 0; i < counted_heads.size(); ++i) {
        EXPECT_TRUE(counted_heads[i]->stroke.runs.empty());
        EXPECT_EQ(counted_heads[i]->count_pixel(), kept.components[i]->count_pixel());
        EXPECT_EQ(counted_heads[i]->get_bounding_box().area(),
                  kept.components[i]->get_bounding_box().area());
    }
}

TEST(ComponentBoundary, AUIsWalkedClockwiseAndItsLegsTwice) {
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
    ASSERT_EQ(pass.components.size(), 1u);
    EXPECT_EQ(boundary(*pass.components[0], true),
              (Points{{2, 0}, {3, 1}, {4, 2}, {3, 1}, {1, 1}, {0, 2}, {1, 1}, {2, 0}}));
}

TEST(ComponentBoundary, SmallShapes) {
    Pass square({"....", ".##.", ".##."});
    EXPECT_EQ(boundary(*square.components[0], true), (Points{{1, 1}, {2, 1}, {2, 2}, {1, 2}}));
    EXPECT_EQ(boundary(*square.components[0], false), (Points{{2, 2}}));
    Pass dots({"#..", "...", "..#"});
    EXPECT_EQ(boundary(*dots.components[0], false), (Points{{0, 0}}));
    EXPECT_EQ(boundary(*dots.components[1], true), (Points{{2, 2}}));
    Pass one({"...", ".#."});
    EXPECT_TRUE(boundary(*one.components[0], false).empty());
}

TEST(ComponentDrawing, DrawUndrawScaleAndCoordinates) {
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
    EXPECT_EQ(pass.image.data[4], 0x00);
    EXPECT_EQ(pass.image.data[5], 0xFF) << "the padding and the other blob stay";

    BasicImage grey(6, 18, common::IMAGE_TYPE_GREY, 300, 300);
    c.draw_blob_image(grey, 7, 2);
    const char* expected[] = {"7777..............", "7777..............", "..77..............",
                              "..77..............", "7777..............", "7777.............."};
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 18; ++column) {
            ASSERT_EQ(grey.data[row * 18 + column], expected[row][column] == '7' ? 7 : 0)
                << row << "," << column;
        }
    }

    BasicImage eroded = blob_test::binary_from_art({".........", "........#", "........."});
    EXPECT_FALSE(c.is_thick_blob(eroded));
    EXPECT_TRUE(pass.components[1]->is_thick_blob(eroded));
}

// A run of three pixels on the middle line of an 8 by 3 page. Every pixel lies on the contour,
// so the estimates come from the outline of the 3 by 3 square around each, where the blob itself
// is not background.
class ComponentGrey : public ::testing::Test {
protected:
    ComponentGrey()
        : pass({"........", "..###...", "........"}),
          grey(3, 8, common::IMAGE_TYPE_GREY, 300, 300) {
        const unsigned char values[24] = {100, 101, 102, 103, 104, 105, 106, 107,
                                          110, 111, 50,  60,  70,  115, 116, 117,
                                          120, 121, 122, 123, 124, 125, 126, 127};
        std::copy(values, values + 24, grey.data);
    }
    Pass pass;
    BasicImage grey;
};

TEST_F(ComponentGrey, ForeAndBackgroundAverages) {
    BinaryConnectedComponent::BlobNeighborForeBack averages{};
    pass.components[0]->fore_back_neighbor(pass.image, pass.image, grey, 3, averages);
    EXPECT_EQ(averages.foreground_average, 0);  // no interior pixel
    EXPECT_EQ(averages.blob_average, 60);
    // (783 / 7 + 678 / 6 + 799 / 7) / 3 = (111 + 113 + 114) / 3
    EXPECT_EQ(averages.background_average, 112);
}

TEST_F(ComponentGrey, CompressionCostReadsItsUpperNeighboursOneBinaryStrideBack) {
    BinaryConnectedComponent::BlobNeighborForeBack averages{0, 60, 112};
    BinaryConnectedComponent::BlobNeighborCost cost{0.0, -1.0, -1.0, -1.0};
    pass.components[0]->compression_cost(pass.image, pass.image, grey, 3, averages, cost);
    // With a stride of 4 bytes the "upper" pixels of (2, 1), (3, 1), (4, 1) are grey bytes 6 and
    // 5, 7 and 6, 8 and 7 of the page: causal means 107, 87, 92; anticausal 101, 105, 121.
    EXPECT_DOUBLE_EQ(cost.neighbor_cost, 3249 + 2601 + 729 + 2025 + 484 + 2601);
    EXPECT_DOUBLE_EQ(cost.foreground_cost, (100 + 0 + 100) * 0.25);
    EXPECT_DOUBLE_EQ(cost.contour_count, 3.0);
    EXPECT_DOUBLE_EQ(cost.background_cost, 3.0 * (1 + 1 + 4) / 3.0);
}

TEST(ComponentGreyInterior, ForegroundCostOfALargeInterior) {
    // A 5 by 5 block in a 7 by 7 page: 9 interior pixels of grey 10 + i, 16 contour pixels.
    Pass pass({".......", ".#####.", ".#####.", ".#####.", ".#####.", ".#####.", "......."});
    BasicImage grey(7, 7, common::IMAGE_TYPE_GREY, 300, 300);
    std::fill(grey.data, grey.data + 49, 200);
    int interior_sum = 0;
    for (int i = 0; i < 9; ++i) {
        grey.data[(2 + i / 3) * 7 + 2 + i % 3] = static_cast<unsigned char>(10 + i);
        interior_sum += 10 + i;
    }
    for (int y = 1; y < 6; ++y) {
        for (int x = 1; x < 6; ++x) {
            if (y == 1 || y == 5 || x == 1 || x == 5) {
                grey.data[y * 7 + x] = 40;
            }
        }
    }
    BinaryConnectedComponent::BlobNeighborForeBack averages{};
    pass.components[0]->fore_back_neighbor(pass.image, pass.image, grey, 3, averages);
    EXPECT_EQ(averages.foreground_average, interior_sum / 9);  // 14
    EXPECT_EQ(averages.blob_average, (interior_sum + 16 * 40) / 25);
    EXPECT_EQ(averages.background_average, 200);
    BinaryConnectedComponent::BlobNeighborCost cost{0.0, 0.0, -1.0, 0.0};
    pass.components[0]->compression_cost(pass.image, pass.image, grey, 3, averages, cost);
    // Interior squares around 14: 16 + 9 + 4 + 1 + 0 + 1 + 4 + 9 + 16 = 60.
    EXPECT_DOUBLE_EQ(cost.foreground_cost, 25.0 * 60.0 / 9.0);
    EXPECT_DOUBLE_EQ(cost.background_cost, 0.0);
    EXPECT_DOUBLE_EQ(cost.contour_count, 16.0);
}

}  // namespace
