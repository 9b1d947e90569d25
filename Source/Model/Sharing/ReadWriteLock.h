// The lock that guards one document's model. Readers and writers are not distinguished: each
// excludes everybody else. Any thread may call, but to lock it twice on one thread is a programming
// error that stops the program.
#pragma once

#include "Platform/Support/BLocker.h"

class ReadWriteLock {
public:
    explicit ReadWriteLock(const char* name) : locker_(name) {}

    bool ReadLock();
    void ReadUnlock() { locker_.Unlock(); }
    bool WriteLock();
    void WriteUnlock() { locker_.Unlock(); }

private:
    BLocker locker_;
};
