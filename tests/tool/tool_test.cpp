// The quorimp tool run as a program: refusals, and page rectification through PNG and JPEG files.

#include <gtest/gtest.h>
#include <png.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tool/image_files.h"

namespace {

namespace fs = std::filesystem;
using tool_test::StoredImage;

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

std::string quoted(const std::string& text) {
    std::string result = "'";
    for (char c : text) {
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return result + "'";
}

std::string file_text(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Blocks of 4 x 4 pixels, each block its own colour, channels far apart.
StoredImage block_image(int width, int height, int color_type) {
    StoredImage image;
    image.width = width;
    image.height = height;
    image.color_type = color_type;
    image.rows.resize(image.row_bytes() * height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int bx = x / 4;
            const int by = y / 4;
            unsigned char* pixel = image.rows.data() + image.row_bytes() * y + x * image.channels();
            if (image.channels() == 1) {
                pixel[0] = static_cast<unsigned char>(20 + 50 * bx + 13 * by);
            } else {
                pixel[0] = static_cast<unsigned char>(10 + 60 * bx);
                pixel[1] = static_cast<unsigned char>(20 + 70 * by);
                pixel[2] = static_cast<unsigned char>(240 - 25 * (bx + by));
            }
        }
    }
    return image;
}

StoredImage random_bits(int width, int height, unsigned seed) {
    StoredImage image;
    image.width = width;
    image.height = height;
    image.bit_depth = 1;
    image.color_type = PNG_COLOR_TYPE_GRAY;
    image.rows.resize(image.row_bytes() * height);
    std::mt19937 random(seed);
    for (unsigned char& byte : image.rows) {
        byte = static_cast<unsigned char>(random());
    }
    return image;
}

StoredImage uniform_image(int color_type, int bit_depth, std::vector<unsigned char> pixel) {
    StoredImage image;
    image.width = 6;
    image.height = 5;
    image.color_type = color_type;
    image.bit_depth = bit_depth;
    for (int i = 0; i < image.width * image.height; ++i) {
        image.rows.insert(image.rows.end(), pixel.begin(), pixel.end());
    }
    return image;
}

class ToolTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "quorimp_tool_XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        root_ = pattern;
        fs::create_directory(work());
    }
    void TearDown() override { fs::remove_all(root_); }

    fs::path work() const { return root_ / "work"; }
    std::string at(const std::string& name) const { return (work() / name).string(); }

    ToolRun run(const std::vector<std::string>& arguments) {
        std::string command = quoted(QUORIMP_TOOL_PATH);
        for (const std::string& argument : arguments) {
            command += " " + quoted(argument);
        }
        const fs::path out = root_ / "stdout";
        const fs::path err = root_ / "stderr";
        command += " >" + quoted(out.string()) + " 2>" + quoted(err.string());
        const int raw = std::system(command.c_str());
        ToolRun result;
        result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        result.out = file_text(out);
        result.err = file_text(err);
        return result;
    }

    std::set<std::string> work_files() const {
        std::set<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(work())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    // A correction that must succeed; checks the report line and returns it.
    void correct(const std::string& input, const std::string& output, const std::string& corners,
                 const std::string& expected_report) {
        const ToolRun result = run({"correct", at(input), "-o", at(output), "--corners", corners});
        ASSERT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, "wrote " + at(output) + ": " + expected_report + "\n");
    }

    fs::path root_;
};

