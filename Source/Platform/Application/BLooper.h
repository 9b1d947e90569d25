// A thread with a mailbox: handles the messages sent to it and to its handlers, one at a time, in
// the order of their arrival, with its lock held.
//
// Loopers are made with `new`, are born locked by the thread that makes them, and end with Quit,
// which deletes them. PostMessage, Lock, LockWithTimeout and IsLocked may be called by any thread
// at any time, even on a looper that is gone: they compare the pointer and do not follow it.
// Everything else needs the lock, unless it says otherwise; to call it without is a programming
// error that stops the program.
#pragma once

#include <memory>
#include <vector>

#include "Platform/Application/BHandler.h"
#include "Platform/Application/LooperRegistry.h"

class BLooper : public BHandler {
public:
    static constexpr int32 kDefaultPortCapacity = 100;

    // A capacity of 0 or less means the default.
    explicit BLooper(const char* name = nullptr, int32 priority = B_NORMAL_PRIORITY,
                     int32 portCapacity = kDefaultPortCapacity);
    // For Quit, and for the owner of a looper that outlives its thread. Not while the thread runs.
    ~BLooper() override;

    // Starts the thread and gives up the lock held since the construction; so the constructing
    // thread must call it, once. The thread, or a negative status.
    virtual thread_id Run();
    // Never run: deletes the looper. On the looper's own thread: deletes it, ends the thread and
    // does not return. On another thread: gives up the lock, lets the waiting messages be handled
    // and waits until the thread has ended and the looper is deleted; QuitRequested is not asked.
    virtual void Quit();
    // Decides about B_QUIT_REQUESTED; here: true, which calls Quit.
    virtual bool QuitRequested();

    // Waits as long as it takes; false if the looper is gone. Recursive, each needs an Unlock.
    bool Lock();
    // B_OK, B_TIMED_OUT, B_WOULD_BLOCK (timeout 0), B_BAD_VALUE if the looper is gone,
    // B_BAD_SEM_ID if it went while the caller waited.
    [[nodiscard]] status_t LockWithTimeout(bigtime_t microseconds);
    // The same for a pointer that may be null or no longer point to a looper.
    [[nodiscard]] static status_t LockIfAlive(const BLooper* looper,
                                              bigtime_t microseconds = B_INFINITE_TIMEOUT);
    // Locks a looper, which may be null or gone by now, and calls its Quit. False if it is gone.
    static bool QuitIfAlive(BLooper* looper);
    void Unlock();
    // True when the calling thread holds the lock.
    [[nodiscard]] bool IsLocked() const;
    [[nodiscard]] thread_id LockingThread() const { return link_->lock.LockingThread(); }
    // The looper's own thread, -1 before Run. Needs no lock.
    [[nodiscard]] thread_id Thread() const { return thread_; }

    // Copies the message, never waits. For the looper itself, or for one of its handlers; null:
    // for the handler that is preferred when the message is handled. B_WOULD_BLOCK: the port is
    // full; B_MISMATCHED_VALUES: not a handler of this looper; B_BAD_VALUE: the looper is gone;
    // B_BAD_PORT_ID: it is going.
    [[nodiscard]] status_t PostMessage(uint32 what);
    [[nodiscard]] status_t PostMessage(const BMessage* message);
    [[nodiscard]] status_t PostMessage(uint32 what, const BHandler* handler);
    [[nodiscard]] status_t PostMessage(const BMessage* message, const BHandler* handler);

    // Called for each message whose handler still exists and belongs to this looper.
    virtual void DispatchMessage(BMessage* message, BHandler* handler);

    // Takes over the message that is being handled, for instance to answer it later.
    [[nodiscard]] std::unique_ptr<Delivery> DetachCurrentMessage();
    // Answers it; the statuses of Delivery::SendReply.
    status_t SendReply(const BMessage& reply);

    // Does nothing for a handler that has a looper. The looper is its own first handler.
    void AddHandler(BHandler* handler);
    // False if it is none of this looper's.
    bool RemoveHandler(BHandler* handler);
    [[nodiscard]] int32 CountHandlers() const;

    // A handler that is not this looper's, or null, clears the setting.
    void SetPreferredHandler(BHandler* handler);

protected:
    // What the thread does. Here: Loop, then delete the looper. A looper that its owner deletes
    // calls Loop and Unlock instead.
    virtual void ThreadMain();
    // Handles messages until the looper quits; returns with the lock held.
    void Loop();
    // Lets Loop return when the current message is done. Looper's thread only.
    void EndLoop() { isQuitting_ = true; }

private:
    friend class BMessenger;

    static int32 StartThread(void* looper);
    static status_t Post(const BLooper* looper, const BMessage* message, const BHandler* handler);

    void AssertLocked() const;
    void QuitIfAllowed();
    // By its token.
    [[nodiscard]] BHandler* HandlerOf(int32 token);

    const LooperRef link_;
    const int32 priority_;
    std::atomic<thread_id> thread_{-1};
    std::vector<BHandler*> handlers_;
    BHandler* preferred_ = nullptr;
    MessagePort::Messages queue_;  // taken from the port, not yet handled; looper's thread only
    std::unique_ptr<Delivery> current_;
    bool isQuitting_ = false;
};
