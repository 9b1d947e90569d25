#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "Platform/Storage/BResources.h"
#include "Tests/Platform/TestFolder.h"

namespace {

// This program carries resources; they must still be there when it is stripped.
TEST(ProgramSection, SurvivesStripping) {
    BResources own;
    ASSERT_EQ(own.SetToProgram(), B_OK);
    ASSERT_GT(own.CountResources(), 100);

    const TestFolder folder;
    const std::string copy = folder.Path("program");
    std::filesystem::copy_file("/proc/self/exe", copy);
    const auto sizeBefore = std::filesystem::file_size(copy);
    const int status = std::system((std::string(ORVEK_STRIP) + " -s '" + copy + '\'').c_str());
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_LT(std::filesystem::file_size(copy), sizeBefore);

    BResources stripped;
    ASSERT_EQ(stripped.SetTo(copy.c_str()), B_OK);
    EXPECT_EQ(stripped.CountResources(), own.CountResources());
    EXPECT_EQ(stripped.LoadString(1500), own.LoadString(1500));
}

}  // namespace
