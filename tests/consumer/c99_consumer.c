/* A C99 program that uses the C interface the way an application does. Exits 0 when every check
 * holds. */
#include <stdio.h>
#include <string.h>

#include <quorimp/quorimp.h>

static int starts_with(const char* text, const char* prefix) {
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

int main(void) {
    ControlPointCorners corners = {{0, 639, 639, 0}, {0, 0, 479, 479}};
    int width = 0;
    int height = 0;
    int failures = 0;

    if (strcmp(quorimp_get_version_number(), "version of library: 15.3.44.6") != 0) {
        fprintf(stderr, "unexpected version: %s\n", quorimp_get_version_number());
        ++failures;
    }
    if (!starts_with(quorimp_get_branch_name(), "git branch: ")) {
        fprintf(stderr, "unexpected branch: %s\n", quorimp_get_branch_name());
        ++failures;
    }
    if (strlen(quorimp_get_sha()) != strlen("git sha: ") + 40) {
        fprintf(stderr, "unexpected sha: %s\n", quorimp_get_sha());
        ++failures;
    }
    if (obtain_output_image_dimension(&corners, &width, &height) != 0 || width != 640 ||
        height != 480) {
        fprintf(stderr, "unexpected page size %d x %d\n", width, height);
        ++failures;
    }
    return failures == 0 ? 0 : 1;
}