TEST_F(ToolTest, RefusesBadInputWithOneLineNamingTheFileAndLeavesNothingBehind) {
    const std::string full = "0,0,15,0,15,11,0,11";
    tool_test::write_png(at("good.png"), block_image(16, 12, PNG_COLOR_TYPE_GRAY));
    tool_test::write_jpeg(at("good.jpg"), block_image(16, 16, PNG_COLOR_TYPE_RGB), 90);
    const std::string png = file_text(at("good.png"));
    const std::string jpeg = file_text(at("good.jpg"));
    std::ofstream(at("notes.png")) << "not a picture\n";
    std::ofstream(at("empty.png")).flush();
    std::ofstream(at("anim.gif")) << "GIF89a....";
    std::ofstream(at("cut.png"), std::ios::binary) << png.substr(0, png.size() / 2);
    std::string damaged = png;
    damaged[damaged.size() - 20] ^= 0x55;  // inside the image data: its checksum no longer fits
    std::ofstream(at("damaged.png"), std::ios::binary) << damaged;
    std::ofstream(at("cut.jpg"), std::ios::binary) << jpeg.substr(0, jpeg.size() * 2 / 3);
    std::ofstream(at("damaged.jpg"), std::ios::binary)
        << jpeg.substr(0, 2) << "garbage" << jpeg.substr(2);
    fs::create_directory(work() / "folder.png");
    const std::set<std::string> before = work_files();

    struct Case {
        std::vector<std::string> arguments;
        std::string expected;
    };
    const std::string out = at("out.png");
    const std::vector<Case> cases = {
        {{"correct", at("missing.png"), "-o", out, "--corners", full},
         "missing.png: cannot open: No such file or directory"},
        {{"correct", at("notes.png"), "-o", out, "--corners", full},
         "notes.png: not a PNG or JPEG image"},
        {{"correct", at("empty.png"), "-o", out, "--corners", full},
         "empty.png: the file is empty"},
        {{"correct", at("anim.gif"), "-o", out, "--corners", full},
         "anim.gif: a GIF image; only PNG and JPEG are read"},
        {{"correct", at("folder.png"), "-o", out, "--corners", full}, "folder.png: is a directory"},
        {{"correct", at("cut.png"), "-o", out, "--corners", full},
         "cut.png: the file ends too early (truncated PNG)"},
        {{"correct", at("damaged.png"), "-o", out, "--corners", full},
         "damaged.png: damaged PNG: "},
        {{"correct", at("cut.jpg"), "-o", out, "--corners", full},
         "cut.jpg: the file ends too early (truncated JPEG)"},
        {{"correct", at("damaged.jpg"), "-o", out, "--corners", full},
         "damaged.jpg: damaged JPEG: "},
        {{"correct", at("good.png"), "-o", out, "--corners", "0,0,15,0,15,11,0"},
         "--corners: expected 8 numbers x0,y0,x1,y1,x2,y2,x3,y3, got 7"},
        {{"correct", at("good.png"), "-o", out, "--corners", "0,0,15,0,1e,11,0,11"},
         "--corners: number 5, '1e', is not a number"},
        {{"correct", at("good.png"), "-o", out, "--corners", "0,0,0,11,15,11,15,0"},
         "--corners: the corners go anticlockwise"},
        {{"correct", at("good.png"), "-o", out, "--corners", "0,0,8,0,15,0,0,11"},
         "--corners: the corners do not make a convex quadrilateral"},
        {{"correct", at("good.png"), "--corners", full}, "missing -o OUTPUT"},
        {{"correct", at("good.png"), "-o", out}, "missing --corners X0,Y0,...,Y3"},
        {{"correct", at("good.png"), "-o", out, "--corners", full, "--frobnicate"},
         "unknown option '--frobnicate'"},
        {{"correct", at("good.png"), "-o", at("out.bmp"), "--corners", full},
         "out.bmp: cannot tell the output format from the name"},
        {{"correct", at("good.png"), "-o", at("nowhere/out.png"), "--corners", full},
         "nowhere/out.png: cannot create the output file: No such file or directory"},
        // libjpeg refuses sides above 65500 pixels once the temporary output file is open.
        {{"correct", at("good.png"), "-o", at("wide.jpg"), "--corners", "0,0,69999,0,69999,1,0,1"},
         "wide.jpg: cannot write the JPEG: "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected);
        const ToolRun result = run(c.arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_NE(result.err.find(c.expected), std::string::npos) << result.err;
        EXPECT_EQ(result.err.rfind("quorimp correct: ", 0), 0u) << result.err;
        EXPECT_EQ(work_files(), before);
    }
}

TEST_F(ToolTest, RefusalKeepsAnEarlierOutputAndSuccessReplacesIt) {
    tool_test::write_png(at("page.png"), block_image(8, 8, PNG_COLOR_TYPE_GRAY));
    std::ofstream(at("cut.png"), std::ios::binary) << file_text(at("page.png")).substr(0, 40);
    std::ofstream(at("out.png")) << "earlier";
    EXPECT_EQ(
        run({"correct", at("cut.png"), "-o", at("out.png"), "--corners", "0,0,7,0,7,7,0,7"}).status,
        2);
    EXPECT_EQ(file_text(at("out.png")), "earlier");
    correct("page.png", "out.png", "0,0,7,0,7,7,0,7", "8 x 8 pixels, grey");
    EXPECT_EQ(tool_test::read_png(at("out.png")).width, 8);
    EXPECT_EQ(work_files(), (std::set<std::string>{"cut.png", "out.png", "page.png"}));
}

// With the corners of the whole image, output pixel (i, j) samples the input at
// ((w - 1) i / w, (h - 1) j / h): between pixels i - 1 and i. Inside a block both are alike, so
// the output keeps the block's colour up to the rounding of the interpolation.
TEST_F(ToolTest, GreyAndRgbPngKeepTheirTypeSizeAndPixels) {
    for (const int color_type : {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_RGB}) {
        const bool rgb = color_type == PNG_COLOR_TYPE_RGB;
        SCOPED_TRACE(rgb ? "RGB" : "grey");
        const StoredImage input = block_image(16, 12, color_type);
        tool_test::write_png(at("in.png"), input);
        correct("in.png", "out.png", "0,0,15,0,15,11,0,11",
                rgb ? "16 x 12 pixels, RGB" : "16 x 12 pixels, grey");

        const StoredImage output = tool_test::read_png(at("out.png"));
        ASSERT_EQ(output.color_type, color_type);
        ASSERT_EQ(output.bit_depth, 8);
        ASSERT_EQ(output.width, 16);
        ASSERT_EQ(output.height, 12);
        for (int y = 0; y < 12; ++y) {
            for (int x = 0; x < 16; ++x) {
                if (x % 4 == 0 || y % 4 == 0) {
                    continue;
                }
                for (int c = 0; c < input.channels(); ++c) {
                    EXPECT_NEAR(output.sample(x, y, c), input.sample(x, y, c), 2)
                        << "at " << x << "," << y << " channel " << c;
                }
            }
        }
    }
}

// Binary pages are sampled from the nearest pixel, so the result is exact: with the whole image,
// output (i, j) is input (max(i - 1, 0), max(j - 1, 0)); with the corners turned a quarter
// (top left at the input's top right), output (i, j) is input (w - 1 - j, max(i - 1, 0)).
TEST_F(ToolTest, OneBitPngGivesAnExactOneBitPage) {
    const int w = 13;
    const int h = 9;
    const StoredImage input = random_bits(w, h, 2024);
    tool_test::write_png(at("in.png"), input);

    correct("in.png", "same.png", "0,0,12,0,12,8,0,8", "13 x 9 pixels, binary");
    const StoredImage same = tool_test::read_png(at("same.png"));
    ASSERT_EQ(same.bit_depth, 1);
    ASSERT_EQ(same.color_type, PNG_COLOR_TYPE_GRAY);
    ASSERT_EQ(same.width, w);
    ASSERT_EQ(same.height, h);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            EXPECT_EQ(same.sample(x, y), input.sample(std::max(x - 1, 0), std::max(y - 1, 0)))
                << "at " << x << "," << y;
        }
    }

    correct("in.png", "turned.png", "12,0,12,8,0,8,0,0", "9 x 13 pixels, binary");
    const StoredImage turned = tool_test::read_png(at("turned.png"));
    ASSERT_EQ(turned.bit_depth, 1);
    ASSERT_EQ(turned.width, h);
    ASSERT_EQ(turned.height, w);
    for (int y = 0; y < w; ++y) {
        for (int x = 0; x < h; ++x) {
            EXPECT_EQ(turned.sample(x, y), input.sample(w - 1 - y, std::max(x - 1, 0)))
                << "at " << x << "," << y;
        }
    }
}

