// The real program saves while disks are full, folders go, and the program itself is killed.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <ostream>
#include <random>

#include "DesktopTest.h"
#include "FileDescriptor.h"
#include "RecoveryFolder.h"
#include "SampleDocument.h"
#include "SimulationFile.h"

namespace {

namespace fs = std::filesystem;

const char* const kName = "planets.orvek";
const char* const kWindow = "^planets\\.orvek\\*?$";
const char* const kOffer = "^Recovered Simulation$";
constexpr std::size_t kPlanets = 10;

std::string Contents(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> Names(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

// 0 for what is no document.
std::size_t CountBodies(const fs::path& path) {
    BMessage record;
    SimulationDocument document(nullptr);
    if (SimulationFile::Read(path, &record).Failed() || document.Load(record).Failed()) return 0;
    return document.Portal()->BodiesInMassOrder().size();
}

// Whether files without a name can be made there.
bool KnowsNamelessFiles(const fs::path& folder) {
    return FileDescriptor(open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0600)).IsOpen();
}

// No file of the program may grow beyond that size, as on a full disk.
void LimitFiles(const ChildProcess& program, rlim_t size) {
    rlimit limit{};
    ASSERT_EQ(prlimit(program.Id(), RLIMIT_FSIZE, nullptr, &limit), 0);
    limit.rlim_cur = size;
    ASSERT_EQ(prlimit(program.Id(), RLIMIT_FSIZE, &limit, nullptr), 0);
}

class SavingFaultsDesktopTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        place_ = desktop_->Folder() / "place";
        fs::create_directory(place_);
        path_ = place_ / kName;
        fs::rename(CopyExample("planets"), path_);
    }

    // Waits in shorter steps than the hand does.
    Window WindowOf(const char* title) {
        std::vector<Window> found;
        EXPECT_TRUE(DesktopSession::WaitFor([&] {
            found = desktop_->WindowsTitled(title);
            return !found.empty() || !program_->IsRunning();
        }));
        EXPECT_FALSE(found.empty()) << title << " does not come\n" << desktop_->Output();
        return found.empty() ? Window() : found.front();
    }

    void Open(const std::vector<std::string>& command) {
        program_ = desktop_->Start(command);
        window_ = WindowOf(kWindow);
    }
    void Open() { Open({ORVEK_PROGRAM, path_}); }

    // The edit of these tests: one body more.
    void AddBody() { desktop_->Press(window_, "ctrl+b"); }

    bool WaitForText(const std::string& text) const {
        return DesktopSession::WaitFor(
            [&] { return desktop_->Output().find(text) != std::string::npos; });
    }

    // The last line of the window says something.
    bool HasMessage() const {
        return desktop_->WaitForPicture(window_, [](const QImage& picture) {
            constexpr int kLine = 24;
            const QRect foot(20, picture.height() - kLine, picture.width() - 40, kLine);
            const QImage line = picture.copy(foot);
            for (int y = 1; y < line.height(); y++)
                for (int x = 0; x < line.width(); x++)
                    if (qGray(line.pixel(x, y)) < 100) return true;
            return false;
        });
    }

    std::vector<RecoveryCopy> Copies() const {
        return RecoveryFolder((desktop_->Folder() / "state/orvek/recovery").string()).List();
    }

    // Saves once more; true when the file holds so many bodies.
    bool SavesBodies(std::size_t count) {
        desktop_->Press(window_, "ctrl+s");
        return DesktopSession::WaitFor([&] { return CountBodies(path_) == count; });
    }

    void Quit() {
        desktop_->Press(window_, "ctrl+q");
        EXPECT_TRUE(EndsWell());
    }

    fs::path place_;
    fs::path path_;
    Window window_;
};

// --- A copy can be kept ---

struct Fault {
    const char* name;
    // Run as root of a name space of its own before the program starts; %1 stands for the folder.
    const char* mount;
    // Carried out when the document is open; %1 as above.
    void (*arise)(const fs::path& place);
    void (*end)(const fs::path& place);
    const char* reason;
};

void PrintTo(const Fault& fault, std::ostream* out) {
    *out << fault.name;
}

void Nothing(const fs::path& /*place*/) {}

class UnsavableDesktopTest : public SavingFaultsDesktopTest,
                             public testing::WithParamInterface<Fault> {
protected:
    // The program in a name space where the folder is another file system.
    std::vector<std::string> Mounting(std::string mount) const {
        for (std::size_t at = 0; (at = mount.find("%1")) != std::string::npos;)
            mount.replace(at, 2, place_.string());
        return {"unshare", "--user", "--map-root-user", "--mount", "sh", "-ec", mount};
    }
};

}  // namespace

// The old document stays, the program goes on and tells why, and the work is there at the next
// start.
TEST_P(UnsavableDesktopTest, NothingIsLost) {
    const std::string mount = GetParam().mount;
    std::vector<std::string> command{ORVEK_PROGRAM, path_};
    if (!mount.empty()) {
        if (desktop_->Start(Mounting(mount))->Wait(DesktopSession::kPatience) !=
            ChildProcess::Ending{0, 0})
            GTEST_SKIP() << "file systems cannot be mounted here";
        command = Mounting(mount + "; exec " ORVEK_PROGRAM " " + path_.string());
    }
    Open(command);
    const std::string before = Contents(path_);
    AddBody();
    GetParam().arise(place_);
    const std::size_t windows = desktop_->WindowsTitled(".").size();
    desktop_->Press(window_, "ctrl+s");
    EXPECT_TRUE(WaitForText("orvek: " + path_.string() + " could not be saved: " +
                            GetParam().reason + ". A recovery copy is kept.\n"))
        << desktop_->Output();
    EXPECT_TRUE(HasMessage());
    EXPECT_EQ(desktop_->WindowsTitled(".").size(), windows) << "there is a box";
    // As the program sees it.
    const fs::path seen = "/proc/" + std::to_string(program_->Id()) + "/root" + path_.string();
    if (!mount.empty()) {
        EXPECT_EQ(Contents(seen), before);
    }
    ASSERT_EQ(Copies().size(), 1u);
    EXPECT_EQ(Copies()[0].originalPath, path_);
    EXPECT_EQ(CountBodies(Copies()[0].path), kPlanets + 1);
    Quit();

    GetParam().end(place_);
    program_ = desktop_->Start({ORVEK_PROGRAM});
    desktop_->Press(WindowOf(kOffer), "Return");
    window_ = WindowOf(kWindow);
    EXPECT_TRUE(SavesBodies(kPlanets + 1));
    EXPECT_EQ(Names(place_), std::vector<std::string>{kName});
    EXPECT_TRUE(DesktopSession::WaitFor([&] { return Copies().empty(); }));
    Quit();
}

