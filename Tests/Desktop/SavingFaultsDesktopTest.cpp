// The real program saves while disks are full, folders go, and the program itself is killed.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <random>

#include "Platform/Storage/FileDescriptor.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Desktop/DesktopTest.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

namespace fs = std::filesystem;

const char* const kDocument = "planets.orvek";
constexpr std::size_t kPlanets = 10;

std::vector<std::string> Names(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

// Whether files without a name can be made there.
bool KnowsNamelessFiles(const fs::path& folder) {
    return FileDescriptor(open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0600)).IsOpen();
}

// 0 for what is no document.
std::size_t CountBodies(const fs::path& path) {
    BMessage record;
    SimulationDocument document(nullptr);
    if (SimulationFile::Read(path, &record).Failed() || document.Load(record).Failed()) return 0;
    return document.Portal()->BodiesInMassOrder().size();
}

class SavingFaultsDesktopTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        place_ = desktop_->Folder() / "place";
        fs::create_directory(place_);
        path_ = place_ / kDocument;
        fs::rename(CopyExample("planets"), path_);
    }

    void Open() {
        StartProgram({path_});
        window_ = WaitForSimulation(path_);
    }
    // The edit of these tests: one body more.
    void AddBody() { desktop_->Press(window_, "ctrl+b"); }

    // Saves once more; true when the file holds so many bodies.
    bool SavesBodies(std::size_t count) {
        desktop_->Press(window_, "ctrl+s");
        return DesktopSession::WaitFor([&] { return CountBodies(path_) == count; });
    }

    // No file of the program may grow beyond that size, as on a full disk.
    void LimitFiles(rlim_t size) const {
        rlimit limit{};
        ASSERT_EQ(prlimit(program_->Id(), RLIMIT_FSIZE, nullptr, &limit), 0);
        limit.rlim_cur = size;
        ASSERT_EQ(prlimit(program_->Id(), RLIMIT_FSIZE, &limit, nullptr), 0);
    }

    void Quit() {
        desktop_->Press(window_, "ctrl+q");
        EXPECT_TRUE(EndsWell());
    }

    fs::path place_;
    Window window_;
};

// --- A copy can be kept ---

struct Fault {
    const char* name;
    // Run as root of a name space of its own before the program starts; %1 stands for the folder,
    // which goes once the document is open if there is nothing to run.
    const char* mount;
    const char* reason;
};

class UnsavableDesktopTest : public SavingFaultsDesktopTest,
                             public testing::WithParamInterface<Fault> {
protected:
    // A command in a name space where the folder is another file system.
    std::vector<std::string> Mounting(const std::string& command) const {
        std::string mount = GetParam().mount + command;
        for (std::size_t at = 0; (at = mount.find("%1")) != std::string::npos;)
            mount.replace(at, 2, place_.string());
        return {"unshare", "--user", "--map-root-user", "--mount", "sh", "-ec", mount};
    }
};

}  // namespace

// The old document stays, the program goes on and tells why, and the work is in a copy.
TEST_P(UnsavableDesktopTest, NothingIsLost) {
    const bool isMounted = *GetParam().mount != '\0';
    if (isMounted) {
        if (desktop_->Start(Mounting("true"))->Wait(DesktopSession::kPatience) !=
            ChildProcess::Ending{0, 0})
            GTEST_SKIP() << "file systems cannot be mounted here";
        program_ = desktop_->Start(Mounting("exec " ORVEK_PROGRAM " " + path_));
        window_ = WaitForSimulation(path_);
    } else {
        Open();
    }
    const std::string before = Bytes(path_);
    AddBody();
    if (!isMounted) fs::remove_all(place_);
    const std::size_t windows = desktop_->WindowsTitled(".").size();
    desktop_->Press(window_, "ctrl+s");
    EXPECT_TRUE(Says("orvek: " + path_ + " could not be saved: " + GetParam().reason +
                     ". A recovery copy is kept.\n"))
        << desktop_->Output();
    EXPECT_EQ(desktop_->WindowsTitled(".").size(), windows) << "there is a box";
    // As the program sees it.
    if (isMounted) {
        EXPECT_EQ(Bytes("/proc/" + std::to_string(program_->Id()) + "/root" + path_), before);
    }
    ASSERT_EQ(Copies().size(), 1u);
    EXPECT_EQ(Copies()[0].originalPath, path_);
    EXPECT_EQ(CountBodies(Copies()[0].path), kPlanets + 1);
    Quit();
}

INSTANTIATE_TEST_SUITE_P(
    Faults, UnsavableDesktopTest,
    testing::Values(Fault{"FullDisk",
                          "cp %1/* %1/../kept; mount -t tmpfs -o size=12k tmpfs %1; mv %1/../kept "
                          "%1/planets.orvek; ",
                          "No space left on device"},
                    Fault{"ReadOnlyDisk", "mount --bind %1 %1; mount -o remount,bind,ro %1; ",
                          "Read-only file system"},
                    Fault{"FolderIsGone", "", "No such file or directory"}),
    [](const auto& fault) { return std::string(fault.param.name); });

