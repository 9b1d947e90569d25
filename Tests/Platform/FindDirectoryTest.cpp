#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "BPath.h"
#include "TestFolder.h"
#include "find_directory.h"

namespace {

// Sets a variable of the environment, or takes it out, for as long as it lives.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* const old = std::getenv(name); old != nullptr) old_ = old;
        Set(value);
    }
    ~Variable() { Set(old_ ? old_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    void Set(const char* value) const {
        if (value == nullptr)
            unsetenv(name_);
        else
            setenv(name_, value, 1);
    }

private:
    const char* const name_;
    std::optional<std::string> old_;
};

std::string Find(directory_which which) {
    BPath path;
    EXPECT_EQ(find_directory(which, &path), B_OK);
    return path.Path();
}

TEST(FindDirectoryTest, ComesFromTheEnvironment) {
    const Variable home("HOME", "/users/somebody");
    const Variable config("XDG_CONFIG_HOME", "/settings/");
    const Variable state("XDG_STATE_HOME", "/state");
    const Variable dirs("XDG_CONFIG_DIRS", "relative:/first:/second");
    EXPECT_EQ(Find(B_USER_SETTINGS_DIRECTORY), "/settings");
    EXPECT_EQ(Find(B_USER_STATE_DIRECTORY), "/state");
    EXPECT_EQ(Find(B_COMMON_SETTINGS_DIRECTORY), "/first");
    // A relative path or an empty one counts as none.
    for (const char* none : {static_cast<const char*>(nullptr), "relative", ""}) {
        config.Set(none);
        state.Set(none);
        dirs.Set(none);
        EXPECT_EQ(Find(B_USER_SETTINGS_DIRECTORY), "/users/somebody/.config");
        EXPECT_EQ(Find(B_USER_STATE_DIRECTORY), "/users/somebody/.local/state");
        EXPECT_EQ(Find(B_COMMON_SETTINGS_DIRECTORY), "/etc/xdg");
    }
    home.Set(nullptr);
    EXPECT_EQ(Find(B_USER_SETTINGS_DIRECTORY).substr(0, 1), "/");
}

TEST(FindDirectoryTest, MakesItForItsOwnerOnly) {
    const TestFolder folder;
    const Variable config("XDG_CONFIG_HOME", folder.Path("a/config").c_str());
    BPath path;
    struct stat info {};
    ASSERT_EQ(find_directory(B_USER_SETTINGS_DIRECTORY, &path), B_OK);
    EXPECT_NE(stat(path.Path(), &info), 0);
    ASSERT_EQ(find_directory(B_USER_SETTINGS_DIRECTORY, &path, true), B_OK);
    ASSERT_EQ(stat(path.Path(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0700u);
}

}  // namespace
