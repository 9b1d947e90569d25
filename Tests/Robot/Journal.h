// What the robot did last, and a watch over it: when nothing is noted for too long the program is
// stuck; then the last actions and where every thread stands are printed, and the program is
// aborted. The same is printed when the program crashes. One at a time; any thread may note.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

class Journal {
public:
    using Duration = std::chrono::seconds;

    // `title` begins every report; `patience`: how long one action may take.
    Journal(std::string title, Duration patience);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    void Note(std::string action);
    // The title and the last actions, one a line.
    [[nodiscard]] std::string Last() const;

private:
    void Watch();

    const std::string title_;
    const Duration patience_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::string> last_;
    long count_ = 0;
    bool isOver_ = false;
    std::thread watch_;
};
