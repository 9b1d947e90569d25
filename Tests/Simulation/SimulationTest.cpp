// Building, editing and running a simulation by the messages that its window gets.
#include "Simulation/Simulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <set>
#include <sstream>

#include "Application/MessageBoxes/MessageWindow.h"
#include "Calculation/CollisionMailbox.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Interface/Handles/BScreen.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/SimulationMenus.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Simulation/Document/SampleDocument.h"
#include "Tests/Simulation/ScrollHand.h"
#include "Tests/Simulation/TestSimulation.h"

namespace {

BMessage With(uint32 what, int64 system) {
    BMessage message(what);
    message.AddInt64(kBodyIDField, system);
    return message;
}

// Two bodies that fall onto each other within a second, and one far away.
BMessage CollisionRecord(int32 order = kDefaultOrder, int32 onContact = kContactMerges) {
    Epoch epoch;
    epoch.SetOrder(order);
    epoch.SetOnContact(onContact);
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
    EXPECT_EQ(simulation.GoLabel(), "Go");
    // A step that comes again builds nothing twice.
    for (const uint32 step : {kBuildMenuBar, kBuildGlobalControls, kShowWindow, FourCC("bld9")})
        simulation.Send(step);
    EXPECT_EQ(simulation.CountDisplays(), 1u);
}

// Keeps the window's thread at the end of reading until the box that says so is seen.
struct SlowHost : TestHost {
    void NoteDocument(const char* path) override {
        const bigtime_t end = system_time() + 10'000'000;
        while (!wasSeen && system_time() < end) {
            snooze(5000);
            for (int32 i = 0; i < BApplication::CountWindows(); i++)
                if (const auto* const box = dynamic_cast<MessageWindow*>(BApplication::WindowAt(i));
                    box != nullptr && box->ID() == MessageWindow::kBuilding && !box->IsHidden())
                    wasSeen = true;
        }
        TestHost::NoteDocument(path);
    }
    std::atomic<bool> wasSeen{false};
};

TEST(SimulationBuilding, ABoxIsSeenWhileADocumentTakesLongToBeRead) {
    SlowHost host;
    TestSimulation simulation(&host, PlanetRecord(), "slow");
    EXPECT_TRUE(host.wasSeen);
}

TEST_F(SimulationTest, EveryShortcutDoesOneThing) {
    TestSimulation simulation(&host);
    ASSERT_TRUE(simulation->Lock());
    auto* const bar = dynamic_cast<BMenuBar*>(simulation->FindView("Main Menu Bar"));
    ASSERT_NE(bar, nullptr);
    std::set<std::pair<char, uint32>> shortcuts;
    for (int32 i = 0; i < bar->CountItems(); i++)
        for (int32 k = 0; k < bar->SubmenuAt(i)->CountItems(); k++) {
            const BMenuItem& item = *bar->SubmenuAt(i)->ItemAt(k);
            uint32 modifiers = 0;
            const char key = item.Shortcut(&modifiers);
            EXPECT_TRUE(key == '\0' || shortcuts.emplace(std::tolower(key), modifiers).second)
                << item.Label();
        }
    simulation->Unlock();
}

TEST_F(SimulationTest, MessagesNameTheBodyOrTheEpoch) {
    TestSimulation simulation(&host, PlanetRecord());
    EpochPortal* const portal = simulation.Portal();
    simulation.Send(With(kEditBody, 2));
    EXPECT_EQ(portal->FocusSystem()->ID(), 2);
    EXPECT_FALSE(simulation.IsMarkedModified()) << "a glance is no edit";
    simulation.Send(With(kSetRelativeTo, 0));
    EXPECT_EQ(portal->FocusSystem()->RelativeTo(), 0);
    simulation.Send(kDeleteCurrentBody);
    EXPECT_EQ(portal->FocusEpoch()->SystemFromID(2), nullptr);
    simulation.Send(With(kEditBody, 77));
    simulation.Send(kEditBody);
    simulation.Send(With(kDeleteBody, 77));
    simulation.Send(With(kDeleteBody, 3));
    EXPECT_EQ(simulation.CountBodies(), 2u);

    AbEpoch* const first = portal->FocusEpoch();
    simulation.Send(kLogEpoch);
    EXPECT_EQ(portal->FocusEpoch()->Parent(), first);
    const auto send = [&](uint32 what, int32 index) {
        BMessage message(what);
        message.AddInt32(kEpochIndexField, index);
        simulation.Send(message);
    };
    send(kEditEpoch, 0);
    EXPECT_EQ(portal->FocusEpoch(), first);
    send(kDeleteEpoch, 1);
    send(kEditEpoch, 9);
    EXPECT_EQ(portal->FocusEpoch(), first);
    EXPECT_EQ(first->CountChildren(), 0);
}

TEST_F(SimulationTest, EditsOfTheEpochTreeThatAreRefusedAreTold) {
    TestSimulation simulation(&host, PlanetRecord());
    BMessage deletion(kDeleteEpoch);
    deletion.AddInt32(kEpochIndexField, 0);
    simulation.Send(deletion);
    EXPECT_NE(simulation.Message().find("the epoch in focus stays"), std::string::npos)
        << simulation.Message();
    // In full: in as many lines as it takes.
    EXPECT_GT(simulation.CountMessageLines(), 1);

    EpochPortal* const portal = simulation.Portal();
    portal->WriteLock();
    NestAsDeepAsPossible(portal);
    AbEpoch* const last = portal->FocusEpoch();
    portal->WriteUnlock();
    simulation.Send(kLogEpoch);
    simulation.Settle();
    EXPECT_NE(simulation.Message().find("no more epochs below"), std::string::npos)
        << simulation.Message();
    EXPECT_GT(simulation.CountMessageLines(), 1);
    const std::string go = simulation.GoLabel();
    simulation.Send(kTogglePause);
    simulation.Settle();
    EXPECT_EQ(simulation.GoLabel(), go) << "nothing runs";
    EXPECT_EQ(last->CountChildren(), 0);
}

TEST_F(SimulationTest, AGroupIsMadeOfTheBodyInFocusUnlessOthersAreChosen) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(With(kEditBody, 1));
    simulation.Send(SimulationMenus::kRequestGroup);
    UserHand::WaitForWindow("Group Bodies");
    UserHand::Press("Group Bodies", UserHand::Key::kEnter);
    UserHand::WaitForWindow("Group Bodies", false);
    simulation.Settle();
    const MassSystem* const group = simulation.Portal()->FocusEpoch()->SystemFromID(1)->Parent();
    EXPECT_EQ(group->Name(), "New Group");
    EXPECT_EQ(group->CountChildren(), 1);
}

