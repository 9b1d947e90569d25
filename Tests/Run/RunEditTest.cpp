// Edits on the command line, and the listing of the epochs.
#include <unistd.h>

#include <cmath>
#include <filesystem>

#include "Simulation/Document/SimulationDocument.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

class RunEdit : public RunFixture {
protected:
    static Outcome Edit(std::vector<std::string> arguments, const std::vector<std::string>& edits) {
        for (const std::string& edit : edits)
            arguments.insert(arguments.end(), {"--edit", edit});
        return RunProgram(arguments);
    }
    // The template's bodies ("Arrakis" at rest, "BoskVeld" at 2 AU, shown in km/s) after the edits,
    // from a run's report 0.
    static std::vector<CsvRow> StateAfter(std::vector<std::string> edits) {
        edits.emplace_back("epoch.com-on-go=off");
        const Outcome outcome = Edit({"-q", "-n", "1", "--csv", "-", "--every", "1000"}, edits);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return ParseCsv(outcome.out);
    }
    Outcome Saved(const std::vector<std::string>& edits) {
        return Edit({"--epochs", "-o", Path("saved")}, edits);
    }
};

TEST_F(RunEdit, ValuesAreReadInTheirUnitsOrThoseShownAndRelativeToTheReferent) {
    std::vector<CsvRow> rows = StateAfter({"BoskVeld.v.y=15 Kilometer/Second", "BoskVeld.v.z=-7",
                                           "BoskVeld.r=1 2 3 km", "Arrakis.name=Sun"});
    ASSERT_GE(rows.size(), 2u);
    EXPECT_EQ(rows[0].name, "Sun");
    const double expected[6] = {1000.0, 2000.0, 3000.0, 3000.0, 15000.0, -7000.0};
    for (int i = 0; i < 6; i++)
        EXPECT_EQ(rows[1].values[i], expected[i]) << i;
    rows = StateAfter({"Arrakis.r.x=5 km", "BoskVeld.relative-to=Arrakis", "BoskVeld.r.x=1 km"});
    EXPECT_EQ(rows[1].values[0], 6000.0);
}

TEST_F(RunEdit, WhatIsNotUnderstoodIsNamedAndNothingIsWritten) {
    const std::pair<const char*, const char*> cases[] = {
        {"Nobody.mass=1 kg", "\"Nobody\""},
        {"BoskVeld.weight=1 kg", "\"weight\""},
        {"BoskVeld.mass=1 parsec", "unit"},
        {"BoskVeld.mass=3,84e5", "number"},  // fields take it, scripts have one way
        {"BoskVeld.mass", "\"=\""},
        {"BoskVeld.trail=blue", "\"blue\""},
        {"epoch.cutoff=0.5", "cannot be"},
        {"BoskVeld.r=1 2 km", "number"},
        {"BoskVeld.relative-to=BoskVeld", "cannot be"},
        {"undo", "undo"},
        {"delete=Nobody", "Nobody"},
        {"dissolve=Arrakis", "Arrakis"},
        {"focus-epoch=9", "9"},
        {"delete-epoch=Genesis", "Genesis"},
        {"group=Pair", "Pair"},
        {"group=Pair: Nobody", "Nobody"},
        {"new-body=3", "3"},
        {"delete", "delete"},
    };
    for (const auto& [edit, complaint] : cases) {
        std::vector<std::string> edits{edit};
        if (edits[0] != "undo") edits.insert(edits.begin(), "Arrakis.mass=2 Ms");
        const Outcome outcome = Saved(edits);
        EXPECT_EQ(outcome.status, 1) << edit;
        EXPECT_NE(outcome.err.find(complaint), std::string::npos) << outcome.err;
        EXPECT_NE(outcome.err.find(edit), std::string::npos) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(Path("saved"))) << edit;
    }
}

