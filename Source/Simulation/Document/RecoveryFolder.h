// The folder of recovery copies: documents that could not be saved, or were not when the program
// had to end. A copy is an ordinary document whose record also tells the name of its document,
// where that lies, and which process made the copy. No state but the folder's path; any thread,
// several at a time.
#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "Simulation/Document/DocumentError.h"

class BMessage;

struct RecoveryCopy {
    std::string path;  // of the copy
    std::string documentName;
    std::string originalPath;  // of the document; empty when it never was in a file
    std::time_t time = 0;      // when the copy was made
};

class RecoveryFolder {
public:
    // The user's own: $XDG_STATE_HOME (or ~/.local/state)/orvek/recovery.
    RecoveryFolder();
    explicit RecoveryFolder(std::string folder) : folder_(std::move(folder)) {}

    [[nodiscard]] const std::string& Path() const { return folder_; }

    // Keeps a copy of the record; `copy`, the path of the copy kept last of the same document or
    // empty, is replaced, and becomes the path of the new one. On failure the last copy stays.
    DocumentError Keep(const BMessage& record, const std::string& documentName,
                       const std::string& originalPath, std::string* copy) const;
    // All copies that can be read, the oldest first, without those of other programs of this kind
    // that are running. Reads them completely.
    [[nodiscard]] std::vector<RecoveryCopy> List() const;
    // Deletes a copy; nothing for a path that lies elsewhere.
    void Discard(const std::string& path) const;

private:
    [[nodiscard]] std::string NewCopy(const std::string& documentName, int* error) const;

    std::string folder_;
};
