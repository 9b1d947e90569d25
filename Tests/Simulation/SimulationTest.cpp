// Building, editing and running a simulation by the messages that its window gets.
#include "Simulation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "AppDefs.h"
#include "BMenuBar.h"
#include "BStringView.h"
#include "Body.h"
#include "CollisionMailbox.h"
#include "Epoch.h"
#include "EpochPortal.h"
#include "ProgramMessages.h"
#include "ProjectionDisplay.h"
#include "SampleDocument.h"
#include "SimulationMenus.h"
#include "TestDocument.h"
#include "TestSimulation.h"
#include "UserHand.h"

namespace {

constexpr uint32 kAnswer = FourCC("answ");

BMessage WithReply(uint32 what) {
    const BMessage reply(kAnswer);
    BMessage message(what);
    message.AddMessage(kReplyField, &reply);
    return message;
}

BMessage WithSystem(uint32 what, int64 id) {
    BMessage message(what);
    message.AddInt64(kBodyIDField, id);
    return message;
}

// Two bodies that fall onto each other within a second, and one far away.
BMessage CollisionRecord() {
    Epoch epoch;
    const auto add = [&epoch](const char* name, int64 id, double gm, double x) {
        auto body = MakeBody(name, id, gm, {x, 0.0, 0.0}, {x > 0.0 ? -1.0 : 0.0, 0.0, 0.0});
        body->SetRadius(1.0);
        epoch.RootSystem()->AddChild(body.release());
    };
    add("Target", 0, 1.0, 0.0);
    add("Arrow", 1, 0.5, 2.5);
    epoch.RootSystem()->AddChild(MakeBody("Far", 2, 0.1, {1e9, 0.0, 0.0}, {}).release());
    return RecordOf({&epoch});
}

struct SimulationTest : testing::Test {
    TestHost host;
};

TEST_F(SimulationTest, BuildsItselfThroughTheApplicationAndShowsADisplay) {
    TestSimulation simulation(&host);
    EXPECT_FALSE(simulation->IsHidden());
    EXPECT_EQ(simulation->Title(), "New Simulation");
    EXPECT_TRUE(simulation->IsNewlyCreated());
    EXPECT_FALSE(simulation.IsMarkedModified());
    EXPECT_EQ(simulation.CountDisplays(), 1u);
    EXPECT_EQ(simulation.CountBodies(), 2u);
    EXPECT_EQ(simulation.GoLabel(), "Go");
    // A step that comes again builds nothing twice.
    ASSERT_TRUE(simulation->Lock());
    const int32 views = simulation->CountChildren();
    simulation->Unlock();
    for (const uint32 step : {kBuildMenuBar, kBuildGlobalControls, kShowWindow, FourCC("bld9")})
        simulation.Send(step);
    ASSERT_TRUE(simulation->Lock());
    EXPECT_EQ(simulation->CountChildren(), views);
    simulation->Unlock();
    EXPECT_EQ(simulation.CountDisplays(), 1u);
}

// Every shortcut does one thing, and "Open..." offers this very window.
TEST_F(SimulationTest, MenusAreComplete) {
    TestSimulation simulation(&host);
    ASSERT_TRUE(simulation->Lock());
    auto* const bar = dynamic_cast<BMenuBar*>(simulation->FindView("Main Menu Bar"));
    ASSERT_NE(bar, nullptr);
    std::set<std::pair<char, uint32>> shortcuts;
    for (int32 i = 0; i < bar->CountItems(); i++)
        for (int32 k = 0; k < bar->SubmenuAt(i)->CountItems(); k++) {
            const BMenuItem& item = *bar->SubmenuAt(i)->ItemAt(k);
            EXPECT_TRUE(item.Message() != nullptr || item.Submenu() != nullptr ||
                        item.Label().empty());
            uint32 modifiers = 0;
            const char key = item.Shortcut(&modifiers);
            EXPECT_TRUE(key == '\0' || shortcuts.emplace(std::tolower(key), modifiers).second)
                << item.Label();
        }
    void* pointer = nullptr;
    EXPECT_EQ(bar->FindItem(kOpen)->Message()->FindPointer(kSimulationField, &pointer), B_OK);
    EXPECT_EQ(pointer, simulation.window);
    simulation->Unlock();
}

TEST_F(SimulationTest, EditsAreUndoneAndRedoneStepByStep) {
    TestSimulation simulation(&host, PlanetRecord());
    const auto labels = [&] {
        simulation.Settle();
        if (!simulation->Lock()) return std::string();
        auto* const bar = dynamic_cast<BMenuBar*>(simulation->FindView("Main Menu Bar"));
        std::string text = bar->FindItem(kUndo)->Label() + ", " + bar->FindItem(kRedo)->Label();
        simulation->Unlock();
        return text;
    };
    EXPECT_EQ(labels(), "Undo, Redo");
    simulation.Send(kNewBody);
    EXPECT_FALSE(simulation->IsNewlyCreated());
    simulation.Send(WithSystem(kSetRelativeTo, 0));
    simulation.Send(kToCenterOfMass);
    simulation.Send(WithSystem(kDeleteBody, 3));
    EXPECT_EQ(simulation.CountBodies(), 4u);
    EXPECT_EQ(labels(), "Undo Delete Body, Redo");
    for (int i = 0; i < 3; i++)
        simulation.Send(kUndo);
    EXPECT_EQ(simulation.CountBodies(), 5u);
    EXPECT_EQ(labels(), "Undo New Body, Redo Set Reference");
    EXPECT_TRUE(simulation.IsMarkedModified());
    simulation.Send(kUndo);
    EXPECT_EQ(simulation.CountBodies(), 4u);
    EXPECT_FALSE(simulation.IsMarkedModified());
    EXPECT_FALSE(simulation->IsNewlyCreated()) << "what could be redone would be lost";
    for (int i = 0; i < 4; i++)
        simulation.Send(kRedo);
    EXPECT_EQ(simulation.CountBodies(), 4u);
    EXPECT_EQ(labels(), "Undo Delete Body, Redo");
}

TEST_F(SimulationTest, MessagesNameTheBodyOrTheEpoch) {
    TestSimulation simulation(&host, PlanetRecord());
    EpochPortal* const portal = simulation.Portal();
    simulation.Send(WithSystem(kEditBody, 2));
    EXPECT_EQ(portal->FocusSystem()->ID(), 2);
    EXPECT_FALSE(simulation.IsMarkedModified()) << "a glance is no edit";
    simulation.Send(kDeleteCurrentBody);
    EXPECT_EQ(portal->FocusEpoch()->SystemFromID(2), nullptr);
    simulation.Send(WithSystem(kEditBody, 77));
    simulation.Send(kEditBody);
    simulation.Send(WithSystem(kDeleteBody, 77));
    EXPECT_EQ(simulation.CountBodies(), 3u);

    AbEpoch* const first = portal->FocusEpoch();
    simulation.Send(kLogEpoch);
    EXPECT_EQ(portal->FocusEpoch()->Parent(), first);
    BMessage edit(kEditEpoch);
    edit.AddInt32(kEpochIndexField, 0);
    simulation.Send(edit);
    EXPECT_EQ(portal->FocusEpoch(), first);
    BMessage remove(kDeleteEpoch);
    remove.AddInt32(kEpochIndexField, 1);
    simulation.Send(remove);
    EXPECT_EQ(first->CountChildren(), 0);
    BMessage none(kEditEpoch);
    none.AddInt32(kEpochIndexField, 9);
    simulation.Send(none);
    EXPECT_EQ(portal->FocusEpoch(), first);
}

TEST_F(SimulationTest, GroupsAreMadeOfWhatIsChosenAndDissolved) {
    TestSimulation simulation(&host, PlanetRecord());
    EpochPortal* const portal = simulation.Portal();
    simulation.Send(WithSystem(kEditBody, 1));
    simulation.Send(SimulationMenus::kRequestGroup);
    UserHand::WaitForWindow("Group Bodies");
    UserHand::Press("Group Bodies", UserHand::Key::kEnter);
    UserHand::WaitForWindow("Group Bodies", false);
    simulation.Settle();
    const MassSystem* const group = portal->FocusEpoch()->SystemFromID(1)->Parent();
    EXPECT_EQ(group->Name(), "New Group");
    EXPECT_EQ(group->CountChildren(), 1) << "only the body in focus was chosen at first";

    simulation.Send(WithSystem(kEditBody, group->ID()));
    simulation.Send(SimulationMenus::kDissolveGroup);
    EXPECT_EQ(portal->FocusEpoch()->SystemFromID(1)->Parent()->ID(),
              portal->FocusEpoch()->RootSystem()->ID());
    simulation.Send(SimulationMenus::kDissolveGroup);  // a body is none
    EXPECT_EQ(simulation.CountBodies(), 4u);
    for (int i = 0; i < 2; i++)
        simulation.Send(kUndo);
    EXPECT_FALSE(simulation.IsMarkedModified());
}

// --- The run ---

TEST_F(SimulationTest, PausesNestAndAnswer) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    EXPECT_EQ(simulation.Send(WithReply(kPauseRun)).what, kAnswer);
    EXPECT_EQ(simulation.GoLabel(), "Go");
    EXPECT_EQ(simulation.Send(WithReply(kPauseRun)).what, kAnswer);
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Go") << "others have paused it, not the user";
    EXPECT_EQ(simulation.Send(WithReply(kUnPauseRun)).what, kAnswer);
    EXPECT_EQ(simulation.GoLabel(), "Go");
    simulation.Send(kUnPauseRun);
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    simulation.Send(kUnPauseRun);
    EXPECT_EQ(simulation.GoLabel(), "Pause") << "one too many changes nothing";

