#include "Application/SingleLaunch.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>

#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Storage/BPath.h"

namespace {

// What one side waits for the other before it thinks that there is nobody.
constexpr bigtime_t kPatience = 5'000'000;

// How long the lock of a process that ends may outlive its connections, amply.
constexpr bigtime_t kLockOutlives = 1'000'000;

std::string VariableOr(const char* name, const char* otherwise) {
    const char* const value = std::getenv(name);
    return value == nullptr ? otherwise : value;
}

// Only this user's, or nothing: what somebody else could put there is not to be trusted.
bool IsOwnFolder(const std::string& path) {
    constexpr mode_t kOthers = S_IWGRP | S_IWOTH;
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == getuid() &&
           (info.st_mode & kOthers) == 0;
}

std::string RuntimeFolder() {
    constexpr mode_t kOwnerOnly = 0700;
    std::string usual = VariableOr("XDG_RUNTIME_DIR", "");
    if (usual.starts_with("/") && IsOwnFolder(usual)) return usual;
    std::error_code error;
    const std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
    if (error) return {};
    const std::string own = temporary / ("orvek-" + std::to_string(getuid()));
    mkdir(own.c_str(), kOwnerOnly);
    return IsOwnFolder(own) ? own : "";
}

// The screens of one display are one place; the characters are such as a file's name may have.
std::string DisplayName() {
    std::string name = VariableOr("WAYLAND_DISPLAY", "");
    if (name.empty()) {
        name = VariableOr("DISPLAY", "");
        const std::size_t colon = name.rfind(':');
        if (colon != std::string::npos) name.resize(std::min(name.find('.', colon), name.size()));
    }
    for (char& letter : name)
        if (std::isalnum(static_cast<unsigned char>(letter)) == 0) letter = '_';
    return name;
}

}  // namespace

SingleLaunch::SingleLaunch(const std::string& program) {
    const std::string folder = RuntimeFolder();
    if (folder.empty()) return;
    base_ = folder + '/' + program + '-' + DisplayName();
    TakePlace();
}

// The lock's file stays: a process that waits for it could be left with one that has no name.
SingleLaunch::~SingleLaunch() = default;

void SingleLaunch::TakePlace() {
    if (lock_.SetTo((base_ + ".lock").c_str(), B_READ_WRITE | B_CREATE_FILE) == B_OK)
        isFirst_ = lock_.Lock() != B_BUSY;
    else
        base_.clear();
}

void SingleLaunch::TakePlaceOfEnded() {
    constexpr bigtime_t kPause = 20'000;
    const bigtime_t end = system_time() + kLockOutlives;
    TakePlace();
    while (!isFirst_ && system_time() < end) {
        snooze(kPause);
        TakePlace();
    }
}

std::optional<std::vector<std::string>> SingleLaunch::HandOver(
    const std::vector<std::string>& paths) {
    BMessage request;
    for (const std::string& path : paths)
        request.AddString(kPath, BPath(path.c_str()).Path());
    BMessage answer;
    const bigtime_t end = system_time() + kPatience;
    while (!LocalRequests::Ask(base_ + ".socket", request, end - system_time(), &answer)) {
        TakePlaceOfEnded();
        if (isFirst_ || system_time() >= end) return std::nullopt;
        // Another process was quicker: that is the one to ask.
    }
    std::vector<std::string> complaints;
    std::string complaint;
    for (int32 i = 0; answer.FindString(kComplaint, i, &complaint) == B_OK; i++)
        complaints.push_back(complaint);
    return complaints;
}

void SingleLaunch::Listen(const BMessenger& application) {
    if (!base_.empty()) requests_.emplace(base_ + ".socket", application, kHandOver);
}
