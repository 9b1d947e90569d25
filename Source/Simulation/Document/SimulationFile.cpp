#include "SimulationFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

#include "AtomicFile.h"
#include "BMessage.h"
#include "BNodeInfo.h"
#include "FileDescriptor.h"

namespace {

using Bytes = std::vector<std::byte>;

// A record tells its size in 31 bits.
constexpr off_t kMaxSize = off_t{INT32_MAX} + static_cast<off_t>(SimulationFile::kTag.size());

// Reads up to `size` bytes; how many there were, or -1 with errno.
ssize_t ReadAll(int descriptor, std::byte* into, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = read(descriptor, into + done, size - done);
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

DocumentError ReadRecord(std::shared_ptr<const Bytes> bytes, BMessage* record) {
    return DocumentError::Record(record->Unflatten(std::move(bytes), SimulationFile::kTag.size()));
}

DocumentError ErrorOf(const AtomicFile& file, status_t status) {
    if (status == B_OK) return {};
    if (status == B_NOT_ALLOWED) return DocumentError::Content(kTextNotAFile);
    return DocumentError::System(file.SystemError());
}

DocumentError ReadBytes(int descriptor, std::shared_ptr<Bytes>* bytes) {
    struct stat info {};
    if (fstat(descriptor, &info) != 0) return DocumentError::System(errno);
    if (S_ISDIR(info.st_mode)) return DocumentError::System(EISDIR);
    if (!S_ISREG(info.st_mode)) return DocumentError::Content(kTextNotAFile);
    std::byte tag[SimulationFile::kTag.size()];
    const ssize_t got = ReadAll(descriptor, tag, sizeof tag);
    if (got < 0) return DocumentError::System(errno);
    if (!HasTag(tag, static_cast<std::size_t>(got)))
        return DocumentError::Content(kTextNotADocument);
    if (info.st_size > kMaxSize) return DocumentError::Content(kTextTooLarge);

    *bytes = std::make_shared<Bytes>(static_cast<std::size_t>(info.st_size));
    std::memcpy((*bytes)->data(), tag, sizeof tag);
    const ssize_t rest =
        ReadAll(descriptor, (*bytes)->data() + sizeof tag, (*bytes)->size() - sizeof tag);
    if (rest < 0) return DocumentError::System(errno);
    (*bytes)->resize(sizeof tag + static_cast<std::size_t>(rest));
    return {};
}

}  // namespace

DocumentError SimulationFile::Read(const std::string& path, BMessage* record) {
    *record = BMessage();
    // Not blocking: a pipe without a writer is refused, not waited for.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.IsOpen()) return DocumentError::System(errno);
    std::shared_ptr<Bytes> bytes;
    if (DocumentError error = ReadBytes(file.Get(), &bytes); error.Failed()) return error;
    return ReadRecord(std::move(bytes), record);
}

DocumentError SimulationFile::CanWrite(const std::string& path) {
    AtomicFile file;
    return ErrorOf(file, file.Open(path));
}

DocumentError SimulationFile::Write(const std::string& path, const BMessage& record,
                                    int* leftovers) {
    Bytes bytes;
    if (DocumentError error = DocumentError::Record(record.Flatten(&bytes)); error.Failed())
        return error;
    AtomicFile file;
    status_t status = file.Open(path);
    if (status == B_OK) {
        // A failure to write shows in Commit; a file without attributes is a document all the same.
        file.Write(kTag.data(), kTag.size());
        file.Write(bytes.data(), bytes.size());
        BNodeInfo info(&file.Node());
        info.SetPreferredApp(kPreferredApplication);
        info.SetType(kType);
        status = file.Commit();
    }
    if (leftovers != nullptr) *leftovers = file.RemovedLeftovers();
    return ErrorOf(file, status);
}