// --- Not even a copy can be kept ---

TEST_F(SavingFaultsDesktopTest, WithoutASpareByteTheWorkStaysInTheWindow) {
    Open();
    const std::string before = Bytes(path_);
    AddBody();
    LimitFiles(2048);
    desktop_->Press(window_, "ctrl+s");
    EXPECT_TRUE(Says("There is no recovery copy either: ")) << desktop_->Output();
    EXPECT_EQ(Bytes(path_), before);
    EXPECT_EQ(Names(place_), std::vector<std::string>{kDocument});
    EXPECT_TRUE(Copies().empty());
    // It is not saved.
    desktop_->Press(window_, "ctrl+w");
    GiveAnswer(Answer::kEscape);
    LimitFiles(RLIM_INFINITY);
    EXPECT_TRUE(SavesBodies(kPlanets + 1));
    Quit();
}

TEST_F(SavingFaultsDesktopTest, AFileThatIsGoneIsWrittenAgain) {
    Open();
    AddBody();
    fs::remove(path_);
    EXPECT_TRUE(SavesBodies(kPlanets + 1));
    EXPECT_TRUE(Copies().empty());
    Quit();
}

// --- The program is killed ---

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

class KilledDesktopTest : public SavingFaultsDesktopTest {
protected:
    // Puts a document there that takes its time to be saved.
    void MakeLarge() const {
        constexpr int kMany = 20'000;
        const std::unique_ptr<Epoch> epoch = MakePlanetEpoch("Genesis");
        for (int id = 10; id < kMany; id++)
            epoch->RootSystem()->AddChild(
                MakeBody("Dust", id, 1.0, {id * 1e9, 1e9, 0}, {0, id * 1.0, 0}).release());
        ASSERT_FALSE(SimulationFile::Write(path_, RecordOf({epoch.get()})).Failed());
    }

    // Presses the keys of Save, and does not wait for what comes of it.
    void BeginSave() {
        desktop_->Activate(window_);
        hand_ = desktop_->Start({"xdotool", "key", "--clearmodifiers", "ctrl+s"});
    }

    // Saves, and how long that takes.
    Milliseconds TimeSave() {
        struct stat before {};
        stat(path_.c_str(), &before);
        const auto begin = Clock::now();
        BeginSave();
        EXPECT_TRUE(DesktopSession::WaitFor([&] {
            struct stat now {};
            return stat(path_.c_str(), &now) == 0 && now.st_ino != before.st_ino;
        }));
        return Clock::now() - begin;
    }

    void Kill() {
        program_->Signal(SIGKILL);
        EXPECT_EQ(program_->Wait(DesktopSession::kPatience), (ChildProcess::Ending{-1, SIGKILL}));
        hand_->Wait(DesktopSession::kPatience);
    }

    std::unique_ptr<ChildProcess> hand_;
};

}  // namespace

// The moments are drawn around the one at which the new document takes the old one's place.
TEST_F(KilledDesktopTest, InTheMidstOfASaveTheDocumentIsTheOldOrTheNewOne) {
    constexpr int kTimes = 30;
    constexpr double kCloser = 1.05;
    constexpr unsigned kSeed = 1911;
    MakeLarge();
    // Saved by the program, it has the places of windows, too.
    Open();
    TimeSave();
    Quit();
    const std::string before = Bytes(path_);
    Open();
    AddBody();
    Milliseconds length = TimeSave();
    Kill();
    const std::string after = Bytes(path_);
    ASSERT_NE(after, before);

    std::mt19937 random(kSeed);
    std::uniform_real_distribution<double> part(0.4, 1.6);
    int countOld = 0;
    for (int i = 0; i < kTimes && !HasFailure(); i++) {
        std::ofstream(path_, std::ios::binary) << before;
        Open();
        AddBody();
        BeginSave();
        EXPECT_FALSE(program_->Wait(
            std::chrono::duration_cast<std::chrono::milliseconds>(part(random) * length)));
        Kill();
        const std::string left = Bytes(path_);
        ASSERT_TRUE(left == before || left == after)
            << left.size() << " bytes, neither " << before.size() << " nor " << after.size();
        countOld += left == before ? 1 : 0;
        length *= left == before ? kCloser : 1 / kCloser;
    }
    // Otherwise no moment was in the midst.
    EXPECT_GT(countOld, 2);
    EXPECT_LT(countOld, kTimes - 2);
    // A new document has a name of its own only just before it takes the other's.
    EXPECT_LE(Names(place_).size(), KnowsNamelessFiles(place_) ? 2u : kTimes);
    EXPECT_TRUE(Copies().empty());
}
