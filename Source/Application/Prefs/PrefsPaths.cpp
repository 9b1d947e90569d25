#include "Application/Prefs/PrefsPaths.h"

#include <cstring>
#include <string_view>

#include "Platform/Storage/BPath.h"
#include "Platform/Storage/find_directory.h"

namespace {

constexpr const char* kCommonFolder = "/(libprefs common)";

}  // namespace

bool PrefsPaths::IsName(const char* name) {
    if (name == nullptr || *name == '\0' || std::strchr(name, '/') != nullptr) return false;
    return std::string_view(name) != "." && std::string_view(name) != "..";
}

status_t PrefsPaths::Root(bool isPerUser, std::string* path) {
    BPath root;
    const status_t status =
        find_directory(isPerUser ? B_USER_SETTINGS_DIRECTORY : B_COMMON_SETTINGS_DIRECTORY, &root);
    if (status == B_OK) *path = root.Path();
    return status;
}

status_t PrefsPaths::OfApplication(const std::string& application, bool isPerUser,
                                   std::string* path) {
    const status_t status = Root(isPerUser, path);
    if (status == B_OK) *path += '/' + (kPrefix + application);
    return status;
}

status_t PrefsPaths::OfSets(const std::string& application, bool isPerUser, std::string* path) {
    const status_t status = OfApplication(application, isPerUser, path);
    if (status == B_OK && !isPerUser) *path += kCommonFolder;
    return status;
}
