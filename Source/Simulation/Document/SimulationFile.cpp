#include "Simulation/Document/SimulationFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "Model/Epochs/AbEpoch.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Storage/AtomicFile.h"
#include "Platform/Storage/BNodeInfo.h"
#include "Platform/Storage/FileDescriptor.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/DocumentCheck.h"
#include "Simulation/Document/EpochReader.h"
#include "Simulation/Document/FileStamp.h"
#include "Simulation/Document/RecordDigest.h"

namespace {

using Bytes = std::vector<std::byte>;

// In the file's record, beside the fields of every document, which readers of documents pass over.
constexpr const char* kDigest = "Digest";
// Only ever in a record that was read: its digest is that of other bytes.
constexpr const char* kChanged = "Not as written";
constexpr std::byte kRecordEnd{0};

// A record tells its size in 31 bits.
constexpr off_t kMaxSize = off_t{INT32_MAX} + static_cast<off_t>(SimulationFile::kTag.size());

// Reads up to `size` bytes at a place; how many there were, or -1 with errno.
ssize_t ReadAll(int descriptor, std::byte* into, std::size_t size, off_t at) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got =
            pread(descriptor, into + done, size - done, at + static_cast<off_t>(done));
        if (got == 0) break;
        if (got > 0)
            done += static_cast<std::size_t>(got);
        else if (errno != EINTR)
            return -1;
    }
    return static_cast<ssize_t>(done);
}

bool HasTag(const std::byte* data, std::size_t size) {
    return size >= SimulationFile::kTag.size() &&
           std::memcmp(data, SimulationFile::kTag.data(), SimulationFile::kTag.size()) == 0;
}

// Without a digest nothing is known, and nothing said.
bool HasItsDigest(std::span<const std::byte> stored, const BMessage& record) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (!record.HasName(kDigest)) return true;
    if (record.FindData(kDigest, B_RAW_TYPE, 0, &data, &size) != B_OK ||
        size != RecordDigest::Bytes().size())
        return false;
    // The record is a view into its stored form, unless the field stands there in pieces.
    const auto* const digest = static_cast<const std::byte*>(data);
    const std::less<> before;
    if (before(digest, stored.data()) || !before(digest, stored.data() + stored.size()))
        return false;
    const auto at = static_cast<std::size_t>(digest - stored.data());
    return std::ranges::equal(RecordDigest::Of(stored, at), std::span(digest, size));
}

DocumentError ReadRecord(const std::shared_ptr<const Bytes>& bytes, std::size_t offset,
                         BMessage* record) {
    const status_t status = record->Unflatten(bytes, offset);
    if (status != B_OK) return DocumentError::Record(status);
    const bool isAsWritten = HasItsDigest(std::span(*bytes).subspan(offset), *record);
    record->RemoveName(kDigest);
    record->RemoveName(kChanged);
    return DocumentError::Record(isAsWritten ? B_OK : record->AddBool(kChanged, true));
}

DocumentError ErrorOf(const AtomicFile& file, status_t status) {
    if (status == B_OK) return {};
    if (status == B_NOT_ALLOWED) return DocumentError::Content(kTextNotAFile);
    if (file.KeptCopy().empty()) return DocumentError::System(file.SystemError());
    return {status, kTextKeptBeside, file.KeptCopy(), file.SystemError()};
}

DocumentError ReadBytes(int descriptor, std::shared_ptr<Bytes>* bytes) {
    struct stat info {};
    if (fstat(descriptor, &info) != 0) return DocumentError::System(errno);
    if (S_ISDIR(info.st_mode)) return DocumentError::System(EISDIR);
    if (!S_ISREG(info.st_mode)) return DocumentError::Content(kTextNotAFile);
    std::byte tag[SimulationFile::kTag.size()];
    const ssize_t got = ReadAll(descriptor, tag, sizeof tag, 0);
    if (got < 0) return DocumentError::System(errno);
    if (!HasTag(tag, static_cast<std::size_t>(got)))
        return DocumentError::Content(kTextNotADocument);
    if (info.st_size > kMaxSize) return DocumentError::Content(kTextTooLarge);

    *bytes = std::make_shared<Bytes>(static_cast<std::size_t>(info.st_size));
    std::memcpy((*bytes)->data(), tag, sizeof tag);
    const ssize_t rest = ReadAll(descriptor, (*bytes)->data() + sizeof tag,
                                 (*bytes)->size() - sizeof tag, sizeof tag);
    if (rest < 0) return DocumentError::System(errno);
    (*bytes)->resize(sizeof tag + static_cast<std::size_t>(rest));
    return {};
}

