// The version family of the C interface.

#include "quorimp/quorimp.h"
#include "quorimp/source_revision.h"

namespace {

// Each string is reached through a writable cell; a call returns what its cell holds then.
const char* version_number_cell = "version of library: " QUORIMP_LIBRARY_VERSION;
const char* branch_name_cell = "git branch: LTS_15.3.44.xx";
const char* sha_cell = "git sha: " QUORIMP_SOURCE_REVISION;

}  // namespace

extern "C" {

const char* quorimp_get_version_number(void) {
    return version_number_cell;
}

const char* quorimp_get_branch_name(void) {
    return branch_name_cell;
}

const char* quorimp_get_sha(void) {
    return sha_cell;
}
}
