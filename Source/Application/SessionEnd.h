// Passes the signals that ask the program to end (SIGTERM, SIGINT, SIGHUP) on to the application:
// it hears of the first one as B_SESSION_ENDING and has a few seconds; after that, or at a second
// signal, the program ends at once. Made by main, destroyed by it when the application has ended.
#pragma once

#include <thread>

#include "Platform/Application/BMessenger.h"
#include "Platform/Storage/FileDescriptor.h"

class EndSignals;

class SessionEnd {
public:
    // The signals are not owned.
    explicit SessionEnd(const EndSignals& signals) : signals_(signals) {}
    ~SessionEnd();
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    // Starts to pass them on. Once.
    void Watch(const BMessenger& application);

private:
    void Wait(const BMessenger& application) const;
    // The next signal, or 0 when it is time to stop or the milliseconds (-1: for ever) are over.
    [[nodiscard]] int Next(int milliseconds) const;

    const EndSignals& signals_;
    FileDescriptor stop_;  // tells the thread to end
    std::thread thread_;
};
