#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <unordered_map>

#include "Platform/Kernel/OS.h"

namespace {

struct ThreadRecord {
    const thread_func function;
    const std::string name;
    const int32 priority;
    void* const argument;
    bool isResumed = false;
    bool hasEnded = false;
    status_t result = B_OK;
};

using ThreadRef = std::shared_ptr<ThreadRecord>;

// The threads that were spawned and not yet waited for, ended ones among them: somebody may still
// ask for the result. `mutex` also guards the changing fields of every record.
struct ThreadTable {
    std::mutex mutex;
    std::condition_variable ended;
    std::unordered_map<thread_id, ThreadRef> threads;

    ThreadRef Find(thread_id thread) const {
        const auto found = threads.find(thread);
        return found == threads.end() ? nullptr : found->second;
    }
};

// Never destroyed: threads may still use it while the program ends.
ThreadTable& Table() {
    static auto* const table = new ThreadTable;
    return *table;
}

thread_id NewThreadId() {
    static std::atomic<thread_id> last{0};
    return ++last;
}

thread_local thread_id tSelf = 0;
thread_local ThreadRecord* tRecord = nullptr;

void IntroduceToSystem(const ThreadRecord& record) {
    constexpr std::size_t kMaxSystemName = 15;
    pthread_setname_np(pthread_self(), record.name.substr(0, kMaxSystemName).c_str());
    // On this system a nice value belongs to the thread, which begins with that of its maker. It is
    // only ever made nicer: whoever started the whole program at a low priority keeps what he has.
    if (record.priority >= B_NORMAL_PRIORITY) return;
    const auto self = static_cast<id_t>(gettid());
    const int former = getpriority(PRIO_PROCESS, self);
    setpriority(PRIO_PROCESS, self, former + B_NORMAL_PRIORITY - record.priority);
}

void RunThread(const ThreadRef& record, thread_id self) {
    // A destructor, because exit_thread unwinds the stack.
    struct Ending {
        ThreadRecord& record;
        ~Ending() {
            std::lock_guard lock(Table().mutex);
            record.hasEnded = true;
            Table().ended.notify_all();
        }
    } const ending{*record};
    tSelf = self;
    tRecord = record.get();
    IntroduceToSystem(*record);
    record->result = record->function(record->argument);
}

status_t Resume(const ThreadRef& record, thread_id thread) {
    try {
        std::thread([record, thread] { RunThread(record, thread); }).detach();
    } catch (const std::system_error&) {
        return B_NO_MORE_THREADS;
    }
    record->isResumed = true;
    return B_OK;
}

}  // namespace

thread_id spawn_thread(thread_func function, const char* name, int32 priority, void* argument) {
    if (function == nullptr || name == nullptr) return B_BAD_VALUE;
    const thread_id thread = NewThreadId();
    auto record = std::make_shared<ThreadRecord>(ThreadRecord{function, name, priority, argument});
    std::lock_guard lock(Table().mutex);
    Table().threads.emplace(thread, std::move(record));
    return thread;
}

status_t resume_thread(thread_id thread) {
    std::lock_guard lock(Table().mutex);
    const ThreadRef record = Table().Find(thread);
    if (record == nullptr || record->hasEnded) return B_BAD_THREAD_ID;
    return record->isResumed ? B_BAD_THREAD_STATE : Resume(record, thread);
}

status_t wait_for_thread(thread_id thread, status_t* result) {
    std::unique_lock lock(Table().mutex);
    const ThreadRef record = Table().Find(thread);
    if (record == nullptr) return B_BAD_THREAD_ID;
    if (!record->isResumed)
        if (const status_t status = Resume(record, thread); status != B_OK) return status;
    Table().ended.wait(lock, [&] { return record->hasEnded; });
    Table().threads.erase(thread);
    if (result != nullptr) *result = record->result;
    return B_OK;
}

void exit_thread(status_t result) {
    if (tRecord == nullptr) debugger("exit_thread() on a thread that was not spawned.");
    tRecord->result = result;
    pthread_exit(nullptr);
}

thread_id find_thread(const char* name) {
    if (name == nullptr) {
        if (tSelf == 0) tSelf = NewThreadId();
        return tSelf;
    }
    std::lock_guard lock(Table().mutex);
    for (const auto& [thread, record] : Table().threads)
        if (!record->hasEnded && record->name == name) return thread;
    return B_NAME_NOT_FOUND;
}
