// A simulation whose windows are used by hand; and what tests look at in its document.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "Model/Sharing/EpochPortal.h"
#include "Tests/Simulation/EntryHand.h"
#include "Tests/Simulation/TestSimulation.h"

class SettingsFixture : public testing::Test {
protected:
    SettingsFixture();

    // Until nothing is on its way any more.
    virtual void Settle();
    void Send(const BMessage& message);
    void Undo() { Send(BMessage(kUndo)); }
    void Enter(const std::string& line, const std::string& text);
    void Choose(const std::string& field, const std::string& text);
    // As at the start of a run, and at its end.
    template <typename Box>
    void EnableRunControls(const char* name, bool enable) {
        simulation->Lock();
        static_cast<Box*>(simulation->FindView(name))->EnableRunControls(enable);
        simulation->Unlock();
        Settle();
    }

    // Asks with the read lock.
    template <typename Question>
    auto Ask(Question question) {
        portal->ReadLock();
        auto answer = question(*portal->FocusEpoch());
        portal->ReadUnlock();
        return answer;
    }
    // Of the focus epoch's system with that identifier.
    template <typename T>
    T Of(int64 id, T (MassSystem::*get)() const) {
        return Ask([=](const AbEpoch& epoch) { return (epoch.SystemFromID(id)->*get)(); });
    }
    // Changes the model behind the users' back, as the calculator does.
    void Change(const std::function<void(AbEpoch&)>& change, int32 flags);
    void Focus(int64 id);
    int32 CountEdits() { return portal->GetUndoChain()->ExecutedCount(); }

    TestHost host;
    // The new-simulation template: "Arrakis" (0), "BoskVeld" (1, in focus).
    TestSimulation simulation{&host};
    EpochPortal* const portal = simulation.Portal();
    BView* const root = simulation->FindView("Root View");
    const EntryHand hand{root};
};

inline constexpr double kAU = 1.4959787066e11;  // m
inline constexpr double kSolarMass = 1.32712440e20;
inline constexpr double kEarthMass = 3.98600448e14;
