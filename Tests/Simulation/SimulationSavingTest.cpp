// Saving a simulation, reading it again, and what becomes of it where it cannot be saved.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <limits>

#include "Displays/Projection/ProjectionDisplay.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/BScreen.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/SimulationMenus.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Simulation/Document/SampleDocument.h"
#include "Tests/Simulation/TestSimulation.h"

namespace {

namespace fs = std::filesystem;

constexpr uint32 kNamed = FourCC("SAVE");

BMessage Read(const std::string& path) {
    BMessage record;
    EXPECT_FALSE(SimulationFile::Read(path, &record).Failed()) << path;
    return record;
}

// None can be written with 0, as on a full disk.
void LimitFiles(rlim_t size) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(size, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

struct SimulationSavingTest : testing::Test {
    TestHost host;
};

TEST_F(SimulationSavingTest, ASavedSimulationHasTheNameTheFileAndNoMark) {
    TestSimulation simulation(&host);
    simulation.Send(kNewBody);
    simulation.Send(kUndo);
    EXPECT_FALSE(simulation->IsNewlyCreated()) << "what could be redone would be lost";
    simulation.Send(kRedo);
    EXPECT_TRUE(simulation.IsMarkedModified());
    simulation.Name(kNamed, host.folder.Path(), "Trojans");
    EXPECT_EQ(simulation->Title(), "Trojans");
    EXPECT_FALSE(simulation.IsMarkedModified());
    EXPECT_FALSE(simulation->IsNewlyCreated());
    EXPECT_EQ(simulation.FirstDisplay()->Title(), "Projection of Trojans");
    EXPECT_EQ(host.Noted(), std::vector{host.Path("Trojans")});

    simulation.Send(kNewBody);
    EXPECT_TRUE(simulation.IsMarkedModified());
    simulation.Send(kSave);  // asks nothing
    EXPECT_FALSE(simulation.IsMarkedModified());
    TestSimulation again(&host, Read(host.Path("Trojans")), "Trojans");
    EXPECT_EQ(again.CountBodies(), 4u);
    EXPECT_FALSE(again->IsNewlyCreated());
}

// A document must not fill the screen and the memory by itself.
TEST_F(SimulationSavingTest, OnlySoManyDisplaysOpenByThemselves) {
    BMessage record = PlanetRecord();
    for (int i = 0; i < 40; i++) {
        BMessage display(FourCC("ARCV"));
        display.AddRect("Disp frame", {10.0f + static_cast<float>(i), 20.0f, 300.0f, 300.0f});
        display.AddString("Note", "display " + std::to_string(i));
        record.AddMessage("Displays", &display);
        record.AddInt32("Disp type", ProjectionDisplay::kType);
    }
    TestSimulation simulation(&host, record, "Many");
    EXPECT_EQ(simulation.CountDisplays(), 32u);
    EXPECT_NE(simulation.Message().find("8 more displays"), std::string::npos)
        << simulation.Message();

    const BMessage saved = simulation.SavedAs("Many");
    int32 count = 0;
    ASSERT_EQ(saved.GetInfo("Displays", nullptr, &count), B_OK);
    ASSERT_EQ(count, 40);
    for (int32 i = 32; i < 40; i++) {
        BMessage before, after;
        ASSERT_EQ(record.FindMessage("Displays", i, &before), B_OK);
        ASSERT_EQ(saved.FindMessage("Displays", i, &after), B_OK);
        EXPECT_EQ(before, after) << "as it was read";
    }
    simulation.Send(SimulationMenus::kOpenDisplays);
    simulation.Settle();
    EXPECT_EQ(simulation.CountDisplays(), 40u);
    EXPECT_EQ(simulation.Message(), "");
}

TEST_F(SimulationSavingTest, WhatADocumentHasLostIsSaidInItsWindow) {
    auto lost = MakePlanetEpoch("Lost");
    lost->SetTime(std::numeric_limits<double>::quiet_NaN());
    const BMessage record = RecordOf({MakePlanetEpoch("Good").get(), lost.get()});
    TestSimulation simulation(&host, record, "Half");
    EXPECT_NE(simulation.Message().find("epoch 1, \"Lost\", is left empty"), std::string::npos)
        << simulation.Message();
    EXPECT_EQ(simulation.CountBodies(), 4u);
    EXPECT_FALSE(simulation.IsMarkedModified());
}

// Read and saved again, a document is the same: epochs, displays, places of windows.
TEST_F(SimulationSavingTest, NothingOfTheRecordIsLost) {
    BMessage first;
    {
        TestSimulation simulation(&host, PlanetRecord());
        simulation.Send(kLogEpoch);
        simulation.Send(kNewBody);
        BMessage display(kNewDisplay);
        display.AddInt32(kDisplayTypeField, ProjectionDisplay::kType);
        simulation.Send(display);
        simulation.Send(kShowAnimation);
        simulation->MoveTo({123.0f, 77.0f});
        simulation.Settle();
        first = simulation.SavedAs("one");
    }
    BPoint at;
    EXPECT_EQ(first.FindPoint("Edit at", &at), B_OK);
    EXPECT_EQ(at.x, 123.0f);
    EXPECT_FALSE(first.HasName("Save at")) << "there never was a panel";
    EXPECT_FALSE(first.HasName("Nothing"));
    TestSimulation again(&host, first, "one");
    UserHand::WaitForWindow("Animation options for one");
    EXPECT_EQ(again.CountDisplays(), 2u);
    const BMessage second = again.SavedAs("two");
    EXPECT_EQ(second, first) << second.ToText() << first.ToText();
}

TEST_F(SimulationSavingTest, WindowFieldsOfADocument) {
    BMessage record = PlanetRecord();
    record.AddPoint("Edit at", {1e6f, -1e6f});
    record.AddPoint("Save at", {40.0f, 50.0f});
    record.AddFloat("Save W", 30.0f);
    record.AddFloat("Save H", 25.0f);
    for (int i = 0; i < 2; i++)
        record.AddMessage("Displays", BMessage());
    record.AddInt32("Disp type", 1);
    TestSimulation simulation(&host, record, "fields");
    EXPECT_EQ(simulation.CountDisplays(), 1u) << "the other one has no type";
    const BRect screen = BScreen(simulation.window).Frame();
    EXPECT_LE(simulation->Frame().left, screen.left + 0.9f * screen.Width());
    EXPECT_GE(simulation->Frame().top, screen.top);
    float width = 0.0f;
    EXPECT_EQ(simulation.SavedAs("fields").FindFloat("Save W", &width), B_OK);
    EXPECT_EQ(width, 30.0f);
}

TEST_F(SimulationSavingTest, TheCurrentEpochAlone) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(kLogEpoch);
    simulation.Name(FourCC("sver"), host.folder.Path(), "epoch");
    EXPECT_FALSE(Read(host.Path("epoch")).HasName("Cur Epoch"));
    EXPECT_EQ(simulation->Title(), "New Simulation") << "the name is kept";
    EXPECT_FALSE(simulation.IsMarkedModified());
    EXPECT_EQ(host.Recovery().List().size(), 1u) << "the rest of the tree is in no file";

    // The simulation has a place now, but nothing of another document is replaced there.
    std::ofstream(host.Path("New Simulation")) << "precious";
    simulation.Send(kSave);
    UserHand::WaitForWindow("Save New Simulation as");
    EXPECT_EQ(fs::file_size(host.Path("New Simulation")), 8u);
    UserHand::Press("Save New Simulation as", UserHand::Key::kEscape);
    fs::remove(host.Path("New Simulation"));
    simulation.Send(kSave);
    EXPECT_TRUE(fs::exists(host.Path("New Simulation")));
    EXPECT_TRUE(host.Recovery().List().empty());
}

TEST_F(SimulationSavingTest, ARunIsSavedAndGoesOn) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(kTogglePause);
    const BMessage saved = simulation.SavedAs("running");
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    EXPECT_TRUE(simulation.IsMarkedModified()) << "the run has begun another epoch";
    simulation.Send(kTogglePause);
    SimulationDocument document(nullptr);
    ASSERT_FALSE(document.Load(saved).Failed());
    EXPECT_FALSE(document.Portal()->FocusEpoch()->Writeable());
    EXPECT_EQ(document.Root()->ChildAt(0)->CountChildren(), 1);
}

