// Runs the program and uses it at random, on a thread of its own beside the window server, until so
// many actions are done or it has closed the last window. A folder of its own serves as the user's
// home. One at a time, on the main thread.
#pragma once

#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>

#include "Tests/Robot/Dice.h"
#include "Tests/Robot/Journal.h"

class RobotChecks;
class RobotDialogs;
class SimApp;

class Robot {
public:
    explicit Robot(unsigned seed);
    ~Robot();
    Robot(const Robot&) = delete;
    Robot& operator=(const Robot&) = delete;

    // Starts the program and returns when it has ended; how many actions were done. Needs the
    // window server.
    int UseProgram(int actions);

    // Has the server do it, and waits until it is done or waits for the user; false when the
    // program has ended. Any thread but the server's.
    bool Do(const std::function<void()>& action);
    // The program has ended. Any thread.
    [[nodiscard]] bool IsOver();

private:
    int Work(SimApp* application, int actions);
    void EndProgram(SimApp* application, RobotDialogs* dialogs);
    void HandOverFiles(SimApp* application);

    Dice dice_;
    Journal journal_;
    std::filesystem::path folder_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isOver_ = false;
};
