// A set's file, and the time during which only this process's calling thread uses it. Owned by the
// set; any thread may begin, the others wait. Reading and writing need a transaction.
//
// A save replaces the file instead of rewriting it, so that a full disk costs nothing that is in
// it. The new file is locked before it takes the old one's name; and whoever gets the lock of a
// file that was replaced meanwhile opens it again.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Platform/Storage/BNode.h"

// The two locks of the preference store, made when first used and never destroyed. Both may be
// taken several times by one thread; a thread that wants both takes the transactions' lock first,
// because a transaction may last.
class BLocker;

namespace PrefsLocks {

// "prefs sem": the list of handles, and the items of every set.
[[nodiscard]] BLocker& Store();
// "prefs trans sem": one transaction at a time in this process.
[[nodiscard]] BLocker& Transactions();

}  // namespace PrefsLocks

class PrefsTransaction {
public:
    explicit PrefsTransaction(std::string path) : path_(std::move(path)) {}
    PrefsTransaction(const PrefsTransaction&) = delete;
    PrefsTransaction& operator=(const PrefsTransaction&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

    // Makes the file if it is missing. Nests; a failed one needs no End.
    [[nodiscard]] status_t Begin();
    // B_NOT_ALLOWED: this thread has none.
    status_t End();

    // The record's bytes, none for an empty file. B_BAD_DATA: the file is shorter than it says.
    [[nodiscard]] status_t Read(std::vector<std::byte>* record) const;
    // After a failure the file is as it was.
    [[nodiscard]] status_t Write(const std::vector<std::byte>& record);

private:
    status_t LockFile();
    [[nodiscard]] bool IsStillTheFile() const;

    const std::string path_;
    int32 depth_ = 0;  // guarded by the transactions' lock
    BNode locked_;
};
