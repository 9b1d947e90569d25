// The box in which the system in focus is edited, by hand.
#include <atomic>
#include <semaphore>
#include <thread>

#include "Interface Widgets/Entry.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Kernel/OS.h"
#include "Simulation/GroupWindow.h"
#include "Simulation/Settings/BodySettingsBox.h"
#include "Tests/Simulation/SettingsFixture.h"

using BodySettings = SettingsFixture;

TEST_F(BodySettings, TypedNumbersAreEditsInTheUnitShownOrTyped) {
    Enter("Mass:", "0.7");
    EXPECT_EQ(Of(1, &MassSystem::M), 0.7 * kEarthMass);
    // Shown as it was typed, whatever the last bit of the quotient.
    EXPECT_EQ(hand.Text("Mass:"), "0.7");
    Enter("Mass:", "2 solar masses");
    EXPECT_EQ(Of(1, &MassSystem::M), 2 * kSolarMass);
    EXPECT_EQ(hand.Text("Mass:"), "2");
    EXPECT_EQ(hand.Chosen("Mass: unit"), "Ms");
    EXPECT_EQ(CountEdits(), 2);
    Undo();
    EXPECT_EQ(hand.Text("Mass:"), "0.7");
    EXPECT_EQ(hand.Chosen("Mass: unit"), "Me");
    // Another writing of what is in force is no edit, and is shown as usual.
    Enter("Mass:", " +0.70 ");
    EXPECT_EQ(hand.Text("Mass:"), "0.7");
    EXPECT_EQ(CountEdits(), 1);
}

TEST_F(BodySettings, AUnitIsAnEditAndWhatIsHalfTypedBelongsToTheFormerOne) {
    Choose("Radius: unit", "Kilometers");
    EXPECT_EQ(hand.Text("Radius:"), "6378.137");
    EXPECT_EQ(Of(1, &MassSystem::RadiusUval), 1000.0);
    Choose("Velocity unit", "Miles/Hour");
    EXPECT_EQ(Of(1, &MassSystem::SpeedUval), 0.44704);
    EXPECT_EQ(CountEdits(), 2);
    hand.Type("Radius:", "7000");
    Choose("Radius: unit", "Meters");
    EXPECT_EQ(Of(1, &MassSystem::Radius), 7e6);
    EXPECT_EQ(hand.Text("Radius:"), "7000000");
}

TEST_F(BodySettings, WhatCannotBeTakenStaysUntilEscapeAndSaysWhy) {
    struct Case {
        const char* line;
        const char* typed;
        const char* shown;
        const char* why;
        const char* units;
    };
    constexpr Case kCases[] = {
        {"Mass:", "heavy", "1", "Not a number", "Units: kg, g, Me, Mj, Ms"},
        {"Mass:", "2 km", "1", "Not a unit", "Units: kg, g, Me, Mj, Ms"},
        {"Radius:", "2 lights", "1", "Not a unit", "Units: m, cm, km, AU, Re, mi, ly, pc"},
        {"Position X:", "1e400", "2", "Not a number", "Units: m, "},
        {"Velocity Vz:", "1,234.5", "-4", "Not a number", "Units: m/s, "},
        {"Name:", "  ", "BoskVeld", "A name is needed", ""},
    };
    for (const Case& wrong : kCases) {
        SCOPED_TRACE(wrong.typed);
        Enter(wrong.line, wrong.typed);
        EXPECT_EQ(hand.Text(wrong.line), wrong.typed);
        EXPECT_TRUE(hand.IsRefused(wrong.line));
        EXPECT_TRUE(hand.Hint().starts_with(wrong.why)) << hand.Hint();
        EXPECT_NE(hand.Hint().find(wrong.units), std::string::npos) << hand.Hint();
        // Not even Go, a save or another edit takes it away.
        portal->CommitChanges();
        Change([](AbEpoch& epoch) { epoch.SetTime(epoch.Time() + 1); }, -1);
        EXPECT_EQ(hand.Text(wrong.line), wrong.typed);
        hand.Escape(wrong.line);
        EXPECT_EQ(hand.Text(wrong.line), wrong.shown);
        EXPECT_FALSE(hand.IsRefused(wrong.line));
    }
    EXPECT_EQ(CountEdits(), 0);
    // It was meant for one body only.
    Enter("Mass:", "heavy");
    Choose("Edit:", "Arrakis");
    EXPECT_EQ(hand.Text("Mass:"), "1");
    EXPECT_FALSE(hand.IsRefused("Mass:"));
    // A number can be fine alone and too far from where it is counted from.
    Change(
        [](AbEpoch& epoch) {
            epoch.SystemFromID(1)->SetPosition({1e308, 0, 0});
        },
        kPositionChanged);
    Choose("Relative to:", "BoskVeld");
    Enter("Position X:", "1.7e308 m");
    EXPECT_TRUE(hand.IsRefused("Position X:"));
    EXPECT_TRUE(hand.Hint().starts_with("Out of range")) << hand.Hint();
}

