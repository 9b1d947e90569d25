// The boxes of a simulation's window over a real document, in a window that does what a simulation
// does with their messages; and what tests look at in the document.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

#include "BWindow.h"
#include "BodySettingsBox.h"
#include "EntryHand.h"
#include "GlobalControlsBox.h"
#include "Observer.h"
#include "RunControl.h"
#include "RunControlView.h"
#include "SimulationController.h"
#include "SimulationDocument.h"
#include "TestDocument.h"

class BoxesWindow : public BWindow, public Observer {
public:
    BoxesWindow(SimulationDocument* document, SimulationController* controller);

    void Changed(int32 changes) override;
    bool CommitChanges() override;
    void MessageReceived(BMessage* message) override;
    void Quit() override;

    BodySettingsBox* const body;
    GlobalControlsBox* const global;

private:
    SimulationDocument* const document_;
    SimulationController* const controller_;
    std::atomic<int32> pending_{0};
};

class SettingsFixture : public testing::Test {
protected:
    // The new-simulation template: "Arrakis" (0), "BoskVeld" (1, in focus).
    SettingsFixture() : SettingsFixture(TestResources().NewSimulation()) {}
    explicit SettingsFixture(const BMessage& record);
    ~SettingsFixture() override;

    // Until nothing is on its way any more.
    void Settle();
    // As the window's owner does, with it locked.
    void InWindow(const std::function<void()>& what);
    void Undo();

    // Asks with the read lock.
    template <typename Question>
    auto Ask(Question question) {
        document.Portal()->ReadLock();
        auto answer = question(*document.Portal()->FocusEpoch());
        document.Portal()->ReadUnlock();
        return answer;
    }
    // Of the focus epoch's system with that identifier.
    template <typename T>
    T Of(int64 id, T (MassSystem::*get)() const) {
        return Ask([=](const AbEpoch& epoch) { return (epoch.SystemFromID(id)->*get)(); });
    }
    // Changes the model behind the users' back, as the calculator does.
    void Change(const std::function<void(AbEpoch&)>& change, int32 flags);
    int32 CountEdits() { return document.GetUndoChain()->ExecutedCount(); }

    SimulationDocument document{nullptr};
    EpochPortal* const portal = document.Portal();
    RunControlView view;
    RunControl control{portal, document.GetCalculator(), &view};
    SimulationController controller{&document, &control, &TestResources()};
    BoxesWindow* const window;
    const EntryHand hand;
};

inline constexpr double kAU = 1.4959787066e11;  // m
inline constexpr double kSolarMass = 1.32712440e20;
inline constexpr double kEarthMass = 3.98600448e14;
