// Where the document of a simulation lies, and how it is kept: its name and folder, and the
// recovery copy that holds what could not be saved. Owned by what owns the simulation, used on its
// thread.
#pragma once

#include <optional>
#include <string>

#include "Platform/Storage/entry_ref.h"
#include "Simulation/Document/FileStamp.h"
#include "Simulation/Document/RecoveryFolder.h"

class BMessage;

class DocumentFile {
public:
    // A copy that is needed holds what the user may believe to be safe: it stays until the document
    // is saved. An automatic one is for the case that the program or the machine fails: it goes
    // when the document is saved or closed.
    enum class Copy { kNeeded, kAutomatic };

    explicit DocumentFile(RecoveryFolder folder = RecoveryFolder()) : folder_(std::move(folder)) {}

    // In no file yet; the folder is the one to propose.
    void SetUntitled(const entry_ref& directory, const std::string& name);
    // Read from there, as that record, which tells what was read if it has a FileStamp. Forgets the
    // copy of the document that was there before.
    void SetFile(const entry_ref& directory, const std::string& name, const BMessage& record);
    // Read from a recovery copy, of that record, which stays until the document is saved. What the
    // document's own file held is in the record.
    void SetRecovered(const RecoveryCopy& copy, const BMessage& record,
                      const std::string& untitledName);

    [[nodiscard]] const std::string& Name() const { return name_; }
    void SetName(const std::string& name) { name_ = name; }
    [[nodiscard]] bool HasFile() const { return hasFile_; }
    [[nodiscard]] const entry_ref& Directory() const { return directory_; }
    // Where it would be saved; empty when its folder is gone, or when it has no file.
    [[nodiscard]] std::string Path() const;
    // The same for all windows of one document: its path, or where it was before its folder had
    // gone; empty for one that never was in a file.
    [[nodiscard]] std::string Identity() const;
    // There is another file than the one that the document was read from or last saved in as a
    // whole.
    [[nodiscard]] bool WouldReplaceAnother() const;

    // Somebody else has written the file since it was read or saved here. Says so once for each
    // such change: after that the user knows.
    [[nodiscard]] bool HasChangedUnseen();

    // From now on the document's place is this folder, whether or not it could be written there.
    void TakePlace(const entry_ref& directory);
    // `path` becomes that of the file; where its folder is gone, what is known of it.
    // `leftovers`: as of SimulationFile::Write.
    DocumentError Write(const BMessage& record, const entry_ref& directory, const std::string& name,
                        std::string* path, int* leftovers = nullptr);
    // The whole document lies at that path now.
    void Saved(const std::string& path);

    // Replaces the copy that there is; one that was needed before stays so.
    DocumentError KeepCopy(const BMessage& record, const std::string& name, const std::string& path,
                           Copy kind);
    // Where that copy lies; empty when there is none.
    [[nodiscard]] const std::string& CopyPath() const { return copy_; }
    void DiscardAutomaticCopy();
    // The user does not want what the document was recovered with.
    void DiscardRecovered();

private:
    void SetPlace(const entry_ref& directory, const std::string& name, bool hasFile);
    void DiscardCopy();

    RecoveryFolder folder_;
    std::string name_;
    entry_ref directory_;
    bool hasFile_ = false;
    std::string ownPath_;             // of the file that holds the document, empty for none
    std::string formerPath_;          // of a recovered document whose folder is gone
    std::string copy_;                // path of the recovery copy, empty for none
    std::optional<FileStamp> stamp_;  // of that file as it was read or written, or last told of
    bool isAutomatic_ = false;        // the copy is not needed
    bool isRecovered_ = false;        // the copy is what the document was read from
};
