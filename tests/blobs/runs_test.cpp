// Runs of binary and grey lines, and of whole images.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "blobs/blob_images.h"
#include "geometric/blobs/runs_in_image.h"
#include "geometric/blobs/runs_in_line.h"

namespace {

using geometric::BinaryRun;
using geometric::RunsInImage;
using geometric::RunsInLine;

std::vector<std::pair<int, int>> pairs(const RunsInLine& runs) {
    std::vector<std::pair<int, int>> result;
    for (const BinaryRun& run : runs) {
        result.push_back({run.first_x, run.last_x});
    }
    return result;
}

// The runs of bits start .. start + width - 1, one bit at a time.
std::vector<std::pair<int, int>> plain_runs(const std::vector<unsigned char>& line, int start,
                                            int width) {
    std::vector<std::pair<int, int>> result;
    int open = -1;
    for (int x = 0; x < width; ++x) {
        const int bit = start + x;
        const bool set = (line[bit / 8] >> (7 - bit % 8)) & 1;
        if (set && open < 0) {
            open = x;
        } else if (!set && open >= 0) {
            result.push_back({open, x - 1});
            open = -1;
        }
    }
    if (open >= 0) {
        result.push_back({open, width - 1});
    }
    return result;
}

TEST(BinaryRunShape, BeginEndAndSize) {
    const BinaryRun run(3, 7);
    EXPECT_EQ(run.begin(), 3);
    EXPECT_EQ(run.end(), 8);
    EXPECT_EQ(run.size(), 5);
}

TEST(RunsInLineBinary, HandPickedLines) {
    RunsInLine runs;
    EXPECT_GE(runs.capacity(), 10u);
    const unsigned char line[] = {0x70, 0x01, 0xC0, 0xFF};
    runs.formulate_runs(line, 0, 16);
    EXPECT_EQ(pairs(runs), (std::vector<std::pair<int, int>>{{1, 3}, {15, 15}}));
    runs.formulate_runs(line, 0, 32);
    EXPECT_EQ(pairs(runs), (std::vector<std::pair<int, int>>{{1, 3}, {15, 17}, {24, 31}}));
    // From bit 15 on: the run of bits 15 to 17 is at column 0.
    runs.formulate_runs(line, 15, 10);
    EXPECT_EQ(pairs(runs), (std::vector<std::pair<int, int>>{{0, 2}, {9, 9}}));
    const unsigned char clear[8] = {};
    runs.formulate_runs(clear, 0, 64);
    EXPECT_TRUE(runs.empty());
    const unsigned char full[8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    runs.formulate_runs(full, 3, 60);
    EXPECT_EQ(pairs(runs), (std::vector<std::pair<int, int>>{{0, 59}}));
}

TEST(RunsInLineBinary, EqualsAPlainBitScanForAnyWidthAndStart) {
    std::mt19937 random(11);
    std::vector<unsigned char> line(24);
    for (int trial = 0; trial < 400; ++trial) {
        // Long clear stretches reach the word skip, dense ones the byte walk.
        const int density = trial % 4;
        for (auto& byte : line) {
            const unsigned value = random() & 0xFF;
            byte = static_cast<unsigned char>(density == 0   ? (random() % 8 == 0 ? value : 0u)
                                              : density == 1 ? value
                                              : density == 2 ? (random() % 8 == 0 ? value : 0xFFu)
                                                             : value & (value >> 1));
        }
        RunsInLine runs;
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
    RunsInLine runs;
    const unsigned char line[] = {255, 255, 0, 255, 7, 254, 255, 1};
    runs.formulate_gray_runs(line, 0, 8);
    EXPECT_EQ(pairs(runs), (std::vector<std::pair<int, int>>{{2, 2}, {4, 5}, {7, 7}}));
    runs.formulate_gray_runs(line, 0, 6);
    EXPECT_EQ(pairs(runs), (std::vector<std::pair<int, int>>{{2, 2}, {4, 5}}));
    runs.formulate_gray_runs(line, 3, 4);
    EXPECT_EQ(pairs(runs), (std::vector<std::pair<int, int>>{{1, 2}}));
    const unsigned char white[] = {255, 255, 255};
    runs.formulate_gray_runs(white, 0, 3);
    EXPECT_TRUE(runs.empty());
}

TEST(RunsInImageLines, OneEntryPerLineByImageType) {
    const common::BasicImage binary =
        blob_test::binary_from_art({"....##...#", "..........", "#########."}, true);
    const RunsInImage runs(binary);
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(pairs(runs.front()), (std::vector<std::pair<int, int>>{{4, 5}, {9, 9}}));
    EXPECT_TRUE(runs[1].empty());
    EXPECT_EQ(pairs(runs[2]), (std::vector<std::pair<int, int>>{{0, 8}}));

    common::BasicImage grey(2, 3, common::IMAGE_TYPE_GREY, 300, 300);
    const unsigned char values[] = {0, 255, 9, 255, 255, 255};
    std::copy(values, values + 6, grey.data);
    const RunsInImage grey_runs(grey);
    ASSERT_EQ(grey_runs.size(), 2u);
    EXPECT_EQ(pairs(grey_runs[0]), (std::vector<std::pair<int, int>>{{0, 0}, {2, 2}}));
    EXPECT_TRUE(grey_runs[1].empty());
}

}  // namespace
