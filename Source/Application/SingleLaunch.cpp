#include "SingleLaunch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>

#include "AppDefs.h"
#include "BMessage.h"
#include "BPath.h"
#include "ProgramMessages.h"
#include "entry_ref.h"

namespace {

constexpr const char* kPath = "path";
constexpr char kTaken = 'k';  // the answer
constexpr uint32 kMaxMessageSize = 1 << 20;
constexpr bigtime_t kSecond = 1'000'000;
// What one side waits for the other before it thinks that there is nobody.
constexpr bigtime_t kPatience = 5 * kSecond;

std::string VariableOr(const char* name, const char* otherwise) {
    const char* const value = std::getenv(name);
    return value == nullptr ? otherwise : value;
}

// Only this user's, or nothing: what somebody else could put there is not to be trusted.
bool IsOwnFolder(const std::string& path) {
    constexpr mode_t kOthers = S_IWGRP | S_IWOTH;
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == getuid() &&
           (info.st_mode & kOthers) == 0;
}

std::string RuntimeFolder() {
    constexpr mode_t kOwnerOnly = 0700;
    std::string usual = VariableOr("XDG_RUNTIME_DIR", "");
    if (usual.starts_with("/") && IsOwnFolder(usual)) return usual;
    std::error_code error;
    const std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
    if (error) return {};
    const std::string own = temporary / ("orvek-" + std::to_string(getuid()));
    mkdir(own.c_str(), kOwnerOnly);
    return IsOwnFolder(own) ? own : "";
}

// The screens of one display are one place; the characters are such as a file's name may have.
std::string DisplayName() {
    std::string name = VariableOr("WAYLAND_DISPLAY", "");
    if (name.empty()) {
        name = VariableOr("DISPLAY", "");
        const std::size_t colon = name.rfind(':');
        if (colon != std::string::npos) name.resize(std::min(name.find('.', colon), name.size()));
    }
    for (char& letter : name)
        if (std::isalnum(static_cast<unsigned char>(letter)) == 0) letter = '_';
    return name;
}

std::optional<sockaddr_un> AddressOf(const std::string& path) {
    sockaddr_un address{};
    if (path.empty() || path.size() >= sizeof address.sun_path) return std::nullopt;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

FileDescriptor NewSocket() {
    return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

// Calls bind() or connect().
template <typename Call>
bool WithAddress(Call call, const FileDescriptor& socket, const sockaddr_un& address) {
    const auto* const general = reinterpret_cast<const sockaddr*>(&address);
    return call(socket.Get(), general, sizeof address) == 0;
}

void LimitWaiting(const FileDescriptor& connection) {
    const timeval patience{kPatience / kSecond, 0};
    setsockopt(connection.Get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(connection.Get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
}

bool SendAll(const FileDescriptor& connection, const void* data, std::size_t size) {
    const auto* from = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t sent = send(connection.Get(), from, size, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent <= 0) return false;
        from += sent;
        size -= static_cast<std::size_t>(sent);
    }
    return true;
}

bool ReceiveAll(const FileDescriptor& connection, void* data, std::size_t size) {
    auto* into = static_cast<char*>(data);
    while (size > 0) {
        const ssize_t got = recv(connection.Get(), into, size, 0);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        into += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

bool IsOwnUser(const FileDescriptor& connection) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(connection.Get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == getuid();
}

BMessage MessageFor(const BMessage& paths) {
    BMessage message(B_REFS_RECEIVED);
    std::string path;
    for (int32 i = 0; paths.FindString(kPath, i, &path) == B_OK; i++) {
        entry_ref ref;
        if (get_ref_for_path(path.c_str(), &ref) == B_OK) message.AddRef("refs", &ref);
    }
    if (!message.HasName("refs")) message.what = kActivateProgram;
    return message;
}

}  // namespace

SingleLaunch::SingleLaunch(const std::string& program) {
    const std::string folder = RuntimeFolder();
    if (folder.empty()) return;
    const std::string base = folder + '/' + program + '-' + DisplayName();
    socketPath_ = base + ".socket";
    if (lock_.SetTo((base + ".lock").c_str(), B_READ_WRITE | B_CREATE_FILE) != B_OK) return;
    isFirst_ = lock_.Lock() != B_BUSY;
    if (isFirst_ && !OpenSocket()) socket_.Reset();
}

SingleLaunch::~SingleLaunch() {
    if (thread_.joinable()) {
        static_cast<void>(eventfd_write(stop_.Get(), 1));
        thread_.join();
    }
    // The lock's file stays: who waits for it could be left with one that has no name.
    if (socket_.IsOpen()) unlink(socketPath_.c_str());
}

// A socket that lies there is one of a program that has ended.
bool SingleLaunch::OpenSocket() {
    constexpr int kWaitingRoom = 8;
    const auto address = AddressOf(socketPath_);
    if (!address) return false;
    unlink(socketPath_.c_str());
    socket_ = NewSocket();
    return socket_.IsOpen() && WithAddress(bind, socket_, *address) &&
           listen(socket_.Get(), kWaitingRoom) == 0;
}

// --- The one that comes later ---

bool SingleLaunch::HandOver(const std::vector<std::string>& paths) const {
    constexpr int kAttempts = 20;
    constexpr bigtime_t kPause = 50'000;
    const auto address = AddressOf(socketPath_);
    if (!address) return false;
    BMessage message;
    for (const std::string& path : paths)
        message.AddString(kPath, BPath(path.c_str()).Path());
    std::vector<std::byte> bytes;
    if (message.Flatten(&bytes) != B_OK) return false;
    const auto size = static_cast<uint32>(bytes.size());

    const FileDescriptor connection = NewSocket();
    LimitWaiting(connection);
    // The other one has its lock a moment before it has its socket.
    for (int i = 1; !WithAddress(connect, connection, *address); i++) {
        if (i == kAttempts) return false;
        snooze(kPause);
    }
    char answer = 0;
    return SendAll(connection, &size, sizeof size) &&
           SendAll(connection, bytes.data(), bytes.size()) &&
           ReceiveAll(connection, &answer, sizeof answer) && answer == kTaken;
}

// --- The one that runs ---

void SingleLaunch::Listen(const BMessenger& application) {
    if (!socket_.IsOpen()) return;
    stop_ = FileDescriptor(eventfd(0, EFD_CLOEXEC));
    thread_ = std::thread([this, application] { Serve(application); });
}

void SingleLaunch::Serve(const BMessenger& application) const {
    pollfd events[] = {{stop_.Get(), POLLIN, 0}, {socket_.Get(), POLLIN, 0}};
    for (;;) {
        if (poll(events, std::size(events), -1) < 0 && errno != EINTR) return;
        if (events[0].revents != 0) return;
        if (events[1].revents == 0) continue;
        const FileDescriptor connection(accept4(socket_.Get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (connection.IsOpen() && IsOwnUser(connection)) ServeOne(connection, application);
    }
}

void SingleLaunch::ServeOne(const FileDescriptor& connection, const BMessenger& application) {
    LimitWaiting(connection);
    uint32 size = 0;
    if (!ReceiveAll(connection, &size, sizeof size) || size > kMaxMessageSize) return;
    std::vector<std::byte> bytes(size);
    BMessage paths;
    if (!ReceiveAll(connection, bytes.data(), size) || paths.Unflatten(bytes.data(), size) != B_OK)
        return;
    const BMessage message = MessageFor(paths);
    BMessage reply;
    // An application that ends takes nothing any more; then the other one is on its own.
    if (application.SendMessage(&message, &reply, kPatience, kPatience) == B_OK &&
        reply.what != B_NO_REPLY)
        SendAll(connection, &kTaken, sizeof kTaken);
}