// 16-bit samples are scaled to 8 bits, a palette becomes RGB, alpha is laid over white.
TEST_F(ToolTest, OtherPngLayoutsBecomeEightBitGreyOrRgb) {
    struct Case {
        StoredImage image;
        std::string report;
        int color_type;
        std::vector<unsigned> expected;
    };
    StoredImage palette = uniform_image(PNG_COLOR_TYPE_PALETTE, 8, {1});
    palette.palette = {0, 0, 0, 30, 140, 250};
    StoredImage transparent_palette = palette;
    transparent_palette.transparency = {255, 0};
    const std::vector<Case> cases = {
        {uniform_image(PNG_COLOR_TYPE_GRAY, 16, {0x80, 0x80}), "grey", PNG_COLOR_TYPE_GRAY, {128}},
        {palette, "RGB", PNG_COLOR_TYPE_RGB, {30, 140, 250}},
        {transparent_palette, "RGB", PNG_COLOR_TYPE_RGB, {255, 255, 255}},
        // (200, 100, 0) half covering white: (v * 128 + 255 * 127) / 255, rounded.
        {uniform_image(PNG_COLOR_TYPE_RGB_ALPHA, 8, {200, 100, 0, 128}),
         "RGB",
         PNG_COLOR_TYPE_RGB,
         {227, 177, 127}},
        {uniform_image(PNG_COLOR_TYPE_GRAY_ALPHA, 8, {0, 0}), "grey", PNG_COLOR_TYPE_GRAY, {255}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("color type " + std::to_string(c.image.color_type) + ", " +
                     std::to_string(c.image.bit_depth) + " bits");
        tool_test::write_png(at("in.png"), c.image);
        correct("in.png", "out.png", "0,0,5,0,5,4,0,4", "6 x 5 pixels, " + c.report);
        const StoredImage output = tool_test::read_png(at("out.png"));
        ASSERT_EQ(output.color_type, c.color_type);
        ASSERT_EQ(output.bit_depth, 8);
        for (int y = 0; y < output.height; ++y) {
            for (int x = 0; x < output.width; ++x) {
                for (int ch = 0; ch < output.channels(); ++ch) {
                    EXPECT_NEAR(output.sample(x, y, ch), c.expected[ch], 2);
                }
            }
        }
    }
}

// JPEG is lossy: blocks of 16 pixels (the colour subsampling unit) are compared at their centres.
TEST_F(ToolTest, JpegInAndOut) {
    StoredImage input;
    input.width = 48;
    input.height = 32;
    input.color_type = PNG_COLOR_TYPE_RGB;
    input.rows.resize(input.row_bytes() * input.height);
    const unsigned char colours[6][3] = {{200, 30, 30},  {30, 200, 30},  {30, 30, 200},
                                         {230, 230, 40}, {40, 230, 230}, {120, 120, 120}};
    for (int y = 0; y < input.height; ++y) {
        for (int x = 0; x < input.width; ++x) {
            for (int c = 0; c < 3; ++c) {
                input.rows[input.row_bytes() * y + 3 * x + c] = colours[(y / 16) * 3 + x / 16][c];
            }
        }
    }
    tool_test::write_jpeg(at("photo.jpg"), input, 95);

    correct("photo.jpg", "page.jpeg", "0,0,47,0,47,31,0,31", "48 x 32 pixels, RGB");
    const StoredImage page = tool_test::read_jpeg(at("page.jpeg"));
    ASSERT_EQ(page.color_type, PNG_COLOR_TYPE_RGB);
    ASSERT_EQ(page.width, 48);
    ASSERT_EQ(page.height, 32);
    for (int block = 0; block < 6; ++block) {
        for (int c = 0; c < 3; ++c) {
            EXPECT_NEAR(page.sample(8 + 16 * (block % 3), 8 + 16 * (block / 3), c),
                        colours[block][c], 12)
                << "block " << block << " channel " << c;
        }
    }

    // A grey JPEG gives a grey page; a binary page goes to JPEG as grey 0 and 255.
    tool_test::write_jpeg(at("grey.jpg"), block_image(16, 16, PNG_COLOR_TYPE_GRAY), 95);
    correct("grey.jpg", "grey.png", "0,0,15,0,15,15,0,15", "16 x 16 pixels, grey");
    EXPECT_EQ(tool_test::read_png(at("grey.png")).color_type, PNG_COLOR_TYPE_GRAY);
    tool_test::write_png(at("bits.png"), random_bits(16, 16, 7));
    correct("bits.png", "bits.JPG", "0,0,15,0,15,15,0,15", "16 x 16 pixels, binary (as grey JPEG)");
    const StoredImage bits = tool_test::read_jpeg(at("bits.JPG"));
    EXPECT_EQ(bits.color_type, PNG_COLOR_TYPE_GRAY);
    EXPECT_EQ(bits.width, 16);
}

TEST_F(ToolTest, DecimalCornersAreRoundedToNearestWithHalvesUp) {
    tool_test::write_png(at("in.png"), block_image(16, 12, PNG_COLOR_TYPE_GRAY));
    // Rounded: (0, 0), (15, 0), (15, 11), (-1, 11), a bottom left corner outside the image. A
    // bottom side of 16 steps and a top side of 15 give 17 columns; truncation would give 16.
    correct("in.png", "out.png", "0.4,-0.5,14.5,0.49,15.2,10.5,-0.6,11.4", "17 x 12 pixels, grey");
    const ToolRun dimension = run({"dimension", "0", "0", "15", "0", "15", "11", "-1", "11"});
    EXPECT_EQ(dimension.out, "rectified page: 17 x 12 pixels\n");
}

TEST_F(ToolTest, HelpPages) {
    const ToolRun overview = run({"--help"});
    EXPECT_EQ(overview.status, 0);
    for (const char* command : {"correct", "dimension", "version", "help"}) {
        EXPECT_NE(overview.out.find(std::string("\n  ") + command + " "), std::string::npos)
            << command;
    }
    EXPECT_EQ(run({"help"}).out, overview.out);

    const ToolRun correct_help = run({"correct", "--help"});
    EXPECT_EQ(correct_help.status, 0);
    EXPECT_EQ(correct_help.out.rfind(
                  "usage: quorimp correct INPUT -o OUTPUT --corners X0,Y0,X1,Y1,X2,Y2,X3,Y3\n", 0),
              0u);
    EXPECT_NE(correct_help.out.find("-o, --output OUTPUT"), std::string::npos);
    EXPECT_EQ(run({"help", "correct"}).out, correct_help.out);
    EXPECT_EQ(run({"help", "nonsense"}).status, 2);
}

}  // namespace

