// What a run computes and writes.
#include <cmath>
#include <set>

#include "Simulation/Document/SimulationDocument.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

namespace {

class RunReports : public RunFixture {
protected:
    // The rows that the options make; the program must have succeeded.
    std::vector<CsvRow> Rows(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"-q", "--csv", Path("out.csv"), document_});
        const Outcome outcome = RunProgram(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out + outcome.err, "");
        return ParseCsv(Get(Path("out.csv")));
    }

    const std::string document_ = PutDocument("document", *TestSystem());
};

TEST_F(RunReports, RowsAreTheBodiesInMassOrderFromTheStartOn) {
    const std::vector<CsvRow> rows = Rows({"--steps", "250"});
    ASSERT_EQ(rows.size(), 251u * 4);
    const int64 ids[] = {5, 2, 1, 0};
    for (std::size_t i = 0; i < rows.size(); i++) {
        EXPECT_EQ(rows[i].report, static_cast<int64>(i / 4));
        EXPECT_EQ(rows[i].id, ids[i % 4]);
    }
    EXPECT_EQ(rows[0].name, R"("Sun, ""Sol""")");
    EXPECT_EQ(rows[0].time, 1000.0);
    // The centre of mass is at rest at the origin already in report 0.
    const double gm[] = {1.32712440018e20, 4e15, 4e13, 0.0};
    for (std::size_t k = 0; k < 6; k++) {
        double sum = 0.0;
        for (std::size_t i = 0; i < 4; i++)
            sum += gm[i] / gm[0] * rows[i].values[k];
        EXPECT_NEAR(sum, 0.0, k < 3 ? 1e-4 : 1e-10);
    }
    for (std::size_t i = 4; i < rows.size(); i += 4)
        EXPECT_GT(rows[i].time, rows[i - 4].time);
}

TEST_F(RunReports, NumbersReadBackToTheSameBits) {
    const std::vector<CsvRow> rows = Rows({"--steps", "77", "--save", Path("saved")});
    SimulationDocument document(nullptr);
    ASSERT_FALSE(document.Load(GetRecord(Path("saved"))).Failed());
    std::size_t i = rows.size() - 4;
    EXPECT_EQ(rows[i].time, document.Portal()->FocusEpoch()->Time());
    for (const Body* body : document.Portal()->BodiesInMassOrder()) {
        const double(&values)[6] = rows[i++].values;
        EXPECT_EQ((ThreeVector{values[0], values[1], values[2]}), body->Position());
        EXPECT_EQ((ThreeVector{values[3], values[4], values[5]}), body->Velocity());
    }
}

TEST_F(RunReports, EveryNthAndAlwaysTheLast) {
    const std::vector<CsvRow> all = Rows({"--steps", "250"});
    for (const auto& [steps, every, wanted] :
         {std::tuple{"250", "100", std::set<int64>{0, 100, 200, 250}},
          std::tuple{"200", "100", std::set<int64>{0, 100, 200}},
          std::tuple{"7", "1000", std::set<int64>{0, 7}}}) {
        std::vector<CsvRow> expected;
        for (const CsvRow& row : all)
            if (wanted.contains(row.report)) expected.push_back(row);
        EXPECT_EQ(Rows({"--steps", steps, "--every", every}), expected) << steps << ' ' << every;
    }
}

TEST_F(RunReports, ForStopsAtTheFirstReportAtOrPastTheTime) {
    const std::vector<CsvRow> rows = Rows({"--for", "5 dy"});
    const double goal = 1000.0 + 5 * 86400.0;
    ASSERT_GT(rows.size(), 8u);
    EXPECT_GE(rows.back().time, goal);
    EXPECT_LT(rows[rows.size() - 8].time, goal);
    EXPECT_EQ(Rows({"-f", "432000"}), rows);
    EXPECT_EQ(Rows({"--for=5 Days", "--steps", "1000000"}), rows);
    // Whichever comes first.
    EXPECT_EQ(Rows({"--for", "5 dy", "-n3"}).back().report, 3);
}

TEST_F(RunReports, AnOlderFileStaysUntilThereIsSomethingToWrite) {
    const std::string old(100'000, 'x');
    const std::string csv = Put("csv", old);
    EXPECT_EQ(RunProgram({"-n", "0", "--csv", csv, document_}).status, 0);
    EXPECT_EQ(Get(csv), old);
    EXPECT_EQ(RunProgram({"-n", "2", "--csv", csv, document_}).status, 0);
    EXPECT_EQ(ParseCsv(Get(csv)).size(), 12u);
}

TEST_F(RunReports, NamesCanNeitherBreakALineNorSteerATerminal) {
    const std::string evil = "evil\n\x1b[2J\x7f\xC2\x9b";
    const std::unique_ptr<Epoch> epoch = TestSystem();
    epoch->SetName(evil);
    epoch->SystemFromID(1)->SetName(evil);
    const std::string document = PutDocument(evil, *epoch);
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"-n", "2", "--csv", "-"},
          {"-n", "2", "--json"},
          {"--epochs"},
          {"--dump"},
          {"-n", "2"},
          {"--edit", evil + "=1"},
          {"--csv", document},
          {"--" + evil}}) {
        std::vector<std::string> arguments = options;
        arguments.push_back(document);
        const Outcome outcome = RunProgram(arguments);
        const std::string text = outcome.out + outcome.err;
        EXPECT_NE(text.find("[2J"), std::string::npos) << text;
        EXPECT_EQ(text.find_first_of("\x1b\x7f"), std::string::npos) << text;
        EXPECT_EQ(text.find("\xC2\x9b"), std::string::npos) << text;
        EXPECT_EQ(text.find("evil\n"), std::string::npos) << text;
    }
    epoch->SystemFromID(1)->SetVelocity({std::nan(""), 0, 0});
    const Outcome outcome = RunProgram({PutDocument("bad", *epoch)});
    EXPECT_NE(outcome.err.find("\\n\\x1b[2J\\x7f\\x9b"), std::string::npos) << outcome.err;
}

TEST_F(RunReports, SummaryTellsTheRun) {
    const Outcome outcome = RunProgram({"--steps", "300", "--json", document_});
    ASSERT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const std::string& json = outcome.out;
    EXPECT_EQ(Member(json, "steps"), "300");
    EXPECT_EQ(Member(json, "bodies"), "4");
    EXPECT_EQ(Member(json, "massive_bodies"), "3");
    EXPECT_EQ(Member(json, "start_time_s"), "1000");
    EXPECT_EQ(Member(json, "ending"), "\"done\"");
    EXPECT_LT(std::fabs(std::stod(Member(json, "relative_energy_error"))), 1e-9);
    EXPECT_LT(std::stod(Member(json, "relative_momentum_drift")), 1e-12);
    EXPECT_LT(std::stod(Member(json, "relative_angular_momentum_drift")), 1e-9);
    EXPECT_EQ(Member(json, "sha256").size(), 66u);
    // The same run for people.
    const Outcome text = RunProgram({"--steps", "300", document_});
    EXPECT_NE(text.out.find(Member(json, "sha256").substr(1, 64)), std::string::npos);
    EXPECT_EQ(Member(json, "trust"), "\"kept\"");
    EXPECT_NE(text.out.find("energy kept to " + Member(json, "trust_digits") + " digits"),
              std::string::npos);
}

TEST_F(RunReports, ChaosIsToldOfThoseWhoAskForIt) {
    EXPECT_EQ(RunProgram({"--steps", "300", "--json", document_}).out.find("e_folding"),
              std::string::npos);
    const Outcome outcome = RunProgram({"--steps", "300", "--json", "--chaos", document_});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "e_folding_time_s"), "null");
    EXPECT_NEAR(std::stod(Member(outcome.out, "e_folding_looked_for_s")),
                std::stod(Member(outcome.out, "end_time_s")) - 1000, 1e-6);
    const Outcome text = RunProgram({"--steps", "300", "--chaos", document_});
    EXPECT_NE(text.out.find("E-folding time          none within"), std::string::npos);
    EXPECT_EQ(RunProgram({"--chaos", "--sweep", "epoch.order=8,16", document_}).status, 2);
}

}  // namespace
