#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/basic_image.h"
#include "geometric/operators/geo_morph_bar_extractor.h"
#include "geometric/operators/geo_morph_iterative_dilation.h"
#include "geometric/operators/geo_morphological.h"

namespace {

using geometric::GeoMorphological;

// A binary image from rows of '#' (set) and '.'; the width is that of the first row.
common::BasicImage from_rows(const std::vector<std::string>& rows) {
    common::BasicImage image(static_cast<int>(rows.size()), static_cast<int>(rows[0].size()),
                             common::IMAGE_TYPE_BINARY, 300, 300);
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            image.set_pixel(x, y, rows[y][x] == '#');
        }
    }
    return image;
}

// The pixels of every row, full width.
std::vector<std::string> to_rows(const common::BasicImage& image) {
    std::vector<std::string> rows;
    for (int y = 0; y < image.height; ++y) {
        std::string row;
        for (int x = 0; x < image.width; ++x) {
            row += image.get_pixel(x, y) ? '#' : '.';
        }
        rows.push_back(row);
    }
    return rows;
}

// The padding bits behind the width of every row.
std::vector<std::string> padding_of(const common::BasicImage& image) {
    std::vector<std::string> rows;
    for (int y = 0; y < image.height; ++y) {
        std::string row;
        for (int x = image.width; x < image.row_stride * 8; ++x) {
            row += (image.data[y * image.row_stride + x / 8] >> (7 - x % 8)) & 1 ? '#' : '.';
        }
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::string> transposed(const std::vector<std::string>& rows) {
    std::vector<std::string> columns(rows[0].size(), std::string(rows.size(), '.'));
    for (std::size_t y = 0; y < rows.size(); ++y) {
        for (std::size_t x = 0; x < rows[y].size(); ++x) {
            columns[x][y] = rows[y][x];
        }
    }
    return columns;
}

TEST(GeoMorphological, RowOperationsWalkTheRunsOfTheOriginalRow) {
    common::BasicImage image = from_rows({"..##...##...........",  //
                                          ".#............#####.",  //
                                          "#######.............",  //
                                          ".####..#####.......#"});
    GeoMorphological::dilate_x(image, 2);
    EXPECT_EQ(to_rows(image), std::vector<std::string>({"###########.........",  //
                                                        "####........########",  //
                                                        "#########...........",  //
                                                        "##############...###"}));
    EXPECT_EQ(padding_of(image)[1], std::string(12, '.'));  // never at or beyond the width

    image = from_rows({"####.#####.######...", "#######.............", "..##.###.#.........."});
    GeoMorphological::erode_x(image, 2);  // a run of 4 vanishes, one pixel of a 5 stays
    EXPECT_EQ(to_rows(image), std::vector<std::string>({".......#.....##.....",  //
                                                        "..###...............",  //
                                                        "...................."}));

    image = from_rows({"#.##.###.####......."});
    GeoMorphological::open_x(image, 1);
    EXPECT_EQ(to_rows(image)[0], "#.##.###.####.......");
    GeoMorphological::open_x(image, 3);  // a run of exactly 3 stays
    EXPECT_EQ(to_rows(image)[0], ".....###.####.......");
}

TEST(GeoMorphological, ColumnOperationsCompareTheRowsAsTheyStand) {
    // Each string is one column of a 12-row image, read top to bottom.
    common::BasicImage image = from_rows(transposed({
        ".....##.....",  // a stretch in the middle
        "###.........",  // touching row 0: not dilated upwards
        "..........##",  // touching the last row
        "..##.#......",  // the fill below row 5 reaches row 6, which then no longer changes
    }));
    GeoMorphological::dilate_y(image, 3);
    EXPECT_EQ(transposed(to_rows(image)), std::vector<std::string>({"..########..",  //
                                                                    "######......",  //
                                                                    ".......#####",  //
                                                                    "##########.."}));

    image = from_rows(transposed({"..########..", "...####.....", "#####.......", "........####"}));
    GeoMorphological::erode_y(image, 2);  // the top and bottom borders count as background
    EXPECT_EQ(transposed(to_rows(image)), std::vector<std::string>({"....####....",  //
                                                                    "............",  //
                                                                    "..#.........",  //
                                                                    "............"}));

    image = from_rows(transposed({"##..###.....", ".#.......###", "..........##"}));
    GeoMorphological::open_y(image, 3);
    EXPECT_EQ(transposed(to_rows(image)), std::vector<std::string>({"....###.....",  //
                                                                    ".........###",  //
                                                                    "............"}));
}

TEST(GeoMorphological, EightNeighbourDilationAndIterations) {
    const common::BasicImage input = from_rows({"....................",  //
                                                ".......#...........#",  //
                                                "...................."});
    common::BasicImage output;
    GeoMorphological::dilate_xy(input, output);
    EXPECT_EQ(to_rows(output), std::vector<std::string>({"......###.........##",  //
                                                         "......#.#.........#.",  //
                                                         "......###.........##"}));
    EXPECT_EQ(padding_of(output), std::vector<std::string>(3, "#..........."));

    const std::vector<std::string> dot = {"......", "..#...", "......", "......", "......"};
    common::BasicImage image = from_rows(dot);
    geometric::GeoMorphIterativeDilation(0, false).dilate_image_iterative(image);
    EXPECT_EQ(to_rows(image), dot);
    geometric::GeoMorphIterativeDilation(1, false).dilate_image_iterative(image);
    EXPECT_EQ(to_rows(image),
              std::vector<std::string>({".###..", ".#.#..", ".###..", "......", "......"}));
    image = from_rows(dot);  // the second pass adds to the first: the centre comes back
    geometric::GeoMorphIterativeDilation(2, false).dilate_image_iterative(image);
    EXPECT_EQ(to_rows(image),
              std::vector<std::string>({"#####.", "#####.", "#####.", "#####.", "......"}));

    image = from_rows({"....##", "......"});
    geometric::GeoMorphIterativeDilation(1, false).dilate_image_iterative(image);
    EXPECT_EQ(padding_of(image)[0].substr(0, 3), "#..");
    image = from_rows({"....##", "......"});
    geometric::GeoMorphIterativeDilation(1, true).dilate_image_iterative(image);
    EXPECT_EQ(to_rows(image), std::vector<std::string>({"...###", "...###"}));
    EXPECT_EQ(padding_of(image)[0].substr(0, 3), "...");
}

TEST(GeoMorphological, WholeImageCombinationsIncludeThePadding) {
    common::BasicImage a = from_rows({"##..#"});
    const common::BasicImage b = from_rows({"#.#.."});
    a.data[3] = 0x0F;
    GeoMorphological::or2(a, b);
    EXPECT_EQ(to_rows(a)[0], "###.#");
    GeoMorphological::xor2(a, b);
    EXPECT_EQ(to_rows(a)[0], ".#..#");
    GeoMorphological::remove_denotation(a, from_rows({".##.."}));
    EXPECT_EQ(to_rows(a)[0], "....#");
    EXPECT_EQ(a.data[3], 0x0F);
}

TEST(GeoMorphBarExtractor, KeepsLongThinBarsAndDropsSolidBlocks) {
    // A 150-pixel rule on row 3, a solid block 140 wide and 20 tall, short strokes.
    std::vector<std::string> rows(30, std::string(200, '.'));
    rows[3].replace(20, 150, 150, '#');
    for (int y = 8; y < 28; ++y) {
        rows[y].replace(30, 140, 140, '#');
    }
    rows[5].replace(5, 10, 10, '#');
    const common::BasicImage input = from_rows(rows);
    geometric::GeoMorphBarExtractor extractor;
    common::BasicImage horizontal(input);
    extractor.obtain_horizontal_bar(input, horizontal);
    std::vector<std::string> expected(30, std::string(200, '.'));
    for (int y = 2; y <= 4; ++y) {  // the rule, dilated by one row each way
        expected[y].replace(20, 150, 150, '#');
    }
    EXPECT_EQ(to_rows(horizontal), expected);

    const common::BasicImage upright = from_rows(transposed(rows));
    common::BasicImage vertical(upright);
    extractor.obtain_vertical_bar(upright, vertical);
    EXPECT_EQ(transposed(to_rows(vertical)), expected);

    common::BasicImage without(input);
    extractor.obtain_image_without_bars(input, without);
    std::vector<std::string> rest = rows;
    rest[3] = std::string(200, '.');
    EXPECT_EQ(to_rows(without), to_rows(from_rows(rest)));
}

}  // namespace
