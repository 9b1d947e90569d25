// Closing a simulation: what is asked, what is done, and that everything ends at any moment.
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "Displays/Projection/ProjectionDisplay.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/EpochPortal.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Simulation/Document/SampleDocument.h"
#include "Tests/Simulation/TestSimulation.h"

namespace {

constexpr uint32 kSaveThenQuit = FourCC("svtq");
constexpr const char* kQuestion = "Orvek (New Simulation): Message";

BMessage Answer(uint32 what) {
    BMessage message(what);
    message.AddBool("CheckBox", false);
    return message;
}

struct SimulationClosingTest : testing::Test {
    TestHost host;

    bool IsDoomed(const TestSimulation& simulation) {
        void* doomed = nullptr;
        host.application->WaitFor(kDeleteMe).FindPointer(kDoomedSimulation, &doomed);
        return doomed == simulation.window && simulation.window->IsHidden();
    }
    Simulation* BeginToBuild(const BMessage& record) {
        auto* const window = new Simulation({40, 40, 240, 240}, &host);
        window->Init(std::make_unique<BMessage>(record), {}, nullptr, true);
        return window;
    }
};

TEST_F(SimulationClosingTest, ASavedOneAsksNothing) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(B_QUIT_REQUESTED);
    EXPECT_TRUE(IsDoomed(simulation));
    // Nothing that comes now can set it going again.
    simulation.Send(kTogglePause);
    simulation.Send(B_QUIT_REQUESTED);
    EXPECT_FALSE(host.application->Has(kDeleteMe));
}

TEST_F(SimulationClosingTest, AnUnsavedOneAsksOnceAndCancelKeepsItRunning) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(kTogglePause);
    simulation.Send(B_QUIT_REQUESTED);
    simulation.Send(B_QUIT_REQUESTED);
    UserHand::WaitForWindow(kQuestion);
    UserHand::Press(kQuestion, UserHand::Key::kEscape);  // closes the box
    host.application->WaitFor(kCloseCancelled);
    UserHand::WaitForWindow(kQuestion, false);
    simulation.Send(B_QUIT_REQUESTED);
    UserHand::WaitForWindow(kQuestion);
    simulation.Send(Answer(1));
    host.application->WaitFor(kCloseCancelled);
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    EXPECT_FALSE(simulation->IsHidden());
    EXPECT_FALSE(host.application->Has(kDeleteMe));
    simulation.Send(kTogglePause);
}

TEST_F(SimulationClosingTest, AStandingAnswerLosesNoWork) {
    host.answer = FourCC("rlyq");
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(kNewBody);
    simulation.Send(B_QUIT_REQUESTED);
    EXPECT_TRUE(IsDoomed(simulation));
    ASSERT_EQ(host.Recovery().List().size(), 1u);
    // A user who was asked and says no means it.
    TestSimulation other(&host, PlanetRecord());
    other.Send(kNewBody);
    other.Send(Answer(FourCC("rlyq")));
    EXPECT_TRUE(IsDoomed(other));
    EXPECT_EQ(host.Recovery().List().size(), 1u);
}

TEST_F(SimulationClosingTest, WhatCannotBeSavedIsOfferedBeforeTheWindowGoes) {
    std::filesystem::create_directory(host.Path("place"));
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Name(FourCC("SAVE"), host.Path("place"), "Comets");
    simulation.Send(kNewBody);
    std::filesystem::remove_all(host.Path("place"));
    simulation.Send(Answer(kSaveThenQuit));
    const BMessage offer = host.application->WaitFor(kOfferCopy);
    EXPECT_TRUE(IsDoomed(simulation));
    ASSERT_EQ(host.Recovery().List().size(), 1u);
    std::string copy, reason;
    EXPECT_EQ(offer.FindString("Copy", &copy), B_OK);
    EXPECT_EQ(copy, host.Recovery().List()[0].path);
    EXPECT_EQ(offer.FindString(kReasonField, &reason), B_OK);
    EXPECT_EQ(reason, "No such file or directory");
}