// Writes the tag and the record, the digest last.
DocumentError WriteBytes(BMessage record, AtomicFile* file) {
    record.RemoveName(kDigest);
    record.RemoveName(kChanged);
    record.RemoveName(FileStamp::kField);
    constexpr RecordDigest::Bytes kNothing{};
    status_t status = record.AddData(kDigest, B_RAW_TYPE, kNothing.data(), kNothing.size());
    if (status != B_OK) return DocumentError::Record(status);

    std::size_t beforeDigest = record.FlattenedSize() - kNothing.size() - sizeof kRecordEnd;
    RecordDigest digest;
    file->Write(SimulationFile::kTag.data(), SimulationFile::kTag.size());
    status = record.Flatten([&](std::span<const std::byte> piece) {
        digest.Add(piece);
        const std::size_t size = std::min(piece.size(), beforeDigest);
        file->Write(piece.data(), size);
        beforeDigest -= size;
    });
    if (status != B_OK) return DocumentError::Record(status);
    const RecordDigest::Bytes ended = digest.End();
    file->Write(ended.data(), ended.size());
    file->Write(&kRecordEnd, sizeof kRecordEnd);
    return {};
}

// Whether what was written can be read, and all of its epochs be used.
DocumentError ReadBack(int descriptor) {
    std::shared_ptr<Bytes> bytes;
    if (DocumentError error = ReadBytes(descriptor, &bytes); error.Failed()) return error;
    BMessage record;
    if (DocumentError error = ReadRecord(bytes, SimulationFile::kTag.size(), &record);
        error.Failed())
        return error;
    if (!SimulationFile::IsAsWritten(record)) return DocumentError::Content(kTextDamaged);
    if (DocumentError error = CheckRecord(record); error.Failed()) return error;
    std::vector<std::unique_ptr<AbEpoch>> epochs;
    DocumentNotices notices;
    if (DocumentError error = ReadEpochs(record, &epochs, &notices); error.Failed()) return error;
    return notices.FirstFault();
}

DocumentError WriteWith(AtomicFile* file, const std::string& path, BMessage&& record) {
    if (const status_t status = file->Open(path); status != B_OK) return ErrorOf(*file, status);
    if (DocumentError error = WriteBytes(std::move(record), file); error.Failed()) return error;
    if (file->SystemError() == 0)
        if (DocumentError error = ReadBack(file->Node().Descriptor()); error.Failed()) return error;
    // A failure to write shows in Commit; a file without attributes is a document all the same.
    BNodeInfo info(&file->Node());
    info.SetPreferredApp(SimulationFile::kPreferredApplication);
    info.SetType(SimulationFile::kType);
    return ErrorOf(*file, file->Commit());
}

}  // namespace

DocumentError SimulationFile::Read(const std::string& path, BMessage* record, Stamping stamping) {
    *record = BMessage();
    // Not blocking: a pipe without a writer is refused, not waited for.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info {};
    if (!file.IsOpen() || fstat(file.Get(), &info) != 0) return DocumentError::System(errno);
    std::shared_ptr<Bytes> bytes;
    if (DocumentError error = ReadBytes(file.Get(), &bytes); error.Failed()) return error;
    DocumentError error = ReadRecord(bytes, kTag.size(), record);
    if (!error.Failed()) record->RemoveName(FileStamp::kField);
    if (!error.Failed() && stamping == Stamping::kInRecord)
        error = DocumentError::Record(FileStamp(info, *bytes).AddTo(record));
    return error;
}

DocumentError SimulationFile::CanWrite(const std::string& path) {
    AtomicFile file;
    return ErrorOf(file, file.Open(path));
}

bool SimulationFile::IsAsWritten(const BMessage& record) {
    return !record.HasName(kChanged);
}

DocumentError SimulationFile::Write(const std::string& path, const BMessage& record,
                                    int* leftovers) {
    return Write(path, BMessage(record), leftovers);
}

DocumentError SimulationFile::Write(const std::string& path, BMessage&& record, int* leftovers) {
    AtomicFile file;
    DocumentError error = WriteWith(&file, path, std::move(record));
    if (leftovers != nullptr) *leftovers = file.RemovedLeftovers();
    return error;
}
