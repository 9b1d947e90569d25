#include "Tests/Robot/Robot.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <thread>

#include "Application/DefaultResponses.h"
#include "Application/RememberedSettings.h"
#include "Application/SimApp.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Simulation/Document/ProgramResources.h"
#include "Tests/Robot/RobotChecks.h"
#include "Tests/Robot/RobotDialogs.h"
#include "Tests/Robot/RobotHands.h"

namespace fs = std::filesystem;

namespace {

#ifdef ORVEK_SANITIZED
constexpr Journal::Duration kPatience{300};
#else
constexpr Journal::Duration kPatience{60};
#endif

constexpr int kSettleEvery = 20;
constexpr int kCheckEvery = 250;

void Deliver(SimApp* application, const BMessage& message) {
    WindowServer::Deliver(BMessenger(static_cast<BHandler*>(application)), message);
}

}  // namespace

Robot::Robot(unsigned seed) : dice_(seed), journal_("seed " + std::to_string(seed), kPatience) {
    std::string name = (fs::temp_directory_path() / "orvek-robot-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    for (const char* const variable : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME",
                                       "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        setenv(variable, folder_.c_str(), 1);
    fs::create_directory(folder_ / "documents");
    fs::current_path(folder_ / "documents");
    std::ofstream("notes.txt") << "No document.\n";
    std::ofstream("damaged") << "KWZXNB00 and no record";
    RememberedSettings settings;
    settings.openIn = fs::current_path().string();
    static_cast<void>(settings.Save(DefaultResponses()));
}

Robot::~Robot() {
    fs::current_path("/");
    std::error_code error;
    fs::remove_all(folder_, error);
}

bool Robot::IsOver() {
    const std::lock_guard lock(mutex_);
    return isOver_;
}

int Robot::UseProgram(int actions) {
    const ProgramResources resources;
    SimApp application(&resources);
    isOver_ = false;
    int done = 0;
    std::thread robot([&] { done = Work(&application, actions); });
    application.Run();
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    changed_.notify_all();
    robot.join();
    return done;
}

// An action may open a dialog that is waited for: then what is posted after it is done from within.
bool Robot::Do(const std::function<void()>& action) {
    auto isDone = std::make_shared<bool>(false);
    RobotHands::Post(action);
    RobotHands::Post([this, isDone] {
        const std::lock_guard lock(mutex_);
        *isDone = true;
        changed_.notify_all();
    });
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return *isDone || isOver_; });
    return !isOver_;
}

void Robot::HandOverFiles(SimApp* application) {
    static const std::vector<std::string> kNames{"one", "two", "three", "checked 1", "notes.txt"};
    journal_.Note("files handed over");
    BMessage message(B_REFS_RECEIVED);
    for (int i = dice_.Number(1, 2); i > 0; i--) {
        entry_ref ref;
        if (get_ref_for_path(dice_.Any(kNames).c_str(), &ref) == B_OK) message.AddRef("refs", &ref);
    }
    Deliver(application, message);
}

int Robot::Work(SimApp* application, int actions) {
    const std::string folder = fs::current_path().string();
    RobotDialogs dialogs(&dice_, &journal_, folder);
    RobotHands hands(&dice_, &journal_, &dialogs);
    RobotChecks checks(this, application, &dice_, &journal_, &hands, folder);
    int done = 0;
    checks.Settle();
    while (done < actions && !testing::Test::HasFailure() && Do([&] { hands.DoSomething(); })) {
        done++;
        if (dice_.Number(1, 300) == 1) HandOverFiles(application);
        if (done % kSettleEvery == 0) checks.Settle();
        if (dice_.Number(1, 30) == 1) checks.CheckTyping();
        if (done % kCheckEvery == 0) checks.CheckOne();
    }
    if (!IsOver() && !testing::Test::HasFailure()) checks.CheckAll();
    EndProgram(application, &dialogs);
    return done;
}

void Robot::EndProgram(SimApp* application, RobotDialogs* dialogs) {
    if (IsOver()) return;
    journal_.Note("end of the program");
    Deliver(application, BMessage(dice_.Chance(30) ? B_SESSION_ENDING : B_QUIT_REQUESTED));
    for (int i = 1; Do([&] { dialogs->AnswerToEnd(); }); i++)
        if (i % 50 == 0) Deliver(application, BMessage(B_QUIT_REQUESTED));
}