    simulation.Send(kPauseForUser);
    simulation.Send(kPauseForUser);
    EXPECT_EQ(simulation.GoLabel(), "Go");
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    EXPECT_EQ(simulation.Send(WithReply(kRestRun)).what, kAnswer);
    EXPECT_EQ(simulation.GoLabel(), "Pause") << "a rest is not seen";
    EXPECT_EQ(simulation.Send(WithReply(kUnRestRun)).what, kAnswer);
    simulation.Send(kTogglePause);
}

TEST_F(SimulationTest, ARunLogsAnEpochAndAnEditStopsIt) {
    TestSimulation simulation(&host, PlanetRecord());
    EpochPortal* const portal = simulation.Portal();
    AbEpoch* const first = portal->FocusEpoch();
    simulation.Send(kTogglePause);
    EXPECT_EQ(portal->FocusEpoch()->Parent(), first);
    ::Settle(simulation.FirstDisplay());
    EXPECT_EQ(UserHand::ItemText("Ctrl+G"), "Pause");
    EXPECT_TRUE(simulation.IsMarkedModified());
    simulation.Send(kNewBody);
    EXPECT_EQ(simulation.GoLabel(), "Go");
    EXPECT_EQ(simulation.CountBodies(), 5u);
    EXPECT_NE(portal->FocusEpoch()->Parent(), first) << "the run's epoch is read-only now";
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Pause") << "one press of Go resumes it";
    simulation.Send(kUndo);
    EXPECT_EQ(simulation.GoLabel(), "Go");
}