INSTANTIATE_TEST_SUITE_P(
    Faults, UnsavableDesktopTest,
    testing::Values(Fault{"FullDisk",
                          "cp %1/* %1/../kept; mount -t tmpfs -o size=12k tmpfs %1; mv %1/../kept "
                          "%1/planets.orvek",
                          Nothing, Nothing, "No space left on device"},
                    Fault{"ReadOnlyDisk", "mount --bind %1 %1; mount -o remount,bind,ro %1",
                          Nothing, Nothing, "Read-only file system"},
                    Fault{"FolderIsGone", "", [](const fs::path& place) { fs::remove_all(place); },
                          [](const fs::path& place) { fs::create_directory(place); },
                          "No such file or directory"},
                    Fault{"FolderIsAFileNow", "",
                          [](const fs::path& place) {
                              fs::remove_all(place);
                              std::ofstream(place) << "x";
                          },
                          [](const fs::path& place) {
                              fs::remove(place);
                              fs::create_directory(place);
                          },
                          "Not a directory"}),
    [](const auto& fault) { return std::string(fault.param.name); });

// --- Not even a copy can be kept ---

TEST_F(SavingFaultsDesktopTest, WithoutASpareByteTheWorkStaysInTheWindow) {
    Open();
    const std::string before = Contents(path_);
    AddBody();
    LimitFiles(*program_, 2048);
    desktop_->Press(window_, "ctrl+s");
    EXPECT_TRUE(WaitForText("There is no recovery copy either: ")) << desktop_->Output();
    EXPECT_TRUE(HasMessage());
    EXPECT_EQ(Contents(path_), before);
    EXPECT_EQ(Names(place_), std::vector<std::string>{kName});
    EXPECT_TRUE(Copies().empty());
    // It is not saved.
    desktop_->Press(window_, "ctrl+w");
    desktop_->Press(WindowOf("^Orvek \\(planets\\.orvek\\): Message$"), "Escape");
    LimitFiles(*program_, RLIM_INFINITY);
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
    Milliseconds Save() {
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

    void Kill(int signal = SIGKILL) {
        program_->Signal(signal);
        EXPECT_EQ(program_->Wait(DesktopSession::kPatience), (ChildProcess::Ending{-1, signal}));
        if (hand_) hand_->Wait(DesktopSession::kPatience);
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
    Save();
    Quit();
    const std::string before = Contents(path_);
    Open();
    AddBody();
    Milliseconds length = Save();
    Kill();
    const std::string after = Contents(path_);
    ASSERT_NE(after, before);

    std::mt19937 random(kSeed);
    std::uniform_real_distribution<double> part(0.4, 1.6);
    int countOld = 0;
    std::size_t countLeft = 0;
    for (int i = 0; i < kTimes && !HasFailure(); i++) {
        std::ofstream(path_, std::ios::binary) << before;
        Open();
        AddBody();
        BeginSave();
        EXPECT_FALSE(program_->Wait(
            std::chrono::duration_cast<std::chrono::milliseconds>(part(random) * length)));
        Kill();
        const std::string left = Contents(path_);
        ASSERT_TRUE(left == before || left == after)
            << left.size() << " bytes, neither " << before.size() << " nor " << after.size();
        countOld += left == before ? 1 : 0;
        length *= left == before ? kCloser : 1 / kCloser;
        countLeft = Names(place_).size() - 1;
    }
    // Otherwise no moment was in the midst.
    EXPECT_GT(countOld, 2);
    EXPECT_LT(countOld, kTimes - 2);
    RecordProperty("old", countOld);
    // A new document has a name of its own only just before it takes the other's.
    if (KnowsNamelessFiles(place_)) {
        EXPECT_LE(countLeft, 1u);
    }
    EXPECT_TRUE(Copies().empty());
}

// By the user, or by a fault of its own.
TEST_F(KilledDesktopTest, InARunTheDocumentIsWhatWasSavedLast) {
    for (const int signal : {SIGKILL, SIGABRT}) {
        Open();
        AddBody();
        Save();
        const std::string saved = Contents(path_);
        const Window display = WindowOf("^Projection of ");
        const QImage still = desktop_->Picture(display);
        desktop_->Press(display, "ctrl+g");
        EXPECT_TRUE(desktop_->WaitForPicture(
            display, [&](const QImage& picture) { return picture != still; }));
        Kill(signal);
        EXPECT_EQ(Contents(path_), saved);
        EXPECT_EQ(Names(place_), std::vector<std::string>{kName});
    }
    // It opens as before, and nothing is offered.
    Open();
    EXPECT_TRUE(SavesBodies(kPlanets + 2));
    EXPECT_TRUE(desktop_->WindowsTitled(kOffer).empty());
    Quit();
}
