#include "AtomicFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "FileDescriptor.h"
#include "TestFolder.h"
#include "TypeConstants.h"

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
