// Whatever fails while something is written, and wherever the program ends: the old contents are
// whole or the new ones are, and the next save is as if nothing had been.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <set>

#include "Application/Prefs/Preferences.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Storage/FileDescriptor.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/RecoveryFolder.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Faults/SystemCalls.h"
#include "Tests/Platform/TestFolder.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

namespace fs = std::filesystem;

constexpr int kOld = 1;
constexpr int kNew = 2;
constexpr int kNewer = 3;
constexpr const char* kVersion = "Version";

// A document of so many numbers more than others have.
BMessage Document(int version) {
    BMessage record = PlanetRecord();
    for (int i = 0; i < version * 1000; i++)
        record.AddInt32(kVersion, version);
    return record;
}

// 0: there is none, or it is not whole.
int VersionOf(const std::string& path) {
    BMessage record;
    int32 version = 0;
    if (SimulationFile::Read(path, &record).Failed() ||
        record.FindInt32(kVersion, &version) != B_OK)
        return 0;
    int32 count = 0;
    EXPECT_EQ(record.GetInfo(kVersion, nullptr, &count), B_OK);
    return count == version * 1000 ? version : 0;
}

// Something that is written, in a folder of its own.
class Written {
public:
    virtual ~Written() = default;
    // False when it says that it could not.
    virtual bool Write(int version) = 0;
    // What can be read now, 0 for nothing.
    virtual int Version() = 0;
    // Whether this version is there and whole, in a place where a user finds it.
    virtual bool Has(int version) { return Version() == version; }
    // Which files there may be when nothing is being written.
    virtual std::set<std::string> Names() = 0;

    const TestFolder folder;
};

class NewDocument : public Written {
public:
    bool Write(int version) override {
        return !SimulationFile::Write(Path(), Document(version)).Failed();
    }
    int Version() override { return VersionOf(Path()); }
    std::set<std::string> Names() override { return {"document"}; }

protected:
    [[nodiscard]] std::string Path() const { return folder.Path("document"); }
};

class OldDocument : public NewDocument {
public:
    OldDocument() {
        EXPECT_TRUE(Write(kOld));
        EXPECT_EQ(chmod(Path().c_str(), 0640), 0);
        (void)setxattr(Path().c_str(), "user.tags", "mine", 4, 0);
    }
};

class LinkedDocument : public OldDocument {
public:
    LinkedDocument() { fs::create_hard_link(Path(), folder.Path("also")); }
    bool Has(int version) override {
        return Version() == version || VersionOf(folder.Path("document.new")) == version;
    }
    // A copy that may have been the only whole one is nobody's to remove.
    std::set<std::string> Names() override {
        return {"document", "also", "document.new", "document.new 2"};
    }
};

class NewCopy : public Written {
public:
    bool Write(int version) override {
        return !Folder().Keep(Document(version), "document", "/document", &copy_).Failed();
    }
    int Version() override {
        int version = 0;
        for (const RecoveryCopy& copy : Folder().List())
            version = std::max(version, VersionOf(copy.path));
        return version;
    }
    // The name of one that came to nothing may stay taken.
    std::set<std::string> Names() override { return {"document", "document 2"}; }

private:
    RecoveryFolder Folder() const { return RecoveryFolder(folder.Path()); }

    std::string copy_;
};

class OldCopy : public NewCopy {
public:
    OldCopy() { EXPECT_TRUE(Write(kOld)); }
};

class PreferenceFile : public Written {
public:
    PreferenceFile() {
        setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
        EXPECT_EQ(PREFInit("x", &handle_), B_OK);
        EXPECT_TRUE(Write(kOld));
    }
    ~PreferenceFile() override { PREFShutdown(handle_); }
    bool Write(int version) override {
        PreferenceSet* set = nullptr;
        if (PREFLoadSet(handle_, "set", true, &set) != B_OK) return false;
        const std::string value(static_cast<std::size_t>(version) * 1000, 'x');
        PREFSetData(set, kVersion, value.data(), value.size(), B_RAW_TYPE);
        const bool isSaved = PREFSaveSet(set) == B_OK;
        PREFDisposeSet(set);
        return isSaved;
    }
    int Version() override {
        PreferenceSet* set = nullptr;
        if (PREFLoadSet(handle_, "set", true, &set) != B_OK) return 0;
        const void* value = nullptr;
        std::size_t size = 0;
        type_code type = 0;
        const bool isThere = PREFGetData(set, kVersion, &value, &size, &type) == B_OK;
        PREFDisposeSet(set);
        return isThere ? static_cast<int>(size / 1000) : 0;
    }
    std::set<std::string> Names() override { return {"_LP_x"}; }

private:
    PREFHandle* handle_ = nullptr;
};

struct Case {
    const char* name;
    std::unique_ptr<Written> (*make)();
    SystemCalls::World world;
};

template <class Kind>
std::unique_ptr<Written> Make() {
    return std::make_unique<Kind>();
}

void PrintTo(const Case& c, std::ostream* to) {
    *to << c.name;
}

