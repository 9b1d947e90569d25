// Runs that end by themselves: what they say, how they exit, and what they leave behind.
#include <cmath>

#include "Simulation/Document/SimulationDocument.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

class RunEnding : public RunFixture {
protected:
    // Runs a document, quietly, and reads what it has saved: epoch, bodies, and a further run.
    Outcome RunAndReadBack(const Epoch& epoch, const std::vector<std::string>& options) {
        std::vector<std::string> arguments = {"-q", "--json", "-o", Path("saved")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.push_back(PutDocument("document", epoch));
        const Outcome outcome = RunProgram(arguments);
        SimulationDocument saved(nullptr);
        EXPECT_FALSE(saved.Load(GetRecord(Path("saved"))).Failed());
        EXPECT_EQ(saved.Portal()->BodiesInMassOrder().size(), 2u);
        time = saved.Portal()->FocusEpoch()->Time();
        return outcome;
    }
    static bool Tells(const Outcome& outcome, const std::string& words) {
        return outcome.err.find(words) != std::string::npos;
    }

    double time = NAN;
};

// Two bodies on the x axis and at rest.
std::unique_ptr<Epoch> RestingPair(double gm, double distance, double radius = 0.0) {
    auto epoch = std::make_unique<Epoch>();
    epoch->SetTimeUval(86400.0);
    int64 id = 0;
    for (const char* const name : {"Sun", "Probe"}) {
        auto body = MakeBody(name, id, id == 0 ? gm : gm / 1e6,
                             {static_cast<double>(id) * distance, 0, 0}, {});
        body->SetRadius(radius);
        body->SetPositionUval(1000.0);
        epoch->RootSystem()->AddChild(body.release());
        id++;
    }
    return epoch;
}

TEST_F(RunEnding, TwoPointsThatFallOntoEachOtherEndTheRunWithWords) {
    for (const char* const order : {"4", "16"}) {
        const Outcome outcome = RunAndReadBack(
            *RestingPair(1e20, 1e11), {"--for", "100 yr", "--csv", Path("csv"), "--order", order});
        EXPECT_EQ(outcome.status, 3);
        EXPECT_TRUE(Tells(outcome, "\"Sun\" and \"Probe\" are ")) << outcome.err;
        EXPECT_TRUE(Tells(outcome, " km apart. The run ends at ")) << outcome.err;
        EXPECT_TRUE(Tells(outcome, "Time stands still: ")) << outcome.err;
        EXPECT_EQ(Member(outcome.out, "ending"), "\"time stands\"");
        const double fall = std::acos(-1.0) / 2.0 * std::sqrt(1e33 / 2e20);
        EXPECT_NEAR(time, fall, 1e-3 * fall);
        EXPECT_EQ(ParseCsv(Get(Path("csv"))).back().time, time);
    }
}

TEST_F(RunEnding, NothingThatIsNoNumberIsWritten) {
    const Outcome outcome =
        RunAndReadBack(*RestingPair(1e20, 1e-53), {"--for", "1 yr", "--csv", Path("csv")});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(Tells(outcome, "Numbers would not be finite: \"Sun\" and ")) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "ending"), "\"not finite\"");
    for (const CsvRow& row : ParseCsv(Get(Path("csv"))))
        for (const double value : row.values)
            EXPECT_TRUE(std::isfinite(value));
    EXPECT_EQ(ParseCsv(Get(Path("csv"))).back().time, time);
}

TEST_F(RunEnding, BodiesThatCannotBeMergedEndTheRun) {
    const Outcome outcome = RunAndReadBack(*RestingPair(1e20, 1e11, 1e120), {"--for", "1 yr"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(Tells(outcome, "touch, but cannot be merged: 100000000 km")) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "ending"), "\"not merged\"");
    EXPECT_EQ(Member(outcome.out, "steps"), "0");
    EXPECT_EQ(time, 0.0);
}

TEST_F(RunEnding, WhatDoesNotInteractIsMovedToTheTimeAskedFor) {
    auto epoch = RestingPair(0.0, 1e11);
    epoch->SystemFromID(1)->SetVelocity({0, 100, 0});
    Outcome outcome = RunAndReadBack(*epoch, {"--for", "1000 dy"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(Member(outcome.out, "ending"), "\"nothing interacts\"");
    EXPECT_EQ(time, 86400e3);

    outcome = RunProgram({"--for", "2 yr", "--csv", Path("csv"), Path("saved")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(Tells(outcome, "Nothing interacts any more")) << outcome.err;
    EXPECT_DOUBLE_EQ(ParseCsv(Get(Path("csv"))).back().values[1], 100 * (86400e3 + 2 * 31556925.2));
    // Without a time there is nothing to do.
    outcome = RunAndReadBack(*epoch, {"-n", "1000"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(Member(outcome.out, "steps"), "0");
    EXPECT_EQ(time, 0.0);
}

// After the merger there is only one.
TEST_F(RunEnding, AMergerToOneBodyEndsInTime) {
    const Outcome outcome = RunProgram(
        {"--for", "2 yr", "--json", PutDocument("document", *RestingPair(1e20, 1e9, 1e6))});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(Member(outcome.out, "mergers"), "1");
    EXPECT_EQ(Member(outcome.out, "ending"), "\"nothing interacts\"");
    EXPECT_EQ(Member(outcome.out, "end_time_s"), "63113850.4");
}

// Records from elsewhere may hold what they like.
TEST_F(RunEnding, ACalculatorStateThatDoesNotFitIsLeft) {
    const auto epoch = TestSystem();
    const std::string plain = PutDocument("plain", *epoch);
    auto* const state = new BMessage(FourCC("ARCV"));
    state->AddInt64("IDs", 5);
    state->AddDouble("DelR", 1.0);
    state->AddInt32("Iter", 2'000'000'000);
    epoch->SetCalculatorState(state);
    const std::string odd = PutDocument("odd", *epoch);
    const Outcome expected = RunProgram({"-n", "50", "--json", plain});
    const Outcome outcome = RunProgram({"-n", "50", "--json", odd});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "sha256"), Member(expected.out, "sha256"));
}

}  // namespace
