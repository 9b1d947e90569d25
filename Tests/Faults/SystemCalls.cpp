#include "Tests/Faults/SystemCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace {

enum class Fault { kNone, kFail, kEnd };

struct Control {
    Fault fault = Fault::kNone;
    bool isCounting = false;
    int calls = 0;
    int chosen = 0;
    SystemCalls::World world;
};

thread_local Control gControl;
thread_local std::string gFailed;

void Start(Fault fault, int call, const SystemCalls::World& world) {
    gFailed.clear();
    gControl = {fault, true, 0, call, world};
}

// True for the call that was chosen, which has to fail.
bool Meets(const char* name, Fault fault) {
    if (!gControl.isCounting || gControl.fault != fault || gControl.calls != gControl.chosen)
        return false;
    gFailed = name;
    errno = EIO;
    return true;
}

bool Fails(const char* name) {
    if (!gControl.isCounting) return false;
    gControl.calls++;
    if (Meets(name, Fault::kEnd)) _exit(SystemCalls::kEnded);
    return Meets(name, Fault::kFail);
}

template <typename Function>
Function* System(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void SystemCalls::FailAt(int call, const World& world) {
    Start(Fault::kFail, call, world);
}

void SystemCalls::EndAt(int call, const World& world) {
    Start(Fault::kEnd, call, world);
}

int SystemCalls::Stop() {
    gControl.isCounting = false;
    return gControl.calls;
}

const std::string& SystemCalls::Failed() {
    return gFailed;
}

// --- The calls ---

#define FAULTY(Result, name, parameters, arguments, exceptions)      \
    extern "C" Result name parameters exceptions {                   \
        static const auto system = System<Result parameters>(#name); \
        return Fails(#name) ? Result{-1} : system arguments;         \
    }

FAULTY(int, ftruncate, (int file, off_t size), (file, size), noexcept)
FAULTY(int, fallocate, (int file, int mode, off_t at, off_t size), (file, mode, at, size), )
FAULTY(int, rename, (const char* from, const char* to), (from, to), noexcept)
FAULTY(int, link, (const char* from, const char* to), (from, to), noexcept)
FAULTY(int, unlink, (const char* path), (path), noexcept)
FAULTY(int, fchmod, (int file, mode_t mode), (file, mode), noexcept)
FAULTY(int, fchown, (int file, uid_t user, gid_t group), (file, user, group), noexcept)
FAULTY(int, flock, (int file, int what), (file, what), noexcept)
FAULTY(int, fstat, (int file, struct stat* info), (file, info), noexcept)
FAULTY(int, lstat, (const char* path, struct stat* info), (path, info), noexcept)
FAULTY(int, stat, (const char* path, struct stat* info), (path, info), noexcept)
FAULTY(int, access, (const char* path, int how), (path, how), noexcept)
FAULTY(int, faccessat, (int folder, const char* path, int how, int flags),
       (folder, path, how, flags), noexcept)
FAULTY(ssize_t, readlink, (const char* path, char* to, size_t size), (path, to, size), noexcept)
FAULTY(ssize_t, read, (int file, void* to, size_t size), (file, to, size), )
FAULTY(ssize_t, pread, (int file, void* to, size_t size, off_t at), (file, to, size, at), )
FAULTY(ssize_t, flistxattr, (int file, char* to, size_t size), (file, to, size), noexcept)
FAULTY(ssize_t, fgetxattr, (int file, const char* name, void* to, size_t size),
       (file, name, to, size), noexcept)
FAULTY(ssize_t, lgetxattr, (const char* path, const char* name, void* to, size_t size),
       (path, name, to, size), noexcept)
FAULTY(int, fsetxattr, (int file, const char* name, const void* from, size_t size, int flags),
       (file, name, from, size, flags), noexcept)
FAULTY(int, fremovexattr, (int file, const char* name), (file, name), noexcept)

extern "C" int open(const char* path, int flags, ...) {
    static const auto system = System<int(const char*, int, ...)>("open");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    if (Fails("open")) return -1;
    const bool isNameless = (flags & O_TMPFILE) == O_TMPFILE;
    if (gControl.isCounting && isNameless && !gControl.world.hasNamelessFiles) {
        errno = EOPNOTSUPP;
        return -1;
    }
    return system(path, flags, mode);
}

extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to,
                      int flags) noexcept {
    static const auto system = System<int(int, const char*, int, const char*, int)>("linkat");
    if (Fails("linkat")) return -1;
    if (gControl.isCounting && !gControl.world.canNameThem) {
        errno = ENOENT;
        return -1;
    }
    return system(fromFolder, from, toFolder, to, flags);
}

// Nothing here outlives the machine; waiting for its disk would take most of the time.
extern "C" int fsync(int) {
    return Fails("fsync") ? -1 : 0;
}

// A file is closed whatever the answer is.
extern "C" int close(int file) {
    static const auto system = System<int(int)>("close");
    const bool fails = Fails("close");
    const int result = system(file);
    if (fails) errno = EIO;
    return fails ? -1 : result;
}

extern "C" ssize_t write(int file, const void* from, size_t size) {
    static const auto system = System<ssize_t(int, const void*, size_t)>("write");
    if (gControl.isCounting && gControl.fault == Fault::kEnd &&
        gControl.calls + 1 == gControl.chosen)
        static_cast<void>(system(file, from, size / 2));
    return Fails("write") ? -1 : system(file, from, size);
}

extern "C" ssize_t pwrite(int file, const void* from, size_t size, off_t at) {
    static const auto system = System<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    if (gControl.isCounting && gControl.calls + 1 == gControl.chosen)
        static_cast<void>(system(file, from, size / 2, at));
    return Fails("pwrite") ? -1 : system(file, from, size, at);
}
