// The box in which the system in focus is edited, by hand.
#include <atomic>
#include <semaphore>
#include <thread>

#include "ChangeFlags.h"
#include "CompositeSystem.h"
#include "Entry.h"
#include "LockingCommand.h"
#include "OS.h"
#include "SetSystemToCommand.h"
#include "SettingsFixture.h"

class BodySettings : public SettingsFixture {};

TEST_F(BodySettings, TypedNumbersAreEditsInTheUnitShownOrTyped) {
    EXPECT_EQ(hand.Text("Name:"), "BoskVeld");
    EXPECT_EQ(hand.Text("Mass:"), "1");
    EXPECT_EQ(hand.Chosen("Mass: unit"), "Me");
    EXPECT_EQ(hand.Text("Velocity Vy:"), "14");

    hand.Type("Mass:", "0.7");
    hand.Enter("Mass:");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::M), 0.7 * kEarthMass);
    // Shown as it was typed, whatever the last bit of the quotient.
    EXPECT_EQ(hand.Text("Mass:"), "0.7");

    hand.Type("Mass:", "2 solar masses");
    hand.Enter("Mass:");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::M), 2 * kSolarMass);
    EXPECT_EQ(hand.Text("Mass:"), "2");
    EXPECT_EQ(hand.Chosen("Mass: unit"), "Ms");
    EXPECT_EQ(CountEdits(), 2);

    Undo();
    EXPECT_EQ(Of(1, &MassSystem::M), 0.7 * kEarthMass);
    EXPECT_EQ(hand.Text("Mass:"), "0.7");
    EXPECT_EQ(hand.Chosen("Mass: unit"), "Me");

    // Another writing of what is in force is no edit, and is shown as usual.
    hand.Type("Mass:", " +0.70 ");
    hand.Enter("Mass:");
    Settle();
    EXPECT_EQ(hand.Text("Mass:"), "0.7");
    EXPECT_EQ(CountEdits(), 1);
}

TEST_F(BodySettings, AUnitIsAnEditThatKeepsTheValueToTheBit) {
    hand.Choose("Radius: unit", "Kilometers");
    Settle();
    EXPECT_EQ(hand.Text("Radius:"), "6378.137");
    EXPECT_EQ(Of(1, &MassSystem::Radius), 6378137.0);
    EXPECT_EQ(Of(1, &MassSystem::RadiusUval), 1000.0);
    const ThreeVector velocity = Of(1, &MassSystem::Velocity);
    hand.Choose("Velocity unit", "Miles/Hour");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::SpeedUval), 0.44704);
    EXPECT_EQ(Of(1, &MassSystem::Velocity), velocity);
    EXPECT_EQ(CountEdits(), 2);

    // What is half typed belongs to the unit in which it was begun.
    hand.Type("Radius:", "7000");
    hand.Choose("Radius: unit", "Meters");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::Radius), 7e6);
    EXPECT_EQ(hand.Text("Radius:"), "7000000");
    Undo();
    Undo();
    Undo();
    EXPECT_EQ(hand.Text("Radius:"), "6378.137");
    EXPECT_EQ(hand.Chosen("Velocity unit"), "km/s");
}

TEST_F(BodySettings, WhatCannotBeTakenGivesWayAndSaysWhy) {
    struct Case {
        const char* line;
        const char* typed;
        const char* shown;
        const char* why;
    };
    constexpr Case kCases[] = {
        {"Mass:", "heavy", "1", "Not a number"},
        {"Mass:", "2 km", "1", "Not a unit"},
        {"Position X:", "1e400", "2", "Not a number"},
        {"Velocity Vz:", "1,5", "-4", "Not a number"},
        {"Name:", "  ", "BoskVeld", "A name is needed"},
    };
    for (const Case& wrong : kCases) {
        SCOPED_TRACE(wrong.typed);
        hand.Type(wrong.line, wrong.typed);
        hand.Enter(wrong.line);
        Settle();
        EXPECT_EQ(hand.Text(wrong.line), wrong.shown);
        EXPECT_TRUE(hand.IsRefused(wrong.line));
        EXPECT_TRUE(hand.Hint().starts_with(wrong.why)) << hand.Hint();
        hand.Type(wrong.line, "3");
        EXPECT_FALSE(hand.IsRefused(wrong.line));
        hand.Escape(wrong.line);
        EXPECT_EQ(hand.Text(wrong.line), wrong.shown);
    }
    EXPECT_EQ(CountEdits(), 0);
}

