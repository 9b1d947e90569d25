#include "Platform/Storage/AtomicFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>

#include "Platform/Storage/FileDescriptor.h"
#include "Platform/Support/TypeConstants.h"
#include "Tests/Platform/TestFolder.h"

namespace {

using Names = std::vector<std::string>;

mode_t ModeOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(stat(path.c_str(), &info), 0);
    return info.st_mode & 07777;
}

// No file grows beyond this size for as long as it lives: the disk is full.
class FullDisk {
public:
    explicit FullDisk(rlim_t size) {
        getrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{size, old_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &old_); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit old_{};
};

class AtomicFileTest : public testing::Test {
protected:
    status_t Save(const std::string& path, std::string_view contents) {
        AtomicFile file;
        if (const status_t status = file.Open(path); status != B_OK) return status;
        if (const status_t status = file.Write(contents.data(), contents.size()); status != B_OK)
            return status;
        return file.Commit();
    }

    TestFolder folder_;
};

TEST_F(AtomicFileTest, TheOldFileStaysUntilTheNewOneIsComplete) {
    const std::string path = folder_.Write("file", "old");
    for (const bool isFinished : {false, true}) {
        AtomicFile file;
        ASSERT_EQ(file.Open(path), B_OK);
        ASSERT_EQ(file.Write("new ", 4), B_OK);
        ASSERT_EQ(file.Write("contents", 8), B_OK);
        EXPECT_EQ(folder_.Read("file"), "old");
        if (!isFinished) continue;
        EXPECT_EQ(file.Commit(), B_OK);
    }
    EXPECT_EQ(folder_.Read("file"), "new contents");
    EXPECT_EQ(folder_.Names(), Names{"file"});
}

TEST_F(AtomicFileTest, AProgramThatIsKilledLeavesNoTrace) {
    const std::string path = folder_.Write("file", "old");
    if (!FileDescriptor(open(folder_.Path().c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0600))
             .IsOpen())
        GTEST_SKIP() << "this file system has no files without a name";
    const pid_t child = fork();
    if (child == 0) {
        AtomicFile file;
        const bool isWritten = file.Open(path) == B_OK && file.Write("new", 3) == B_OK;
        _exit(isWritten ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_EQ(folder_.Names(), Names{"file"});
}

TEST_F(AtomicFileTest, KeepsTheModeOfTheOldFile) {
    const std::string path = folder_.Write("file", "old");
    const mode_t mask = umask(022);
    ASSERT_EQ(chmod(path.c_str(), 0606), 0);
    EXPECT_EQ(Save(path, "new"), B_OK);
    EXPECT_EQ(ModeOf(path), 0606u);
    EXPECT_EQ(Save(folder_.Path("new"), "new"), B_OK);
    EXPECT_EQ(ModeOf(folder_.Path("new")), 0644u);
    umask(mask);
}

TEST_F(AtomicFileTest, KeepsOwnerGroupAndAccessList) {
    const std::string path = folder_.Write("file", "old");
    const bool isRoot = geteuid() == 0;
    gid_t group = 2;
    if (!isRoot && getgroups(1, &group) != 1) GTEST_SKIP() << "this user has one group only";
    ASSERT_EQ(chown(path.c_str(), isRoot ? 1 : static_cast<uid_t>(-1), group), 0);
    ASSERT_EQ(chmod(path.c_str(), 0660), 0);
    EXPECT_EQ(Save(path, "new"), B_OK);
    struct stat info {};
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_gid, group);
    EXPECT_EQ(info.st_uid, isRoot ? 1 : geteuid());
    EXPECT_EQ(ModeOf(path), 0660u);

    // Owner rw, user 3 r, group -, mask r, others -; little-endian, as stored.
    using namespace std::string_literals;
    const std::string list =
        "\2\0\0\0"
        "\1\0\6\0\xff\xff\xff\xff"
        "\2\0\4\0\3\0\0\0"
        "\4\0\0\0\xff\xff\xff\xff"
        "\x10\0\4\0\xff\xff\xff\xff"
        "\x20\0\0\0\xff\xff\xff\xff"s;
    constexpr const char* kList = "system.posix_acl_access";
    if (setxattr(path.c_str(), kList, list.data(), list.size(), 0) != 0)
        GTEST_SKIP() << "this file system has no access lists";
    EXPECT_EQ(Save(path, "newer"), B_OK);
    std::string found(100, '\0');
    found.resize(static_cast<std::size_t>(
        std::max<ssize_t>(0, getxattr(path.c_str(), kList, found.data(), found.size()))));
    EXPECT_EQ(found, list);
    // A file without one does not get that of its folder.
    ASSERT_EQ(
        setxattr(folder_.Path().c_str(), "system.posix_acl_default", list.data(), list.size(), 0),
        0);
    ASSERT_EQ(removexattr(path.c_str(), kList), 0);
    ASSERT_EQ(chmod(path.c_str(), 0600), 0);
    EXPECT_EQ(Save(path, "newest"), B_OK);
    EXPECT_LT(getxattr(path.c_str(), kList, nullptr, 0), 0);
    EXPECT_EQ(ModeOf(path), 0600u);
}

TEST_F(AtomicFileTest, AFileOfTwoNamesStaysOne) {
    const std::string path = folder_.Write("file", "old contents");
    std::filesystem::create_hard_link(path, folder_.Path("also"));
    for (const std::string& contents : {std::string("new"), std::string(3'000'000, 'x')}) {
        EXPECT_EQ(Save(path, contents), B_OK);
        EXPECT_EQ(folder_.Read("file"), contents);
        EXPECT_EQ(folder_.Read("also"), contents);
    }
    AtomicFile file;
    ASSERT_EQ(file.Open(path), B_OK);
    ASSERT_EQ(file.Write(std::string(4'000'000, 'y').data(), 4'000'000), B_OK);
    {
        const FullDisk full(3'500'000);
        EXPECT_EQ(file.Commit(), B_DEVICE_FULL);
    }
    EXPECT_EQ(folder_.Read("also"), std::string(3'000'000, 'x'));
    EXPECT_EQ(folder_.Names(), (Names{"also", "file"}));
}

TEST_F(AtomicFileTest, WhatEndedProcessesLeftIsRemovedAndCounted) {
    folder_.Write(".orvek-0123abcd.tmp", "left");
    folder_.Write(".orvek-0123abcd.tmp.orvek", "the user's own");
    const FileDescriptor other(
        open(folder_.Write(".orvek-89abcdef.tmp", "being written").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(flock(other.Get(), LOCK_EX), 0);
    AtomicFile file;
    ASSERT_EQ(file.Open(folder_.Path("file")), B_OK);
    ASSERT_EQ(file.Commit(), B_OK);
    EXPECT_EQ(file.RemovedLeftovers(), 1);
    EXPECT_EQ(folder_.Names(), (Names{".orvek-0123abcd.tmp.orvek", ".orvek-89abcdef.tmp", "file"}));
}

TEST_F(AtomicFileTest, KeepsAndSetsAttributes) {
    const std::string path = folder_.Write("file", "old");
    if (setxattr(path.c_str(), "user.tags", "mine", 4, 0) != 0 && errno == ENOTSUP)
        GTEST_SKIP() << "this file system has no attributes";
    AtomicFile file;
    ASSERT_EQ(file.Open(path), B_OK);
    EXPECT_EQ(file.Node().WriteAttr("kind", B_STRING_TYPE, "new", 4), B_OK);
    ASSERT_EQ(file.Commit(), B_OK);
    char value[10] = {};
    EXPECT_EQ(getxattr(path.c_str(), "user.tags", value, sizeof value), 4);
    EXPECT_STREQ(value, "mine");
    type_code type = 0;
    std::vector<char> data;
    EXPECT_EQ(BNode(path.c_str()).ReadAttr("kind", &type, &data), B_OK);
}

TEST_F(AtomicFileTest, ReplacesWhatALinkLeadsTo) {
    std::filesystem::create_directory(folder_.Path("sub"));
    folder_.Write("sub/file", "old");
    std::filesystem::create_symlink("sub/second", folder_.Path("first"));
    std::filesystem::create_symlink("file", folder_.Path("sub/second"));
    EXPECT_EQ(Save(folder_.Path("first"), "new"), B_OK);
    EXPECT_TRUE(std::filesystem::is_symlink(folder_.Path("first")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder_.Path("sub/second")));
    EXPECT_EQ(folder_.Read("sub/file"), "new");

    std::filesystem::create_symlink(folder_.Path("sub/not yet"), folder_.Path("dangling"));
    EXPECT_EQ(Save(folder_.Path("dangling"), "new"), B_OK);
    EXPECT_EQ(folder_.Read("sub/not yet"), "new");

    std::filesystem::create_symlink("circle", folder_.Path("circle"));
    EXPECT_EQ(Save(folder_.Path("circle"), "new"), B_LINK_LIMIT);

    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.Path());
    EXPECT_EQ(Save("first", "newer"), B_OK);
    std::filesystem::current_path(before);
    EXPECT_EQ(folder_.Read("sub/file"), "newer");
}

TEST_F(AtomicFileTest, AFullDiskLeavesTheOldFile) {
    const std::string path = folder_.Write("file", "old");
    AtomicFile file;
    ASSERT_EQ(file.Open(path), B_OK);
    {
        const FullDisk full(5000);
        EXPECT_EQ(file.Write(std::string(100000, 'x').data(), 100000), B_DEVICE_FULL);
    }
    EXPECT_EQ(file.SystemError(), EFBIG);
    // It has failed once and for all.
    EXPECT_EQ(file.Write("x", 1), B_DEVICE_FULL);
    EXPECT_EQ(file.Commit(), B_DEVICE_FULL);
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_EQ(folder_.Names(), Names{"file"});
}

TEST_F(AtomicFileTest, AnotherThingInItsPlaceAtTheEndFailsTheCommit) {
    AtomicFile file;
    ASSERT_EQ(file.Open(folder_.Path("file")), B_OK);
    std::filesystem::create_directory(folder_.Path("file"));
    EXPECT_EQ(file.Commit(), B_IS_A_DIRECTORY);
    EXPECT_EQ(file.SystemError(), EISDIR);
    EXPECT_EQ(folder_.Names(), Names{"file"});
}

TEST_F(AtomicFileTest, RefusesWhatCannotBeReplaced) {
    folder_.Write("file", "old");
    EXPECT_EQ(Save("", "new"), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(Save(folder_.Path(), "new"), B_IS_A_DIRECTORY);
    EXPECT_EQ(Save(folder_.Path("none/file"), "new"), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(Save(folder_.Path(std::string(300, 'x')), "new"), B_NAME_TOO_LONG);
    EXPECT_EQ(Save("/dev/null", "new"), B_NOT_ALLOWED);
    AtomicFile never;
    EXPECT_NE(never.Write("x", 1), B_OK);
    EXPECT_NE(never.Commit(), B_OK);
    EXPECT_EQ(folder_.Names(), Names{"file"});
    if (geteuid() == 0) return;  // nothing is read-only for the superuser
    ASSERT_EQ(chmod(folder_.Path("file").c_str(), 0444), 0);
    EXPECT_EQ(Save(folder_.Path("file"), "new"), B_PERMISSION_DENIED);
    EXPECT_EQ(folder_.Read("file"), "old");
}

}  // namespace