TEST_F(BodySettings, NumbersAreTypedInAnyLanguageAndShownWithSevenDigits) {
    Enter("Radius:", "6 378,137 km");
    EXPECT_EQ(Of(1, &MassSystem::Radius), 6378137.0);
    Enter("Velocity Vx:", "36 km/h");
    EXPECT_DOUBLE_EQ(Of(1, &MassSystem::Velocity).x, 10.0);
    EXPECT_EQ(hand.Chosen("Velocity unit"), "kph");
    // A unit that no menu has leaves the one that is shown.
    Enter("Position X:", "1 ly");
    EXPECT_EQ(Of(1, &MassSystem::Position).x, 9460730472580800.0);
    EXPECT_EQ(hand.Chosen("Position unit"), "AU");
    EXPECT_GT(hand.Text("Position X:").size(), std::string("63241.07710").size()) << "all digits";
    const int edits = CountEdits();
    Enter("Position Y:", "1");
    EXPECT_EQ(hand.Text("Position X:"), "63241.08");
    EXPECT_EQ(Of(1, &MassSystem::Position).x, 9460730472580800.0);
    EXPECT_EQ(CountEdits(), edits + 1) << "a value that is shown briefly is not edited";
}

TEST_F(BodySettings, AnyThreadCommitsWhileTheWindowIsLocked) {
    simulation->Lock();
    hand.Type("Name:", "Caladan");
    hand.Type("Mass:", "3");
    for (const bool isPending : {true, false})
        std::thread([&] { EXPECT_EQ(portal->CommitChanges(), isPending); }).join();
    EXPECT_EQ(Of(1, &MassSystem::M), 3 * kEarthMass);
    simulation->Unlock();
    Settle();
    EXPECT_EQ(CountEdits(), 2);
    EXPECT_EQ(hand.Chosen("Edit:"), "Caladan");
}

