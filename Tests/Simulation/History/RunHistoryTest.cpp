#include "Simulation/History/RunHistory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "Model/Commands/CommandFactory.h"
#include "Simulation/Document/SystemState.h"
#include "Simulation/History/HistoryBudget.h"
#include "Tests/Simulation/History/HistoryRun.h"

namespace {

using Finding = RunHistory::Finding;
using Report = ReportRecorder::Report;

// And two that nothing meets, one of them without mass.
std::vector<HistoryRun::Planet> TwoCollisionsAndTwoMore() {
    std::vector<HistoryRun::Planet> bodies = TwoCollisions();
    bodies.push_back({0.0, 0.0, -2.0, 0.7071, 0.0, 0.001});
    bodies.push_back({1e-7, -5.0, 0.0, 0.0, -0.4472, 0.001});
    return bodies;
}

#ifdef ORVEK_SANITIZED
constexpr std::size_t kMaxAsked = 8;
#else
constexpr std::size_t kMaxAsked = 1000;
#endif

// Asks for every `each`-th report, in random order, but for no more than that many of them; returns
// how many differ from what they were.
int32 CountWrong(HistoryRun* run, std::size_t each, std::size_t most = kMaxAsked) {
    const std::vector<Report>& reports = run->recorder.reports;
    std::vector<std::size_t> asked;
    for (std::size_t i = 0; i < reports.size(); i += each)
        // Of a collision there are two of one time, and the first counts.
        if (i == 0 || reports[i].time != reports[i - 1].time) asked.push_back(i);
    std::shuffle(asked.begin(), asked.end(), std::mt19937(7));
    asked.resize(std::min(asked.size(), most));
    return run->CountWrong(reports, asked);
}

}  // namespace

