// quorimp binarize INPUT -o OUTPUT.png: turns a photo or scan into a 1-bit page, black text on
// white, with one of the engine's binarization methods. The methods are reached through the
// class interface, since the C interface binarizes only pages of a corrector.

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "command.h"
#include "common/basic_image.h"
#include "geometric/binarization/geometricexception.h"
#include "geometric/binarization/omin_binarization.h"
#include "geometric/binarization/otsu_binarization.h"
#include "geometric/binarization/sauvola_binarization.h"
#include "geometric/binarization/sauvola_binarization_original.h"
#include "geometric/binarization/wolf_binarization_original.h"
#include "image_files.h"
#include "numbers.h"
#include "quorimp/image_c_api_transformer.h"
#include "raster.h"
#include "tool_error.h"

namespace quorimp_tool {

namespace {

enum class Method { sauvola, otsu, sauvola_original, wolf, omin };

struct MethodName {
    const char* name;
    Method method;
    bool takes_window;
    bool takes_k;
};

const MethodName kMethods[] = {
    {"sauvola", Method::sauvola, true, true},
    {"otsu", Method::otsu, false, false},
    {"sauvola-original", Method::sauvola_original, false, true},
    {"wolf", Method::wolf, true, true},
    {"omin", Method::omin, false, true},
};

const MethodName& parse_method(const std::string& text) {
    for (const MethodName& entry : kMethods) {
        if (text == entry.name) {
            return entry;
        }
    }
    throw UsageError("--method: '" + text +
                     "' is not a method; use sauvola, otsu, sauvola-original, wolf or omin");
}

int parse_window(const std::string& text) {
    long window = 0;
    if (!parse_whole_number(text, 3, 4001, window)) {
        throw UsageError("--window: '" + text + "' is not a whole number from 3 to 4001");
    }
    return static_cast<int>(window);
}

double parse_k(const std::string& text) {
    double k = 0.0;
    if (!parse_decimal(text, k) || k < 0.0 || k > 1.0) {
        throw UsageError("--k: '" + text + "' is not a number from 0 to 1");
    }
    return k;
}

std::unique_ptr<geometric::Binarization> make_binarization(const MethodName& method,
                                                           const Arguments& arguments,
                                                           const common::BasicImage& input,
                                                           common::BasicImage& output) {
    const bool has_window = arguments.has("window");
    const bool has_k = arguments.has("k");
    if (has_window && !method.takes_window) {
        throw UsageError(std::string("--window does not apply to ") + method.name);
    }
    if (has_k && !method.takes_k) {
        throw UsageError(std::string("--k does not apply to ") + method.name);
    }
    const int window = has_window ? parse_window(arguments.required("window")) : 0;
    const double k = has_k ? parse_k(arguments.required("k")) : 0.0;

    switch (method.method) {
        case Method::sauvola: {
            auto sauvola = std::make_unique<geometric::SauvolaBinarization>(&input, &output);
            if (has_window)
                sauvola->para.window_size = window;
            if (has_k)
                sauvola->para.k = static_cast<float>(k);
            return sauvola;
        }
        case Method::otsu:
            return std::make_unique<geometric::OtsuBinarization>(&input, &output);
        case Method::sauvola_original: {
            auto original =
                std::make_unique<geometric::SauvolaBinarizationOriginal>(&input, &output);
            if (has_k)
                original->k = k;
            return original;
        }
        case Method::wolf: {
            auto wolf = std::make_unique<geometric::WolfBinarizationOriginal>(&input, &output);
            if (has_window) {
                wolf->window_width = window;
                wolf->window_height = window;
            }
            if (has_k)
                wolf->k = k;
            return wolf;
        }
        case Method::omin: {
            auto omin = std::make_unique<geometric::OminBinarization>(&input, &output);
            if (has_k)
                omin->para.k = static_cast<float>(k);
            return omin;
        }
    }
    return nullptr;
}

int run_binarize(const Arguments& arguments) {
    const std::string& input_path = arguments.single_positional("INPUT");
    const std::string& output_path = arguments.required("output");
    const MethodName& method =
        parse_method(arguments.has("method") ? arguments.required("method") : "sauvola");
    if (output_format_for(output_path) != FileFormat::png) {
        throw ToolError(output_path + ": a binary page is written as PNG; name it .png");
    }

    Raster input = read_image_file(input_path);
    common::BasicImage input_image;
    quorimp::ImageCApiTransformer::transform_c_api_image_to_image(input.c_api_record(),
                                                                  input_image);
    common::BasicImage output_image;
    std::unique_ptr<geometric::Binarization> binarization =
        make_binarization(method, arguments, input_image, output_image);
    binarization->despeckle_enabled = !arguments.has("no-despeckle");

    try {
        if (!binarization->run_binarization()) {
            throw ToolError(input_path + ": the " + method.name + " method found no result");
        }
    } catch (const geometric::Geometricexception& error) {
        // The methods refuse pages too small for their window.
        throw ToolError(input_path + ": " + error.what());
    }

    Raster output;
    output.allocate(PixelKind::binary, output_image.get_width(), output_image.get_height());
    const std::size_t row_bytes = output.row_bytes();
    for (int y = 0; y < output.height; ++y) {
        std::memcpy(output.row(y), output_image.get_row(y), row_bytes);
    }
    write_image_file(output, output_path);
    std::printf("wrote %s: %d x %d pixels, binary (%s)\n", output_path.c_str(), output.width,
                output.height, method.name);
    return 0;
}

}  // namespace

Command make_binarize_command() {
    Command command;
    command.name = "binarize";
    command.summary = "turn a photo or scan into a black and white page";
    command.synopsis =
        "binarize INPUT -o OUTPUT.png [--method sauvola|otsu|sauvola-original|wolf|omin]\n"
        "       [--window N] [--k K] [--no-despeckle]";
    command.description =
        "Binarize the image INPUT and write a 1-bit PNG, black for text and other\n"
        "foreground. Colour is first weighted to grey.\n"
        "\n"
        "Methods:\n"
        "  sauvola           local threshold from the mean and deviation in a window\n"
        "                    around each pixel (the default; window 35, k 0.2)\n"
        "  otsu              one global threshold from the grey histogram\n"
        "  sauvola-original  the textbook local threshold; the window follows the\n"
        "                    image size (k 0.07)\n"
        "  wolf              a local threshold that also weighs the darkest pixel and\n"
        "                    the largest deviation of the page (window 21, k 0.07)\n"
        "  omin              local thresholds at several scales of the page, each part\n"
        "                    judged at the scale that suits its text (k 0.1)\n"
        "\n"
        "Isolated black pixels are removed at the end unless --no-despeckle is given.\n"
        "A binary INPUT comes back unchanged.\n";
    command.options = {
        {"output", 'o', "OUTPUT.png", "where to write the binary page"},
        {"method", 'm', "METHOD", "sauvola, otsu, sauvola-original, wolf or omin"},
        {"window", 'w', "N", "side of the local window in pixels, 3 to 4001\n(sauvola, wolf)"},
        {"k", 'k', "K",
         "weight of the local deviation, 0 to 1\n(sauvola, sauvola-original, wolf, omin)"},
        {"no-despeckle", 0, "", "keep isolated black pixels"},
    };
    command.run = run_binarize;
    return command;
}

}  // namespace quorimp_tool