class EveryFault : public testing::TestWithParam<Case> {
protected:
    // After a fault: what there is, and that the next save neither fails nor leaves anything.
    static void Check(Written* written, int before, bool mustBeNew) {
        const int version = written->Version();
        EXPECT_TRUE(version == before || version == kNew || written->Has(kNew)) << version;
        if (mustBeNew) {
            EXPECT_EQ(version, kNew);
        }
        EXPECT_TRUE(written->Write(kNewer));
        EXPECT_EQ(written->Version(), kNewer);
        const std::set<std::string> expected = written->Names();
        for (const std::string& name : written->folder.Names())
            EXPECT_TRUE(expected.contains(name)) << name;
    }
};

TEST_P(EveryFault, EachCallThatFailsLeavesTheOldOrTheNew) {
    // What is not needed for the contents may fail: then the save succeeds.
    const std::set<std::string> mayFail = {"fchmod",    "fchown",    "flistxattr",   "fgetxattr",
                                           "lgetxattr", "fsetxattr", "fremovexattr", "close"};
    int failures = 0;
    for (int call = 1;; call++) {
        const std::unique_ptr<Written> written = GetParam().make();
        const int before = written->Version();
        SystemCalls::FailAt(call, GetParam().world);
        const bool isWritten = written->Write(kNew);
        if (SystemCalls::Stop() < call) break;
        SCOPED_TRACE(SystemCalls::Failed() + ", call " + std::to_string(call));
        if (mayFail.contains(SystemCalls::Failed())) {
            EXPECT_TRUE(isWritten);
        }
        if (!isWritten) failures++;
        Check(written.get(), before, isWritten);
    }
    EXPECT_GT(failures, 5);
}

TEST_P(EveryFault, AProgramThatEndsAnywhereLeavesTheOldOrTheNew) {
    for (int call = 1;; call++) {
        const std::unique_ptr<Written> written = GetParam().make();
        const int before = written->Version();
        const pid_t program = fork();
        if (program == 0) {
            SystemCalls::EndAt(call, GetParam().world);
            written->Write(kNew);
            _exit(SystemCalls::Stop() < call ? 0 : 1);
        }
        int status = -1;
        ASSERT_EQ(waitpid(program, &status, 0), program);
        SCOPED_TRACE("call " + std::to_string(call));
        ASSERT_TRUE(WIFEXITED(status));
        if (WEXITSTATUS(status) == 0) break;
        ASSERT_EQ(WEXITSTATUS(status), SystemCalls::kEnded);
        Check(written.get(), before, false);
    }
}

// The rights were those of another group.
TEST(SavingFaults, AGroupThatCannotBeKeptHasNoMoreRightsThanAnybody) {
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser knows of other groups";
    constexpr gid_t kAnother = 2;
    OldDocument document;
    const std::string path = document.folder.Path("document");
    struct stat info {};
    for (int call = 1; SystemCalls::Failed() != "fchown"; call++) {
        ASSERT_EQ(chown(path.c_str(), static_cast<uid_t>(-1), kAnother), 0);
        ASSERT_EQ(chmod(path.c_str(), 0664), 0);
        SystemCalls::FailAt(call);
        document.Write(kNew);
        ASSERT_GE(SystemCalls::Stop(), call);
    }
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0644u);
}

constexpr SystemCalls::World kNoNameless{.hasNamelessFiles = false};
constexpr SystemCalls::World kStaysNameless{.canNameThem = false};

INSTANTIATE_TEST_SUITE_P(
    SavingFaults, EveryFault,
    testing::Values(Case{"NewDocument", Make<NewDocument>, {}},
                    Case{"OldDocument", Make<OldDocument>, {}},
                    Case{"WithoutNamelessFiles", Make<OldDocument>, kNoNameless},
                    Case{"FilesThatStayNameless", Make<OldDocument>, kStaysNameless},
                    Case{"LinkedDocument", Make<LinkedDocument>, {}},
                    Case{"LinkedWithoutNamelessFiles", Make<LinkedDocument>, kNoNameless},
                    Case{"NewCopy", Make<NewCopy>, {}}, Case{"OldCopy", Make<OldCopy>, {}},
                    Case{"Preferences", Make<PreferenceFile>, {}}),
    [](const auto& test) { return std::string(test.param.name); });

// A user who is told that a file could not be written in place must learn where the contents are.
TEST(SavingFaults, ACopyThatHoldsTheOnlyWholeContentsIsNamed) {
    int kept = 0;
    for (int call = 1;; call++) {
        LinkedDocument document;
        const std::string copy = document.folder.Path("document.new");
        const BMessage record = Document(kNew);
        SystemCalls::FailAt(call);
        const DocumentError error = SimulationFile::Write(document.folder.Path("document"), record);
        if (SystemCalls::Stop() < call) break;
        const bool isKept = error.Failed() && fs::exists(copy);
        EXPECT_EQ(error.text == kTextKeptBeside, isKept) << SystemCalls::Failed();
        if (!isKept) continue;
        kept++;
        EXPECT_EQ(error.subject, copy);
        EXPECT_EQ(VersionOf(copy), kNew);
    }
    EXPECT_GT(kept, 0);
}

}  // namespace
