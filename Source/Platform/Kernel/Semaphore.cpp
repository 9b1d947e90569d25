#include "Platform/Kernel/Semaphore.h"

#include "Platform/Kernel/Deadline.h"

status_t Semaphore::Acquire(int32 count, bigtime_t timeout) {
    std::unique_lock lock(mutex_);
    if (isClosed_) return B_BAD_SEM_ID;
    if (first_ == nullptr && count <= count_) {
        count_ -= count;
        return B_OK;
    }
    if (timeout <= 0) return B_WOULD_BLOCK;

    Waiter self{count};
    Enqueue(&self);
    const status_t status =
        Deadline(timeout).Wait(self.wake, lock, [&] { return self.isServed || isClosed_; });
    if (self.isServed) return B_OK;
    Dequeue(&self);
    if (isClosed_) return B_BAD_SEM_ID;
    Serve();  // this request may have held up smaller ones behind it
    return status;
}

status_t Semaphore::Release(int32 count) {
    std::lock_guard lock(mutex_);
    if (isClosed_) return B_BAD_SEM_ID;
    count_ += count;
    Serve();
    return B_OK;
}

void Semaphore::Close() {
    std::lock_guard lock(mutex_);
    isClosed_ = true;
    for (Waiter* waiter = first_; waiter != nullptr; waiter = waiter->next)
        waiter->wake.notify_one();
}

int32 Semaphore::Count() const {
    std::lock_guard lock(mutex_);
    int32 count = count_;
    for (const Waiter* waiter = first_; waiter != nullptr; waiter = waiter->next)
        count -= waiter->wanted;
    return count;
}

void Semaphore::Enqueue(Waiter* waiter) {
    Waiter** place = &first_;
    while (*place != nullptr)
        place = &(*place)->next;
    *place = waiter;
}

void Semaphore::Dequeue(Waiter* waiter) {
    Waiter** place = &first_;
    while (*place != waiter)
        place = &(*place)->next;
    *place = waiter->next;
}

// Notifies with the mutex held: a waiter lives on the stack of its thread, which may go on at once.
void Semaphore::Serve() {
    while (first_ != nullptr && first_->wanted <= count_) {
        Waiter* const served = first_;
        first_ = served->next;
        count_ -= served->wanted;
        served->isServed = true;
        served->wake.notify_one();
    }
}