// --- Where it cannot be saved ---

// The window counts as saved, and closes without a question; a complete copy is kept.
TEST_F(SimulationSavingTest, AFailedSaveLosesNothing) {
    const std::string place = host.Path("place");
    fs::create_directory(place);
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Name(kNamed, place, "Comets");
    simulation.Send(kNewBody);
    fs::remove_all(place);
    simulation.Send(kSave);
    EXPECT_FALSE(simulation.IsMarkedModified());
    EXPECT_NE(simulation.Message().find("Comets could not be saved: "), std::string::npos)
        << simulation.Message();
    EXPECT_NE(simulation.Message().find("directory"), std::string::npos) << "the system's reason";

    const std::vector<RecoveryCopy> copies = host.Recovery().List();
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_EQ(copies[0].originalPath, place + "/Comets");
    TestSimulation recovered(&host, copies[0]);
    EXPECT_EQ(recovered.CountBodies(), 5u);
    // The first window is still open.
    EXPECT_EQ(recovered->Title(), "Comets (window 2 of this document)");
    EXPECT_TRUE(recovered.IsMarkedModified());
    EXPECT_FALSE(recovered->IsNewlyCreated());
    simulation.Send(B_QUIT_REQUESTED);
    host.application->WaitFor(kDeleteMe);
    // Saved elsewhere, there is no more need for the copy.
    recovered.Name(kNamed, host.folder.Path(), "Comets");
    EXPECT_TRUE(host.Recovery().List().empty());
    EXPECT_FALSE(recovered.IsMarkedModified());
}

