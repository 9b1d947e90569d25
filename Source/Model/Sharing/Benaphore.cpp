#include "Model/Sharing/Benaphore.h"

#include <algorithm>
#include <new>

Benaphore* create_ben(int32 count, const char* name) {
    auto* ben = new (std::nothrow) Benaphore{count, 0};
    if (!ben) return nullptr;
    ben->sem = create_sem(count, name);
    if (ben->sem < B_OK) {
        delete ben;
        return nullptr;
    }
    return ben;
}

status_t acquire_ben(Benaphore* ben) {
    return atomic_add(&ben->count, -1) > 0 ? B_NO_ERROR : acquire_sem(ben->sem);
}

status_t acquire_ben(Benaphore* ben, int32 n) {
    return acquire_ben(ben, n, 0, 0);
}

status_t acquire_ben(Benaphore* ben, int32 n, int32 flags, bigtime_t timeout) {
    const int32 previous = atomic_add(&ben->count, -n);
    if (previous >= n) return B_NO_ERROR;
    const int32 shortfall = previous > 0 ? n - previous : n;
    return acquire_sem_etc(ben->sem, shortfall, static_cast<uint32>(flags), timeout);
}

status_t release_ben(Benaphore* ben) {
    return atomic_add(&ben->count, 1) < 0 ? release_sem(ben->sem) : B_NO_ERROR;
}

status_t release_ben(Benaphore* ben, int32 n) {
    return release_ben(ben, n, 0);
}

status_t release_ben(Benaphore* ben, int32 n, int32 flags) {
    const int32 previous = atomic_add(&ben->count, n);
    if (previous >= 0) return B_NO_ERROR;
    return release_sem_etc(ben->sem, std::min(n, -previous), static_cast<uint32>(flags));
}

void delete_ben(Benaphore* ben) {
    delete_sem(ben->sem);
    delete ben;
}
