// The signals that ask a program to end (SIGTERM, SIGINT, SIGHUP): the application hears of the
// first one as B_SESSION_ENDING and has a few seconds; after that, or at a second signal, the
// program ends at once. A write that fails ends it no more. Made by main before any thread is
// started, destroyed by it when the application has ended.
#pragma once

#include <csignal>
#include <thread>

#include "Platform/Application/BMessenger.h"
#include "Platform/Storage/FileDescriptor.h"

class EndSignals {
public:
    // Keeps the signals back from now on; those that were ignored stay so.
    EndSignals();
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    // Before Watch, on the thread that made this: from LetThrough to the next Hold a signal ends
    // the program at once, as it does with others.
    void LetThrough() const;
    void Hold() const;
    // Starts to pass them on. Once.
    void Watch(const BMessenger& application);

private:
    void Wait(const BMessenger& application) const;
    // The next signal, or 0 when it is time to stop or the milliseconds (-1: for ever) are over.
    [[nodiscard]] int Next(int milliseconds) const;

    sigset_t signals_;
    sigset_t formerMask_;
    FileDescriptor arrivals_;  // gives the signals
    FileDescriptor stop_;      // tells the thread to end
    std::thread thread_;
};
