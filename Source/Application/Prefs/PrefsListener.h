// A thread that looks at a set's file at intervals and calls back when it has changed. Owned by the
// set. Made and destroyed by any thread but its own; the destructor returns when the callback is
// not running and will not be called any more.
#pragma once

#include <string>

#include "Platform/Kernel/OS.h"

struct PreferenceSet;

class PrefsListener {
public:
    using Callback = void (*)(PreferenceSet* set, void* cookie);

    PrefsListener(PreferenceSet* set, std::string path, Callback callback, void* cookie);
    ~PrefsListener();
    PrefsListener(const PrefsListener&) = delete;
    PrefsListener& operator=(const PrefsListener&) = delete;

    // Why it does not listen, or B_OK.
    [[nodiscard]] status_t InitCheck() const { return thread_ < 0 ? thread_ : B_OK; }

    // How long all listeners wait between two looks; 9 s unless set otherwise.
    static void SetPollInterval(bigtime_t microseconds);
    // From the text of the environment's variable "POLL_INTERVAL": below 4000 seconds, below
    // 500 000 milliseconds, otherwise microseconds. Anything but a positive number: 0.
    [[nodiscard]] static bigtime_t ParsePollInterval(const char* text);

private:
    // Tells one state of the file from another.
    struct Stamp {
        int64 seconds = 0;
        int64 nanoseconds = 0;
        uint64 inode = 0;  // 0: no file

        bool operator==(const Stamp&) const = default;
    };

    static int32 Run(void* listener);
    void Listen();
    [[nodiscard]] Stamp Look() const;

    PreferenceSet* const set_;
    const std::string path_;
    const Callback callback_;
    void* const cookie_;
    Stamp known_;
    const sem_id stop_;
    thread_id thread_;
};