TEST_F(BodySettings, AnyThreadCommitsWhileTheWindowIsLocked) {
    window->Lock();
    hand.Type("Name:", "Caladan");
    hand.Type("Mass:", "3");
    bool changed = false;
    std::thread([&] { changed = portal->CommitChanges(); }).join();
    EXPECT_TRUE(changed);
    EXPECT_EQ(Of(1, &MassSystem::Name), "Caladan");
    EXPECT_EQ(Of(1, &MassSystem::M), 3 * kEarthMass);
    std::thread([&] { changed = portal->CommitChanges(); }).join();
    EXPECT_FALSE(changed);
    window->Unlock();
    Settle();
    EXPECT_EQ(CountEdits(), 2);
    EXPECT_EQ(hand.Chosen("Edit:"), "Caladan");
}

TEST_F(BodySettings, AReadOnlyEpochIsLeftAsItWas) {
    AbEpoch* const before = portal->FocusEpoch();
    before->SetWriteable(false);
    hand.Type("Position Y:", "-0.5");
    hand.Enter("Position Y:");
    Settle();
    ASSERT_NE(portal->FocusEpoch(), before);
    EXPECT_EQ(portal->FocusEpoch()->Parent(), before);
    EXPECT_EQ(Of(1, &MassSystem::Position).y, -0.5 * kAU);
    EXPECT_EQ(before->SystemFromID(1)->Position().y, 0.0);
    Undo();
    EXPECT_EQ(portal->FocusEpoch(), before);
    EXPECT_EQ(hand.Text("Position Y:"), "0");
}

TEST_F(BodySettings, ARefreshDoesNotTouchWhatIsBeingTyped) {
    hand.Type("Name:", "Cala");
    Change(
        [](AbEpoch& epoch) {
            epoch.SystemFromID(1)->SetName("Giedi");
            epoch.SystemFromID(1)->SetM(5 * kEarthMass);
        },
        kBodyDataChanged);
    EXPECT_EQ(hand.Text("Name:"), "Cala");
    EXPECT_EQ(hand.Text("Mass:"), "5");
    hand.Escape("Name:");
    EXPECT_EQ(hand.Text("Name:"), "Giedi");
    EXPECT_EQ(CountEdits(), 0);
}

TEST_F(BodySettings, ACommitInTheMiddleOfANumberDisturbsNobody) {
    // The window may commit at any moment: for a run, a save, an edit elsewhere.
    std::string typed;
    for (const char* key : {"-", "3", ".", "5", "e", "-", "2"}) {
        hand.Add("Velocity Vx:", key);
        typed += key;
        portal->CommitChanges();
        Settle();
        EXPECT_EQ(hand.Text("Velocity Vx:"), typed);
        EXPECT_FALSE(hand.IsRefused("Velocity Vx:"));
    }
    EXPECT_EQ(Of(1, &MassSystem::Velocity).x, -0.035 * 1000.0);
    hand.Enter("Velocity Vx:");
    Settle();
    EXPECT_EQ(hand.Text("Velocity Vx:"), "-0.035");
}

