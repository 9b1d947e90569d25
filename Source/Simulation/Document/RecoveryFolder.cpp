#include "Simulation/Document/RecoveryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"
#include "Platform/Storage/FileDescriptor.h"
#include "Platform/Storage/TemporaryFiles.h"
#include "Simulation/Document/SimulationFile.h"

namespace {

namespace fs = std::filesystem;

// In the copy's record, beside the fields of every document, which readers of documents pass over.
constexpr const char* kNameField = "Recovered name";
constexpr const char* kPathField = "Recovered path";

constexpr const char* kProcessField = "Recovered from process";

constexpr mode_t kOnlyTheUser = 0600;
constexpr std::size_t kMaxStem = 100;  // bytes of a copy's name before its number
constexpr int kMaxCopies = 10'000;     // of one name

std::string UsualFolder() {
    const char* const state = std::getenv("XDG_STATE_HOME");
    if (state != nullptr && *state == '/') return std::string(state) + "/orvek/recovery";
    const char* const home = std::getenv("HOME");
    return std::string(home == nullptr ? "" : home) + "/.local/state/orvek/recovery";
}

// Of the document's name, what may stand in a file's name. A letter of several bytes stays whole.
std::string StemOf(const std::string& documentName) {
    std::string stem = documentName.substr(0, kMaxStem);
    if (stem.size() < documentName.size())
        while (!stem.empty() &&
               (static_cast<unsigned char>(documentName[stem.size()]) & 0xc0) == 0x80)
            stem.pop_back();
    std::replace(stem.begin(), stem.end(), '/', '-');
    return stem.empty() || stem.front() == '.' ? '_' + stem : stem;
}

// What the system calls the program that this process runs; empty when there is none. One that has
// ended and that its parent has not yet asked about runs nothing. The line is "7 (name) S ...", and
// the name may hold anything.
std::string ProgramOf(const std::string& process) {
    std::ifstream file("/proc/" + process + "/stat");
    const std::string line{std::istreambuf_iterator<char>(file), {}};
    const std::size_t begin = line.find('(');
    const std::size_t end = line.rfind(") ");
    if (begin == std::string::npos || end == std::string::npos) return {};
    const char state = line[end + 2];
    return state == 'Z' || state == 'X' ? "" : line.substr(begin + 1, end - begin - 1);
}

// It still works on the document of its copy. The number of one that has ended may be another
// program's by now.
bool IsAnotherOfUs(int32 process) {
    if (process == getpid()) return false;
    const std::string program = ProgramOf(std::to_string(process));
    return !program.empty() && program == ProgramOf("self");
}

}  // namespace

RecoveryFolder::RecoveryFolder() : folder_(UsualFolder()) {}

// An empty file of a name that no other copy has, whoever makes one at the same time.
std::string RecoveryFolder::NewCopy(const std::string& documentName, int* error) const {
    std::error_code failure;
    fs::create_directories(folder_, failure);
    if (!failure) fs::permissions(folder_, fs::perms::owner_all, failure);
    *error = failure.value();
    const std::string stem = folder_ + '/' + StemOf(documentName);
    for (int i = 1; !failure && i <= kMaxCopies; i++) {
        std::string path = i == 1 ? stem : stem + ' ' + std::to_string(i);
        const FileDescriptor file(
            open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOnlyTheUser));
        if (file.IsOpen()) return path;
        *error = errno;
        if (*error != EEXIST) break;
    }
    return {};
}

DocumentError RecoveryFolder::Keep(const BMessage& record, const std::string& documentName,
                                   const std::string& originalPath, std::string* copy) const {
    int error = 0;
    const bool isNew = copy->empty();
    const std::string path = isNew ? NewCopy(documentName, &error) : *copy;
    if (path.empty()) return DocumentError::System(error);

    BMessage marked(record);
    marked.RemoveName(kNameField);
    marked.RemoveName(kPathField);
    marked.RemoveName(kProcessField);
    FieldWriter fields(&marked);
    fields.Add(kNameField, documentName)
        .Add(kPathField, originalPath, !originalPath.empty())
        .Add(kProcessField, int32{getpid()});
    DocumentError result = DocumentError::Record(fields.Status());
    if (!result.Failed()) result = SimulationFile::Write(path, std::move(marked));
    if (!result.Failed())
        *copy = path;
    else if (isNew)
        Discard(path);
    return result;
}

std::vector<RecoveryCopy> RecoveryFolder::List() const {
    std::vector<RecoveryCopy> copies;
    std::error_code failure;
    fs::directory_iterator entry(folder_, failure);
    for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
        if (TemporaryFiles::IsName(entry->path().filename().string())) continue;
        RecoveryCopy copy{entry->path().string(), {}, {}, 0};
        struct stat info {};
        BMessage record;
        if (stat(copy.path.c_str(), &info) != 0 ||
            SimulationFile::Read(copy.path, &record).Failed() ||
            record.FindString(kNameField, &copy.documentName) != B_OK)
            continue;
        int32 process = 0;
        if (record.FindInt32(kProcessField, &process) == B_OK && IsAnotherOfUs(process)) continue;
        static_cast<void>(record.FindString(kPathField, &copy.originalPath));
        copy.time = info.st_mtime;
        copies.push_back(std::move(copy));
    }
    std::sort(copies.begin(), copies.end(), [](const RecoveryCopy& a, const RecoveryCopy& b) {
        return a.time != b.time ? a.time < b.time : a.path < b.path;
    });
    return copies;
}

void RecoveryFolder::Discard(const std::string& path) const {
    if (fs::path(path).parent_path() == fs::path(folder_)) unlink(path.c_str());
}
