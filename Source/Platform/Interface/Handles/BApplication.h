// The application object, of which a program has one: a looper that the main function makes, runs
// and deletes. Its windows are those that live while it does.
//
// `main` makes the WindowServer first. Run() is called on the main thread: it starts the
// application's own looper thread, runs the window server until that thread has ended, and returns.
// The rules of BLooper hold otherwise.
#pragma once

#include <string>
#include <vector>

#include "Platform/Application/BLooper.h"

class BWindow;

class BApplication : public BLooper {
public:
    // `signature`: "application/..."
    explicit BApplication(const char* signature);
    // By the owner, after Run has returned or without it.
    ~BApplication() override;

    // The first messages are what was posted before, B_ARGV_RECEIVED if the program has arguments,
    // and B_READY_TO_RUN. Returns 0 or a negative status.
    thread_id Run() override;
    // Ends Run; windows that are left are quit first, without being asked. Before Run: deletes the
    // object, as the platform does.
    void Quit() override;

    virtual void ReadyToRun() {}
    // The first argument is the program.
    virtual void ArgvReceived(const std::vector<std::string>& /*arguments*/) {}
    virtual void RefsReceived(BMessage* /*message*/) {}
    virtual void AboutRequested() {}

    // As they are at this moment. Any thread; a window may be gone as soon as it is looked at, so
    // lock it before anything else.
    [[nodiscard]] static int32 CountWindows();
    [[nodiscard]] static BWindow* WindowAt(int32 index);

    void DispatchMessage(BMessage* message, BHandler* handler) override;

protected:
    void ThreadMain() override;

private:
    void QuitAllWindows();
};

extern BApplication* be_app;
