#include "Model/Sharing/Subject.h"

#include <algorithm>

#include "Platform/Support/BAutolock.h"

Subject::Subject() : listLock_("Observer list locker"), modelLock_("Epoch locker") {}

void Subject::AddObserver(Observer* observer) {
    const BAutolock lock(listLock_);
    if (std::find(observers_.begin(), observers_.end(), observer) == observers_.end())
        observers_.push_back(observer);
}

void Subject::RemoveObserver(Observer* observer) {
    {
        const BAutolock lock(listLock_);
        std::erase(observers_, observer);
    }
    // It may be at work for the committing thread: its owner must not delete it under that.
    const thread_id self = find_thread(nullptr);
    for (thread_id committer = committer_; committer != kNobody && committer != self;
         committer = committer_)
        committer_.wait(committer);
}

int32 Subject::AddRef() {
    return atomic_add(&references_, 1);
}

int32 Subject::RemoveRef() {
    return atomic_add(&references_, -1);
}

void Subject::TellObservers(int32 what) {
    if (!broadcast_) return;
    const BAutolock lock(listLock_);
    // By index: an observer may remove itself meanwhile.
    // NOLINTNEXTLINE(modernize-loop-convert)
    for (std::size_t i = 0; i < observers_.size(); i++)
        observers_[i]->Changed(what);
}

bool Subject::CommitChanges() {
    if (!broadcast_) return false;
    thread_id nobody = kNobody;
    if (!committer_.compare_exchange_strong(nobody, find_thread(nullptr))) return false;
    bool changed = false;
    for (Observer* observer : Observers()) {
        if (IsListed(observer) && observer->CommitChanges()) changed = true;
    }
    committer_ = kNobody;
    committer_.notify_all();
    return changed;
}

std::vector<Observer*> Subject::Observers() {
    const BAutolock lock(listLock_);
    return observers_;
}

bool Subject::IsListed(const Observer* observer) {
    const BAutolock lock(listLock_);
    return std::find(observers_.begin(), observers_.end(), observer) != observers_.end();
}