TEST(RunHistory, EveryTenthReportComesBackToTheBitThroughTwoMergers) {
    HistoryRun run(TwoCollisionsAndTwoMore());
    run.Run(100'000);
    ASSERT_EQ(run.mergers, 2);
    ASSERT_GE(run.recorder.reports.size(), 100'000U);
    EXPECT_EQ(CountWrong(&run, 10), 0);

    // Between two reports it is the later one, and beyond the run there is none.
    const std::vector<Report>& reports = run.recorder.reports;
    SystemState state;
    const double between = 0.5 * (reports[50'000].time + reports[50'001].time);
    EXPECT_EQ(run.StateAt(between, &state), Finding::kFound);
    EXPECT_TRUE(IsAt(state, reports[50'001]));
    EXPECT_EQ(run.StateAt(reports.back().time + 1.0, &state), Finding::kNotKept);
    EXPECT_EQ(run.StateAt(-1.0, &state), Finding::kNotKept);
    RunCheckpoint moment;
    EXPECT_EQ(run.history.MomentAt(run.Focus()->Parent(), 0.0, {}, &moment), Finding::kNotKept);
    EXPECT_EQ(run.StateAt(reports[100].time, &state), Finding::kFound);
    EXPECT_EQ(state.NameOf(2), "Body 2");
    EXPECT_EQ(run.StateAt(run.Focus()->Time(), &state), Finding::kFound);
    EXPECT_EQ(state.NameOf(2), "Body 2 & Body 3");
    const double half = 0.5 * run.Focus()->Time();
    EXPECT_EQ(run.history.MomentAt(
                  run.Focus(), half, [](double) { return false; }, &moment),
              Finding::kFound);  // too quick for a question

    const std::vector<RunEvent> events = run.history.Events(run.Focus());
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].kind, RunEvent::Kind::kMerger);
    ASSERT_EQ(events[0].before.size(), 2U);
    EXPECT_EQ(events[0].before[0].name, "Body 2");
    EXPECT_EQ(events[0].before[1].id, 3);
    EXPECT_LT(events[0].time, events[1].time);
}

// With checkpoints so few that those at the mergers have gone, at several orders.
TEST(RunHistory, MergersAreMadeAgainWhereNoCheckpointFollowsThem) {
    for (const int32 order : {2, 3, 4}) {
        SCOPED_TRACE(order);
        HistoryRun::Settings settings;
        settings.order = order;
        settings.cutoff = order == 4 ? 1e-11 : order == 3 ? 1e-7 : 2e-4;
        settings.limits.checkpoints = 2;
        HistoryRun run(TwoCollisionsAndTwoMore(), settings);
        run.Run(100'000);
        // At the lower orders the bodies do not meet.
        ASSERT_EQ(run.mergers, order == 4 ? 2 : 0);
        EXPECT_LE(run.history.CountCheckpoints(run.Focus()), 2U);
        EXPECT_EQ(CountWrong(&run, 4999), 0);
    }
}

// What is kept follows from the run, whatever the batches are.
TEST(RunHistory, AHeldRunIsKeptLikeOneThatWasNot) {
    HistoryRun one(TwoCollisionsAndTwoMore()), held(TwoCollisionsAndTwoMore());
    one.Run(40'000);
    held.Run(40'000, 377);
    // The start, every 4096th report, and where the calculator began anew.
    EXPECT_EQ(one.history.CountCheckpoints(one.Focus()),
              1 + one.recorder.reports.size() / 4096 + static_cast<std::size_t>(one.mergers));
    EXPECT_EQ(one.history.CountCheckpoints(one.Focus()),
              held.history.CountCheckpoints(held.Focus()));
    EXPECT_EQ(CountWrong(&held, 3001), 0);
    for (const int64 body : one.history.BodiesOf(one.Focus())) {
        const auto expected = one.history.Samples(one.Focus(), body, 0.0, 1e9);
        const auto found = held.history.Samples(held.Focus(), body, 0.0, 1e9);
        ASSERT_EQ(found.size(), expected.size()) << body;
        for (std::size_t i = 0; i < found.size(); i++) {
            EXPECT_EQ(found[i].time, expected[i].time);
            EXPECT_EQ(found[i].position, expected[i].position);
            EXPECT_EQ(found[i].isJoined, expected[i].isJoined);
        }
    }
}

// Back in time: all reports come back, and samples stand in the order of time as ever.
TEST(RunHistory, ARunThatGoesBackIsKept) {
    HistoryRun::Settings settings;
    settings.order = 16;
    settings.cutoff = 1e-14;
    HistoryRun run({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0},
                    {1e-3, 1.0, 0.0, 0.0, 1.0, 0.0},
                    {1e-5, -3.0, 0.0, 0.0, -0.4, 0.0}},
                   settings);
    run.document.GetCalculator()->SetBackwards(true);
    run.Run(2000, 77);
    const std::vector<Report>& reports = run.recorder.reports;
    ASSERT_LT(reports.back().time, -100.0);
    EXPECT_EQ(CountWrong(&run, 19), 0);
    SystemState state;
    const double between = 0.5 * (reports[500].time + reports[501].time);
    EXPECT_EQ(run.StateAt(between, &state), Finding::kFound);
    EXPECT_EQ(state.time, between) << "the motion is known there";
    EXPECT_EQ(run.StateAt(1.0, &state), Finding::kNotKept);
    EXPECT_EQ(run.StateAt(reports.back().time - 1.0, &state), Finding::kNotKept);

    const auto samples = run.history.Samples(run.Focus(), 1, -1e9, 1e9);
    ASSERT_GT(samples.size(), 100U);
    EXPECT_EQ(samples.front().time, reports.back().time);
    EXPECT_EQ(samples.back().time, 0.0);
    double worst = 0.0;
    std::size_t next = samples.size() - 1;
    for (const Report& report : reports) {
        while (next > 1 && samples[next - 1].time > report.time)
            next--;
        EXPECT_TRUE(samples[next].isJoined);
        EXPECT_GT(samples[next].time, samples[next - 1].time);
        const ThreeVector kept = Between(samples[next - 1], samples[next], report.time).position;
        worst = std::max({worst, std::fabs(kept.x - report.positions[3]),
                          std::fabs(kept.y - report.positions[4])});
    }
    // On a circle of radius 1.
    EXPECT_LT(worst, 1e-4);
    // The newest ones are the earliest.
    const auto few = run.history.Samples(run.Focus(), 1, -1e9, 1e9, 10);
    EXPECT_LE(few.size(), 11U);
    EXPECT_EQ(few.front().time, reports.back().time);
}

// An edit between two steps: no calculation leads over it.
TEST(RunHistory, AnEditDuringARunIsAnEventAndARunAsksNoMoreOfIt) {
    HistoryRun::Settings settings;
    settings.limits.checkpoints = 1;
    HistoryRun run(TwoCollisionsAndTwoMore(), settings);
    StepRunner steps(&run.document);
    const auto goOn = [&](bool isFirst, int64 reports) {
        run.document.GetCalculator()->SetRunLimit(reports, INFINITY);
        isFirst ? run.control.UnPause() : run.control.UnRest();
        while (!run.document.GetCalculator()->HasStoppedItself())
            snooze(1000);
        run.control.Rest();
    };
    goOn(true, 5000);
    auto* const planet = dynamic_cast<Body*>(run.Focus()->SystemFromID(1));
    planet->SetM(2e-3);
    const double radius = planet->Radius();
    goOn(false, 5000);
    planet->SetRadius(0.01);
    goOn(false, 5000);
    run.control.UnRest();
    run.control.Pause();
    EXPECT_EQ(CountWrong(&run, 499), 0);
    const std::vector<RunEvent> events = run.history.Events(run.Focus());
    ASSERT_EQ(events.size(), 2U);
    ASSERT_EQ(events[0].before.size(), 1U);
    EXPECT_EQ(events[0].before[0].gm, 1e-3);
    ASSERT_EQ(events[1].before.size(), 1U);
    EXPECT_EQ(events[1].before[0].radius, radius);
}

TEST(RunHistory, AnUndoneGoTakesItsRunAlongAndARedoneOneBringsItBack) {
    HistoryRun run(TwoCollisionsAndTwoMore());
    run.Run(10'000);
    const AbEpoch* const first = run.Focus();
    UndoChain* const chain = run.document.GetUndoChain();
    chain->Undo();
    EXPECT_FALSE(run.history.SpanOf(run.Focus()));
    chain->Redo();
    ASSERT_EQ(run.Focus(), first);
    EXPECT_EQ(CountWrong(&run, 999), 0);
    // Another Go, and the first one is gone for good; its place in memory may be another's.
    chain->Undo();
    const std::size_t bytes = run.history.Bytes();
    run.recorder.reports.clear();
    run.Run(10'000);
    EXPECT_EQ(run.history.Bytes(), bytes);
    EXPECT_EQ(CountWrong(&run, 999), 0);
}

// Without forces there is but one report, at the time that was asked for.
TEST(RunHistory, ABodyThatGoesStraightWasNowhereButAtTheEnd) {
    HistoryRun run({{1.0, 0.0, 0.0, 0.5, 0.0, 0.0}});
    run.document.GetCalculator()->SetRunLimit(0, 100.0);
    run.control.UnPause();
    while (!run.document.GetCalculator()->HasStoppedItself())
        snooze(1000);
    run.control.Pause();
    SystemState state;
    ASSERT_EQ(run.StateAt(30.0, &state), Finding::kFound);
    EXPECT_EQ(state.time, 100.0);
    EXPECT_EQ(state.positions, (std::vector<double>{50.0, 0.0, 0.0}));
}

// What the user allows holds at once for all documents that are open, and as long as they are.
TEST(RunHistory, AnotherBudgetHoldsAtOnce) {
    HistoryRun one(TwoCollisionsAndTwoMore()), other(TwoCollisionsAndTwoMore());
    HistoryBudget budget;
    budget.Enter(&one.history);
    EXPECT_EQ(one.history.Limits().bytes, std::size_t{HistoryBudget::kDefault} * 1'000'000);
    budget.Enter(&other.history);
    budget.Set(64);
    EXPECT_EQ(one.history.Limits().bytes, 64'000'000U);
    EXPECT_EQ(other.history.Limits().bytes, 64'000'000U);
    budget.Leave(&one.history);
    budget.Set(0);
    EXPECT_EQ(budget.Megabytes(), HistoryBudget::kMin);
    EXPECT_EQ(one.history.Limits().bytes, 64'000'000U);

    one.Run(40'000);
    const std::size_t bytes = one.history.Bytes();
    one.history.SetBudget(bytes / 2);
    EXPECT_LE(one.history.Bytes(), bytes / 2);
    EXPECT_GT(one.history.Bytes(), 0U);
    EXPECT_EQ(CountWrong(&one, 4999), 0);
}

TEST(RunHistory, TheBudgetIsHeldAndTheNewestIsKeptBest) {
    HistoryRun::Settings settings;
    settings.limits.bytes = 60'000;
    HistoryRun run(TwoCollisionsAndTwoMore(), settings);
    for (int32 i = 0; i < 6; i++) {
        run.recorder.reports.clear();
        run.Run(60'000);
        EXPECT_LE(run.history.Bytes(), settings.limits.bytes);
    }
    EXPECT_EQ(CountWrong(&run, 9'999), 0);
    const RunHistory::Span span = *run.history.SpanOf(run.Focus());
    const auto samples = run.history.Samples(run.Focus(), 1, span.start, span.end);
    EXPECT_EQ(samples.back().time, span.end);
}