// A server that is busy keeps nobody waiting who commits. With the window of epochs open there is
// one more place in which text may be half typed.
TEST_F(BodySettings, EnterGoAndSaveAskTheWindowServerHardlyAnything) {
    constexpr int64 kMax = 2;
    Send(BMessage(kShowEpochs));
    hand.Type("Mass:", "3");
    int64 before = WindowServer::CountQuestions();
    hand.PressEnterSoon("Mass:");
    for (int i = 0; i < 1000 && CountEdits() == 0; i++)
        snooze(10'000);
    simulation.Send(kRedisplay);
    EXPECT_EQ(Of(1, &MassSystem::M), 3 * kEarthMass);
    EXPECT_LE(WindowServer::CountQuestions() - before, kMax);

    const auto questionsOf = [&](const auto& what) {
        hand.Type("Radius:", "2");
        const int64 edits = CountEdits();
        before = WindowServer::CountQuestions();
        what();
        EXPECT_GT(CountEdits(), edits);
        return WindowServer::CountQuestions() - before;
    };
    EXPECT_LE(questionsOf([&] { simulation.Name(FourCC("SAVE"), host.folder.Path(), "two"); }),
              kMax);
    EXPECT_LE(questionsOf([&] { simulation.Send(kTogglePause); }), kMax);
    simulation.Send(kTogglePause);
}

TEST_F(BodySettings, ARefreshDoesNotTouchWhatIsBeingTyped) {
    hand.Type("Name:", "Cala");
    Change([](AbEpoch& epoch) { epoch.SystemFromID(1)->SetName("Giedi"); }, kBodyDataChanged);
    EXPECT_EQ(hand.Text("Name:"), "Cala");
    hand.Escape("Name:");
    EXPECT_EQ(hand.Text("Name:"), "Giedi");
}

// The window may commit at any moment: for a run, a save, an edit elsewhere.
TEST_F(BodySettings, ACommitInTheMiddleOfANumberDisturbsNobody) {
    const std::string number = "-3.5e-2";
    hand.Type("Velocity Vx:", "");
    for (std::size_t i = 1; i <= number.size(); i++) {
        hand.Add("Velocity Vx:", number.substr(i - 1, 1));
        portal->CommitChanges();
        Settle();
        EXPECT_EQ(hand.Text("Velocity Vx:"), number.substr(0, i));
        EXPECT_FALSE(hand.IsRefused("Velocity Vx:"));
    }
    EXPECT_EQ(Of(1, &MassSystem::Velocity).x, -0.035 * 1000.0);
}

TEST_F(BodySettings, HalfTypedTextGoesToTheSystemForWhichItWasTyped) {
    hand.Type("Mass:", "4");
    Choose("Edit:", "Arrakis");
    EXPECT_EQ(Of(1, &MassSystem::M), 4 * kEarthMass);
    EXPECT_EQ(Of(0, &MassSystem::M), kSolarMass);
    // Also when nobody asked for pending edits before the focus went.
    hand.Type("Radius:", "50");
    Focus(1);
    EXPECT_EQ(Of(0, &MassSystem::Radius), 50 * 6378137.0);
    EXPECT_EQ(Of(1, &MassSystem::Radius), 6378137.0);
    EXPECT_EQ(hand.Text("Radius:"), "1");
}

TEST_F(BodySettings, ComponentsAreShownAndTakenRelativeToAnotherSystem) {
    EXPECT_EQ(hand.CountChoices("Relative to:"), 2);  // not itself
    Change(
        [](AbEpoch& epoch) {
            epoch.SystemFromID(0)->SetPosition({kAU, 0, 0});
            epoch.SystemFromID(1)->SetPosition({kAU, 1.0 / 3.0, -1e22 / 7.0});
        },
        kPositionChanged);
    Choose("Relative to:", "Arrakis");
    EXPECT_EQ(hand.Chosen("Relative to:"), "Arrakis");
    EXPECT_EQ(hand.Text("Position X:"), "0");
    // A unit that is typed behind one component is that of the next ones, too.
    Enter("Position X:", "384400 km");
    EXPECT_EQ(hand.Chosen("Position unit"), "km");
    hand.Type("Position Y:", "2");
    hand.Type("Position Z:", "x");  // Y was entered when it was left
    hand.Escape("Position Z:");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::Position), (ThreeVector{kAU + 384400e3, 2e3, -1e22 / 7.0}));
    for (int i = 0; i < 3; i++)
        Undo();
    EXPECT_EQ(hand.Chosen("Relative to:"), "Origin");
    EXPECT_EQ(hand.Text("Position X:"), "1");
}

