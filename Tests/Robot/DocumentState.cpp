#include "Tests/Robot/DocumentState.h"

#include <sstream>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/EpochPortal.h"
#include "Platform/Application/BMessage.h"

namespace {

int Depth(const AbEpoch* epoch) {
    int depth = 0;
    for (; epoch != nullptr; epoch = epoch->Parent())
        depth++;
    return depth;
}

}  // namespace

std::string DocumentState(EpochPortal* portal) {
    std::string state;
    portal->ReadLock();
    for (EpochCursor cursor(portal->RootEpoch()); cursor.GetEpoch() != nullptr;
         cursor.Increment()) {
        AbEpoch* const epoch = cursor.GetEpoch();
        if (epoch == portal->RootEpoch()) continue;
        BMessage record;
        static_cast<void>(epoch->Archive(&record, false));
        for (const char* const name : {"Calc", "Epoch Name", "N Inh"})
            record.RemoveName(name);
        state += "epoch at depth " + std::to_string(Depth(epoch)) +
                 (epoch == portal->FocusEpoch() ? ", in focus" : "") + '\n' + record.ToText();
    }
    const AbCalculator* const calculator = portal->GetCalculator();
    state += "segments " + std::to_string(calculator->SegmentLength()) + ", updates " +
             std::to_string(calculator->UpdatesPerSecond()) + '\n';
    portal->ReadUnlock();
    return state;
}

std::string FirstDifference(const std::string& one, const std::string& other) {
    std::istringstream first(one);
    std::istringstream second(other);
    std::string epoch;
    std::string a;
    std::string b;
    do {
        if (a.starts_with("epoch")) epoch = a;
        if (!std::getline(first, a)) a = "(no more)";
        if (!std::getline(second, b)) b = "(no more)";
    } while (a == b && (first || second));
    return a == b ? "" : epoch + ": " + a + " / " + b;
}
