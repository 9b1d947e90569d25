#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>

#include "Platform/Storage/BPath.h"
#include "Platform/Storage/find_directory.h"
#include "Tests/Platform/TestFolder.h"

namespace {

// For the rest of the program, whose other tests ask for none of these.
void Set(const char* variable, const char* value) {
    value == nullptr ? unsetenv(variable) : setenv(variable, value, 1);
}

std::string Find(directory_which which) {
    BPath path;
    EXPECT_EQ(find_directory(which, &path), B_OK);
    return path.Path();
}

TEST(FindDirectoryTest, ComesFromTheEnvironment) {
    Set("HOME", "/users/somebody");
    Set("XDG_CONFIG_HOME", "/settings/");
    Set("XDG_STATE_HOME", "/state");
    Set("XDG_CONFIG_DIRS", "relative:/first:/second");
    EXPECT_EQ(Find(B_USER_SETTINGS_DIRECTORY), "/settings");
    EXPECT_EQ(Find(B_USER_STATE_DIRECTORY), "/state");
    EXPECT_EQ(Find(B_COMMON_SETTINGS_DIRECTORY), "/first");
    // A relative path or an empty one counts as none.
    for (const char* none : {static_cast<const char*>(nullptr), "relative", ""}) {
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CONFIG_DIRS"})
            Set(variable, none);
        EXPECT_EQ(Find(B_USER_SETTINGS_DIRECTORY), "/users/somebody/.config");
        EXPECT_EQ(Find(B_USER_STATE_DIRECTORY), "/users/somebody/.local/state");
        EXPECT_EQ(Find(B_COMMON_SETTINGS_DIRECTORY), "/etc/xdg");
    }
    Set("HOME", nullptr);
    EXPECT_EQ(Find(B_USER_SETTINGS_DIRECTORY).substr(0, 1), "/");
}

TEST(FindDirectoryTest, MakesItForItsOwnerOnly) {
    const TestFolder folder;
    const std::string wanted = folder.Path("a/config");
    Set("XDG_CONFIG_HOME", wanted.c_str());
    BPath path;
    struct stat info {};
    ASSERT_EQ(find_directory(B_USER_SETTINGS_DIRECTORY, &path), B_OK);
    EXPECT_NE(stat(wanted.c_str(), &info), 0);
    ASSERT_EQ(find_directory(B_USER_SETTINGS_DIRECTORY, &path, true), B_OK);
    ASSERT_EQ(stat(wanted.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0700u);
}

}  // namespace
