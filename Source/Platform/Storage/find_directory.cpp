#include "Platform/Storage/find_directory.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "Platform/Storage/BDirectory.h"
#include "Platform/Storage/BPath.h"

namespace {

// Relative paths there mean nothing and are passed over.
std::string FirstPathOf(const char* variable) {
    const char* const value = std::getenv(variable);
    std::string rest = value == nullptr ? "" : value;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (rest[0] == '/') return rest.substr(0, end);
        rest.erase(0, end + 1);
    }
    return {};
}

std::string PathOf(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value == '/' ? value : "";
}

std::string Home() {
    if (std::string home = PathOf("HOME"); !home.empty()) return home;
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    return found == nullptr ? "" : found->pw_dir;
}

std::string PathInHome(const char* variable, const char* fallback) {
    if (std::string path = PathOf(variable); !path.empty()) return path;
    const std::string home = Home();
    return home.empty() ? home : home + fallback;
}

// The last line of the kind NAME="/path" or NAME="$HOME/path", with quoted characters as a shell
// has them; empty when there is none.
std::string UserFolder(const std::string& name) {
    std::ifstream file(PathInHome("XDG_CONFIG_HOME", "/.config") + "/user-dirs.dirs");
    std::string found;
    for (std::string line; std::getline(file, line);) {
        line.erase(0, std::min(line.find_first_not_of(" \t"), line.size()));
        if (!line.starts_with(name + "=\"")) continue;
        std::string value;
        for (std::size_t i = name.size() + 2; i < line.size() && line[i] != '"'; i++) {
            if (line[i] == '\\' && i + 1 < line.size()) i++;
            value += line[i];
        }
        if (value.starts_with("$HOME/")) value.replace(0, 5, Home());
        if (value.starts_with('/')) found = value;
    }
    return found;
}

std::string DocumentsFolder() {
    const std::string folder = UserFolder("XDG_DOCUMENTS_DIR");
    std::error_code failure;
    return std::filesystem::is_directory(folder, failure) ? folder : Home();
}

std::string Find(directory_which which) {
    switch (which) {
        case B_USER_SETTINGS_DIRECTORY:
            return PathInHome("XDG_CONFIG_HOME", "/.config");
        case B_COMMON_SETTINGS_DIRECTORY: {
            const std::string first = FirstPathOf("XDG_CONFIG_DIRS");
            return first.empty() ? "/etc/xdg" : first;
        }
        case B_USER_STATE_DIRECTORY:
            return PathInHome("XDG_STATE_HOME", "/.local/state");
        case B_USER_DOCUMENTS_DIRECTORY:
            return DocumentsFolder();
    }
    return {};
}

}  // namespace

status_t find_directory(directory_which which, BPath* path, bool create) {
    constexpr mode_t kOwnerOnly = 0700;
    const std::string found = Find(which);
    if (found.empty()) return B_ENTRY_NOT_FOUND;
    const status_t status = path->SetTo(found.c_str());
    return status == B_OK && create ? create_directory(path->Path(), kOwnerOnly) : status;
}
