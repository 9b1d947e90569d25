// Edits on the command line, and the listing of the epochs.
#include <filesystem>

#include "ProgramRun.h"
#include "RunFixture.h"

namespace {

class RunEdit : public RunFixture {
protected:
    // The state after the edits, from a run's report 0.
    std::vector<CsvRow> StateAfter(std::vector<std::string> edits) {
        std::vector<std::string> arguments{"-q", "-n", "1", "--csv", "-", "--every", "1000"};
        for (std::string& edit : edits) {
            arguments.emplace_back("--edit");
            arguments.push_back(std::move(edit));
        }
        const Outcome outcome = RunProgram(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return ParseCsv(outcome.out);
    }
};

TEST_F(RunEdit, ValuesAreReadInTheirUnitsAndThoseShown) {
    // The template: "Arrakis" at rest, "BoskVeld" at 2 AU, shown in km/s.
    const std::vector<CsvRow> rows =
        StateAfter({"epoch.com-on-go=off", "BoskVeld.v.y=15 km/s", "BoskVeld.v.z=-7",
                    "BoskVeld.r=1 2 3 km", "Arrakis.name=Sun"});
    ASSERT_GE(rows.size(), 2u);
    EXPECT_EQ(rows[0].name, "Sun");
    const double expected[6] = {1000.0, 2000.0, 3000.0, 3000.0, 15000.0, -7000.0};
    for (int i = 0; i < 6; i++)
        EXPECT_EQ(rows[1].values[i], expected[i]) << i;
}

TEST_F(RunEdit, VectorsAreRelativeToTheReferent) {
    const std::vector<CsvRow> rows =
        StateAfter({"epoch.com-on-go=off", "Arrakis.r.x=5 km", "BoskVeld.relative-to=Arrakis",
                    "BoskVeld.r.x=1 km"});
    EXPECT_EQ(rows[1].values[0], 6000.0);
}

TEST_F(RunEdit, WhatIsNotUnderstoodIsNamedAndNothingIsWritten) {
    const std::pair<const char*, const char*> cases[] = {
        {"Nobody.mass=1 kg", "\"Nobody\""},  {"BoskVeld.weight=1 kg", "\"weight\""},
        {"BoskVeld.mass=1 parsec", "unit"},  {"BoskVeld.mass", "\"=\""},
        {"BoskVeld.trail=blue", "\"blue\""}, {"epoch.cutoff=0.5", "cannot be"},
        {"BoskVeld.r=1 2 km", "number"},     {"BoskVeld.relative-to=BoskVeld", "cannot be"},
    };
    for (const auto& [edit, complaint] : cases) {
        const Outcome outcome = RunProgram(
            {"-n", "5", "--edit", "Arrakis.mass=2 Ms", "--edit", edit, "-o", Path("saved")});
        EXPECT_EQ(outcome.status, 1) << edit;
        EXPECT_NE(outcome.err.find(complaint), std::string::npos) << outcome.err;
        EXPECT_NE(outcome.err.find(edit), std::string::npos) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(Path("saved"))) << edit;
    }
}

TEST_F(RunEdit, EditsOfARecordGoIntoACopyThatIsListedAndSaved) {
    ASSERT_EQ(RunProgram({"-q", "-n", "5", "-o", Path("run")}).status, 0);
    const Outcome outcome = RunProgram({"--epochs", "--edit", "BoskVeld.mass=2 Me", "--edit",
                                        "epoch.name=Heavier", "-o", Path("edited"), Path("run")});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Outcome listing = RunProgram({"--epochs", Path("edited")});
    EXPECT_EQ(outcome.out, listing.out);
    EXPECT_EQ(RunProgram({"--epochs", "--edit", "animation.updates-per-second=25", "-o",
                          Path("slow"), Path("edited")})
                  .status,
              0);
    float updates = 0.0f;
    EXPECT_EQ(GetRecord(Path("slow")).FindFloat("Updates per sec", &updates), B_OK);
    EXPECT_EQ(updates, 25.0f);
    // Genesis, the run's epoch and the edited copy of it, in focus.
    EXPECT_EQ(std::count(listing.out.begin(), listing.out.end(), '\n'), 3);
    EXPECT_NE(listing.out.find("* "), std::string::npos);
    EXPECT_LT(listing.out.find("read-only"), listing.out.find("* 2      Heavier")) << listing.out;
    EXPECT_LT(listing.out.find("Heavier"), listing.out.find("writeable"));
}

TEST_F(RunEdit, ActionsDoWhatTheMenusDo) {
    const auto edit = [this](std::vector<std::string> edits) {
        std::vector<std::string> arguments{"--epochs", "-o", Path("saved")};
        for (std::string& text : edits) {
            arguments.emplace_back("--edit");
            arguments.push_back(std::move(text));
        }
        return RunProgram(arguments);
    };
    const auto countBodies = [](const Outcome& outcome) {
        return outcome.out.substr(outcome.out.rfind(' ') + 1);
    };
    EXPECT_EQ(countBodies(edit({"new-body", "new-body", "undo"})), "3\n");
    EXPECT_EQ(countBodies(edit({"new-body", "undo", "redo", "delete=BoskVeld"})), "2\n");
    ASSERT_EQ(edit({"group=Pair: Arrakis, BoskVeld", "Pair.r=1 0 0 AU"}).status, 0);
    EXPECT_EQ(GetRecord(Path("saved")).ToText().find("\"Pair\"") == std::string::npos, false);
    ASSERT_EQ(edit({"group=Pair: Arrakis, BoskVeld", "dissolve=Pair"}).status, 0);
    EXPECT_EQ(GetRecord(Path("saved")).ToText().find("\"Pair\"") == std::string::npos, true);

    const Outcome branched = edit({"log-epoch", "epoch.name=A", "focus-epoch=0", "log-epoch",
                                   "epoch.name=B", "delete-epoch=A", "center-of-mass"});
    EXPECT_EQ(branched.out.find('A'), std::string::npos) << branched.out;
    EXPECT_NE(branched.out.find("* 1"), std::string::npos) << branched.out;

    for (const char* bad :
         {"undo", "delete=Nobody", "dissolve=Arrakis", "focus-epoch=9", "delete-epoch=Genesis",
          "group=Pair", "group=Pair: Nobody", "new-body=3", "delete"})
        EXPECT_EQ(edit({bad}).status, 1) << bad;
}

}  // namespace