namespace {

// A light page of 40 x 40 pixels with one dark 20 x 20 square in the middle.
StoredImage square_page() {
    StoredImage image;
    image.width = 40;
    image.height = 40;
    image.color_type = PNG_COLOR_TYPE_GRAY;
    image.rows.assign(40 * 40, 230);
    for (int y = 10; y < 30; ++y) {
        for (int x = 10; x < 30; ++x) {
            image.rows[y * 40 + x] = 40;
        }
    }
    return image;
}

bool in_square(int x, int y) {
    return x >= 10 && x < 30 && y >= 10 && y < 30;
}

TEST_F(ToolTest, BinarizeWritesBlackForegroundAsOneBitPng) {
    tool_test::write_png(at("page.png"), square_page());

    ToolRun result = run({"binarize", at("page.png"), "-o", at("sauvola.png")});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "wrote " + at("sauvola.png") + ": 40 x 40 pixels, binary (sauvola)\n");
    StoredImage page = tool_test::read_png(at("sauvola.png"));
    ASSERT_EQ(page.bit_depth, 1);
    // The smoothing pass softens the square's edges, so only pixels two or more away from an
    // edge are certain.
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            const bool deep_inside = x >= 12 && x < 28 && y >= 12 && y < 28;
            const bool far_outside = !(x >= 8 && x < 32 && y >= 8 && y < 32);
            if (deep_inside || far_outside) {
                ASSERT_EQ(page.sample(x, y), deep_inside ? 0u : 1u) << x << ", " << y;
            }
        }
    }

    // Otsu leaves the one-pixel frame out of its threshold and flips every byte at the end, so
    // the frame comes out black.
    result = run(
        {"binarize", at("page.png"), "-o", at("otsu.png"), "--method", "otsu", "--no-despeckle"});
    ASSERT_EQ(result.status, 0) << result.err;
    page = tool_test::read_png(at("otsu.png"));
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            const bool frame = x == 0 || y == 0 || x == 39 || y == 39;
            ASSERT_EQ(page.sample(x, y), in_square(x, y) || frame ? 0u : 1u) << x << ", " << y;
        }
    }

    for (const std::string method : {"sauvola-original", "wolf"}) {
        result =
            run({"binarize", at("page.png"), "-o", at(method + ".png"), "-m", method, "-k", "0.1"});
        EXPECT_EQ(result.status, 0) << result.err;
    }
}

