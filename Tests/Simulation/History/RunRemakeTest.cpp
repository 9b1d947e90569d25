// Runs of a document that was opened again: they are on its time line, and are made again when they
// are wanted.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>

#include "Model/Sharing/ModelGuards.h"
#include "Model/Sharing/Observer.h"
#include "Model/Systems/Body.h"
#include "Simulation/History/ShownMoment.h"
#include "Simulation/History/TimeLine.h"
#include "Tests/Platform/WaitUntil.h"
#include "Tests/Simulation/History/HistoryRun.h"

namespace {

using Finding = RunHistory::Finding;
using Report = ReportRecorder::Report;

// A document that was opened again, and what its bar shows.
class Reopened {
public:
    explicit Reopened(const BMessage& record) : run(record) {}

    TimeLine Line() {
        const ReadGuard guard(run.document.Portal());
        return ReadTimeLine(*run.document.Portal(), run.history);
    }
    // Until it is made, or refused.
    std::optional<Finding> Make() {
        shown.MakeRunAgain();
        return Await();
    }
    std::optional<Finding> Await() {
        std::optional<Finding> finding;
        static_cast<void>(WaitUntil([&] {
            if (run.history.SpanOf(run.Focus())) finding = Finding::kFound;
            if (!finding) finding = shown.TakeRefusal();
            return finding.has_value();
        }));
        return finding;
    }
    int32 CountWrong(const std::vector<Report>& reports, std::size_t each) {
        std::vector<std::size_t> asked;
        for (std::size_t i = reports.size() - 1; i > each; i -= each)
            if (reports[i].time != reports[i - 1].time) asked.push_back(i);
        return run.CountWrong(reports, asked);
    }

    HistoryRun run;
    ShownMoment shown{run.document.Portal(), &run.history, " & "};
};

}  // namespace

TEST(RunRemake, ARunOfAReopenedDocumentComesBackToTheBitThroughItsMergers) {
    HistoryRun first(TwoCollisions());
    first.Focus()->SetCOMOnGo(true);
    first.Run(20'000);
    first.recorder.reports.clear();
    first.Run(60'000);
    ASSERT_EQ(first.mergers, 2);
    const std::vector<Report>& reports = first.recorder.reports;
    Reopened again(first.Record());
    ASSERT_EQ(again.Line().runs.size(), 2U);
    EXPECT_FALSE(again.Line().runs[0].isKept);
    EXPECT_FALSE(again.Line().runs[1].isKept);
    EXPECT_EQ(again.Line().runs[1].start, first.history.SpanOf(first.Focus())->start);
    EXPECT_EQ(again.Line().End(), reports.back().time);

    ASSERT_EQ(again.Make(), Finding::kFound);
    EXPECT_TRUE(again.Line().runs[1].isKept);
    EXPECT_FALSE(again.Line().runs[0].isKept);
    EXPECT_EQ(again.CountWrong(reports, 1999), 0);
    EXPECT_EQ(again.run.history.Events(again.run.Focus()).size(), 2U);
    for (const int64 body : first.history.BodiesOf(first.Focus()))
        EXPECT_EQ(again.run.history.Samples(again.run.Focus(), body, -1e9, 1e9).size(),
                  first.history.Samples(first.Focus(), body, -1e9, 1e9).size());

    // A user who drags the bar of the other one sees it as soon as it is made.
    const AbEpoch* const other = again.Line().runs[0].epoch;
    again.shown.SeekTo(0.5 * again.Line().runs[0].end);
    EXPECT_FALSE(again.shown.IsPast());
    EXPECT_TRUE(WaitUntil([&] { return again.shown.IsPast(); }));
    EXPECT_EQ(again.shown.Get().run, other);
    EXPECT_TRUE(again.run.history.SpanOf(other));
}

// Time that falls, and contacts that are passed.
TEST(RunRemake, ARunThatGoesBackIsMadeAgain) {
    HistoryRun::Settings settings;
    settings.order = 16;
    settings.cutoff = 1e-14;
    settings.onContact = kContactPasses;
    HistoryRun first({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0},
                      {0.0, 1.0, 0.0, 0.0, 1.0, 0.1},
                      {0.0, -1.0, 0.0, 0.0, 1.0, 0.1}},
                     settings);
    first.document.GetCalculator()->SetBackwards(true);
    first.Run(500);
    Reopened again(first.Record());
    EXPECT_TRUE(again.Line().isBackwards);
    ASSERT_EQ(again.Make(), Finding::kFound);
    EXPECT_EQ(again.CountWrong(first.recorder.reports, 31), 0);
}

// The root at which bodies touch is found more exactly than the time of that report tells.
TEST(RunRemake, ARunThatEndsWhereBodiesTouchIsMadeAgain) {
    for (const double start : {20.0, 20.3, 21.7, 23.1}) {
        SCOPED_TRACE(start);
        HistoryRun::Settings settings;
        settings.order = 16;
        settings.cutoff = 1e-14;
        HistoryRun first({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0},
                          {2e-6, start, 0.0, 0.0, 0.2, 0.5},
                          {1e-6, start, 1.9, 0.0, 0.1, 0.5}},
                         settings);
        first.control.UnPause();
        while (!first.document.GetCalculator()->HasStoppedItself())
            snooze(1000);
        first.control.Pause();
        Reopened again(first.Record());
        EXPECT_EQ(again.Make(), Finding::kFound);
    }
}

