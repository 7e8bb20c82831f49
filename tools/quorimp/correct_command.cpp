// quorimp correct INPUT -o OUTPUT --corners x0,y0,...,y3: rectifies the page within the four
// corners through the C interface, the way an application would: the output is sized with
// obtain_output_image_dimension, its buffer allocated here, and filled by
// perform_projective_correction.

#include <cstdio>
#include <string>

#include "command.h"
#include "corner_list.h"
#include "image_files.h"
#include "quorimp/quorimp.h"
#include "raster.h"
#include "tool_error.h"

namespace quorimp_tool {

namespace {

int run_correct(const Arguments& arguments) {
    const std::string& input_path = arguments.single_positional("INPUT");
    const std::string& output_path = arguments.required("output");
    const ControlPointCorners corners =
        parse_corner_list("--corners", arguments.required("corners"));
    const FileFormat format = output_format_for(output_path);  // refused before any work

    Raster input = read_image_file(input_path);

    int width = 0;
    int height = 0;
    obtain_output_image_dimension(&corners, &width, &height);
    check_raster_size(output_path, width, height);

    // The output has the input's pixel kind; binary rows are padded to 32-bit words.
    Raster output;
    output.allocate(input.kind, width, height);
    const ImageCApi input_record = input.c_api_record();
    ImageCApi output_record = output.c_api_record();
    perform_projective_correction(&corners, &input_record, &output_record);

    write_image_file(output, output_path);
    const bool binary_as_grey = output.kind == PixelKind::binary && format == FileFormat::jpeg;
    std::printf("wrote %s: %d x %d pixels, %s%s\n", output_path.c_str(), width, height,
                pixel_kind_name(output.kind), binary_as_grey ? " (as grey JPEG)" : "");
    return 0;
}

}  // namespace

Command make_correct_command() {
    Command command;
    command.name = "correct";
    command.summary = "rectify a photographed page from its four corners";
    command.synopsis = "correct INPUT -o OUTPUT --corners X0,Y0,X1,Y1,X2,Y2,X3,Y3";
    command.description =
        "Rectify the page whose four corners are given in the photo INPUT and write it to\n"
        "OUTPUT. The page comes out as large as its sides are long (see 'quorimp dimension').\n"
        "Parts of the output that fall outside the photo take the colour of the page's own\n"
        "background, measured just inside its edges.\n"
        "\n"
        "INPUT is a PNG or JPEG file. A 1-bit grey PNG is a binary image and gives a binary\n"
        "page; other images give grey or RGB pages (16-bit, palette and transparent PNG are\n"
        "turned into 8-bit grey or RGB first, transparency over white). The output format\n"
        "follows the extension of OUTPUT: .png, or .jpg / .jpeg (a binary page is written to\n"
        "JPEG as grey). OUTPUT is written whole or not at all.\n";
    command.options = {
        {"output", 'o', "OUTPUT", "where to write the rectified page"},
        {"corners", 0, "X0,Y0,...,Y3",
         "the page corners in INPUT's pixels: top left, top\nright, bottom right, bottom left; "
         "decimals are\nrounded to the nearest pixel, halves up"},
    };
    command.run = run_correct;
    return command;
}

}  // namespace quorimp_tool
