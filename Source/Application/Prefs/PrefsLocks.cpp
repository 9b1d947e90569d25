#include "Application/Prefs/PrefsLocks.h"

#include "Platform/Support/BLocker.h"

BLocker& PrefsLocks::Store() {
    static auto* const lock = new BLocker("prefs sem");
    return *lock;
}

BLocker& PrefsLocks::Transactions() {
    static auto* const lock = new BLocker("prefs trans sem");
    return *lock;
}