TEST_F(SimulationTest, BodiesMergeInTheMiddleOfARun) {
    TestSimulation simulation(&host, CollisionRecord());
    simulation.Send(kTogglePause);
    while (simulation.Message().empty())
        snooze(2000);
    EXPECT_EQ(simulation.Message(), "Arrow merges into Target");
    EXPECT_EQ(simulation.GoLabel(), "Pause") << "the run goes on";
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.CountBodies(), 2u);
    simulation.Settle();
    ASSERT_TRUE(simulation->Lock());
    const std::string figures = static_cast<BStringView*>(simulation->FindView("Figures"))->Text();
    simulation->Unlock();
    EXPECT_EQ(figures.substr(0, 8), "2 bodies");
}

// A report of a collision that comes when the user has paused, and saved, still counts.
TEST_F(SimulationTest, ALateMergerIsAChange) {
    TestSimulation simulation(&host, CollisionRecord());
    BMessage collision(CollisionMailbox::kCollisionMessage);
    collision.AddInt64("p", 1);
    collision.AddInt64("q", 0);
    simulation.Send(collision);
    EXPECT_EQ(simulation.CountBodies(), 2u);
    EXPECT_TRUE(simulation.IsMarkedModified());
}

// --- Windows ---

TEST_F(SimulationTest, DisplaysComeAndGoDuringARun) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(kTogglePause);
    BMessage newDisplay(kNewDisplay);
    newDisplay.AddInt32(kDisplayTypeField, ProjectionDisplay::kType);
    simulation.Send(newDisplay);
    BMessage unknown(kNewDisplay);
    unknown.AddInt32(kDisplayTypeField, 2);
    simulation.Send(unknown);
    EXPECT_EQ(simulation.CountDisplays(), 2u);
    for (std::size_t left : {1u, 0u}) {
        ::Settle(simulation.FirstDisplay());
        static_cast<void>(
            static_cast<BLooper*>(simulation.FirstDisplay())->PostMessage(B_QUIT_REQUESTED));
        while (simulation.CountDisplays() != left)
            snooze(1000);
        EXPECT_EQ(simulation.GoLabel(), "Pause");
    }
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Go");
}