TEST_F(RunEdit, NoRefusalIsSilentAndWhatIsSoAlreadyIsNone) {
    const std::vector<std::string> refused[] = {
        {"BoskVeld.r.x=1e200 AU"},
        {"BoskVeld.v.y=nan"},
        {"group=G: BoskVeld", "BoskVeld.mass=0 kg", "G.r.x=1 AU"},
        {"group=G: BoskVeld", "G.mass=5 Me"},
        {"group=G: BoskVeld", "G.radius=1e300 AU"},
    };
    for (const std::vector<std::string>& edits : refused) {
        const Outcome outcome = Saved(edits);
        EXPECT_EQ(outcome.status, 1) << edits.back();
        EXPECT_NE(outcome.err.find(edits.back()), std::string::npos) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(Path("saved"))) << edits.back();
    }
    const Outcome outcome = Saved({"BoskVeld.r.x=2 AU", "BoskVeld.r.x=2 AU", "BoskVeld.mass=-1 Me",
                                   "group=G: BoskVeld", "G.mass=1 Me", "G.r.x=2 AU"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
}

// One step sets position and velocity. Orbits are listed with what the run ends with.
TEST_F(RunEdit, OrbitsAreListedAndSetElementByElement) {
    const auto orbit = [](const std::vector<std::string>& edits) {
        const Outcome outcome = Edit({"--elements", "--json"}, edits);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return outcome.out;
    };
    const std::string before = orbit({});
    const std::string axis = Member(before, "semi_major_axis");
    std::string after = orbit({"BoskVeld.orbit.e=0.25", "BoskVeld.orbit.i=30",
                               "BoskVeld.orbit.node=0.5 rad", "BoskVeld.orbit.nu=6 h"});
    EXPECT_NEAR(std::stod(Member(after, "eccentricity")), 0.25, 1e-14);
    EXPECT_NEAR(std::stod(Member(after, "inclination")), std::asin(0.5), 1e-14);
    EXPECT_NEAR(std::stod(Member(after, "node")), 0.5, 1e-14);
    EXPECT_NEAR(std::stod(Member(after, "true_anomaly")), std::acos(0.0), 1e-14);
    EXPECT_NEAR(std::stod(Member(after, "semi_major_axis")) / std::stod(axis), 1.0, 1e-14);
    EXPECT_EQ(orbit({"BoskVeld.orbit.a=3 AU", "undo"}), before);
    after = orbit({"BoskVeld.orbit.e=1.5"});
    EXPECT_EQ(Member(after, "period"), "null");
    const Outcome text = Edit({"--elements", "-q"}, {"BoskVeld.orbit.q=2 AU"});
    EXPECT_NE(text.out.find(" 2 AU"), std::string::npos) << text.out;

    const std::pair<const char*, const char*> refused[] = {{"BoskVeld.orbit.e=-1", "cannot be"},
                                                           {"BoskVeld.orbit.i=200", "cannot be"},
                                                           {"BoskVeld.orbit.M=2 km", "unit"},
                                                           {"Arrakis.orbit.e=0.5", "cannot be"},
                                                           {"BoskVeld.orbit.x=1", "orbit.x"}};
    for (const auto& [edit, complaint] : refused) {
        const Outcome outcome = Edit({"--elements"}, {edit});
        EXPECT_EQ(outcome.status, 1) << edit;
        EXPECT_NE(outcome.err.find(complaint), std::string::npos) << outcome.err;
    }
}

TEST_F(RunEdit, TheSelectionStaysWhereItIs) {
    ASSERT_EQ(Saved({"Arrakis.relative-to=BoskVeld"}).status, 0);
    int64 selected = 0;
    EXPECT_EQ(GetRecord(Path("saved")).FindInt64("Cur Sys", &selected), B_OK);
    EXPECT_EQ(selected, 1) << "BoskVeld, as in the template";
    EXPECT_NE(GetRecord(Path("saved")).ToText().find("int64 \"Rel to\" = 1"), std::string::npos);
}

TEST_F(RunEdit, EditsOfARecordGoIntoACopyThatIsListedAndSaved) {
    ASSERT_EQ(RunProgram({"-q", "-n", "5", "-o", Path("run")}).status, 0);
    const Outcome outcome = Edit({"--epochs", "-o", Path("edited"), Path("run")},
                                 {"BoskVeld.mass=2 Me", "epoch.name=Heavier"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Outcome listing = RunProgram({"--epochs", Path("edited")});
    EXPECT_EQ(outcome.out, listing.out);
    // Genesis, the run's epoch and the edited copy of it, in focus.
    EXPECT_EQ(std::count(listing.out.begin(), listing.out.end(), '\n'), 3);
    const std::size_t heavier = listing.out.find("* 2      Heavier");
    EXPECT_NE(heavier, std::string::npos) << listing.out;
    EXPECT_LT(listing.out.find("read-only"), heavier);
    EXPECT_LT(heavier, listing.out.find("writeable"));
}

TEST_F(RunEdit, ActionsDoWhatTheMenusDo) {
    const auto countBodies = [this](const std::vector<std::string>& edits) {
        const std::string out = Saved(edits).out;
        return out.substr(out.rfind(' ') + 1);
    };
    EXPECT_EQ(countBodies({"new-body", "new-body", "undo"}), "3\n");
    EXPECT_EQ(countBodies({"new-body", "undo", "redo", "delete=BoskVeld"}), "2\n");
    const auto hasPair = [this](const std::string& last) {
        EXPECT_EQ(Saved({"group=Pair: Arrakis, BoskVeld", last}).status, 0);
        return GetRecord(Path("saved")).ToText().find("\"Pair\"") != std::string::npos;
    };
    EXPECT_TRUE(hasPair("Pair.r=1 0 0 AU"));
    EXPECT_FALSE(hasPair("dissolve=Pair"));
    ASSERT_EQ(Saved({"animation.updates-per-second=25"}).status, 0);
    float updates = 0.0f;
    EXPECT_EQ(GetRecord(Path("saved")).FindFloat("Updates per sec", &updates), B_OK);
    EXPECT_EQ(updates, 25.0f);

    const Outcome branched = Saved({"log-epoch", "epoch.name=A", "focus-epoch=0", "log-epoch",
                                    "epoch.name=B", "delete-epoch=A", "center-of-mass"});
    EXPECT_EQ(branched.out.find('A'), std::string::npos) << branched.out;
    EXPECT_NE(branched.out.find("* 1"), std::string::npos) << branched.out;
}

TEST_F(RunEdit, WhatWouldNestEpochsTooDeeplyIsRefused) {
    SimulationDocument document(nullptr);
    ASSERT_FALSE(document.Load(GetRecord(PutDocument("flat", *TestSystem()))).Failed());
    NestAsDeepAsPossible(document.Portal());
    BMessage record;
    ASSERT_FALSE(document.Store(&record, true).Failed());
    const std::string deep = PutRecord("deep", record);
    for (const std::vector<std::string>& options : {std::vector<std::string>{"-n", "5"},
                                                    {"--edit", "log-epoch", "-n", "0"},
                                                    {"--edit", "Last.mass=1 Ms", "-n", "0"},
                                                    {"--edit", "new-body", "-n", "0"}}) {
        std::vector<std::string> arguments = options;
        arguments.insert(arguments.end(), {"-o", Path("saved"), deep});
        const Outcome outcome = RunProgram(arguments);
        EXPECT_EQ(outcome.status, 1) << options.front();
        EXPECT_NE(outcome.err.find("no more epochs below this one"), std::string::npos)
            << outcome.err;
        EXPECT_NE(access(Path("saved").c_str(), F_OK), 0);
    }
    EXPECT_EQ(RunProgram({"-n", "0", "-o", Path("saved"), deep}).status, 0);
    EXPECT_EQ(RunProgram({"-q", "-n", "5", "--edit", "focus-epoch=5", Path("saved")}).status, 0);
}

}  // namespace