// --- The run ---

TEST_F(SimulationTest, PausesNestAndAnswer) {
    TestSimulation simulation(&host, PlanetRecord());
    const auto answered = [&](uint32 what) {
        const BMessage reply(FourCC("answ"));
        BMessage message(what);
        message.AddMessage(kReplyField, &reply);
        EXPECT_EQ(simulation.Send(message).what, reply.what);
    };
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    answered(kPauseRun);
    EXPECT_EQ(simulation.GoLabel(), "Go");
    answered(kPauseRun);
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Go") << "others have paused it, not the user";
    answered(kUnPauseRun);
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
    answered(kRestRun);
    EXPECT_EQ(simulation.GoLabel(), "Pause") << "a rest is not seen";
    answered(kUnRestRun);
    simulation.Send(kTogglePause);
}

TEST_F(SimulationTest, AnEditStopsARunAndOnePressOfGoResumesIt) {
    TestSimulation simulation(&host, PlanetRecord());
    AbEpoch* const first = simulation.Portal()->FocusEpoch();
    simulation.Send(kTogglePause);
    EXPECT_TRUE(simulation.IsMarkedModified());
    ::Settle(simulation.FirstDisplay());
    EXPECT_EQ(UserHand::ItemText("Ctrl+G"), "Pause");
    simulation.Send(kNewBody);
    EXPECT_EQ(simulation.GoLabel(), "Go");
    EXPECT_EQ(simulation.CountBodies(), 5u);
    EXPECT_NE(simulation.Portal()->FocusEpoch()->Parent(), first) << "the run's epoch is a record";
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Pause");
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
    const auto figures = [&] {
        simulation.Settle();
        std::string text = simulation.Text("Figures");
        while (text.ends_with('\n'))  // the line keeps its height
            text.pop_back();
        return text;
    };
    const std::string after = figures();
    EXPECT_EQ(after.substr(0, 8), "2 bodies");
    EXPECT_NE(after.find("energy kept to "), std::string::npos) << after;
    // What there is to tell of the run goes with it and comes back; what was done with the document
    // stays.
    simulation.Send(kUndo);
    EXPECT_EQ(simulation.CountBodies(), 3u);
    EXPECT_TRUE(figures().starts_with("3 bodies")) << figures();
    EXPECT_EQ(figures().find("energy kept"), std::string::npos) << figures();
    EXPECT_EQ(simulation.Message(), "");
    simulation.Send(kRedo);
    EXPECT_EQ(figures(), after);
    EXPECT_EQ(simulation.Message(), "Arrow merges into Target");
    simulation.Send(kUndo);
    simulation.SavedAs("apart");
    const std::string saved = simulation.Message();
    EXPECT_FALSE(saved.empty());
    simulation.Send(kLogEpoch);
    EXPECT_EQ(simulation.Message(), saved);
}

