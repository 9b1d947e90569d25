// What ends the waiting of the thread that owns a run: the calculator has parked by itself, the
// user or the system asks to stop, or it is time to show progress. Made before any other thread,
// as EndSignals are.
#pragma once

#include <optional>

#include "Model/Sharing/Observer.h"
#include "Platform/Kernel/EndSignals.h"
#include "Platform/Storage/FileDescriptor.h"

class RunEvents : public Observer {
public:
    RunEvents();
    RunEvents(const RunEvents&) = delete;
    RunEvents& operator=(const RunEvents&) = delete;

    // As long as it lives a signal ends the program at once, with the status of one that was
    // stopped: there is nothing yet that could be lost. On the main thread.
    class NothingToLose {
    public:
        explicit NothingToLose(const RunEvents& events);
        ~NothingToLose();
        NothingToLose(const NothingToLose&) = delete;
        NothingToLose& operator=(const NothingToLose&) = delete;

    private:
        const EndSignals& signals_;
    };

    enum class Event { kParked, kSignal, kTimeout };
    // Waits for the next event; for kTimeout at most so many milliseconds, for ever without.
    [[nodiscard]] Event Wait(std::optional<int> milliseconds);
    // Of the calculator's parking until now, which the caller has asked for.
    void ForgetParking();
    // Of the event kSignal: SIGINT or SIGTERM. From then on the next of them ends the program at
    // once.
    [[nodiscard]] int Signal() const { return signal_; }

    // Observer, on the calculation thread.
    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

private:
    FileDescriptor parked_;
    EndSignals signals_;
    int signal_ = 0;
};