TEST_F(BodySettings, HalfTypedTextGoesToTheSystemForWhichItWasTyped) {
    hand.Type("Mass:", "4");
    hand.Choose("Edit:", "Arrakis");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::M), 4 * kEarthMass);
    EXPECT_EQ(Of(0, &MassSystem::M), 1.3271244e20);
    EXPECT_EQ(hand.Text("Name:"), "Arrakis");
    EXPECT_EQ(hand.Chosen("Mass: unit"), "Ms");

    // Also when nobody asked for pending edits before the focus went.
    hand.Type("Radius:", "50");
    portal->WriteLock();
    portal->SetSystemFromID(1);
    portal->TellObservers(kFocusSystemChanged);
    portal->WriteUnlock();
    Settle();
    EXPECT_EQ(Of(0, &MassSystem::Radius), 50 * 6378137.0);
    EXPECT_EQ(Of(1, &MassSystem::Radius), 6378137.0);
    EXPECT_EQ(hand.Text("Radius:"), "1");
}

TEST_F(BodySettings, AComponentLeavesTheOthersAsTheyAre) {
    Change(
        [](AbEpoch& epoch) {
            epoch.SystemFromID(1)->SetPosition({0.1 * 3, 1.0 / 3.0, -1e22 / 7.0});
        },
        kPositionChanged);
    const ThreeVector before = Of(1, &MassSystem::Position);
    hand.Type("Position X:", "384400 km");
    hand.Enter("Position X:");
    Settle();
    EXPECT_EQ(hand.Chosen("Position unit"), "km");
    hand.Type("Position Y:", "2");
    hand.Type("Position Z:", "x");  // Y was entered when it was left
    hand.Escape("Position Z:");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::Position), (ThreeVector{384400e3, 2e3, before.z}));
    Undo();
    Undo();
    EXPECT_EQ(Of(1, &MassSystem::Position), before);
}

TEST_F(BodySettings, ShowsAndTakesVectorsRelativeToAnotherSystem) {
    EXPECT_EQ(hand.Chosen("Relative to:"), "Origin");
    EXPECT_EQ(hand.CountChoices("Relative to:"), 2);  // not itself
    Change(
        [](AbEpoch& epoch) {
            epoch.SystemFromID(0)->SetPosition({kAU, 0, 0});
        },
        kPositionChanged);
    hand.Choose("Relative to:", "Arrakis");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::RelativeTo), 0);
    EXPECT_EQ(hand.Chosen("Relative to:"), "Arrakis");
    EXPECT_EQ(hand.Text("Position X:"), "1");
    hand.Type("Position X:", "3");
    hand.Enter("Position X:");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::Position).x, 4 * kAU);
    Undo();
    Undo();
    EXPECT_EQ(hand.Chosen("Relative to:"), "Origin");
    EXPECT_EQ(hand.Text("Position X:"), "2");
}

TEST_F(BodySettings, AGroupHasItsMembersBelowItAndItsMassFromThem) {
    InWindow([this] { controller.GroupSystems({0, 1}, "Pair"); });
    EXPECT_EQ(hand.Chosen("Edit:"), "Pair");
    EXPECT_EQ(hand.CountChoices("Edit:"), 3);
    const double mass = Of(portal->FocusSystem()->ID(), &MassSystem::M);
    hand.Type("Mass:", "7");
    hand.Enter("Mass:");
    Settle();
    EXPECT_EQ(Of(portal->FocusSystem()->ID(), &MassSystem::M), mass);
    hand.Choose("Mass: unit", "Earth Masses");
    Settle();
    EXPECT_EQ(Of(portal->FocusSystem()->ID(), &MassSystem::MassUval), kEarthMass);
    hand.Choose("Edit:", "BoskVeld");
    Settle();
    EXPECT_EQ(portal->FocusSystem()->ID(), 1);
    hand.Type("Mass:", "7");
    hand.Enter("Mass:");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::M), 7 * kEarthMass);
}

