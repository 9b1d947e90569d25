// What ends the waiting of the thread that owns a run: the calculator has parked by itself, the
// user or the system asks to stop, or it is time to show progress. Made before any other thread,
// as EndSignals are.
#pragma once

#include <atomic>
#include <optional>
#include <string>

#include "Model/Sharing/Observer.h"
#include "Platform/Kernel/EndSignals.h"
#include "Platform/Storage/FileDescriptor.h"

class RunEvents : public Observer {
public:
    RunEvents();
    RunEvents(const RunEvents&) = delete;
    RunEvents& operator=(const RunEvents&) = delete;

    // As long as it lives the signals come through to a handler. On the main thread; one at a time.
    class Handling {
    public:
        Handling(const RunEvents& events, void (*handler)(int));
        ~Handling();
        Handling(const Handling&) = delete;
        Handling& operator=(const Handling&) = delete;

    private:
        const EndSignals& signals_;
    };

    // As long as it lives a signal ends the program at once, with the status of one that was
    // stopped: there is nothing yet that could be lost.
    class NothingToLose {
    public:
        explicit NothingToLose(const RunEvents& events);

    private:
        const Handling handling_;
    };

    // As long as it lives, while results are written that would be lost: the first signal is noted
    // and answered with a text (none if that is empty), a second one ends the program at once.
    // After an event kSignal every signal is a second one already.
    class LastChance {
    public:
        LastChance(const RunEvents& events, std::string text);

    private:
        const std::string text_;
        const Handling handling_;
    };

    enum class Event { kParked, kSignal, kTimeout };
    // Waits for the next event; for kTimeout at most so many milliseconds, for ever without.
    [[nodiscard]] Event Wait(std::optional<int> milliseconds);
    // From any thread: as if the calculator had parked.
    void Wake() const;
    // Of the calculator's parking until now, which the caller has asked for.
    void ForgetParking();
    // Of the event kSignal, or noted by a LastChance: SIGINT or SIGTERM; 0 if there was none. From
    // then on the next of them ends the program at once.
    [[nodiscard]] int Signal() const;

    // An edit, or a run that was to begin, was refused as it would nest epochs too deeply.
    [[nodiscard]] bool WasTooDeep() const { return wasTooDeep_; }

    // Observer, on any thread.
    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

private:
    FileDescriptor parked_;
    EndSignals signals_;
    int signal_ = 0;
    std::atomic<bool> wasTooDeep_ = false;
};