TEST_F(ToolTest, BinarizeRefusesOptionsThatDoNotFit) {
    tool_test::write_png(at("page.png"), square_page());
    const std::set<std::string> before = work_files();
    const std::string out = at("out.png");
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"binarize", at("page.png"), "-o", out, "--method", "otsu", "--k", "0.3"},
         "--k does not apply to otsu"},
        {{"binarize", at("page.png"), "-o", out, "--method", "niblack"},
         "--method: 'niblack' is not a method"},
        {{"binarize", at("page.png"), "-o", out, "--window", "2"},
         "--window: '2' is not a whole number from 3 to 4001"},
        {{"binarize", at("page.png"), "-o", out, "--k", "1.5"}, "--k: '1.5' is not a number"},
        {{"binarize", at("page.png"), "-o", at("out.jpg")},
         "out.jpg: a binary page is written as PNG"},
        {{"binarize", at("missing.png"), "-o", out}, "missing.png: cannot open"},
    };
    for (const auto& [arguments, expected] : cases) {
        const ToolRun result = run(arguments);
        EXPECT_EQ(result.status, 2) << expected;
        EXPECT_NE(result.err.find(expected), std::string::npos) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_EQ(work_files(), before) << expected;
    }
}

}  // namespace

namespace {

std::vector<unsigned char> file_bytes(const std::string& path) {
    const std::string text = file_text(path);
    return std::vector<unsigned char>(text.begin(), text.end());
}

// The left four columns of the page lie left of the photo and take the fill.
TEST_F(ToolTest, CorrectFillsWhatLiesOutsideThePhotoWithTheGivenColour) {
    const std::string corners = "-4,0,15,0,15,11,-4,11";
    tool_test::write_png(at("rgb.png"), block_image(16, 12, PNG_COLOR_TYPE_RGB));
    correct("rgb.png", "auto.png", corners, "20 x 12 pixels, RGB");
    ToolRun result = run({"correct", at("rgb.png"), "-o", at("filled.png"), "--corners", corners,
                          "--fill", "10, 20,30"});
    ASSERT_EQ(result.status, 0) << result.err;
    const StoredImage automatic = tool_test::read_png(at("auto.png"));
    const StoredImage filled = tool_test::read_png(at("filled.png"));
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(filled.sample(x, y, 0), 10u);
            EXPECT_EQ(filled.sample(x, y, 1), 20u);
            EXPECT_EQ(filled.sample(x, y, 2), 30u);
        }
        EXPECT_EQ(filled.sample(10, y, 1), automatic.sample(10, y, 1));  // inside the photo
    }
    EXPECT_NE(automatic.sample(0, 5, 0), 10u);

    tool_test::write_png(at("grey.png"), block_image(16, 12, PNG_COLOR_TYPE_GRAY));
    result = run({"correct", at("grey.png"), "-o", at("grey_filled.png"), "--corners", corners,
                  "--fill", "10,20,30"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(tool_test::read_png(at("grey_filled.png")).sample(1, 6), 18u);  // its weighted grey
}

// The binarized page is the one that 'binarize' makes of the rectified page with the same values.
TEST_F(ToolTest, CorrectBinarizesTheRectifiedPageAndNotesClampedValues) {
    tool_test::write_png(at("page.png"), square_page());
    const std::string corners = "0,0,39,0,39,39,0,39";
    struct Case {
        std::vector<std::string> correct_options;
        std::vector<std::string> binarize_options;
        std::string note;
    };
    const std::vector<Case> cases = {
        {{}, {"--k", "0.1"}, ""},
        {{"--method", "omin"}, {"--method", "omin"}, ""},
        {{"--k", "1.5"}, {"--k", "0.99"}, "--k 1.5 is above 1; the engine uses 0.99"},
        {{"-m", "omin", "--k=-2"},
         {"-m", "omin", "--k", "0.01"},
         "--k -2 is below 0; the engine uses 0.01"},
        {{"--window", "0", "--k", "0.3"},
         {"--window", "3", "--k", "0.3"},
         "--window 0 is below 1; the engine uses 3"},
    };
    for (const Case& c : cases) {
        std::vector<std::string> arguments = {"correct",      at("page.png"), "-o",
                                              at("flat.png"), "--corners",    corners,
                                              "--binarize",   at("bw.png")};
        arguments.insert(arguments.end(), c.correct_options.begin(), c.correct_options.end());
        const ToolRun result = run(arguments);
        ASSERT_EQ(result.status, 0) << result.err;
        const std::string method =
            c.correct_options.size() > 1 && c.correct_options[1] == "omin" ? "omin" : "sauvola";
        EXPECT_EQ(result.out, "wrote " + at("flat.png") + ": 40 x 40 pixels, grey\nwrote " +
                                  at("bw.png") + ": 40 x 40 pixels, binary (" + method + ")\n");
        EXPECT_EQ(result.err, c.note.empty() ? "" : "quorimp correct: note: " + c.note + "\n");

        arguments = {"binarize", at("flat.png"), "-o", at("reference.png")};
        arguments.insert(arguments.end(), c.binarize_options.begin(), c.binarize_options.end());
        ASSERT_EQ(run(arguments).status, 0);
        EXPECT_EQ(file_bytes(at("bw.png")), file_bytes(at("reference.png"))) << c.note;
    }
    EXPECT_EQ(tool_test::read_png(at("bw.png")).sample(20, 20), 0u);
}

TEST_F(ToolTest, CorrectRefusesBinarizeOptionsThatDoNotFit) {
    tool_test::write_png(at("page.png"), square_page());
    const std::set<std::string> before = work_files();
    const std::vector<std::string> base = {"correct",   at("page.png"),        "-o", at("o.png"),
                                           "--corners", "0,0,39,0,39,39,0,39", "-b", at("bw.png")};
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"--method", "omin"}, "--method applies only with --binarize"},
        {{"--k", "0.2"}, "--k applies only with --binarize"},
        {{"--fill", "1,2"}, "--fill: '1,2' is not R,G,B with each from 0 to 255"},
        {{"--fill", "1,2,256"}, "--fill: '1,2,256' is not R,G,B"},
    };
    for (const auto& [options, expected] : cases) {
        std::vector<std::string> arguments(base.begin(), base.begin() + 6);
        arguments.insert(arguments.end(), options.begin(), options.end());
        const ToolRun result = run(arguments);
        EXPECT_EQ(result.status, 2) << expected;
        EXPECT_NE(result.err.find(expected), std::string::npos) << result.err;
        EXPECT_EQ(work_files(), before) << expected;
    }
    const std::vector<std::pair<std::vector<std::string>, std::string>> binarize_cases = {
        {{"--method", "otsu"}, "--method: 'otsu' is not a method; use sauvola or omin"},
        {{"--method", "omin", "--window", "9"}, "--window does not apply to omin"},
        {{"--k", "abc"}, "--k: 'abc' is not a number"},
        {{"--window", "1.5"}, "--window: '1.5' is not a whole number"},
    };
    for (const auto& [options, expected] : binarize_cases) {
        std::vector<std::string> arguments = base;
        arguments.insert(arguments.end(), options.begin(), options.end());
        const ToolRun result = run(arguments);
        EXPECT_EQ(result.status, 2) << expected;
        EXPECT_NE(result.err.find(expected), std::string::npos) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_EQ(work_files(), before) << expected;
    }
    ToolRun result = run({"correct", at("page.png"), "-o", at("o.png"), "--corners",
                          "0,0,39,0,39,39,0,39", "--binarize", at("bw.jpg")});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("bw.jpg: a binary page is written as PNG"), std::string::npos);
    // A page of 3 x 3 pixels is too small for any Sauvola window.
    result = run({"correct", at("page.png"), "-o", at("o.png"), "--corners", "0,0,2,0,2,2,0,2",
                  "--binarize", at("bw.png")});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err,
              "quorimp correct: " + at("page.png") +
                  ": the page of 3 x 3 pixels cannot be binarized: The window size is too large\n");
    EXPECT_EQ(work_files(), before);
}

}  // namespace