TEST_F(BodySettings, TabGoesAsOneReadsAndEverythingHasAName) {
    EXPECT_EQ(hand.TabOrder(), (std::vector<std::string>{"Edit:",
                                                         "New Body",
                                                         "Name:",
                                                         "Trail & Disc…",
                                                         "Mass:",
                                                         "Mass: unit",
                                                         "Radius:",
                                                         "Radius: unit",
                                                         "Relative to:",
                                                         "Position unit",
                                                         "Position X:",
                                                         "Position Y:",
                                                         "Position Z:",
                                                         "Velocity unit",
                                                         "Velocity Vx:",
                                                         "Velocity Vy:",
                                                         "Velocity Vz:",
                                                         "Go",
                                                         "Time:",
                                                         "Time: unit",
                                                         " Now ",
                                                         "Upon \"Go\"",
                                                         "Correction Cutoff",
                                                         "Ignore corrections smaller than",
                                                         "Order:"}));
}

// Or a run that begins at this moment would write over what is entered.
TEST_F(BodySettings, DisablingAnEntryAwaitsWhatIsJustBeingCommitted) {
    class SlowEntry : public Entry {
    public:
        SlowEntry() : Entry("slow", B_VERTICAL) {}
        void Read() override {}
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
    InWindow([this] { window->body->EnableRunControls(false); });
    for (const char* line : {"Mass:", "Radius:", "Position X:", "Velocity Vz:", "Position unit"})
        EXPECT_FALSE(hand.IsEnabled(line)) << line;
    for (const char* line : {"Name:", "Edit:", "Relative to:", "Trail & Disc…"})
        EXPECT_TRUE(hand.IsEnabled(line)) << line;
    hand.Type("Name:", "Caladan");
    hand.Enter("Name:");
    Settle();
    EXPECT_EQ(Of(1, &MassSystem::Name), "Caladan");
    // A refresh does not wake them up.
    EXPECT_FALSE(hand.IsEnabled("Mass:"));
    // What was typed in the moment of the start waits: the run would write over it.
    EXPECT_EQ(Of(1, &MassSystem::M), kEarthMass);
    InWindow([this] { window->body->EnableRunControls(true); });
    EXPECT_TRUE(hand.IsEnabled("Mass:"));
    portal->CommitChanges();
    EXPECT_EQ(Of(1, &MassSystem::M), 7 * kEarthMass);

    // Without a system in focus there is nothing to edit.
    portal->WriteLock();
    portal->SetSystemTo(nullptr);
    portal->TellObservers(kFocusSystemChanged);
    portal->WriteUnlock();
    Settle();
    EXPECT_FALSE(hand.IsEnabled("Name:"));
    EXPECT_EQ(hand.Text("Mass:"), "");
}

namespace {

BMessage CrowdRecord(int count) {
    Epoch epoch;
    for (int i = 0; i < count; i++)
        epoch.RootSystem()->AddChild(
            MakeBody(("Body " + std::to_string(i)).c_str(), i, 1e10, {1e9 * i, 0, 0}, {})
                .release());
    return RecordOf({&epoch});
}

}  // namespace

class CrowdSettings : public SettingsFixture {
protected:
    static constexpr int kCount = 5000;
    CrowdSettings() : SettingsFixture(CrowdRecord(kCount)) {}
};

TEST_F(CrowdSettings, ManyBodiesCostNothingNoticeable) {
    EXPECT_EQ(hand.CountChoices("Edit:"), kCount);
    EXPECT_EQ(hand.CountChoices("Relative to:"), kCount);
    const bigtime_t start = system_time();
    Change([](AbEpoch& epoch) { epoch.SystemFromID(4999)->SetName("Last"); }, kNameChanged);
    const bigtime_t renamed = system_time();
    hand.Choose("Edit:", "Last");
    Settle();
    const bigtime_t chosen = system_time();
    RecordProperty("rename_us", static_cast<int>(renamed - start));
    RecordProperty("choose_us", static_cast<int>(chosen - renamed));
    EXPECT_EQ(portal->FocusSystem()->ID(), 4999);
    EXPECT_EQ(hand.Text("Name:"), "Last");
    constexpr bigtime_t kNoticeable = 100000;
    EXPECT_LT(renamed - start, kNoticeable);
    EXPECT_LT(chosen - renamed, kNoticeable);
}
