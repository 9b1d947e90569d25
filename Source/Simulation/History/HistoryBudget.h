// How much memory the kept runs of a document may take, the same for all that are open: what the
// user has chosen, which holds at once. Any thread.
#pragma once

#include <mutex>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class RunHistory;

class HistoryBudget {
public:
    static constexpr int32 kDefault = 512;  // megabytes, as the next two
    static constexpr int32 kMin = 16;
    static constexpr int32 kMax = 65536;

    static HistoryBudget& Shared();

    [[nodiscard]] int32 Megabytes() const;
    // No lock of a document may be held. What is out of range becomes the nearest that is not.
    void Set(int32 megabytes);

    // Holds for this one from now on, until it leaves; not owned.
    void Enter(RunHistory* history);
    void Leave(const RunHistory* history);

private:
    mutable std::mutex mutex_;
    int32 megabytes_ = kDefault;
    std::vector<RunHistory*> histories_;
};
