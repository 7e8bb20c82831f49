// The version family of the C interface.

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "quorimp/quorimp.h"

namespace {

TEST(Version, StringsThroughTheCInterface) {
    EXPECT_STREQ(quorimp_get_version_number(), "version of library: 15.3.44.6");
    EXPECT_STREQ(quorimp_get_branch_name(), "git branch: LTS_15.3.44.xx");
    const std::string sha = quorimp_get_sha();
    EXPECT_TRUE(std::regex_match(sha, std::regex("git sha: [0-9a-f]{40}"))) << sha;
}

}  // namespace
