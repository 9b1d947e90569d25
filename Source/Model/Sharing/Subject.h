// What all portals of one document share: its model lock, the list of its observers, and the count
// of the portals. Any thread may call. Deleted by the portal that gives up the last reference.
#pragma once

#include <atomic>
#include <vector>

#include "Model/Sharing/Observer.h"
#include "Model/Sharing/ReadWriteLock.h"
#include "Platform/Support/BLocker.h"

class Subject {
public:
    Subject();
    virtual ~Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    // Observers are not owned; each is listed once, in order of registration. Afterwards a removed
    // observer is called no more: RemoveObserver waits for a CommitChanges that runs on another
    // thread, so its caller must hold no lock that committing takes.
    void AddObserver(Observer* observer);
    void RemoveObserver(Observer* observer);

    // The previous count.
    int32 AddRef();
    int32 RemoveRef();

    bool ReadLock() { return modelLock_.ReadLock(); }
    void ReadUnlock() { modelLock_.ReadUnlock(); }
    bool WriteLock() { return modelLock_.WriteLock(); }
    void WriteUnlock() { modelLock_.WriteUnlock(); }

    // While off, no observer is told or asked anything.
    void Broadcast(bool on) { broadcast_ = on; }
    void TellObservers(int32 what);
    // Asks every observer; true if any changed something. False at once while another call runs.
    // The observer list is not locked meanwhile: observers execute commands, which tell all
    // observers while they hold the model lock, so holding the list here could deadlock two
    // threads.
    bool CommitChanges();

private:
    static constexpr thread_id kNobody = -1;

    std::vector<Observer*> Observers();
    bool IsListed(const Observer* observer);

    BLocker listLock_;
    ReadWriteLock modelLock_;
    std::vector<Observer*> observers_;
    std::atomic<int32> references_{1};
    std::atomic<bool> broadcast_{true};
    std::atomic<thread_id> committer_{kNobody};  // the thread that runs CommitChanges
};
