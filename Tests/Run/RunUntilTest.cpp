// Runs that stop where something happens.
#include <cmath>
#include <map>

#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

class RunUntil : public RunFixture {
protected:
    // The summary of a run of the document, limited in case it is not met.
    Outcome RunTo(const std::string& what, const std::string& document) const {
        return RunProgram({"--json", "--until", what, "--steps", "200000", document});
    }
    // "b0" and "b1" fall into one another.
    const std::string merging_ = PutDocument("merging", *MergingSystem());
};

TEST_F(RunUntil, StopsAtATimeAMergerAndWhatBodiesDo) {
    const Outcome merger = RunTo("merger", merging_);
    EXPECT_EQ(merger.status, 0) << merger.err;
    EXPECT_EQ(Member(merger.out, "mergers"), "1");
    const double end = std::stod(Member(merger.out, "end_time_s"));

    const std::string early = std::to_string(end / 2.0) + " s";
    const Outcome time = RunTo(early, merging_);
    EXPECT_GE(std::stod(Member(time.out, "end_time_s")), end / 2.0 - 1e-6);
    EXPECT_LT(std::stod(Member(time.out, "end_time_s")), end);

    const Outcome plane = RunTo("y=b2, b0", merging_);
    EXPECT_EQ(plane.status, 0) << plane.err;
    EXPECT_LT(std::stoll(Member(plane.out, "steps")), 200'000);
}

// At order 16 the run ends there, to the last places of coordinates.
TEST_F(RunUntil, HighOrdersStopAtTheVeryMoment) {
    const std::string document = PutDocument("document", *TestSystem());
    for (const char* const plane : {"x=Heavy, Dust", "z=Dust"}) {
        const Outcome outcome =
            RunProgram({"--json", "--order", "16", "--cutoff", "1e-16", "--for", "100 yr",
                        "--until", plane, "--csv", Path("csv"), document});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        const std::vector<CsvRow> rows = ParseCsv(Get(Path("csv")));
        std::map<std::string, CsvRow> end;
        for (std::size_t i = rows.size() - 4; i < rows.size(); i++)
            end[rows[i].name] = rows[i];
        const double distance =
            *plane == 'x' ? end["Heavy"].values[0] - end["Dust"].values[0] : end["Dust"].values[2];
        EXPECT_LT(std::fabs(distance), 1e-3) << plane;
    }
    const Outcome escape =
        RunProgram({"--json", "--until", "escape=Dust, 1e30 km", "--for", "1 yr", document});
    EXPECT_EQ(escape.status, 0) << escape.err;
}

TEST_F(RunUntil, WhatItCannotWaitForIsRefusedBeforeTheRun) {
    for (const char* what : {"tomorrow", "-1 s", "closest=b0", "w=b0", "closest=b0, b0",
                             "x=", "0 s", "escape=b0", "escape=b0, b1", "escape=b0, -1 km"}) {
        const Outcome outcome = RunTo(what, merging_);
        EXPECT_EQ(outcome.status, 1) << what;
        EXPECT_EQ(outcome.out, "") << what;
        EXPECT_NE(outcome.err.find(what), std::string::npos) << outcome.err;
    }
    for (const char* const what : {"closest=b0, nobody", "escape=nobody, 1 km", "x=nobody"})
        EXPECT_NE(RunTo(what, merging_).err.find("there is no body \"nobody\""), std::string::npos);
}

}  // namespace