TEST_F(SimulationTest, FiguresOfARunAreBrokenIntoAsManyLinesAsTheyTake) {
    TestSimulation simulation(&host);
    const float height = simulation->Frame().Height();
    simulation.Send(kTogglePause);
    snooze(1'000'000);
    simulation.Send(kTogglePause);
    simulation.Settle();
    const std::string figures = simulation.Text("Figures");
    EXPECT_NE(figures.find("steps an orbit"), std::string::npos) << figures;
    const float width = simulation.WidthOf("Figures");
    std::istringstream lines(figures);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(BFont().StringWidths({line}).front(), width) << line;
    EXPECT_GT(std::ranges::count(figures, '\n'), 0);
    EXPECT_GT(simulation->Frame().Height(), height);
}

// What it leaves can be saved, opened and run again.
TEST_F(SimulationTest, ARunThatCannotGoOnIsPausedWithWords) {
    const auto endOf = [this](const BMessage& record, const char* saved) {
        TestSimulation simulation(&host, record);
        simulation.Send(kTogglePause);
        while (simulation.Message().empty())
            snooze(2000);
        EXPECT_EQ(simulation.GoLabel(), "Go");
        const std::string words = simulation.Message();
        SimulationDocument document(nullptr);
        EXPECT_FALSE(document.Load(simulation.SavedAs(saved)).Failed());
        EXPECT_EQ(document.Root()->ChildAt(0)->CountChildren(), 1);
        EXPECT_EQ(simulation.CountBodies(), document.Portal()->BodiesInMassOrder().size());
        return words;
    };
    Epoch falling;
    falling.RootSystem()->AddChild(MakeBody("Sun", 0, 1e20, {}, {}).release());
    falling.RootSystem()->AddChild(MakeBody("Probe", 1, 0.0, {1e11, 0, 0}, {}).release());
    std::string words = endOf(RecordOf({&falling}), "fallen");
    EXPECT_NE(words.find("Time stands still: \"Sun\" and \"Probe\" are "), std::string::npos)
        << words;

    // Nor does one where there is nothing to do.
    Epoch lonely;
    lonely.RootSystem()->AddChild(MakeBody("Sun", 0, 1e20, {}, {1, 0, 0}).release());
    words = endOf(RecordOf({&lonely}), "lonely");
    EXPECT_NE(words.find("Nothing interacts any more"), std::string::npos) << words;

    // Bodies that are too large to become one.
    for (const int64 id : {0, 1})
        falling.SystemFromID(id)->SetRadius(1e120);
    words = endOf(RecordOf({&falling}), "touching");
    EXPECT_NE(words.find("cannot be merged"), std::string::npos) << words;
}

TEST_F(SimulationTest, ARunStopsWhereBodiesTouchAndTheNextOneGoesThrough) {
    TestSimulation simulation(&host, CollisionRecord(16, kContactStops));
    simulation.Send(kTogglePause);
    while (simulation.Message().empty())
        snooze(2000);
    EXPECT_TRUE(simulation.Message().starts_with("\"Target\" and \"Arrow\" touch."))
        << simulation.Message();
    EXPECT_EQ(simulation.GoLabel(), "Go");
    EXPECT_EQ(simulation.CountBodies(), 3u);
    const double contact = simulation.Portal()->FocusEpoch()->Time();
    simulation.Send(kTogglePause);
    while (simulation.Time() < contact + 10.0 && simulation.GoLabel() == "Pause")
        snooze(2000);
    simulation.Send(kPauseForUser);
    EXPECT_EQ(simulation.CountBodies(), 3u);
    EXPECT_GT(simulation.Time(), contact);
}

