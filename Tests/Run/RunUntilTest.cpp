// Runs that stop where something happens.
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

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

TEST_F(RunUntil, WhatItCannotWaitForIsRefusedBeforeTheRun) {
    for (const char* what : {"tomorrow", "-1 s", "closest=b0", "closest=b0, nobody", "w=b0",
                             "closest=b0, b0", "x=", "0 s"}) {
        const Outcome outcome = RunTo(what, merging_);
        EXPECT_EQ(outcome.status, 1) << what;
        EXPECT_EQ(outcome.out, "") << what;
        EXPECT_NE(outcome.err.find(what), std::string::npos) << outcome.err;
    }
}

}  // namespace
