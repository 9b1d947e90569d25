// A robot that uses the program: thousands of random actions on the real windows, and after every
// few of them a look at the documents. The program runs in this process, on the toolkit's platform
// without a screen, several times in a row, until all actions are done.
//
//     robot_tests --seed 7 --actions 2000
//
// replays what a seed did, as far as threads allow. ORVEK_ROBOT_SEED and ORVEK_ROBOT_ACTIONS do the
// same.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMimeDatabase>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>

#include "ProcessUse.h"
#include "Robot.h"
#include "WindowServer.h"

namespace {

int gArgumentCount = 1;
char** gArguments = nullptr;
unsigned gSeed = 1;
#ifdef ORVEK_SANITIZED
int gActions = 1500;
#else
int gActions = 10000;
#endif

constexpr int kActionsPerRun = 2500;
// What the toolkit keeps for the next time.
constexpr std::size_t kMostGrowth = 8 << 20;

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

void ReadOption(const char* text, const char* name, int* value) {
    if (text == nullptr) return;
    char* end = nullptr;
    const long number = std::strtol(text, &end, 10);
    if (*text == '\0' || *end != '\0' || number < 0) {
        std::cerr << name << " needs a number\n";
        std::exit(2);
    }
    *value = static_cast<int>(number);
}

}  // namespace

TEST(Robot, FindsNoFault) {
    std::cout << "seed " << gSeed << ", " << gActions << " actions\n";
    Robot robot(gSeed);
    // What the toolkit opens once and keeps open, before anything is counted.
    static_cast<void>(QMimeDatabase().mimeTypeForName(QStringLiteral("text/plain")).isValid());
    const int threads = ProcessUse::Now().threads;
    std::optional<ProcessUse> first;
    for (int done = 0, run = 1; done < gActions && !HasFailure(); run++) {
        done += RunProgram(&robot, std::min(kActionsPerRun, gActions - done));
        AwaitThreads(threads);
        const ProcessUse use = ProcessUse::Now();
        std::cout << "run " << run << ": " << done << " actions; " << use << '\n';
        if (!first) first = use;
        EXPECT_EQ(use.threads, threads);
        EXPECT_EQ(use.descriptors, first->descriptors);
        EXPECT_LT(use.heap, first->heap + kMostGrowth);
        if (HasFailure()) PrintHeld(std::cout);
    }
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qInstallMessageHandler(DropRemarks);
    gArguments = argv;
    int seed = static_cast<int>(gSeed);
    ReadOption(std::getenv("ORVEK_ROBOT_SEED"), "ORVEK_ROBOT_SEED", &seed);
    ReadOption(std::getenv("ORVEK_ROBOT_ACTIONS"), "ORVEK_ROBOT_ACTIONS", &gActions);
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string option = argv[i];
        if (option == "--seed") ReadOption(argv[i + 1], "--seed", &seed);
        if (option == "--actions") ReadOption(argv[i + 1], "--actions", &gActions);
    }
    gSeed = static_cast<unsigned>(seed);
    return RUN_ALL_TESTS();
}
