// quorimp dimension X0 Y0 X1 Y1 X2 Y2 X3 Y3: the size of the page rectified from four corners.

#include <cstdio>
#include <string>

#include "command.h"
#include "numbers.h"
#include "quorimp/quorimp.h"
#include "tool_error.h"

namespace quorimp_tool {

namespace {

int run_dimension(const Arguments& arguments) {
    const std::vector<std::string>& values = arguments.positionals();
    if (values.size() != 8) {
        throw UsageError("expected 8 coordinates, got " + std::to_string(values.size()));
    }
    ControlPointCorners corners;
    for (int i = 0; i < 8; ++i) {
        long value = 0;
        if (!parse_whole_number(values[i], -1000000, 1000000, value)) {
            throw UsageError("coordinate " + std::to_string(i + 1) + ", '" + values[i] +
                             "', is not a whole number of pixels between -1000000 and 1000000");
        }
        if (i % 2 == 0) {
            corners.x[i / 2] = static_cast<int>(value);
        } else {
            corners.y[i / 2] = static_cast<int>(value);
        }
    }
    int width = 0;
    int height = 0;
    obtain_output_image_dimension(&corners, &width, &height);
    std::printf("rectified page: %d x %d pixels\n", width, height);
    return 0;
}

}  // namespace

Command make_dimension_command() {
    Command command;
    command.name = "dimension";
    command.summary = "print the size of the page rectified from four corners";
    command.synopsis = "dimension X0 Y0 X1 Y1 X2 Y2 X3 Y3";
    command.description =
        "Print the size of the page that 'quorimp correct' would make from these corners:\n"
        "top left, top right, bottom right, bottom left, in whole pixels. The width is the\n"
        "mean length of the top and bottom sides, the height that of the left and right\n"
        "sides, counting n + 1 pixels for a side of n pixel steps, rounded to nearest.\n";
    command.run = run_dimension;
    return command;
}

}  // namespace quorimp_tool