TEST(RunRemake, ARunThatDoesNotArriveIsNotKeptAndItsEndStays) {
    HistoryRun first(TwoCollisions());
    first.Run(50'000);
    const BMessage record = first.Record();
    {
        Reopened again(record);
        AbEpoch* const start = again.run.Focus()->Parent();
        auto* const planet = dynamic_cast<Body*>(start->SystemFromID(1));
        planet->SetPosition(planet->Position() + ThreeVector{0.0, 0.0, 1e-15});
        const SystemState end = TakeState(again.run.document.Portal());
        EXPECT_EQ(again.Make(), Finding::kLost);
        EXPECT_FALSE(again.run.history.SpanOf(again.run.Focus()));
        EXPECT_EQ(TakeState(again.run.document.Portal()).positions, end.positions);
    }
    {
        Reopened again(record);
        dynamic_cast<Epoch*>(again.run.Focus()->Parent())->RemoveSystems();
        EXPECT_TRUE(again.Line().IsEmpty());
        EXPECT_EQ(again.Make(), Finding::kNotKept);
    }
}

// As after more memory is allowed: its gaps are filled.
TEST(RunRemake, TheRunThatWasJustMadeIsMadeAgain) {
    HistoryRun run(TwoCollisions());
    run.Run(5'000);
    ShownMoment shown(run.document.Portal(), &run.history, "");
    struct Counter final : Observer {
        void Changed(int32 what) override {
            if ((what & kRunsKeptChanged) == kRunsKeptChanged) isKept = true;
        }
        bool CommitChanges() override { return false; }
        std::atomic<bool> isKept{false};
    } counter;
    run.document.Portal()->AddObserver(&counter);
    shown.MakeRunAgain();
    std::optional<Finding> refusal;
    EXPECT_TRUE(WaitUntil([&] {
        if (!refusal) refusal = shown.TakeRefusal();
        return counter.isKept || refusal;
    }));
    EXPECT_TRUE(counter.isKept);
    EXPECT_FALSE(refusal);
    run.document.Portal()->RemoveObserver(&counter);
    SystemState state;
    EXPECT_EQ(run.StateAt(run.Focus()->Time() / 2, &state), Finding::kFound);
}

TEST(RunRemake, MakingIsEndedWhenItIsNotWantedAnyMore) {
    HistoryRun first(TwoCollisions());
    first.Run(50'000);
    Reopened again(first.Record());
    // An end that is far away.
    again.run.Focus()->SetTime(1e6 * again.run.Focus()->Time());
    again.shown.MakeRunAgain();
    EXPECT_TRUE(WaitUntil([&] { return again.shown.MakingProgress().value_or(0.0) > 0.0; }));
    again.shown.StopMaking();
    EXPECT_TRUE(WaitUntil([&] { return !again.shown.MakingProgress(); }));
    EXPECT_FALSE(again.run.history.SpanOf(again.run.Focus()));
    EXPECT_FALSE(again.shown.TakeRefusal());
}
