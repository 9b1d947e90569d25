#include "Application/Prefs/PrefsTransaction.h"

#include <fcntl.h>

#include <cerrno>
#include <random>

#include "Platform/Kernel/OS.h"
#include "Platform/Storage/AtomicFile.h"
#include "Platform/Storage/BFile.h"
#include "Platform/Storage/ErrnoStatus.h"
#include "Platform/Support/BLocker.h"

namespace {

using RecordSize = int32;

// Random, so that two programs do not wake for each other's turns for ever.
void WaitForOthers() {
    constexpr bigtime_t kMinWait = 1000;
    constexpr bigtime_t kMaxWait = 20000;
    thread_local std::minstd_rand random{std::random_device{}()};
    snooze(std::uniform_int_distribution<bigtime_t>(kMinWait, kMaxWait)(random));
}

}  // namespace

status_t PrefsTransaction::Begin() {
    BLocker& transactions = PrefsLocks::Transactions();
    transactions.Lock();
    const status_t status = depth_ == 0 ? LockFile() : B_OK;
    if (status == B_OK)
        depth_++;
    else
        transactions.Unlock();
    return status;
}

status_t PrefsTransaction::End() {
    BLocker& transactions = PrefsLocks::Transactions();
    if (!transactions.IsLocked() || depth_ == 0) return B_NOT_ALLOWED;
    if (--depth_ == 0) locked_.Unset();
    transactions.Unlock();
    return B_OK;
}

status_t PrefsTransaction::LockFile() {
    for (;;) {
        BFile file(path_.c_str(), B_READ_WRITE | B_CREATE_FILE);
        // What can only be read can at least be loaded.
        if (file.InitCheck() != B_OK && file.SetTo(path_.c_str(), B_READ_ONLY) != B_OK)
            return file.InitCheck();
        const status_t status = file.Lock();
        if (status != B_OK && status != B_BUSY) return status;
        if (status == B_OK) {
            locked_ = std::move(file);
            if (IsStillTheFile()) return B_OK;
            locked_.Unset();
        } else {
            WaitForOthers();
        }
    }
}

bool PrefsTransaction::IsStillTheFile() const {
    struct stat held {};
    struct stat named {};
    return locked_.GetStat(&held) == B_OK && stat(path_.c_str(), &named) == 0 &&
           held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

status_t PrefsTransaction::Read(std::vector<std::byte>* record) const {
    record->clear();
    BFile file(path_.c_str(), B_READ_ONLY);
    off_t fileSize = 0;
    if (const status_t status = file.GetSize(&fileSize); status != B_OK) return status;
    if (fileSize == 0) return B_OK;
    RecordSize size = 0;
    const ssize_t got = file.Read(&size, sizeof size);
    if (got < 0) return static_cast<status_t>(got);
    if (got != sizeof size || size < 0 || fileSize - got < size) return B_BAD_DATA;
    record->resize(static_cast<std::size_t>(size));
    const ssize_t read = file.Read(record->data(), record->size());
    if (read < 0) return static_cast<status_t>(read);
    return read == size ? B_OK : B_BAD_DATA;
}

status_t PrefsTransaction::Write(const std::vector<std::byte>& record) {
    if (record.size() > INT32_MAX) return B_BAD_VALUE;
    AtomicFile file;
    if (const status_t status = file.Open(path_); status != B_OK) return status;
    BNode replacement(FileDescriptor(fcntl(file.Node().Descriptor(), F_DUPFD_CLOEXEC, 0)));
    if (replacement.InitCheck() != B_OK) return ErrnoStatus(errno);
    if (const status_t status = replacement.Lock(); status != B_OK) return status;
    const auto size = static_cast<RecordSize>(record.size());
    file.Write(&size, sizeof size);  // a failure shows in Commit
    file.Write(record.data(), record.size());
    const status_t status = file.Commit();
    // Some failures come after the replacement.
    std::swap(locked_, replacement);
    if (!IsStillTheFile()) std::swap(locked_, replacement);
    return status;
}

BLocker& PrefsLocks::Store() {
    static auto* const lock = new BLocker("prefs sem");
    return *lock;
}

BLocker& PrefsLocks::Transactions() {
    static auto* const lock = new BLocker("prefs trans sem");
    return *lock;
}
