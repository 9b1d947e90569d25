// What a run does when bodies touch.
#include <algorithm>
#include <cmath>
#include <random>

#include "Simulation/Document/SimulationDocument.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

namespace {

using RunCollision = RunFixture;

TEST_F(RunCollision, BodiesMergeAndTheRunGoesOnToItsLimit) {
    const std::string document = PutDocument("document", *MergingSystem());
    const Outcome outcome = RunProgram({"-n", "3000", "--cutoff", "1e-6", "--csv", Path("csv"),
                                        "--json", "-o", Path("saved"), document});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("\"b1\" merges into \"b0\""), std::string::npos) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "mergers"), "1");
    EXPECT_EQ(Member(outcome.out, "steps"), "3000");
    EXPECT_EQ(Member(outcome.out, "bodies"), "2");
    EXPECT_LT(std::fabs(std::stod(Member(outcome.out, "relative_energy_error"))), 1e-3);

    // Every report once: three bodies before the merger, two after it.
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("csv")));
    std::vector<std::size_t> counts(3001);
    for (const CsvRow& row : rows)
        counts.at(static_cast<std::size_t>(row.report))++;
    EXPECT_EQ(counts.front(), 3u);
    EXPECT_EQ(counts.back(), 2u);
    EXPECT_TRUE(std::is_sorted(counts.rbegin(), counts.rend()));
    EXPECT_EQ(rows.back().name, "b2");
    EXPECT_EQ(rows[rows.size() - 2].name, "b0 & b1");

    SimulationDocument saved(nullptr);
    ASSERT_FALSE(saved.Load(GetRecord(Path("saved"))).Failed());
    EXPECT_EQ(saved.Portal()->BodiesInMassOrder().size(), 2u);
    EXPECT_EQ(saved.Root()->ChildAt(0)->RootSystem()->CountChildren(), 3);
}

// The contact has a time of its own, between two steps; the run goes on from there to the very end.
TEST_F(RunCollision, HighOrdersMergeBodiesWhenTheyTouch) {
    const std::string document = PutDocument("document", *MergingSystem());
    std::string digest;
    for (const char* threads : {"1", "2"}) {
        const Outcome outcome =
            RunProgram({"--for", "150", "--order", "16", "--cutoff", "1e-12", "--threads", threads,
                        "--csv", Path("csv"), "--json", "-o", Path("saved"), document});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(Member(outcome.out, "mergers"), "1");
        EXPECT_EQ(std::stod(Member(outcome.out, "end_time_s")), 150.0);
        EXPECT_LT(std::fabs(std::stod(Member(outcome.out, "relative_energy_error"))), 1e-10);
        EXPECT_EQ(digest.empty() ? Member(outcome.out, "sha256") : digest,
                  Member(outcome.out, "sha256"));
        digest = Member(outcome.out, "sha256");
    }
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("csv")));
    // The reports' numbers leave nothing out, and times ascend.
    std::size_t contact = 0;
    for (std::size_t i = 1; i < rows.size(); i++) {
        EXPECT_LE(rows[i].report - rows[i - 1].report, 1);
        EXPECT_EQ(rows[i].report > rows[i - 1].report, rows[i].time > rows[i - 1].time);
        if (rows[i].name == "b1") contact = i;
    }
    // Spheres of 0.05 touch when their centres are 0.1 apart.
    const auto other = std::find_if(rows.begin(), rows.end(), [&](const CsvRow& row) {
        return row.report == rows[contact].report && row.name == "b0";
    });
    ASSERT_NE(other, rows.end());
    EXPECT_NEAR(rows[contact].values[0] - other->values[0], 0.1, 1e-12);
}