TEST_F(SimulationSavingTest, WhatAnotherHasWrittenIsReplacedOnlyWhenTheUserKnows) {
    const std::string name = "Comets" + std::string(150, 'x');  // longer than a line
    { TestSimulation(&host, PlanetRecord()).SavedAs(name.c_str()); }
    const BMessage record = Read(host.Path(name.c_str()));
    TestSimulation first(&host, record, name.c_str());
    TestSimulation second(&host, record, name.c_str());
    EXPECT_EQ(first->Title(), name.c_str());
    EXPECT_EQ(second->Title(), name + " (window 2 of this document)");
    EXPECT_NE(first->Frame().left, second->Frame().left);

    second.Send(kNewBody);
    second.Send(kSave);
    const BMessage theirs = Read(host.Path(name.c_str()));
    first.Send(kNewBody);
    first.Send(kNewBody);
    const float height = first->Frame().Height();
    first.Send(kSave);
    EXPECT_EQ(Read(host.Path(name.c_str())), theirs);
    EXPECT_TRUE(first.IsMarkedModified());
    EXPECT_NE(first.Message().find("Save again to replace it"), std::string::npos);
    EXPECT_GT(first->Frame().Height(), height) << "there is room for all of it";
    first.Send(kSave);
    EXPECT_FALSE(first.IsMarkedModified());
    EXPECT_FALSE(Read(host.Path(name.c_str())) == theirs);
    EXPECT_EQ(first->Frame().Height(), height);

    // To save when it closes is no other matter.
    second.Send(kNewBody);
    const BMessage ours = Read(host.Path(name.c_str()));
    second.Send(FourCC("svtq"));
    host.application->WaitFor(kCloseCancelled);
    EXPECT_EQ(Read(host.Path(name.c_str())), ours);
}

// Not even a copy can be kept.
TEST_F(SimulationSavingTest, WithoutASpareByteItStaysOpen) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Name(kNamed, host.folder.Path(), "Comets");
    simulation.Send(kNewBody);
    LimitFiles(0);
    simulation.Send(kSave);
    EXPECT_TRUE(simulation.IsMarkedModified());
    BMessage quit(FourCC("svtq"));
    quit.AddBool("CheckBox", false);
    simulation.Send(quit);
    LimitFiles(RLIM_INFINITY);
    host.application->WaitFor(kCloseCancelled);
    EXPECT_FALSE(host.application->Has(kDeleteMe));
    EXPECT_FALSE(simulation->IsHidden());
    EXPECT_TRUE(host.Recovery().List().empty());
    TestSimulation old(&host, Read(host.Path("Comets")), "Comets");
    EXPECT_EQ(old.CountBodies(), 4u) << "the old file is as it was";
    simulation.Send(kSave);
    EXPECT_FALSE(simulation.IsMarkedModified());
}

// --- Recovery copies ---

TEST_F(SimulationSavingTest, AutomaticCopiesComeAndGo) {
    TestSimulation simulation(&host, PlanetRecord(), "edited");
    const auto keep = [&] {
        simulation.Send(Simulation::kKeepAutomaticCopy);
        return host.Recovery().List();
    };
    EXPECT_TRUE(keep().empty()) << "nothing has changed";
    simulation.Send(kNewBody);
    const std::vector<RecoveryCopy> first = keep();
    ASSERT_EQ(first.size(), 1u);
    EXPECT_TRUE(simulation.IsMarkedModified());
    EXPECT_EQ(TestSimulation(&host, Read(first[0].path)).CountBodies(), simulation.CountBodies());
    fs::remove(first[0].path);
    EXPECT_TRUE(keep().empty()) << "there is another one only after a change";
    simulation.Send(kTogglePause);
    for (int i = 0; i < 2; i++) {
        const std::vector<RecoveryCopy> running = keep();
        ASSERT_EQ(running.size(), 1u);
        fs::remove(running[0].path);
    }
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    simulation.Send(kTogglePause);
    EXPECT_EQ(keep().size(), 1u);
    simulation.Send(kSave);
    EXPECT_TRUE(host.Recovery().List().empty());
    // The user decides against the changes: takes them back, or closes without saving.
    simulation.Send(kNewBody);
    EXPECT_EQ(keep().size(), 1u);
    simulation.Send(kUndo);
    EXPECT_TRUE(keep().empty());
    simulation.Send(kNewBody);
    EXPECT_EQ(keep().size(), 1u);
    BMessage dontSave(FourCC("rlyq"));
    dontSave.AddBool("CheckBox", false);
    simulation.Send(dontSave);
    host.application->WaitFor(kDeleteMe);
    EXPECT_TRUE(host.Recovery().List().empty());
}

