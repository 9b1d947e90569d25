#include "Application/Prefs/Preferences.h"

#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "Application/Prefs/PreferenceSet.h"
#include "Application/Prefs/PrefsPaths.h"
#include "Application/Prefs/PrefsTransaction.h"
#include "Platform/Storage/BDirectory.h"
#include "Platform/Storage/BPath.h"
#include "Platform/Storage/ErrnoStatus.h"
#include "Platform/Storage/find_directory.h"
#include "Platform/Support/BAutolock.h"
#include "Platform/Support/BLocker.h"

namespace {

constexpr int kVersion[] = {1, 0, 0};

// The list of handles; guarded by the store's lock.
PREFHandle* gFirst = nullptr;

// A transaction for as long as it lives.
class Transaction {
public:
    explicit Transaction(PrefsTransaction* file) : file_(file), status_(file->Begin()) {}
    ~Transaction() {
        if (status_ == B_OK) file_->End();
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    [[nodiscard]] status_t InitCheck() const { return status_; }

private:
    PrefsTransaction* const file_;
    const status_t status_;
};

status_t CopyText(const char* text, std::size_t length, char* buffer, std::size_t size) {
    if (buffer == nullptr) return B_BAD_VALUE;
    if (length >= size) return B_BUFFER_OVERFLOW;
    std::memcpy(buffer, text, length);
    buffer[length] = '\0';
    return B_OK;
}

// What is of no fixed size is stored like the record's own texts and nested records.
bool IsFixedSize(type_code type) {
    return type != B_ASCII_TYPE && type != B_STRING_TYPE && type != B_MIME_STRING_TYPE &&
           type != B_MESSAGE_TYPE && type != B_RAW_TYPE;
}

// The settings directory is its user's alone, as other programs make it.
status_t MakeDirectory(const std::string& path, bool isPerUser) {
    constexpr mode_t kForAll = 0777;
    BPath settings;
    if (isPerUser)
        if (const status_t status = find_directory(B_USER_SETTINGS_DIRECTORY, &settings, true);
            status != B_OK)
            return status;
    return create_directory(path.c_str(), kForAll);
}

}  // namespace

// --- Applications ---

status_t PREFInit(const char* application, PREFHandle** out) {
    if (out == nullptr) return B_BAD_VALUE;
    *out = nullptr;
    if (!PrefsPaths::IsName(application)) return B_BAD_VALUE;
    const BAutolock lock(PrefsLocks::Store());
    if (const bigtime_t interval = PrefsListener::ParsePollInterval(std::getenv("POLL_INTERVAL"));
        interval > 0)
        PrefsListener::SetPollInterval(interval);
    PREFHandle* handle = gFirst;
    while (handle != nullptr && handle->application != application)
        handle = handle->next;
    if (handle == nullptr) {
        handle = new (std::nothrow) PREFHandle{gFirst, application, 0};
        if (handle == nullptr) return B_NO_MEMORY;
        gFirst = handle;
    }
    handle->references++;
    *out = handle;
    return B_OK;
}

status_t PREFShutdown(PREFHandle* handle) {
    const BAutolock lock(PrefsLocks::Store());
    PREFHandle** link = &gFirst;
    while (*link != nullptr && *link != handle)
        link = &(*link)->next;
    if (*link == nullptr) return B_BAD_VALUE;
    if (--handle->references > 0) return B_OK;
    *link = handle->next;
    delete handle;
    return B_OK;
}

// --- Sets ---

status_t PREFLoadSet(PREFHandle* handle, const char* name, bool isPerUser, PreferenceSet** out) {
    if (handle == nullptr || out == nullptr) return B_BAD_VALUE;
    *out = nullptr;
    if (!PrefsPaths::IsName(name)) return B_BAD_VALUE;
    std::string path;
    status_t status = PrefsPaths::OfSets(handle->application, isPerUser, &path);
    if (status == B_OK) status = MakeDirectory(path, isPerUser);
    if (status != B_OK) return status;
    auto set = std::make_unique<PreferenceSet>(handle, name, path + '/' + name);
    status = PREFReloadSet(set.get());
    if (status == B_OK) *out = set.release();
    return status;
}

status_t PREFReloadSet(PreferenceSet* set) {
    if (set == nullptr) return B_BAD_VALUE;
    std::vector<std::byte> record;
    const Transaction transaction(&set->file);
    status_t status = transaction.InitCheck();
    if (status == B_OK) status = set->file.Read(&record);
    BMessage items;
    if (status == B_OK && !record.empty()) status = items.Unflatten(record.data(), record.size());
    if (status != B_OK) return status;
    const BAutolock lock(PrefsLocks::Store());
    set->items = std::move(items);
    return B_OK;
}

status_t PREFSaveSet(PreferenceSet* set) {
    if (set == nullptr) return B_BAD_VALUE;
    const Transaction transaction(&set->file);
    if (transaction.InitCheck() != B_OK) return transaction.InitCheck();
    std::vector<std::byte> record;
    {
        const BAutolock lock(PrefsLocks::Store());
        if (const status_t status = set->items.Flatten(&record); status != B_OK) return status;
    }
    return set->file.Write(record);
}

status_t PREFDisposeSet(PreferenceSet* set) {
    if (set == nullptr) return B_BAD_VALUE;
    delete set;
    return B_OK;
}

// --- Items ---

status_t PREFSetData(PreferenceSet* set, const char* name, const void* data, std::size_t size,
                     type_code type) {
    if (set == nullptr || name == nullptr || data == nullptr) return B_BAD_VALUE;
    const BAutolock lock(PrefsLocks::Store());
    set->items.RemoveName(name);
    return set->items.AddData(name, type, data, size, IsFixedSize(type));
}

status_t PREFGetData(PreferenceSet* set, const char* name, const void** data, std::size_t* size,
                     type_code* type) {
    if (set == nullptr || data == nullptr || size == nullptr || type == nullptr) return B_BAD_VALUE;
    const BAutolock lock(PrefsLocks::Store());
    type_code found = 0;
    if (const status_t status = set->items.GetInfo(name, &found); status != B_OK) return status;
    const void* value = nullptr;
    const status_t status = set->items.FindData(name, found, 0, &value, size);
    if (status != B_OK) return status;
    *data = value;
    *type = found;
    return B_OK;
}

status_t PREFGetMessage(PreferenceSet* set, BMessage* out) {
    if (set == nullptr || out == nullptr) return B_BAD_VALUE;
    const BAutolock lock(PrefsLocks::Store());
    *out = set->items;
    return B_OK;
}

status_t PREFDelete(PreferenceSet* set, const char* name) {
    if (set == nullptr || name == nullptr) return B_BAD_VALUE;
    const BAutolock lock(PrefsLocks::Store());
    return set->items.RemoveName(name);
}

// --- Other users of the same file ---

status_t PREFBeginTransaction(PreferenceSet* set) {
    return set == nullptr ? B_BAD_VALUE : set->file.Begin();
}

status_t PREFEndTransaction(PreferenceSet* set) {
    return set == nullptr ? B_BAD_VALUE : set->file.End();
}

status_t PREFListen(PreferenceSet* set, void (*callback)(PreferenceSet* set, void* cookie),
                    void* cookie) {
    if (set == nullptr) return B_BAD_VALUE;
    set->listener.reset();
    if (callback == nullptr) return B_OK;
    auto listener = std::make_unique<PrefsListener>(set, set->file.Path(), callback, cookie);
    if (const status_t status = listener->InitCheck(); status != B_OK) return status;
    set->listener = std::move(listener);
    return B_OK;
}

// --- About the store ---

status_t PREFVersion(char* buffer, std::size_t size) {
    char text[80];
    const int length =
        std::snprintf(text, sizeof text, "simple libprefs.so implementation version %d.%d.%d",
                      kVersion[0], kVersion[1], kVersion[2]);
    return CopyText(text, static_cast<std::size_t>(length), buffer, size);
}

status_t getappdir(char* buffer, std::size_t size) {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length < 0) return ErrnoStatus(errno);
    const std::string_view whole(path, static_cast<std::size_t>(length));
    // A program in the root directory has its slash there.
    const std::size_t slash = std::max<std::size_t>(whole.rfind('/'), 1);
    return CopyText(path, std::min(slash, whole.size()), buffer, size);
}
