#include "Simulation/Document/DocumentFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "Platform/Application/BMessage.h"
#include "Platform/Storage/BPath.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"

namespace {

// Empty when the directory is gone.
std::string PathOf(const entry_ref& directory, const std::string& name) {
    std::string path;
    if (get_path_for_ref(directory, &path) != B_OK) return {};
    return path + '/' + name;
}

}  // namespace

void DocumentFile::SetPlace(const entry_ref& directory, const std::string& name, bool hasFile) {
    directory_ = directory;
    name_ = name;
    hasFile_ = hasFile;
    ownPath_ = hasFile ? PathOf(directory, name) : std::string();
    formerPath_.clear();
    stamp_.reset();
    DiscardAutomaticCopy();
    copy_.clear();
    isAutomatic_ = false;
    isRecovered_ = false;
}

void DocumentFile::SetUntitled(const entry_ref& directory, const std::string& name) {
    SetPlace(directory, name, false);
}

void DocumentFile::SetFile(const entry_ref& directory, const std::string& name,
                           const BMessage& record) {
    SetPlace(directory, name, true);
    stamp_ = FileStamp::FindIn(record);
    if (!stamp_) stamp_ = FileStamp::Of(ownPath_);
}

void DocumentFile::SetRecovered(const RecoveryCopy& copy, const BMessage& record,
                                const std::string& untitledName) {
    const BPath original(copy.originalPath.c_str());
    BPath parent;
    entry_ref directory;
    std::error_code failure;
    const bool hasPlace = original.InitCheck() == B_OK && original.GetParent(&parent) == B_OK &&
                          std::filesystem::is_directory(parent.Path(), failure) &&
                          get_ref_for_path(parent.Path(), &directory) == B_OK;
    const std::string name = hasPlace ? std::string(original.Leaf()) : copy.documentName;
    SetPlace(directory, name.empty() ? untitledName : name, hasPlace);
    if (hasPlace)
        stamp_ = FileStamp::FindContentsIn(record);
    else
        formerPath_ = copy.originalPath;
    copy_ = copy.path;
    isRecovered_ = true;
}

std::string DocumentFile::Path() const {
    return hasFile_ ? PathOf(directory_, name_) : std::string();
}

std::string DocumentFile::Identity() const {
    return hasFile_ ? Path() : formerPath_;
}

bool DocumentFile::WouldReplaceAnother() const {
    const std::string path = Path();
    struct stat info {};
    return !path.empty() && path != ownPath_ && lstat(path.c_str(), &info) == 0;
}

bool DocumentFile::HasChangedUnseen() {
    if (!stamp_ || Path() != ownPath_ || !stamp_->DiffersAt(ownPath_)) return false;
    stamp_ = FileStamp::Of(ownPath_);
    return true;
}

void DocumentFile::TakePlace(const entry_ref& directory) {
    directory_ = directory;
    hasFile_ = true;
}

DocumentError DocumentFile::Write(const BMessage& record, const entry_ref& directory,
                                  const std::string& name, std::string* path, int* leftovers) {
    *path = PathOf(directory, name);
    if (path->empty()) {
        *path = name == name_ && !ownPath_.empty() ? ownPath_ : name;
        return DocumentError::System(ENOENT);
    }
    return SimulationFile::Write(*path, record, leftovers);
}

void DocumentFile::Saved(const std::string& path) {
    ownPath_ = path;
    stamp_ = FileStamp::Of(path);
    DiscardCopy();
}

DocumentError DocumentFile::KeepCopy(const BMessage& record, const std::string& name,
                                     const std::string& path, Copy kind) {
    const bool isFirst = copy_.empty();
    BMessage stamped(record);
    stamped.RemoveName(SimulationDocument::kHistoryField);  // it can be made again
    if (stamp_ && path == ownPath_)
        if (const status_t status = stamp_->AddContentsTo(&stamped); status != B_OK)
            return DocumentError::Record(status);
    DocumentError error =
        folder_.Keep(stamped, name, path.starts_with('/') ? path : std::string(), &copy_);
    if (kind == Copy::kNeeded) {
        isRecovered_ = false;
        isAutomatic_ = false;
    } else if (isFirst) {
        isAutomatic_ = !copy_.empty();
    }
    return error;
}

void DocumentFile::DiscardAutomaticCopy() {
    if (isAutomatic_) DiscardCopy();
}

void DocumentFile::DiscardRecovered() {
    if (isRecovered_) DiscardCopy();
}

void DocumentFile::DiscardCopy() {
    if (!copy_.empty()) folder_.Discard(copy_);
    copy_.clear();
    isRecovered_ = false;
}
