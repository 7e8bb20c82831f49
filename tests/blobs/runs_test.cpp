// Runs of binary and grey lines, and of whole images.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "blobs/blob_images.h"
#include "geometric/blobs/runs_in_image.h"
#include "geometric/blobs/runs_in_line.h"

namespace {

using geometric::RunsInImage;
using geometric::RunsInLine;
using Pairs = std::vector<std::pair<int, int>>;

Pairs pairs(const RunsInLine& runs) {
    Pairs result;
    for (const geometric::BinaryRun& run : runs) {
        result.push_back({run.first_x, run.last_x});
    }
    return result;
}

// The runs of bits start .. start + width - 1, one bit at a time.
Pairs plain_runs(const std::vector<unsigned char>& line, int start, int width) {
    Pairs result;
    int open = -1;
    for (int x = 0; x <= width; ++x) {
        const int bit = start + x;
        const bool set = x < width && ((line[bit / 8] >> (7 - bit % 8)) & 1);
        if (set && open < 0) {
            open = x;
        } else if (!set && open >= 0) {
            result.push_back({open, x - 1});
            open = -1;
        }
    }
    return result;
}

TEST(RunsInLineBinary, RunsStopAtTheWidthAndCountFromTheStartBit) {
    const unsigned char line[] = {0x70, 0x01, 0xC0, 0xFF};
    RunsInLine runs;
    runs.formulate_runs(line, 0, 16);
    EXPECT_EQ(pairs(runs), (Pairs{{1, 3}, {15, 15}}));
    runs.formulate_runs(line, 15, 10);
    EXPECT_EQ(pairs(runs), (Pairs{{0, 2}, {9, 9}}));
}

TEST(RunsInLineBinary, EqualsAPlainBitScanForAnyWidthAndStart) {
    std::mt19937 random(11);
    std::vector<unsigned char> line(24);
    RunsInLine runs;
    for (int trial = 0; trial < 400; ++trial) {
        // Long clear stretches reach the word skip, dense ones the byte walk.
        for (auto& byte : line) {
            const unsigned value = random() & 0xFF;
            const bool rare = random() % 8 == 0;
            const unsigned kinds[4] = {rare ? value : 0u, value, rare ? value : 0xFFu,
                                       value & (value >> 1)};
            byte = static_cast<unsigned char>(kinds[trial % 4]);
        }
        for (int start = 0; start < 10; ++start) {
            for (int width : {1, 7, 8, 9, 31, 32, 33, 63, 64, 65, 100, 182}) {
                // Exactly the bytes that hold the bits, so that a read beyond them is caught.
                const std::vector<unsigned char> exact(line.begin(),
                                                       line.begin() + (start + width + 7) / 8);
                runs.formulate_runs(exact.data(), start, width);
                ASSERT_EQ(pairs(runs), plain_runs(line, start, width))
                    << "trial " << trial << " start " << start << " width " << width;
            }
        }
    }
}

TEST(RunsInLineGrey, EverythingButWhiteIsForeground) {
    const unsigned char line[] = {255, 255, 0, 255, 7, 254, 255, 1};
    RunsInLine runs;
    runs.formulate_gray_runs(line, 0, 8);
    EXPECT_EQ(pairs(runs), (Pairs{{2, 2}, {4, 5}, {7, 7}}));
    runs.formulate_gray_runs(line, 3, 4);
    EXPECT_EQ(pairs(runs), (Pairs{{1, 2}}));
    runs.formulate_gray_runs(line, 0, 2);
    EXPECT_TRUE(runs.empty());
}

TEST(RunsInImageLines, OneEntryPerLineByImageType) {
    const RunsInImage runs(
        blob_test::binary_from_art({"....##...#", "..........", "#########."}, true));
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(pairs(runs.front()), (Pairs{{4, 5}, {9, 9}}));
    EXPECT_TRUE(runs[1].empty());
    EXPECT_EQ(pairs(runs[2]), (Pairs{{0, 8}}));

    common::BasicImage grey(2, 3, common::IMAGE_TYPE_GREY, 300, 300);
    const unsigned char values[] = {0, 255, 9, 255, 255, 255};
    std::copy(values, values + 6, grey.data);
    const RunsInImage grey_runs(grey);
    ASSERT_EQ(grey_runs.size(), 2u);
    EXPECT_EQ(pairs(grey_runs[0]), (Pairs{{0, 0}, {2, 2}}));
    EXPECT_TRUE(grey_runs[1].empty());
}

}  // namespace
