#include "Application/Prefs/PrefsListener.h"

#include <sys/stat.h>

#include <atomic>
#include <cstdlib>

namespace {

constexpr bigtime_t kSecond = 1'000'000;
constexpr bigtime_t kMillisecond = 1'000;

std::atomic<bigtime_t> gPollInterval{9 * kSecond};

}  // namespace

PrefsListener::PrefsListener(PreferenceSet* set, std::string path, Callback callback, void* cookie)
    : set_(set),
      path_(std::move(path)),
      callback_(callback),
      cookie_(cookie),
      known_(Look()),
      stop_(create_sem(0, "prefs listen sem")),
      thread_(spawn_thread(Run, "pref listen func", B_LOW_PRIORITY, this)) {
    if (thread_ < 0) return;
    if (const status_t status = resume_thread(thread_); status != B_OK) thread_ = status;
}

PrefsListener::~PrefsListener() {
    delete_sem(stop_);
    if (thread_ >= 0) wait_for_thread(thread_, nullptr);
}

int32 PrefsListener::Run(void* listener) {
    static_cast<PrefsListener*>(listener)->Listen();
    return B_OK;
}

void PrefsListener::Listen() {
    while (acquire_sem_etc(stop_, 1, B_RELATIVE_TIMEOUT, gPollInterval) == B_TIMED_OUT) {
        const Stamp now = Look();
        if (now == known_) continue;
        known_ = now;
        callback_(set_, cookie_);
    }
}

PrefsListener::Stamp PrefsListener::Look() const {
    struct stat info {};
    if (stat(path_.c_str(), &info) != 0) return {};
    return {info.st_mtim.tv_sec, info.st_mtim.tv_nsec, info.st_ino};
}

void PrefsListener::SetPollInterval(bigtime_t microseconds) {
    gPollInterval = microseconds;
}

bigtime_t PrefsListener::ParsePollInterval(const char* text) {
    constexpr int64 kFirstMilliseconds = 4000;
    constexpr int64 kFirstMicroseconds = 500'000;
    const int64 number = text == nullptr ? 0 : std::strtoll(text, nullptr, 10);
    if (number <= 0) return 0;
    if (number < kFirstMilliseconds) return number * kSecond;
    return number < kFirstMicroseconds ? number * kMillisecond : number;
}