// The model has sums, of which a difference is not what was typed.
TEST_F(BodySettings, WhatIsTypedRelativeToAnotherBodyStaysAsItWasTyped) {
    constexpr double kSpeed = 29784.7;
    Change(
        [](AbEpoch& epoch) {
            epoch.SystemFromID(0)->SetVelocity({kSpeed, 0, 0});
        },
        kVelocityChanged);
    Choose("Relative to:", "Arrakis");
    Enter("Velocity Vx:", "13 km/s");
    ASSERT_NE(Of(1, &MassSystem::Velocity).x - kSpeed, 13000.0);
    EXPECT_EQ(hand.Text("Velocity Vx:"), "13");
    Enter("Velocity Vx:", "13.00000000001");
    EXPECT_NE(hand.Text("Velocity Vx:"), "13");
}

TEST_F(BodySettings, AGroupHasItsMembersBelowItAndItsMassFromThem) {
    BMessage pair(GroupWindow::kGroup);
    for (const int64 id : {0, 1})
        pair.AddInt64(kBodyIDField, id);
    pair.AddString(GroupWindow::kNameField, "Pair");
    Send(pair);
    const int64 group = portal->FocusSystem()->ID();
    const double mass = Of(group, &MassSystem::M);
    EXPECT_EQ(hand.Chosen("Edit:"), "Pair");
    EXPECT_EQ(hand.CountChoices("Edit:"), 3);
    Enter("Mass:", "7");
    EXPECT_EQ(Of(group, &MassSystem::M), mass);
    Choose("Mass: unit", "Earth Masses");
    EXPECT_EQ(Of(group, &MassSystem::MassUval), kEarthMass);
    Choose("Edit:", "BoskVeld");
    Enter("Mass:", "7");
    EXPECT_EQ(Of(1, &MassSystem::M), 7 * kEarthMass);
}

// Or a run that begins at this moment would write over what is entered.
TEST_F(BodySettings, DisablingAnEntryAwaitsWhatIsJustBeingCommitted) {
    class SlowEntry : public Entry {
    public:
        SlowEntry() : Entry("slow", B_VERTICAL) {}
        void Read() override {}
        void ReadFrom(const EpochPortal&) override {}
        void ShowValue() override {}

        std::binary_semaphore begins{0};
        std::binary_semaphore mayEnd{0};
        std::atomic<bool> hasEnded{false};

    protected:
        bool CommitPending() override {
            begins.release();
            mayEnd.acquire();
            hasEnded = true;
            return true;
        }
        void ShowEnabled(bool) override {}
    } entry;
    std::thread committer([&] { EXPECT_TRUE(entry.Commit()); });
    entry.begins.acquire();
    std::thread starter([&] {
        entry.SetEnabled(false);
        EXPECT_TRUE(entry.hasEnded);
    });
    snooze(20'000);  // for a starter that does not wait
    entry.mayEnd.release();
    committer.join();
    starter.join();
}

TEST_F(BodySettings, RestsDuringARunButForNameAndTrail) {
    hand.Type("Mass:", "7");
    EnableRunControls<BodySettingsBox>("Body Settings", false);
    Enter("Name:", "Caladan");  // a refresh does not wake the others up
    EXPECT_EQ(Of(1, &MassSystem::Name), "Caladan");
    for (const char* line : {"Mass:", "Radius:", "Position X:", "Velocity Vz:", "Position unit"})
        EXPECT_FALSE(hand.IsEnabled(line)) << line;
    for (const char* line : {"Name:", "Edit:", "Relative to:", "Trail & Disc…"})
        EXPECT_TRUE(hand.IsEnabled(line)) << line;
    // What was typed in the moment of the start waits: the run would write over it.
    EXPECT_EQ(Of(1, &MassSystem::M), kEarthMass);
    EnableRunControls<BodySettingsBox>("Body Settings", true);
    EXPECT_TRUE(hand.IsEnabled("Mass:"));
    portal->CommitChanges();
    EXPECT_EQ(Of(1, &MassSystem::M), 7 * kEarthMass);
    // Without a system in focus there is nothing to edit.
    Focus(kNoSystemID);
    EXPECT_FALSE(hand.IsEnabled("Name:"));
    EXPECT_EQ(hand.Text("Mass:"), "");
}
