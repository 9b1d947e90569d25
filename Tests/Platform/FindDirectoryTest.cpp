#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>

#include "BPath.h"
#include "TestFolder.h"
#include "find_directory.h"

namespace {

// For the rest of the program, whose other tests ask for none of these.
void Set(const char* variable, const char* value) {
    if (value == nullptr)
        unsetenv(variable);
    else
        setenv(variable, value, 1);
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
        Set("XDG_CONFIG_HOME", none);
        Set("XDG_STATE_HOME", none);
        Set("XDG_CONFIG_DIRS", none);
        EXPECT_EQ(Find(B_USER_SETTINGS_DIRECTORY), "/users/somebody/.config");
        EXPECT_EQ(Find(B_USER_STATE_DIRECTORY), "/users/somebody/.local/state");
        EXPECT_EQ(Find(B_COMMON_SETTINGS_DIRECTORY), "/etc/xdg");
    }
    Set("HOME", nullptr);
    EXPECT_EQ(Find(B_USER_SETTINGS_DIRECTORY).substr(0, 1), "/");
}

TEST(FindDirectoryTest, MakesItForItsOwnerOnly) {
    const TestFolder folder;
    Set("XDG_CONFIG_HOME", folder.Path("a/config").c_str());
    BPath path;
    struct stat info {};
    ASSERT_EQ(find_directory(B_USER_SETTINGS_DIRECTORY, &path), B_OK);
    EXPECT_NE(stat(path.Path(), &info), 0);
    ASSERT_EQ(find_directory(B_USER_SETTINGS_DIRECTORY, &path, true), B_OK);
    ASSERT_EQ(stat(path.Path(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0700u);
}

}  // namespace
