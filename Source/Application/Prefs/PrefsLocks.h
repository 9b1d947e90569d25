// The two locks of the preference store, made when first used and never destroyed. Both may be
// taken several times by one thread; who wants both takes the transactions' lock first, because a
// transaction may last.
#pragma once

class BLocker;

namespace PrefsLocks {

// "prefs sem": the list of handles, and the items of every set.
[[nodiscard]] BLocker& Store();
// "prefs trans sem": one transaction at a time in this process.
[[nodiscard]] BLocker& Transactions();

}  // namespace PrefsLocks
