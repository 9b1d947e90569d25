// Work that goes on beside the window, one piece at a time, on a thread of its own. Used by the
// thread that owns it, but for what it says otherwise.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

class BackgroundJob {
public:
    // Is told which part is done; false: that is enough.
    using Progress = std::function<bool(double)>;
    using Work = std::function<void(const Progress& progress)>;
    // On the job's thread: another hundredth is done, or all of it.
    explicit BackgroundJob(std::function<void()> changed) : changed_(std::move(changed)) {}
    // Ends it, and waits.
    ~BackgroundJob() { Cancel(); }
    BackgroundJob(const BackgroundJob&) = delete;
    BackgroundJob& operator=(const BackgroundJob&) = delete;

    // Instead of what it does.
    void Start(Work work);
    // Waits until it has stopped; nothing is left to be taken.
    void Cancel();
    [[nodiscard]] bool IsBusy() const { return thread_.joinable(); }
    [[nodiscard]] double Part() const { return part_; }
    // True, once, when all is done.
    [[nodiscard]] bool TakeDone();

private:
    bool Note(double part);

    const std::function<void()> changed_;
    std::atomic<bool> isWanted_{false};
    std::atomic<bool> isDone_{false};
    std::atomic<double> part_{0.0};
    std::thread thread_;
};
