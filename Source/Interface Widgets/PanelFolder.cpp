#include "Interface Widgets/PanelFolder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "Platform/Storage/BPath.h"
#include "Platform/Storage/entry_ref.h"
#include "Platform/Storage/find_directory.h"

namespace {

namespace fs = std::filesystem;

// What the tool that makes build trees leaves at the top of each.
constexpr const char* kMarkOfBuildTree = "CMakeCache.txt";

// Homes and removable disks may lie in /var and in /run.
constexpr std::array<std::string_view, 12> kSystemFolders{"/bin",  "/boot",  "/dev",   "/etc",
                                                          "/lib",  "/lib32", "/lib64", "/opt",
                                                          "/proc", "/sbin",  "/sys",   "/usr"};

bool IsSystemFolder(const fs::path& path) {
    const fs::path relative = path.relative_path();
    return relative.empty() ||
           std::ranges::count(kSystemFolders, "/" + relative.begin()->string()) > 0;
}

bool IsOwnFolder(const fs::path& path) {
    std::error_code failure;
    const fs::path program = fs::read_symlink("/proc/self/exe", failure);
    return !failure && program.parent_path() == path;
}

bool IsInBuildTree(fs::path path) {
    std::error_code none;
    for (;; path = path.parent_path()) {
        if (fs::exists(path / kMarkOfBuildTree, none)) return true;
        if (path == path.parent_path()) return false;
    }
}

}  // namespace

bool IsProgramsFolder(const std::string& path) {
    std::error_code failure;
    fs::path real = fs::canonical(path, failure);
    if (failure) real = fs::path(path).lexically_normal();
    return IsSystemFolder(real) || IsOwnFolder(real) || IsInBuildTree(real);
}

entry_ref PanelFolder(const entry_ref& folder) {
    std::string path;
    BPath documents;
    entry_ref other;
    if (get_path_for_ref(folder, &path) == B_OK && IsProgramsFolder(path) &&
        find_directory(B_USER_DOCUMENTS_DIRECTORY, &documents) == B_OK &&
        get_ref_for_path(documents.Path(), &other) == B_OK)
        return other;
    return folder;
}