// One that was kept at the end of a session, whatever becomes of automatic ones.
TEST_F(SimulationSavingTest, ACopyThatIsNeededGoesWhenTheUserSaysSo) {
    BMessage answer(FourCC("rlyq"));
    {
        TestSimulation edited(&host, PlanetRecord());
        for (const uint32 what : {Simulation::kKeepAutomaticCopy, Simulation::kKeepRecoveryCopy,
                                  Simulation::kKeepAutomaticCopy}) {
            edited.Send(kNewBody);
            edited.Send(what);
        }
        edited.Send(answer);
        host.application->WaitFor(kDeleteMe);
    }
    ASSERT_EQ(host.Recovery().List().size(), 1u);
    TestSimulation recovered(&host, host.Recovery().List()[0]);
    EXPECT_EQ(recovered->Title(), "New Simulation");
    recovered.Send(kSave);  // it never had a file
    UserHand::WaitForWindow("Save New Simulation as");
    recovered.Send(answer);
    host.application->WaitFor(kDeleteMe);
    EXPECT_EQ(host.Recovery().List().size(), 1u) << "a standing answer decides nothing about it";
    recovered.Quit();

    TestSimulation again(&host, host.Recovery().List()[0]);
    answer.AddBool("CheckBox", false);
    again.Send(answer);
    EXPECT_TRUE(host.Recovery().List().empty());
}

// --- Opening over an untouched window ---

// Whatever it has built by then, it is the file's in the end.
TEST_F(SimulationSavingTest, AWindowThatIsStillBeingBuiltTakesAFileWhenItIsComplete) {
    entry_ref folder;
    ASSERT_EQ(get_ref_for_path(host.folder.Path().c_str(), &folder), B_OK);
    for (const uint32 step : {kBuildMenuBar, kBuildGlobalControls, kArrangeWindow, kShowWindow}) {
        auto* const window = new Simulation({40, 40, 240, 240}, &host);
        window->Init(std::make_unique<BMessage>(TestResources().NewSimulation()), folder, nullptr,
                     true);
        host.application->WaitFor(step);
        // The next step comes by way of the application.
        ASSERT_TRUE(host.application->Lock());
        const BMessenger target(static_cast<BHandler*>(window));
        const BMessage ping(FourCC("ping"));
        BMessage reply;
        EXPECT_EQ(target.SendMessage(&ping, &reply), B_OK);
        window->ReLoad(std::make_unique<BMessage>(PlanetRecord()), folder, "planets");
        host.application->Unlock();
        host.application->WaitFor(kSimulationShown);
        const BMessage save(kSave);
        EXPECT_EQ(target.SendMessage(&save, &reply), B_OK);
        EXPECT_EQ(window->Title(), "planets");
        BMessage saved;
        EXPECT_FALSE(SimulationFile::Read(host.Path("planets"), &saved).Failed());
        SimulationDocument document(nullptr);
        EXPECT_FALSE(document.Load(saved).Failed());
        EXPECT_EQ(document.Portal()->BodiesInMassOrder().size(), 4u);
        if (window->Lock()) window->Quit();
    }
}

TEST_F(SimulationSavingTest, AnUntouchedWindowTakesOneFileAfterTheOther) {
    TestSimulation simulation(&host);
    const auto load = [&](const BMessage& record, const char* name) {
        entry_ref folder;
        ASSERT_EQ(get_ref_for_path(host.folder.Path().c_str(), &folder), B_OK);
        simulation->ReLoad(std::make_unique<BMessage>(record), folder, name);
        EXPECT_FALSE(simulation.IsMarkedModified());
    };
    load(PlanetRecord(), "first");
    EXPECT_FALSE(simulation->IsNewlyCreated());
    load(TestResources().NewSimulation(), "second");
    BMessage damaged = PlanetRecord();
    damaged.RemoveName("Epochs");
    load(damaged, "damaged");
    EXPECT_EQ(simulation->Title(), "second");
    EXPECT_EQ(simulation.CountBodies(), 2u);
    EXPECT_EQ(simulation.CountDisplays(), 1u);
    EXPECT_NE(simulation.Message().find("damaged cannot be opened: "), std::string::npos);
    // Edits that came in between belong to the former document.
    for (const uint32 what : {kNewBody, kLogEpoch, kUndo})
        simulation.Send(what);
    load(PlanetRecord(), "third");
    simulation.Send(kUndo);
    EXPECT_EQ(simulation.CountBodies(), 4u);
    simulation.Send(kSave);
    BMessage second;
    EXPECT_NE(Read(host.Path("third")).FindMessage("Epochs", 1, &second), B_OK);
}

}  // namespace