TEST_F(SimulationClosingTest, AnUntitledOneIsNamedBeforeItCloses) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(kNewBody);
    simulation.Send(Answer(kSaveThenQuit));
    UserHand::WaitForWindow("Save New Simulation as");
    UserHand::Press("Save New Simulation as", UserHand::Key::kEscape);
    host.application->WaitFor(kCloseCancelled);
    EXPECT_FALSE(simulation->IsHidden());
    simulation.Name(kSaveThenQuit, host.folder.Path(), "named");
    EXPECT_TRUE(IsDoomed(simulation));
    EXPECT_TRUE(std::filesystem::exists(host.Path("named")));
    EXPECT_FALSE(host.application->Has(kSetDefaultResponse));
}

// --- The end, at any moment ---

TEST_F(SimulationClosingTest, ADamagedDocumentClosesItself) {
    BMessage damaged = PlanetRecord();
    BMessage epoch;
    ASSERT_EQ(damaged.FindMessage("Epochs", &epoch), B_OK);
    epoch.RemoveName("Time");
    epoch.AddDouble("Time", std::numeric_limits<double>::quiet_NaN());
    damaged.RemoveName("Epochs");
    damaged.AddMessage("Epochs", &epoch);
    Simulation* const window = BeginToBuild(damaged);
    std::string reason;
    EXPECT_EQ(host.application->WaitFor(kDeleteMe).FindString(kReasonField, &reason), B_OK);
    EXPECT_FALSE(reason.empty());
    ASSERT_TRUE(window->Lock());
    window->Quit();
}

TEST_F(SimulationClosingTest, QuitsInTheMiddleOfBuilding) {
    for (const uint32 step : {kBuildMenuBar, kBuildRootView, kBuildBodySettings,
                              kBuildGlobalControls, kArrangeWindow, kShowWindow}) {
        Simulation* const window = BeginToBuild(PlanetRecord());
        host.application->WaitFor(step);
        ASSERT_TRUE(window->Lock());
        window->Quit();
    }
}

// Such as come by way of the application for a window that has closed, and that had this address.
TEST_F(SimulationClosingTest, StepsOfAnotherBuildingAreIgnored) {
    Simulation* const window = BeginToBuild(PlanetRecord());
    for (const uint32 step : {kBuildGlobalControls, kArrangeWindow, kBuildRootView, kShowWindow})
        static_cast<void>(static_cast<BLooper*>(window)->PostMessage(step));
    host.application->WaitFor(kSimulationShown);
    ASSERT_TRUE(window->Lock());
    window->Quit();
}

TEST_F(SimulationClosingTest, QuitsWithEverythingOpenAndRunning) {
    const int32 windows = BApplication::CountWindows();
    for (int round = 0; round < 5; round++) {
        TestSimulation simulation(&host, PlanetRecord());
        BMessage display(kNewDisplay);
        display.AddInt32(kDisplayTypeField, ProjectionDisplay::kType);
        simulation.Send(display);
        for (const uint32 what :
             {kShowAnimation, kShowEpochs, kShowTrailDisc, kSaveAs, kTogglePause, B_QUIT_REQUESTED})
            simulation.Send(what);
        // On their way while it ends: a display that closes, commands of another thread.
        static_cast<void>(
            static_cast<BLooper*>(simulation.FirstDisplay())->PostMessage(B_QUIT_REQUESTED));
        Simulation* const window = simulation.window;
        std::thread sender([window] {
            for (int i = 0; i < 50; i++)
                for (const uint32 what : {kNewBody, kUndo, kTogglePause, kRedisplay})
                    if (static_cast<BLooper*>(window)->PostMessage(what) == B_BAD_VALUE) return;
        });
        simulation.Quit();
        sender.join();
        EXPECT_EQ(BApplication::CountWindows(), windows);
    }
}

// Entries are committed by commands of any thread; the window may end meanwhile.
TEST_F(SimulationClosingTest, QuitsWhileAnotherThreadCommits) {
    TestSimulation simulation(&host, PlanetRecord());
    EpochPortal portal(*simulation.Portal());
    std::atomic<bool> isOver{false};
    std::thread committer([&] {
        while (!isOver)
            portal.CommitChanges();
    });
    simulation.Send(kNewBody);
    simulation.Quit();
    isOver = true;
    committer.join();
}

}  // namespace
