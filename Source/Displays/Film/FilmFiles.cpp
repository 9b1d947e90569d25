#include "Displays/Film/FilmFiles.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <vector>

extern char** environ;  // NOLINT(readability-redundant-declaration): not everywhere in unistd.h

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFramePrefix = "frame-";
constexpr std::string_view kFrameSuffix = ".png";
constexpr const char* kEncoder = "ffmpeg";
// Players want even numbers of pixels.
constexpr const char* kEvenSize = "pad=ceil(iw/2)*2:ceil(ih/2)*2";

bool IsFrame(const fs::path& path) {
    const std::string name = path.filename().string();
    if (!name.starts_with(kFramePrefix) || !name.ends_with(kFrameSuffix)) return false;
    const std::string_view digits = std::string_view(name).substr(
        kFramePrefix.size(), name.size() - kFramePrefix.size() - kFrameSuffix.size());
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string FrameName(int64 number) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "frame-%05lld.png", static_cast<long long>(number));
    return name.data();
}

// In the same folder and with the same suffix, which says what the encoder makes.
std::string HiddenBeside(const std::string& path) {
    const fs::path whole(path);
    return (whole.parent_path() / (".unfinished-" + whole.filename().string())).string();
}

}  // namespace

// --- A folder ---

int FilmFolder::Begin() {
    if (mkdir(path_.c_str(), 0777) != 0 && errno != EEXIST) return errno;
    std::error_code error;
    std::vector<fs::path> frames;
    for (fs::directory_iterator at(path_, error), end; !error && at != end; at.increment(error))
        if (IsFrame(at->path())) frames.push_back(at->path());
    if (error) return error.value();
    if (!frames.empty() && !replaces_) return EEXIST;
    for (const fs::path& frame : frames)
        if (!fs::remove(frame, error) && error) return error.value();
    return access(path_.c_str(), W_OK | X_OK) == 0 ? 0 : errno;
}

int FilmFolder::Add(std::span<const std::byte> png) {
    const std::string path = path_ + '/' + FrameName(count_++);
    const FileDescriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (!file.IsOpen()) return errno;
    while (!png.empty()) {
        const ssize_t written = write(file.Get(), png.data(), png.size());
        if (written < 0 && errno != EINTR) return errno;
        if (written > 0) png = png.subspan(static_cast<std::size_t>(written));
    }
    return 0;
}

// --- An encoder ---

FilmEncoder::FilmEncoder(std::string path, int32 framesPerSecond)
    : path_(std::move(path)),
      unfinished_(HiddenBeside(path_)),
      rate_(std::to_string(framesPerSecond)) {}

FilmEncoder::~FilmEncoder() {
    if (encoder_ < 0) return;
    kill(encoder_, SIGTERM);
    Wait();
    unlink(unfinished_.c_str());
}

bool FilmEncoder::IsInstalled() {
    const char* const folders = std::getenv("PATH");
    std::string_view rest = folders == nullptr ? std::string_view() : folders;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        const std::string program = std::string(rest.substr(0, end)) + '/' + kEncoder;
        if (access(program.c_str(), X_OK) == 0) return true;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return false;
}

// A socket, not a pipe: an encoder that ends early is an error, and no signal.
int FilmEncoder::Begin() {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return errno;
    input_ = FileDescriptor(ends[0]);
    const FileDescriptor theirs(ends[1]);
    const char* const arguments[] = {kEncoder,
                                     "-y",
                                     "-loglevel",
                                     "error",
                                     "-f",
                                     "image2pipe",
                                     "-framerate",
                                     rate_.c_str(),
                                     "-c:v",
                                     "png",
                                     "-i",
                                     "-",
                                     "-vf",
                                     kEvenSize,
                                     "-pix_fmt",
                                     "yuv420p",
                                     unfinished_.c_str(),
                                     nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, theirs.Get(), STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const int error = posix_spawnp(&encoder_, kEncoder, &actions, nullptr,
                                   const_cast<char* const*>(arguments), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) encoder_ = -1;
    return error;
}

int FilmEncoder::Add(std::span<const std::byte> png) {
    while (!png.empty()) {
        const ssize_t sent = send(input_.Get(), png.data(), png.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR) return errno == EPIPE ? EINVAL : errno;
        if (sent > 0) png = png.subspan(static_cast<std::size_t>(sent));
    }
    return 0;
}

int FilmEncoder::Wait() {
    input_.Reset();
    int status = 0;
    while (waitpid(encoder_, &status, 0) < 0 && errno == EINTR) {
    }
    encoder_ = -1;
    return status;
}

int FilmEncoder::End() {
    const bool isMade = Wait() == 0;
    if (isMade && rename(unfinished_.c_str(), path_.c_str()) == 0) return 0;
    const int error = isMade ? errno : EINVAL;
    unlink(unfinished_.c_str());
    return error;
}