TEST_F(SimulationTest, SubsidiaryWindowsAreShown) {
    TestSimulation simulation(&host);
    simulation.Send(kShowTrailDisc);
    simulation.Send(kShowAnimation);
    simulation.Send(kShowEpochs);
    UserHand::WaitForWindow("Display options for New Simulation");
    UserHand::WaitForWindow("Animation options for New Simulation");
    UserHand::WaitForWindow("Epochs for New Simulation");
    simulation.Send(kShowEpochs);
    UserHand::WaitForWindow("Epochs for New Simulation");
}

TEST_F(SimulationTest, FilesAndOpenGoToTheApplicationWithThisWindow) {
    TestSimulation simulation(&host);
    for (const uint32 what : {kOpen, B_REFS_RECEIVED}) {
        BMessage message(what);
        message.AddPointer(kSimulationField, nullptr);
        simulation.Send(message);
        void* pointer = nullptr;
        EXPECT_EQ(host.application->WaitFor(what).FindPointer(kSimulationField, &pointer), B_OK);
        EXPECT_EQ(pointer, simulation.window);
    }
}

TEST_F(SimulationTest, WithoutATemplateThereIsAWindowWithNothingInIt) {
    TestSimulation simulation(&host, BMessage());
    EXPECT_EQ(simulation.CountBodies(), 0u);
    for (const uint32 what : {kNewBody, kDeleteCurrentBody, kToCenterOfMass, kLogEpoch, kUndo,
                              kTogglePause, kTogglePause, kSaveCurrentEpoch})
        simulation.Send(what);
    EXPECT_EQ(simulation.CountBodies(), 0u);
}

// Notes how a run of its own begins and ends.
struct MonitoredRun : RunControlView {
    MonitoredRun() {
        EXPECT_FALSE(document.Load(PlanetRecord()).Failed());
        document.AddConsumer(monitor.Consumer());
    }
    void RunStarting() override { monitor.Begin(); }
    void RunStopped() override { end = monitor.End(); }

    SimulationDocument document{nullptr};
    RunMonitor monitor{document.Portal(), document.GetCalculator()};
    RunControl control{document.Portal(), document.GetCalculator(), this};
    RunMonitor::Figures end;
};

TEST(RunMonitorTest, TellsRatesAndHowWellEnergyIsKept) {
    MonitoredRun run;
    StepRunner(&run.document).Run(&run.control, 5000);
    ASSERT_TRUE(run.end.energyError.has_value());
    EXPECT_LT(std::fabs(*run.end.energyError), 1e-6);
    EXPECT_EQ(run.end.stepsPerSecond, 0.0) << "it has stopped";

    // Of the next run, from its own start.
    run.control.UnPause();
    RunMonitor::Figures figures;
    for (int64 now = system_time(); !figures.energyError; snooze(1000))
        figures = run.monitor.Measure(now += 2'000'000);
    EXPECT_LT(std::fabs(*figures.energyError), 1e-6);
    EXPECT_GT(figures.stepsPerSecond, 0.0);
    EXPECT_GT(figures.timePerSecond, 0.0);
    run.control.Pause();
}

}  // namespace
