// quorimp version: the library's version, branch and source revision, one a line.

#include <cstdio>

#include "command.h"
#include "quorimp/quorimp.h"

namespace quorimp_tool {

namespace {

int run_version(const Arguments& arguments) {
    (void)arguments;
    std::printf("%s\n%s\n%s\n", quorimp_get_version_number(), quorimp_get_branch_name(),
                quorimp_get_sha());
    return 0;
}

}  // namespace

Command make_version_command() {
    Command command;
    command.name = "version";
    command.summary = "print the library version, branch and source revision";
    command.synopsis = "version";
    command.description = "Print the version strings of the quorimp library, one a line.\n";
    command.run = run_version;
    return command;
}

}  // namespace quorimp_tool
