// The model lock for as long as a guard lives: a ReadGuard to look, a WriteGuard to change
// something. For the thread that makes it, which must not hold the lock already; nobody takes the
// lock any other way.
#pragma once

#include "Model/Sharing/EpochPortal.h"

class ReadGuard {
public:
    explicit ReadGuard(EpochPortal* portal) : portal_(portal) { portal_->ReadLock(); }
    ~ReadGuard() { portal_->ReadUnlock(); }
    ReadGuard(const ReadGuard&) = delete;
    ReadGuard& operator=(const ReadGuard&) = delete;

private:
    EpochPortal* const portal_;
};

class WriteGuard {
public:
    explicit WriteGuard(EpochPortal* portal) : portal_(portal) { portal_->WriteLock(); }
    ~WriteGuard() { portal_->WriteUnlock(); }
    WriteGuard(const WriteGuard&) = delete;
    WriteGuard& operator=(const WriteGuard&) = delete;

private:
    EpochPortal* const portal_;
};
