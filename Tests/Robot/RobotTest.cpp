// A robot that uses the program: thousands of random actions on the real windows, and after every
// few of them a look at the documents. The program runs in this process, on the toolkit's platform
// without a screen, several times in a row, until all actions are done.
//
//     robot_tests --seed 7 --actions 2000
//
// replays what a seed did, as far as threads allow.
#include <gtest/gtest.h>
#include <malloc.h>

#include <QApplication>
#include <QMimeDatabase>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>

#include "Platform/Interface/Server/WindowServer.h"
#include "Tests/Robot/Robot.h"

namespace fs = std::filesystem;

namespace {

int gArgumentCount = 1;
char** gArguments = nullptr;
unsigned gSeed = 1;
#ifdef ORVEK_SANITIZED
int gActions = 1500;
#else
int gActions = 4000;
#endif

constexpr int kActionsPerRun = 2500;
// What the toolkit keeps for the next time.
constexpr std::size_t kMaxGrowth = 8 << 20;
constexpr std::chrono::seconds kPatienceForThreads{20};

// The platform without a screen remarks on every window what it cannot do, and the tests' own keys
// and clicks on what does not want them.
void DropRemarks(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (!text.startsWith(QLatin1String("This plugin does not support")) &&
        !text.contains(QLatin1String("not accepted by receiving widget")) && type != QtInfoMsg)
        std::cerr << text.toStdString() << '\n';
}

// One run of the program from its start to its end; how many actions were done in it.
int RunProgram(Robot* robot, int actions) {
    WindowServer server(gArgumentCount, gArguments, WindowServer::Screen::kOffscreen);
    const int done = robot->UseProgram(actions);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty())
        << QApplication::topLevelWidgets().size() << " windows are left";
    return done;
}

// --- What this process holds of the system ---

std::vector<std::string> Threads() {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/task"))
        std::getline(std::ifstream(entry.path() / "comm"), names.emplace_back());
    return names;
}

std::vector<std::string> Descriptors() {
    std::vector<std::string> files;
    std::error_code gone;  // the one of the walk itself
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/fd"))
        files.push_back(fs::read_symlink(entry.path(), gone).string());
    return files;
}

// Bytes that were allocated and not freed.
std::size_t Heap() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// One that has been waited for may still be listed.
void AwaitThreads(std::size_t most) {
    const auto end = std::chrono::steady_clock::now() + kPatienceForThreads;
    while (Threads().size() > most && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}

}  // namespace

TEST(Robot, FindsNoFault) {
    std::cout << "seed " << gSeed << ", " << gActions << " actions\n";
    Robot robot(gSeed);
    // What the toolkit opens once and keeps open, before anything is counted.
    static_cast<void>(QMimeDatabase().mimeTypeForName(QStringLiteral("text/plain")).isValid());
    const std::size_t threads = Threads().size();
    std::size_t descriptors = 0;
    std::size_t heap = 0;
    for (int done = 0, run = 1; done < gActions && !HasFailure(); run++) {
        done += RunProgram(&robot, std::min(kActionsPerRun, gActions - done));
        AwaitThreads(threads);
        if (run == 1) {
            descriptors = Descriptors().size();
            heap = Heap();
        }
        std::cout << "run " << run << ": " << done << " actions; " << Threads().size()
                  << " threads, " << Descriptors().size() << " descriptors, " << Heap() / 1024
                  << " KB\n";
        EXPECT_EQ(Threads().size(), threads) << testing::PrintToString(Threads());
        EXPECT_EQ(Descriptors().size(), descriptors) << testing::PrintToString(Descriptors());
        EXPECT_LT(Heap(), heap + kMaxGrowth);
    }
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qInstallMessageHandler(DropRemarks);
    gArguments = argv;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string option = argv[i];
        if (option == "--seed") gSeed = static_cast<unsigned>(std::stoul(argv[i + 1]));
        if (option == "--actions") gActions = std::stoi(argv[i + 1]);
    }
    return RUN_ALL_TESTS();
}
