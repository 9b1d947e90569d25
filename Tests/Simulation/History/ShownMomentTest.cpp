#include "Simulation/History/ShownMoment.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/EpochFactories.h"
#include "Simulation/History/BranchCommand.h"
#include "Simulation/History/TimeLine.h"
#include "Tests/Platform/WaitUntil.h"
#include "Tests/Simulation/History/HistoryRun.h"

namespace {

using Report = ReportRecorder::Report;

// A star with a planet that circles it, and a pair far out that meets on the way.
std::vector<HistoryRun::Planet> OneCollision() {
    return {{1.0, 0.0, 0.0, 0.0, 0.0, 0.0},
            {1e-3, 1.0, 0.0, 0.0, 1.0, 0.0},
            {2e-6, 20.0, 0.0, 0.0, 0.2, 0.5},
            {1e-6, 20.0, 1.9, 0.0, 0.1, 0.5}};
}

TimeLine LineOf(HistoryRun* run) {
    const ReadGuard guard(run->document.Portal());
    return ReadTimeLine(*run->document.Portal(), run->history);
}

class ShownMomentTest : public testing::Test {
protected:
    void SetUp() override {
        run_.Run(50'000);
        ASSERT_EQ(run_.mergers, 1);
    }

    const std::vector<Report>& Reports() { return run_.recorder.reports; }
    SystemState ShownState() {
        const Moment moment = shown_.Get();
        const ReadGuard guard(Portal());
        EpochPortal portal(*Portal());
        if (moment.IsPast()) portal.SetEpochTo(moment.epoch.get());
        return StateOf(portal);
    }
    bool AwaitExact() {
        return WaitUntil([&] { return shown_.Get().isExact; });
    }
    bool AwaitTime(double time) {
        return WaitUntil([&] { return ShownState().time == time; });
    }
    bool Branch() {
        const auto moment = shown_.GetExact();
        std::unique_ptr<LCommand> command;
        if (const ReadGuard guard(Portal()); moment)
            command = MakeBranchCommand(Portal(), &run_.history, *moment);
        return ExecuteFiled(Portal(), std::move(command));
    }
    TimeLine Line() { return LineOf(&run_); }
    EpochPortal* Portal() { return run_.document.Portal(); }
    UndoChain* Chain() { return run_.document.GetUndoChain(); }

    HistoryRun run_{OneCollision()};
    ShownMoment shown_{Portal(), &run_.history, " & "};
};

}  // namespace

// Before and after the merger.
TEST_F(ShownMomentTest, ABranchHasTheBitsOfItsMomentAndIsOneStep) {
    AbEpoch* const run = run_.Focus();
    AbEpoch* const start = run->Parent();
    const SystemState now = TakeState(Portal());
    for (const std::size_t i : {std::size_t{1234}, Reports().size() - 777}) {
        SCOPED_TRACE(i);
        const Report& report = Reports()[i];
        const int32 steps = Chain()->ExecutedCount();
        shown_.SeekTo(report.time);
        ASSERT_TRUE(Branch());
        EXPECT_EQ(Chain()->ExecutedCount(), steps + 1);
        EXPECT_FALSE(shown_.IsPast());
        AbEpoch* const branch = run_.Focus();
        EXPECT_EQ(branch->Parent(), start);
        EXPECT_TRUE(branch->Writeable());
        EXPECT_TRUE(IsAt(TakeState(Portal()), report));
        EXPECT_EQ(branch->SystemFromID(3) == nullptr, i > 20'000);
        ASSERT_NE(branch->CalculatorState(), nullptr);

        Chain()->Undo();
        EXPECT_EQ(run_.Focus(), run);
        EXPECT_EQ(start->CountChildren(), 1);
        EXPECT_EQ(TakeState(Portal()).positions, now.positions);
        Chain()->Redo();
        EXPECT_EQ(run_.Focus(), branch);
        EXPECT_TRUE(IsAt(TakeState(Portal()), report));
        Chain()->Undo();
    }
    // The moment's parts come with it: the run goes on from more than the rounded places.
    const Report& report = Reports()[1234];
    shown_.SeekTo(report.time);
    ASSERT_TRUE(Branch());
    BMessage rounded;
    ASSERT_EQ(run_.document.GetCalculator()->Archive(&rounded, true), B_OK);
    EXPECT_NE(run_.Focus()->CalculatorState()->ToText(), rounded.ToText());
    const std::size_t before = Reports().size();
    run_.Run(2000);
    EXPECT_EQ(run_.Focus()->Parent()->Parent(), start);
    EXPECT_GT(Reports()[before].time, report.time);
}

TEST_F(ShownMomentTest, AMomentIsNearAtOnceAndExactWhenItRests) {
    for (const std::size_t i : {std::size_t{40'001}, std::size_t{777}}) {
        const Report& report = Reports()[i];
        shown_.SeekTo(report.time);
        const SystemState near = ShownState();
        EXPECT_EQ(near.time, report.time);
        ASSERT_EQ(near.ids, report.ids);
        for (std::size_t k = 0; k < 6; k++)
            EXPECT_NEAR(near.positions[k], report.positions[k], 1e-4);
    }
    // Between two reports it becomes the later one.
    shown_.SeekTo(0.5 * (Reports()[30'000].time + Reports()[30'001].time));
    ASSERT_TRUE(AwaitExact());
    EXPECT_TRUE(IsAt(ShownState(), Reports()[30'001]));
    shown_.StepReport(true);
    ASSERT_TRUE(AwaitTime(Reports()[30'002].time));
    EXPECT_TRUE(IsAt(ShownState(), Reports()[30'002]));
    for (const std::size_t i : {30'001U, 30'000U, 29'999U}) {
        shown_.StepReport(false);
        ASSERT_TRUE(AwaitTime(Reports()[i].time));
        EXPECT_TRUE(IsAt(ShownState(), Reports()[i]));
    }
    shown_.SeekTo(-1.0);
    EXPECT_EQ(ShownState().time, 0.0);
    shown_.SeekTo(Reports().back().time);
    EXPECT_FALSE(shown_.IsPast());
    shown_.StepReport(false);
    ASSERT_TRUE(AwaitTime(Reports()[Reports().size() - 2].time));
    shown_.BackToNow();
    EXPECT_FALSE(shown_.IsPast());
}

TEST_F(ShownMomentTest, WhateverChangesTheModelLeadsBackToNow) {
    shown_.SeekTo(Reports()[100].time);
    EXPECT_TRUE(
        CommitEntry(Portal(), EpochTimeFactory(), DimValue(Reports().back().time + 7.0, 1.0)));
    EXPECT_FALSE(shown_.IsPast());
    shown_.SeekTo(Reports()[100].time);
    ASSERT_TRUE(shown_.IsPast());
    Chain()->Undo();
    EXPECT_FALSE(shown_.IsPast());
    // A moment that was on its way does not come back.
    shown_.SeekTo(Reports()[100].time);
    shown_.StepReport(true);
    shown_.BackToNow();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_FALSE(shown_.IsPast());
}

TEST_F(ShownMomentTest, TheLineHasTheRunsOfTheBranchAndItsMarks) {
    const std::size_t first = Reports().size();
    const double firstEnd = Reports().back().time;
    run_.Focus()->SetName("Second");
    run_.Run(1000);
    const TimeLine line = Line();
    ASSERT_EQ(line.runs.size(), 2U);
    EXPECT_EQ(line.Start(), 0.0);
    EXPECT_EQ(line.runs[1].start, firstEnd);
    EXPECT_EQ(line.End(), Reports().back().time);
    EXPECT_EQ(line.RunAt(firstEnd), &line.runs[1]);
    EXPECT_EQ(line.RunAt(line.End() + 1.0), nullptr);
    // The first run has another name than the epoch that it began from.
    ASSERT_EQ(line.marks.size(), 4U);
    EXPECT_EQ(line.marks[0].name, "Second");
    EXPECT_EQ(line.marks[1].time, 0.0);
    EXPECT_EQ(line.marks[2].kind, TimeLine::Mark::Kind::kMerger);
    EXPECT_EQ(line.marks[2].other, "Body 3");
    EXPECT_EQ(line.marks[3].name, "Second");

    // The step before the second run's start is one of the first run, and back again.
    shown_.SeekTo(firstEnd);
    shown_.StepReport(false);
    EXPECT_TRUE(AwaitTime(Reports()[first - 2].time));
    for (const std::size_t i : {first - 1, first}) {
        shown_.StepReport(true);
        EXPECT_TRUE(AwaitTime(Reports()[i].time));
    }
}

// A branch has the run on its line that it begins in, up to there; and so has what runs from it.
TEST_F(ShownMomentTest, ABranchHasTheWayToItOnItsLine) {
    const Report& end = Reports()[40'000];
    const Report& seen = Reports()[1234];
    shown_.SeekTo(end.time);
    ASSERT_TRUE(Branch());
    ASSERT_EQ(Line().runs.size(), 1U);
    run_.Focus()->SetName("Elsewhere");
    EXPECT_EQ(Line().marks.back().name, "Elsewhere");
    EXPECT_EQ(Line().marks.back().time, end.time);
    EXPECT_EQ(Line().End(), end.time);
    EXPECT_EQ(Line().now, end.time);
    shown_.SeekTo(Reports()[45'000].time);
    EXPECT_FALSE(shown_.IsPast());
    shown_.SeekTo(Reports()[39'999].time);
    shown_.StepReport(true);
    ASSERT_TRUE(AwaitTime(end.time));
    EXPECT_FALSE(shown_.IsPast());

    run_.Run(1000);
    EXPECT_EQ(Line().runs.size(), 2U);
    EXPECT_EQ(Line().runs[1].start, end.time);
    // A name that goes on is told once.
    EXPECT_EQ(std::ranges::count(Line().marks, "Elsewhere", &TimeLine::Mark::name), 1);
    shown_.SeekTo(seen.time);
    ASSERT_TRUE(AwaitExact());
    EXPECT_TRUE(IsAt(ShownState(), seen));
    shown_.BackToNow();
    Chain()->Undo();
    Chain()->Undo();
    EXPECT_EQ(Line().End(), Reports()[50'000].time);
}

// Time falls along the line, and a step goes from report to report although the motion is known
// everywhere between them. What the run did where bodies touch is the branch's, too, whatever its
// start has become.
TEST(ShownMoment, ARunThatGoesBackIsOnTheLine) {
    HistoryRun::Settings settings;
    settings.order = 16;
    settings.cutoff = 1e-14;
    settings.onContact = kContactPasses;
    HistoryRun run({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0},
                    {0.0, 1.0, 0.0, 0.0, 1.0, 0.1},
                    {0.0, -1.0, 0.0, 0.0, 1.0, 0.1}},
                   settings);
    run.Run(100);
    const double turn = run.Focus()->Time();
    const std::size_t first = run.recorder.reports.size();
    run.document.GetCalculator()->SetBackwards(true);
    run.Run(300);
    const std::vector<Report> reports(run.recorder.reports.begin() + static_cast<long>(first),
                                      run.recorder.reports.end());
    const TimeLine line = LineOf(&run);
    ASSERT_EQ(line.runs.size(), 1U);
    EXPECT_EQ(line.Start(), turn);
    EXPECT_EQ(line.End(), reports.back().time);
    EXPECT_LT(line.End(), line.Start());

    EpochPortal* const portal = run.document.Portal();
    ShownMoment shown(portal, &run.history, {});
    const auto time = [&] { return shown.IsPast() ? shown.Get().epoch->Time() : NAN; };
    const auto await = [&](double expected) {
        return WaitUntil([&] { return time() == expected; });
    };
    shown.SeekTo(reports[100].time);
    for (const std::size_t i : {101U, 102U}) {
        shown.StepReport(true);
        EXPECT_TRUE(await(reports[i].time)) << i;
    }
    for (const std::size_t i : {101U, 100U, 99U}) {
        shown.StepReport(false);
        EXPECT_TRUE(await(reports[i].time)) << i;
    }
    {
        const WriteGuard guard(portal);
        run.Focus()->Parent()->SetOnContact(kContactMerges);
    }
    shown.SeekTo(reports[99].time);
    const auto moment = shown.GetExact();
    ASSERT_TRUE(moment);
    EXPECT_EQ(moment->epoch->OnContact(), kContactPasses);
    EXPECT_EQ(moment->epoch->SystemFromID(1)->Position().x, reports[99].positions[3]);
    shown.SeekTo(line.End() - 1.0);
    EXPECT_FALSE(shown.IsPast());
    shown.SeekTo(turn + 1.0);
    EXPECT_EQ(time(), turn);
}
