// quorimp: the command-line face of the engine.
//
//   quorimp version
//   quorimp dimension X0 Y0 X1 Y1 X2 Y2 X3 Y3
//
// Corners are given top left, top right, bottom right, bottom left, in pixels.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "quorimp/quorimp.h"

namespace {

constexpr int kUsageError = 2;

void print_usage(std::FILE* out) {
    std::fputs(
        "usage: quorimp version\n"
        "       quorimp dimension X0 Y0 X1 Y1 X2 Y2 X3 Y3\n"
        "\n"
        "  version     print the library version, branch and source revision\n"
        "  dimension   print the size of the page rectified from four corners, given\n"
        "              top left, top right, bottom right, bottom left, in pixels\n",
        out);
}

bool parse_coordinate(const char* text, int& value) {
    errno = 0;
    char* end = nullptr;
    const long parsed = std::strtol(text, &end, 10);
    if (end == text || *end != '\0' || errno == ERANGE || parsed < -1000000 || parsed > 1000000) {
        return false;
    }
    value = static_cast<int>(parsed);
    return true;
}

int run_version() {
    std::printf("%s\n%s\n%s\n", quorimp_get_version_number(), quorimp_get_branch_name(),
                quorimp_get_sha());
    return 0;
}

int run_dimension(int argc, char** argv) {
    if (argc != 8) {
        std::fprintf(stderr, "quorimp dimension: expected 8 coordinates, got %d\n", argc);
        return kUsageError;
    }
    ControlPointCorners corners;
    for (int i = 0; i < 8; ++i) {
        int value = 0;
        if (!parse_coordinate(argv[i], value)) {
            std::fprintf(stderr,
                         "quorimp dimension: coordinate %d, '%s', is not a whole number of pixels "
                         "between -1000000 and 1000000\n",
                         i + 1, argv[i]);
            return kUsageError;
        }
        if (i % 2 == 0) {
            corners.x[i / 2] = value;
        } else {
            corners.y[i / 2] = value;
        }
    }
    int width = 0;
    int height = 0;
    obtain_output_image_dimension(&corners, &width, &height);
    std::printf("rectified page: %d x %d pixels\n", width, height);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        print_usage(stderr);
        return kUsageError;
    }
    const std::string command = argv[1];
    if (command == "-h" || command == "--help" || command == "help") {
        print_usage(stdout);
        return 0;
    }
    if (command == "version" || command == "--version") {
        return run_version();
    }
    if (command == "dimension") {
        return run_dimension(argc - 2, argv + 2);
    }
    std::fprintf(stderr, "quorimp: unknown command '%s'\n", command.c_str());
    print_usage(stderr);
    return kUsageError;
}
