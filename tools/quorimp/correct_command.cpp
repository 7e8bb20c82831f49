// quorimp correct INPUT -o OUTPUT --corners x0,y0,...,y3: rectifies the page within the four
// corners through the corrector of the C interface, the way an application would: a corrector
// handle sizes the page from the corners, the output buffer is allocated here and the handle fills
// it. With --binarize the handle also binarizes the rectified page.

#include <climits>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <string>

#include "command.h"
#include "corner_list.h"
#include "image_files.h"
#include "numbers.h"
#include "quorimp/quorimp.h"
#include "raster.h"
#include "tool_error.h"

namespace quorimp_tool {

namespace {

struct CorrectorDeleter {
    void operator()(void* corrector) const { destroy_corrector(corrector); }
};
using Corrector = std::unique_ptr<void, CorrectorDeleter>;

// What --binarize asks for. The values go through the corrector's setters, which clamp them.
struct BinarizeRequest {
    std::string path;  // empty without --binarize
    int method = 0;    // 0 Sauvola, 1 the multi-scale method
    bool has_window = false;
    int window = 0;
    bool has_k = false;
    float k = 0.0f;
};

const char* method_name(int method) {
    return method == 0 ? "sauvola" : "omin";
}

BinarizeRequest parse_binarize_request(const Arguments& arguments) {
    BinarizeRequest request;
    if (!arguments.has("binarize")) {
        for (const char* option : {"method", "window", "k"}) {
            if (arguments.has(option)) {
                throw UsageError(std::string("--") + option + " applies only with --binarize");
            }
        }
        return request;
    }
    request.path = arguments.required("binarize");
    if (arguments.has("method")) {
        const std::string& text = arguments.required("method");
        if (text == "sauvola") {
            request.method = 0;
        } else if (text == "omin") {
            request.method = 1;
        } else {
            throw UsageError("--method: '" + text + "' is not a method; use sauvola or omin");
        }
    }
    if (arguments.has("window")) {
        if (request.method != 0) {
            throw UsageError("--window does not apply to omin");
        }
        const std::string& text = arguments.required("window");
        long window = 0;
        if (!parse_whole_number(text, INT_MIN, INT_MAX, window)) {
            throw UsageError("--window: '" + text + "' is not a whole number");
        }
        request.has_window = true;
        request.window = static_cast<int>(window);
    }
    if (arguments.has("k")) {
        const std::string& text = arguments.required("k");
        double k = 0.0;
        if (!parse_decimal(text, k)) {
            throw UsageError("--k: '" + text + "' is not a number");
        }
        request.has_k = true;
        request.k = static_cast<float>(k);
    }
    if (output_format_for(request.path) != FileFormat::png) {
        throw ToolError(request.path + ": a binary page is written as PNG; name it .png");
    }
    return request;
}

// "R,G,B", each from 0 to 255.
void parse_fill(const std::string& text, unsigned char rgb[3]) {
    const std::vector<std::string> items = split_list(text);
    bool valid = items.size() == 3;
    for (std::size_t i = 0; valid && i < 3; ++i) {
        long value = 0;
        valid = parse_whole_number(items[i], 0, 255, value);
        rgb[i] = static_cast<unsigned char>(value);
    }
    if (!valid) {
        throw UsageError("--fill: '" + text + "' is not R,G,B with each from 0 to 255");
    }
}

// Hands the clamped values to the corrector and says on stderr where the engine changed them.
void configure_binarization(void* corrector, const BinarizeRequest& request) {
    set_binarization_method(corrector, request.method);
    if (request.has_window) {
        set_binarization_window(corrector, request.window);
        if (request.window < 1) {
            std::fprintf(stderr,
                         "quorimp correct: note: --window %d is below 1; the engine uses 3\n",
                         request.window);
        }
    }
    if (request.has_k) {
        set_binarization_k(corrector, request.k);
        if (request.k < 0.0f || request.k > 1.0f) {
            std::fprintf(stderr, "quorimp correct: note: --k %g is %s; the engine uses %s\n",
                         static_cast<double>(request.k), request.k < 0.0f ? "below 0" : "above 1",
                         request.k < 0.0f ? "0.01" : "0.99");
        }
    }
}

int run_correct(const Arguments& arguments) {
    const std::string& input_path = arguments.single_positional("INPUT");
    const std::string& output_path = arguments.required("output");
    const ControlPointCorners corners =
        parse_corner_list("--corners", arguments.required("corners"));
    const FileFormat format = output_format_for(output_path);  // refused before any work
    unsigned char rgb[3] = {0, 0, 0};
    const bool has_fill = arguments.has("fill");
    if (has_fill) {
        parse_fill(arguments.required("fill"), rgb);
    }
    const BinarizeRequest binarize = parse_binarize_request(arguments);

    Raster input = read_image_file(input_path);

    Corrector corrector(corrector_create());
    if (corrector == nullptr) {
        throw std::bad_alloc();
    }
    // The corrector reads as many bytes of the colour as a pixel has: grey and binary pages (the
    // latter are corrected as grey) take the colour's grey by the engine's weights.
    unsigned char fill[3] = {rgb[0], rgb[1], rgb[2]};
    if (input.kind != PixelKind::rgb) {
        fill[0] =
            static_cast<unsigned char>((299u * rgb[0] + 587u * rgb[1] + 114u * rgb[2]) / 1000u);
    }
    if (has_fill) {
        set_filling_color(corrector.get(), fill);
    }

    int width = 0;
    int height = 0;
    obtain_corrected_img_dimension_given_corners(corrector.get(), &corners, &width, &height);
    check_raster_size(output_path, width, height);

    // The output has the input's pixel kind; binary rows are padded to 32-bit words.
    Raster output;
    output.allocate(input.kind, width, height);
    const ImageCApi input_record = input.c_api_record();
    ImageCApi output_record = output.c_api_record();
    obtain_corrected_image_given_corners(corrector.get(), &input_record, &corners, &output_record);

    Raster binary;
    if (!binarize.path.empty()) {
        configure_binarization(corrector.get(), binarize);
        binary.allocate(PixelKind::binary, width, height);
        ImageCApi binary_record = binary.c_api_record();
        try {
            obtain_binarized_corrected_image(corrector.get(), &output_record, &binary_record);
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            // Sauvola refuses pages too small for its window.
            throw ToolError(input_path + ": the page of " + std::to_string(width) + " x " +
                            std::to_string(height) +
                            " pixels cannot be binarized: " + error.what());
        }
    }

    write_image_file(output, output_path);
    if (!binarize.path.empty()) {
        try {
            write_image_file(binary, binarize.path);
        } catch (...) {
            std::remove(output_path.c_str());  // nothing of a failed run stays behind
            throw;
        }
    }
    const bool binary_as_grey = output.kind == PixelKind::binary && format == FileFormat::jpeg;
    std::printf("wrote %s: %d x %d pixels, %s%s\n", output_path.c_str(), width, height,
                pixel_kind_name(output.kind), binary_as_grey ? " (as grey JPEG)" : "");
    if (!binarize.path.empty()) {
        std::printf("wrote %s: %d x %d pixels, binary (%s)\n", binarize.path.c_str(), width, height,
                    method_name(binarize.method));
    }
    return 0;
}

}  // namespace

Command make_correct_command() {
    Command command;
    command.name = "correct";
    command.summary = "rectify a photographed page from its four corners";
    command.synopsis =
        "correct INPUT -o OUTPUT --corners X0,Y0,X1,Y1,X2,Y2,X3,Y3\n"
        "       [--fill R,G,B] [--binarize OUTPUT.png [--method sauvola|omin]\n"
        "       [--window N] [--k K]]";
    command.description =
        "Rectify the page whose four corners are given in the photo INPUT and write it to\n"
        "OUTPUT. The page comes out as large as its sides are long (see 'quorimp dimension').\n"
        "Parts of the output that fall outside the photo take the --fill colour, or else the\n"
        "colour of the page's own background, measured just inside its edges.\n"
        "\n"
        "INPUT is a PNG or JPEG file. A 1-bit grey PNG is a binary image and gives a binary\n"
        "page; other images give grey or RGB pages (16-bit, palette and transparent PNG are\n"
        "turned into 8-bit grey or RGB first, transparency over white). The output format\n"
        "follows the extension of OUTPUT: .png, or .jpg / .jpeg (a binary page is written to\n"
        "JPEG as grey). OUTPUT is written whole or not at all.\n"
        "\n"
        "With --binarize the rectified page is also binarized and written as a 1-bit PNG,\n"
        "black for text: by Sauvola (window 35, k 0.1) or by the multi-scale method (k 0.1),\n"
        "which fits its window to text of every size. A --window below 1 becomes 3 and a --k\n"
        "outside 0 to 1 becomes 0.01 or 0.99, with a note on stderr.\n";
    command.options = {
        {"output", 'o', "OUTPUT", "where to write the rectified page"},
        {"corners", 0, "X0,Y0,...,Y3",
         "the page corners in INPUT's pixels: top left, top\nright, bottom right, bottom left; "
         "decimals are\nrounded to the nearest pixel, halves up"},
        {"fill", 0, "R,G,B",
         "colour of the parts outside the photo, each 0 to\n255 (grey pages take its grey)"},
        {"binarize", 'b', "OUTPUT.png", "also write the page binarized to a 1-bit PNG"},
        {"method", 'm', "METHOD", "sauvola (the default) or omin, with --binarize"},
        {"window", 'w', "N", "Sauvola's window in pixels (35), with --binarize"},
        {"k", 'k', "K", "weight of the local deviation (0.1), with --binarize"},
    };
    command.run = run_correct;
    return command;
}

}  // namespace quorimp_tool