// By its key; where the order does not know the way back the item rests.
TEST_F(SimulationTest, RunsBackwardsWhereTheOrderKnowsTheWay) {
    TestSimulation low(&host, CollisionRecord(4, kContactPasses));
    EXPECT_FALSE(low.IsEnabled(kRunBackwards));
    low.Send(kRunBackwards);
    EXPECT_NE(low.Message().find("order 5 or more"), std::string::npos);
    EXPECT_EQ(low.Time(), 0.0);

    TestSimulation simulation(&host, CollisionRecord(16, kContactPasses));
    EXPECT_TRUE(simulation.IsEnabled(kRunBackwards));
    simulation.Send(kRunBackwards);
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    EXPECT_FALSE(simulation.IsEnabled(kRunBackwards));
    while (simulation.Time() > -10.0)
        snooze(2000);
    simulation.Send(kTogglePause);
    const double turned = simulation.Time();
    simulation.Send(kTogglePause);
    while (simulation.Time() < turned + 1.0)
        snooze(2000);
    simulation.Send(kTogglePause);
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
    EpochPortal* const portal = simulation.Portal();
    const auto time = [portal] {
        portal->ReadLock();
        const double now = portal->FocusEpoch()->Time();
        portal->ReadUnlock();
        return now;
    };
    simulation.Send(kTogglePause);
    for (const int32 type : {ProjectionDisplay::kType, 3}) {
        BMessage newDisplay(kNewDisplay);
        newDisplay.AddInt32(kDisplayTypeField, type);
        simulation.Send(newDisplay);
    }
    EXPECT_EQ(simulation.CountDisplays(), 2u) << "there is no third kind";
    for (std::size_t left : {1u, 0u}) {
        ::Settle(simulation.FirstDisplay());
        static_cast<void>(
            static_cast<BLooper*>(simulation.FirstDisplay())->PostMessage(B_QUIT_REQUESTED));
        while (simulation.CountDisplays() != left)
            snooze(1000);
        EXPECT_EQ(simulation.GoLabel(), "Pause");
        for (const double before = time(); time() == before;)
            snooze(1000);
    }
    simulation.Send(kTogglePause);
    EXPECT_EQ(simulation.GoLabel(), "Go");
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

// With a font for which the screen is too small it scrolls, and the keyboard gets everywhere.
TEST_F(SimulationTest, IsNoHigherThanTheScreen) {
    const LargeFont font;
    TestSimulation simulation(&host);
    const BRect screen = BScreen(simulation.window).Frame();
    const BRect frame = simulation->Frame();
    EXPECT_LT(frame.Height(), screen.Height());
    EXPECT_LE(frame.bottom, screen.bottom);
    const ScrollHand hand(simulation.window, simulation->FindView("order"));
    ASSERT_TRUE(hand.CanScroll());
    EXPECT_FALSE(hand.SeesLast());
    hand.TabToLast();
    EXPECT_TRUE(hand.SeesLast());
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

// Of what was measured.
double EnergyError(const RunMonitor::Figures& figures) {
    return figures.evidence->drift.energy.value_or(HUGE_VAL);
}

TEST(RunMonitorTest, TellsRatesAndHowWellEnergyIsKept) {
    MonitoredRun run;
    StepRunner(&run.document).Run(&run.control, 5000);
    ASSERT_TRUE(run.end.evidence);
    EXPECT_LT(std::fabs(EnergyError(run.end)), 1e-6);
    EXPECT_EQ(run.end.evidence->order, 4);
    // The longest steps that the run could do with, at its closest passage, and not its first ones.
    ASSERT_TRUE(run.end.evidence->shortestStep);
    EXPECT_GT(*run.end.evidence->shortestStep, 1.0);
    EXPECT_LT(*run.end.evidence->shortestStep, 1e4);
    EXPECT_EQ(run.end.stepsPerSecond, 0.0) << "it has stopped";

    // Of the next run, from its own start.
    run.control.UnPause();
    RunMonitor::Figures figures;
    for (int64 now = system_time(); !figures.evidence; snooze(1000))
        figures = run.monitor.Measure(now += 2'000'000);
    EXPECT_LT(std::fabs(EnergyError(figures)), 1e-6);
    EXPECT_GT(figures.stepsPerSecond, 0.0);
    EXPECT_GT(figures.timePerSecond, 0.0);
    run.control.Pause();
}

TEST(RunMonitorTest, TheFirstFigureIsNotOfTheFirstBatch) {
    MonitoredRun run;
    StepRunner(&run.document).Run(&run.control, 10);  // the calculator knows the bodies
    EpochPortal* const portal = run.document.Portal();
    std::vector<double> places;
    std::vector<double> speeds;
    for (const Body* body : portal->BodiesInMassOrder())
        for (const auto& [vector, list] :
             {std::pair(body->Position(), &places), std::pair(body->Velocity(), &speeds)})
            list->insert(list->end(), {vector.x, vector.y, vector.z});
    double time = portal->FocusEpoch()->Time();
    run.monitor.Begin();
    ReportConsumer* const consumer = run.monitor.Consumer();
    consumer->PrepareForGo(1);
    consumer->ReadData(1, &time, places.data(), speeds.data());
    int64 now = system_time() + 1'500'000;
    EXPECT_FALSE(run.monitor.Measure(now).evidence);
    // A second and a half later the bodies are faster.
    for (double& speed : speeds)
        speed *= 2.0;
    consumer->ReadData(1, &time, places.data(), speeds.data());
    const RunMonitor::Figures figures = run.monitor.Measure(now += 400'000);
    ASSERT_TRUE(figures.evidence);
    EXPECT_GT(std::fabs(EnergyError(figures)), 1.0);
}

}  // namespace
