#include <memory>
#include <mutex>
#include <unordered_map>

#include "Platform/Kernel/OS.h"
#include "Platform/Kernel/Semaphore.h"

namespace {

// The semaphores of the program by identifier. One that is being used outlives its deletion.
class SemaphoreTable {
public:
    sem_id Add(int32 count) {
        std::lock_guard lock(mutex_);
        semaphores_.emplace(next_, std::make_shared<Semaphore>(count));
        return next_++;
    }

    std::shared_ptr<Semaphore> Find(sem_id id) const {
        std::lock_guard lock(mutex_);
        const auto found = semaphores_.find(id);
        return found == semaphores_.end() ? nullptr : found->second;
    }

    std::shared_ptr<Semaphore> Remove(sem_id id) {
        std::lock_guard lock(mutex_);
        const auto found = semaphores_.find(id);
        if (found == semaphores_.end()) return nullptr;
        std::shared_ptr<Semaphore> semaphore = std::move(found->second);
        semaphores_.erase(found);
        return semaphore;
    }

private:
    mutable std::mutex mutex_;
    std::unordered_map<sem_id, std::shared_ptr<Semaphore>> semaphores_;
    sem_id next_ = 1;
};

// Never destroyed: threads may still use it while the program ends.
SemaphoreTable& Table() {
    static auto* const table = new SemaphoreTable;
    return *table;
}

}  // namespace

sem_id create_sem(int32 count, const char* /*name*/) {
    return count < 0 ? B_BAD_VALUE : Table().Add(count);
}

status_t delete_sem(sem_id sem) {
    const std::shared_ptr<Semaphore> semaphore = Table().Remove(sem);
    if (semaphore == nullptr) return B_BAD_SEM_ID;
    semaphore->Close();
    return B_OK;
}

status_t acquire_sem(sem_id sem) {
    return acquire_sem_etc(sem, 1, 0, 0);
}

status_t acquire_sem_etc(sem_id sem, int32 count, uint32 flags, bigtime_t timeout) {
    const std::shared_ptr<Semaphore> semaphore = Table().Find(sem);
    if (semaphore == nullptr) return B_BAD_SEM_ID;
    if (count < 1) return B_BAD_VALUE;
    const bool isLimited = (flags & B_RELATIVE_TIMEOUT) != 0;
    return semaphore->Acquire(count, isLimited ? timeout : B_INFINITE_TIMEOUT);
}

status_t release_sem(sem_id sem) {
    return release_sem_etc(sem, 1, 0);
}

status_t release_sem_etc(sem_id sem, int32 count, uint32 /*flags*/) {
    const std::shared_ptr<Semaphore> semaphore = Table().Find(sem);
    if (semaphore == nullptr) return B_BAD_SEM_ID;
    return count < 1 ? B_BAD_VALUE : semaphore->Release(count);
}

status_t get_sem_count(sem_id sem, int32* count) {
    const std::shared_ptr<Semaphore> semaphore = Table().Find(sem);
    if (semaphore == nullptr) return B_BAD_SEM_ID;
    *count = semaphore->Count();
    return B_OK;
}
