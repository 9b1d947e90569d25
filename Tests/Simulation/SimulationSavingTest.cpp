// Saving a simulation, reading it again, and what becomes of it where it cannot be saved.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "AppDefs.h"
#include "BScreen.h"
#include "EpochPortal.h"
#include "ProgramMessages.h"
#include "ProjectionDisplay.h"
#include "SampleDocument.h"
#include "SimulationFile.h"
#include "TestDocument.h"
#include "TestSimulation.h"
#include "UserHand.h"

namespace {

namespace fs = std::filesystem;

constexpr uint32 kNamed = FourCC("SAVE");
constexpr uint32 kEpochNamed = FourCC("sver");
constexpr uint32 kSaveThenQuit = FourCC("svtq");

int32 CountOf(const BMessage& record, const char* field) {
    int32 count = 0;
    record.GetInfo(field, nullptr, &count);
    return count;
}

BMessage Read(const std::string& path) {
    BMessage record;
    EXPECT_FALSE(SimulationFile::Read(path, &record).Failed()) << path;
    return record;
}

// As on a full disk: no file can be written.
class FullDisk {
public:
    FullDisk() {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit none{0, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &old_); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit old_{};
};

struct SimulationSavingTest : testing::Test {
    TestHost host;
};

TEST_F(SimulationSavingTest, ASavedSimulationHasTheNameTheFileAndNoMark) {
    TestSimulation simulation(&host);
    simulation.Send(kNewBody);
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

    simulation.Send(kUndo);
    EXPECT_TRUE(simulation.IsMarkedModified());
    simulation.Send(kRedo);
    EXPECT_FALSE(simulation.IsMarkedModified());
    simulation.Send(kUndo);
    simulation.Send(kNewBody);  // as many steps as were saved, but others
    EXPECT_TRUE(simulation.IsMarkedModified());
}

// Read and saved again, a document is the same: epochs, focus, displays, places of windows.
TEST_F(SimulationSavingTest, NothingOfTheRecordIsLost) {
    BMessage first;
    {
        TestSimulation simulation(&host, PlanetRecord());
        simulation.Send(kLogEpoch);
        simulation.Send(kNewBody);
        simulation.Send(kLogEpoch);
        BMessage display(kNewDisplay);
        display.AddInt32(kDisplayTypeField, ProjectionDisplay::kType);
        simulation.Send(display);
        simulation.Send(kShowAnimation);
        simulation->MoveTo({123.0f, 77.0f});
        simulation.Settle();
        first = simulation.SavedAs("one");
    }
    EXPECT_EQ(CountOf(first, "Epochs"), 1);
    EXPECT_EQ(CountOf(first, "Displays"), 2);
    EXPECT_EQ(CountOf(first, "Disp type"), 2);
    int32 focus = 0;
    EXPECT_EQ(first.FindInt32("Cur Epoch", &focus), B_OK);
    EXPECT_EQ(focus, 2);
    bool isShown = false;
    EXPECT_EQ(first.FindBool("Anim Show", &isShown), B_OK);
    EXPECT_TRUE(isShown);
    EXPECT_EQ(first.FindBool("Colors Show", &isShown), B_OK);
    EXPECT_FALSE(isShown);
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
    record.AddFloat("Updates per sec", 79.9f);
    record.AddPoint("Save at", {40.0f, 50.0f});
    record.AddFloat("Save W", 30.0f);
    record.AddFloat("Save H", 25.0f);
    BMessage display;
    display.AddRect("Disp frame", {300.0f, 90.0f, 700.0f, 390.0f});
    record.AddMessage("Displays", &display);
    record.AddMessage("Displays", &display);
    record.AddInt32("Disp type", 1);
    TestSimulation simulation(&host, record, "fields");
    EXPECT_EQ(simulation.CountDisplays(), 1u) << "the other one has no type";
    const BRect screen = BScreen(simulation.window).Frame();
    EXPECT_LE(simulation->Frame().left, screen.left + 0.9f * screen.Width());
    EXPECT_GE(simulation->Frame().top, screen.top);
    const BMessage saved = simulation.SavedAs("fields");
    float rate = 0.0f;
    EXPECT_EQ(saved.FindFloat("Updates per sec", &rate), B_OK);
    EXPECT_EQ(rate, 79.0f);
    float width = 0.0f;
    EXPECT_EQ(saved.FindFloat("Save W", &width), B_OK);
    EXPECT_EQ(width, 30.0f);
}

TEST_F(SimulationSavingTest, TheCurrentEpochAlone) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Send(kLogEpoch);
    simulation.Name(kEpochNamed, host.folder.Path(), "epoch");
    const BMessage epoch = Read(host.Path("epoch"));
    EXPECT_EQ(CountOf(epoch, "Epochs"), 1);
    EXPECT_FALSE(epoch.HasName("Cur Epoch"));
    EXPECT_EQ(simulation->Title(), "New Simulation") << "the name is kept";
    EXPECT_FALSE(simulation.IsMarkedModified());
    // The rest of the tree is in no file, so a copy is kept.
    const std::vector<RecoveryCopy> copies = host.Recovery().List();
    ASSERT_EQ(copies.size(), 1u);
    int32 focus = 0;
    EXPECT_EQ(Read(copies[0].path).FindInt32("Cur Epoch", &focus), B_OK);

