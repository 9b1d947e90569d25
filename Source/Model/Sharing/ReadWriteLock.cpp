#include "Model/Sharing/ReadWriteLock.h"

bool ReadWriteLock::ReadLock() {
    if (locker_.IsLocked()) debugger("Attempted nested ReadLock().");
    return locker_.Lock();
}

bool ReadWriteLock::WriteLock() {
    if (locker_.IsLocked()) debugger("Attempted nested WriteLock().");
    return locker_.Lock();
}