TEST_F(RunCollision, EndsTheRunIfItIsToldTo) {
    const Outcome outcome =
        RunProgram({"--steps", "1000000", "--on-collision", "stop", "--json", "--csv",
                    Path("out.csv"), "--every", "7", PutDocument("colliding", *MergingSystem())});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "ending"), "\"collision\"");
    EXPECT_EQ(Member(outcome.out, "mergers"), "0");
    EXPECT_EQ(Member(outcome.out, "lighter"), "\"b1\"");
    EXPECT_EQ(Member(outcome.out, "heavier"), "\"b0\"");
    // The last state stands there once, under its own number.
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("out.csv")));
    EXPECT_EQ(std::to_string(rows.back().report), Member(outcome.out, "steps"));
    EXPECT_GT(rows.back().time, rows[rows.size() - 4].time);
}

TEST_F(RunCollision, CollapseOfManyBodiesKeepsMassAndMomentumOnAnyNumberOfThreads) {
    // At rest, they fall into one another.
    Epoch start;
    std::mt19937 random(1);
    const auto next = [&random] { return static_cast<double>(random()) / 0x1p30 - 2.0; };
    for (int64 id = 0; id < 300; id++)
        AddSmallBody(&start, id, {next(), next(), next()});
    const std::string document = PutDocument("document", start);
    std::string digest;
    for (const char* threads : {"1", "2"}) {
        const Outcome outcome = RunProgram({"-n", "20000", "--threads", threads, "--json",
                                            "--cutoff", "1e-6", "-o", Path("saved"), document});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_GE(std::stod(Member(outcome.out, "mergers")), 100.0);
        EXPECT_EQ(digest.empty() ? Member(outcome.out, "sha256") : digest,
                  Member(outcome.out, "sha256"));
        digest = Member(outcome.out, "sha256");

        SimulationDocument saved(nullptr);
        ASSERT_FALSE(saved.Load(GetRecord(Path("saved"))).Failed());
        const MassSystem* root = saved.Portal()->FocusEpoch()->RootSystem();
        EXPECT_DOUBLE_EQ(root->M(), 300.0);
        // The bodies started at rest and fell at speeds of about 10.
        const ThreeVector v = root->Velocity();
        EXPECT_LT(std::hypot(v.x, v.y, v.z), 1e-12);
    }
}

// Whatever is done to the engine, runs of low order end where they always have.
TEST_F(RunCollision, DigestsOfLowOrdersStay) {
    Epoch cluster;
    for (int64 i = 0; i < 60; i++)
        AddSmallBody(
            &cluster, i,
            ThreeVector{static_cast<double>(i % 7), static_cast<double>(i % 11),
                        static_cast<double>(i % 13)} *
                10.0,
            ThreeVector{static_cast<double>(i % 3), static_cast<double>(i % 5), 0.0} * 0.125);
    Epoch pair;
    AddSmallBody(&pair, 0, {1, 2, 3});
    AddSmallBody(&pair, 1, {4, 2, 1}, {0.125, 0.5, 0.25});
    const struct {
        std::string document;
        std::string digests[3];  // of the orders 2, 3 and 4
    } runs[] = {
        {PutDocument("planets", *TestSystem()),
         {"d149f1083252726c", "b5d7069ae372c4a1", "0ad0a7f98a7e2256"}},
        {PutDocument("merging", *MergingSystem()),
         {"ec228a566c8c11b7", "ccea35bf97ebfa17", "9e8de4eaa5a6edd0"}},
        {PutDocument("cluster", cluster),
         {"d6e1aa69ffb03de5", "69df14ab2754b7dc", "858ba076d9cc11b4"}},
        {PutDocument("pair", pair), {"9cc79c7300fa67ef", "7fc0b21e7f5e512c", "21674949de183fce"}}};
    for (const auto& [document, digests] : runs)
        for (std::size_t i = 0; i < 3; i++) {
            const Outcome outcome = RunProgram({"-n", "2000", "--order", std::to_string(i + 2),
                                                "--cutoff", "1e-6", "--json", document});
            EXPECT_EQ(Member(outcome.out, "sha256").substr(1, 16), digests[i]) << document << i;
        }
}

}  // namespace