    // The simulation has a place now, but nothing of another document is replaced there.
    std::ofstream(host.Path("New Simulation")) << "precious";
    simulation.Send(kSave);
    UserHand::WaitForWindow("Save New Simulation as");
    std::string text;
    std::getline(std::ifstream(host.Path("New Simulation")), text);
    EXPECT_EQ(text, "precious");
    UserHand::Press("Save New Simulation as", UserHand::Key::kEscape);
    fs::remove(host.Path("New Simulation"));
    simulation.Send(kSave);
    EXPECT_EQ(CountOf(Read(host.Path("New Simulation")), "Epochs"), 1);
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

struct Failure {
    const char* name;
    void (*prepare)(TestHost*);
};

class FailedSaveTest : public testing::TestWithParam<Failure> {
protected:
    TestHost host;
};

// The window counts as saved, and closes without a question; a complete copy is kept.
TEST_P(FailedSaveTest, LosesNothing) {
    fs::create_directory(host.Path("place"));
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Name(kNamed, host.Path("place"), "Comets");
    simulation.Send(kNewBody);
    GetParam().prepare(&host);
    simulation.Send(kSave);
    EXPECT_FALSE(simulation.IsMarkedModified());
    EXPECT_NE(simulation.Message().find("Comets could not be saved: "), std::string::npos)
        << simulation.Message();

    const std::vector<RecoveryCopy> copies = host.Recovery().List();
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_EQ(copies[0].documentName, "Comets");
    EXPECT_EQ(copies[0].originalPath, host.Path("place") + "/Comets");
    TestSimulation recovered(&host, copies[0]);
    EXPECT_EQ(recovered.CountBodies(), 5u);
    EXPECT_EQ(recovered->Title(), "Comets");
    EXPECT_TRUE(recovered.IsMarkedModified());
    EXPECT_FALSE(recovered->IsNewlyCreated());

    simulation.Send(B_QUIT_REQUESTED);
    void* doomed = nullptr;
    EXPECT_EQ(host.application->WaitFor(kDeleteMe).FindPointer(kDoomedSimulation, &doomed), B_OK);
    EXPECT_EQ(doomed, simulation.window);
    // Saved elsewhere, there is no more need for the copy.
    recovered.Name(kNamed, host.folder.Path(), "Comets");
    EXPECT_TRUE(host.Recovery().List().empty());
    EXPECT_FALSE(recovered.IsMarkedModified());
}

INSTANTIATE_TEST_SUITE_P(
    Reasons, FailedSaveTest,
    testing::Values(Failure{"FolderIsGone",
                            [](TestHost* host) { fs::remove_all(host->Path("place")); }},
                    Failure{"FolderIsAFileNow",
                            [](TestHost* host) {
                                fs::remove_all(host->Path("place"));
                                std::ofstream(host->Path("place")) << "x";
                            }},
                    Failure{"FileIsAFolderNow",
                            [](TestHost* host) {
                                fs::remove(host->Path("place/Comets"));
                                fs::create_directory(host->Path("place/Comets"));
                            }}),
    [](const auto& failure) { return std::string(failure.param.name); });

// Not even a copy can be made: then the simulation is not saved, and does not close.
TEST_F(SimulationSavingTest, WithoutASpareByteItStaysOpen) {
    TestSimulation simulation(&host, PlanetRecord());
    simulation.Name(kNamed, host.folder.Path(), "Comets");
    simulation.Send(kNewBody);
    {
        const FullDisk full;
        simulation.Send(kSave);
        EXPECT_TRUE(simulation.IsMarkedModified());
        BMessage quit(kSaveThenQuit);
        quit.AddBool("CheckBox", false);
        simulation.Send(quit);
    }
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

TEST_F(SimulationSavingTest, AtTheEndOfASessionACopyIsKeptOfWhatIsNotSaved) {
    TestSimulation saved(&host, PlanetRecord(), "saved");
    TestSimulation edited(&host, PlanetRecord(), "edited");
    TestSimulation running(&host, PlanetRecord());
    edited.Send(kNewBody);
    running.Send(kTogglePause);
    for (TestSimulation* simulation : {&saved, &edited, &running})
        EXPECT_EQ(simulation->Send(Simulation::kKeepRecoveryCopy).what, B_REPLY);
    edited.Send(Simulation::kKeepRecoveryCopy);
    EXPECT_EQ(running.GoLabel(), "Pause") << "the session may go on";
    EXPECT_TRUE(edited.IsMarkedModified());
    std::vector<std::string> names;
    for (const RecoveryCopy& copy : host.Recovery().List())
        names.push_back(copy.documentName + '=' + copy.originalPath);
    std::ranges::sort(names);
    EXPECT_EQ(names,
              (std::vector<std::string>{"New Simulation=", "edited=" + host.Path("edited")}));
    running.Send(kTogglePause);
}

TEST_F(SimulationSavingTest, AutomaticCopiesComeAndGo) {
    const auto copies = [this] { return host.Recovery().List(); };
    TestSimulation simulation(&host, PlanetRecord(), "edited");
    simulation.Send(Simulation::kKeepAutomaticCopy);
    EXPECT_TRUE(copies().empty()) << "nothing has changed";
    simulation.Send(kNewBody);
    simulation.Send(Simulation::kKeepAutomaticCopy);
    ASSERT_EQ(copies().size(), 1u);
    EXPECT_TRUE(simulation.IsMarkedModified());
    TestSimulation copied(&host, Read(copies()[0].path));
    EXPECT_EQ(copied.CountBodies(), simulation.CountBodies());
    // Only after a change there is another one.
    std::filesystem::remove(copies()[0].path);
    simulation.Send(Simulation::kKeepAutomaticCopy);
    EXPECT_TRUE(copies().empty());
    simulation.Send(kTogglePause);
    for (int i = 0; i < 2; i++) {
        simulation.Send(Simulation::kKeepAutomaticCopy);
        EXPECT_EQ(copies().size(), 1u);
        std::filesystem::remove(copies()[0].path);
    }
    EXPECT_EQ(simulation.GoLabel(), "Pause");
    simulation.Send(kTogglePause);
    simulation.Send(Simulation::kKeepAutomaticCopy);
    EXPECT_EQ(copies().size(), 1u);
    simulation.Send(kSave);
    EXPECT_TRUE(copies().empty());
    // The user decides against the changes: takes them back, or closes without saving.
    simulation.Send(kNewBody);
    simulation.Send(Simulation::kKeepAutomaticCopy);
    simulation.Send(kUndo);
    simulation.Send(Simulation::kKeepAutomaticCopy);
    EXPECT_TRUE(copies().empty());
    simulation.Send(kNewBody);
    simulation.Send(Simulation::kKeepAutomaticCopy);
    simulation.Send(FourCC("rlyq"));
    host.application->WaitFor(kDeleteMe);
    EXPECT_TRUE(copies().empty());
}

TEST_F(SimulationSavingTest, ACopyThatIsNeededOutlivesAutomaticOnes) {
    {
        TestSimulation simulation(&host, PlanetRecord());
        simulation.Send(kNewBody);
        simulation.Send(Simulation::kKeepAutomaticCopy);
        simulation.Send(Simulation::kKeepRecoveryCopy);
        simulation.Send(kNewBody);
        simulation.Send(Simulation::kKeepAutomaticCopy);
        simulation.Send(FourCC("rlyq"));
        host.application->WaitFor(kDeleteMe);
    }
    EXPECT_EQ(host.Recovery().List().size(), 1u);
}

TEST_F(SimulationSavingTest, WhatWasRecoveredGoesWhenTheUserSaysSo) {
    {
        TestSimulation edited(&host, PlanetRecord());
        edited.Send(kNewBody);
        edited.Send(Simulation::kKeepRecoveryCopy);
    }
    ASSERT_EQ(host.Recovery().List().size(), 1u);
    TestSimulation recovered(&host, host.Recovery().List()[0]);
    EXPECT_EQ(recovered->Title(), "New Simulation");
    recovered.Send(kSave);  // it never had a file
    UserHand::WaitForWindow("Save New Simulation as");
    BMessage standing(FourCC("rlyq"));
    recovered.Send(standing);
    host.application->WaitFor(kDeleteMe);
    EXPECT_EQ(host.Recovery().List().size(), 1u) << "a standing answer decides nothing about it";
    recovered.Quit();

    TestSimulation again(&host, host.Recovery().List()[0]);
    BMessage dontSave(FourCC("rlyq"));
    dontSave.AddBool("CheckBox", false);
    again.Send(dontSave);
    EXPECT_TRUE(host.Recovery().List().empty());
}

// --- Opening over an untouched window ---

TEST_F(SimulationSavingTest, AnUntouchedWindowTakesOneFileAfterTheOther) {
    TestSimulation simulation(&host);
    entry_ref folder;
    ASSERT_EQ(get_ref_for_path(host.folder.Path().c_str(), &folder), B_OK);
    simulation->ReLoad(std::make_unique<BMessage>(PlanetRecord()), folder, "first");
    EXPECT_FALSE(simulation->IsNewlyCreated());
    simulation->ReLoad(std::make_unique<BMessage>(TestResources().NewSimulation()), folder,
                       "second");
    EXPECT_EQ(simulation->Title(), "second");
    EXPECT_EQ(simulation.CountBodies(), 2u);
    EXPECT_EQ(simulation.CountDisplays(), 1u);
    EXPECT_FALSE(simulation.IsMarkedModified());
    BMessage damaged = PlanetRecord();
    damaged.RemoveName("Epochs");
    simulation->ReLoad(std::make_unique<BMessage>(damaged), folder, "damaged");
    EXPECT_EQ(simulation->Title(), "second");
    EXPECT_EQ(simulation.CountBodies(), 2u);
    EXPECT_NE(simulation.Message().find("damaged cannot be opened: "), std::string::npos);
    // Edits that came in between belong to the former document.
    simulation.Send(kNewBody);
    simulation.Send(kLogEpoch);
    simulation.Send(kLogEpoch);
    BMessage remove(kDeleteEpoch);
    remove.AddInt32(kEpochIndexField, 1);
    simulation.Send(remove);
    simulation.Send(kUndo);
    simulation->ReLoad(std::make_unique<BMessage>(PlanetRecord()), folder, "third");
    EXPECT_FALSE(simulation.IsMarkedModified());
    simulation.Send(kUndo);
    EXPECT_EQ(simulation.CountBodies(), 4u);
    simulation.Send(kSave);
    EXPECT_EQ(CountOf(Read(host.Path("third")), "Epochs"), 1);
}

}  // namespace
