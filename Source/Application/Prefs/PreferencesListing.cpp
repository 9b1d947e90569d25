// The functions of Preferences.h that list what there is, or delete it.
#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "Application/Prefs/PreferenceSet.h"
#include "Application/Prefs/Preferences.h"
#include "Application/Prefs/PrefsPaths.h"
#include "Application/Prefs/PrefsTransaction.h"
#include "Platform/Storage/BDirectory.h"
#include "Platform/Storage/BEntry.h"
#include "Platform/Storage/ErrnoStatus.h"
#include "Platform/Support/BAutolock.h"
#include "Platform/Support/BLocker.h"

// The names that are still to be given, the last one first.
struct PREFCookie {
    std::vector<std::string> names;
};

namespace {

using Names = std::vector<std::string>;

status_t Next(PREFCookie* cookie, std::string* name) {
    if (cookie->names.empty()) return B_ENTRY_NOT_FOUND;
    *name = std::move(cookie->names.back());
    cookie->names.pop_back();
    return B_OK;
}

// `list` fills in the names, in any order.
template <typename List>
status_t Step(PREFCookie** cookie, std::string* name, List list) {
    if (cookie == nullptr || name == nullptr) return B_BAD_VALUE;
    if (*cookie == nullptr) {
        auto made = std::make_unique<PREFCookie>();
        if (const status_t status = list(&made->names); status != B_OK) return status;
        std::sort(made->names.begin(), made->names.end(), std::greater<>());
        *cookie = made.release();
    }
    return Next(*cookie, name);
}

// A directory that is missing has nothing in it.
status_t ListDirectory(const std::string& path, bool isOfDirectories, Names* names) {
    BDirectory directory(path.c_str());
    if (directory.InitCheck() != B_OK)
        return directory.InitCheck() == B_ENTRY_NOT_FOUND ? B_OK : directory.InitCheck();
    for (BEntry entry; directory.GetNextEntry(&entry) == B_OK;)
        if (entry.IsDirectory() == isOfDirectories) names->emplace_back(entry.Name());
    return B_OK;
}

}  // namespace

status_t PREFListApplications(bool isPerUser, PREFCookie** cookie, std::string* name) {
    return Step(cookie, name, [isPerUser](Names* names) {
        const std::string_view prefix = PrefsPaths::kPrefix;
        std::string path;
        status_t status = PrefsPaths::Root(isPerUser, &path);
        if (status == B_OK) status = ListDirectory(path, true, names);
        std::erase_if(*names, [&](const std::string& found) { return !found.starts_with(prefix); });
        for (std::string& found : *names)
            found.erase(0, prefix.size());
        return status;
    });
}

status_t PREFListSets(PREFHandle* handle, bool isPerUser, PREFCookie** cookie, std::string* name) {
    if (handle == nullptr) return B_BAD_VALUE;
    return Step(cookie, name, [=](Names* names) {
        std::string path;
        const status_t status = PrefsPaths::OfSets(handle->application, isPerUser, &path);
        return status == B_OK ? ListDirectory(path, false, names) : status;
    });
}

status_t PREFListData(PreferenceSet* set, PREFCookie** cookie, std::string* name) {
    if (set == nullptr) return B_BAD_VALUE;
    return Step(cookie, name, [set](Names* names) {
        const BAutolock lock(PrefsLocks::Store());
        std::string item;
        type_code type = 0;
        for (int32 i = 0; set->items.GetInfo(B_ANY_TYPE, i, &item, &type) == B_OK; i++)
            names->push_back(item);
        return B_OK;
    });
}

void PREFDisposeApplicationCookie(PREFCookie* cookie) {
    delete cookie;
}

void PREFDisposeSetCookie(PREFCookie* cookie) {
    delete cookie;
}

void PREFDisposeDataCookie(PREFCookie* cookie) {
    delete cookie;
}

status_t PREFRemoveSet(PREFHandle* handle, const char* name, bool isPerUser) {
    if (handle == nullptr || !PrefsPaths::IsName(name)) return B_BAD_VALUE;
    std::string path;
    const status_t status = PrefsPaths::OfSets(handle->application, isPerUser, &path);
    return status == B_OK ? BEntry((path + '/' + name).c_str()).Remove() : status;
}

status_t PREFRemoveApp(PREFHandle* handle, bool isPerUser) {
    if (handle == nullptr) return B_BAD_VALUE;
    std::string path;
    const status_t status = PrefsPaths::OfApplication(handle->application, isPerUser, &path);
    if (status != B_OK) return status;
    std::error_code error;
    const auto count = std::filesystem::remove_all(path, error);
    if (error) return ErrnoStatus(error.value());
    return count == 0 ? B_ENTRY_NOT_FOUND : B_OK;
}
