// What is kept of runs goes into a document and comes back with it.
#include "Simulation/History/SavedHistory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "Model/Commands/CommandFactory.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/BranchCommand.h"
#include "Simulation/History/ShownMoment.h"
#include "Simulation/History/TimeLine.h"
#include "Tests/Simulation/History/HistoryRun.h"

namespace {

using Finding = RunHistory::Finding;
using Report = ReportRecorder::Report;

// As a window saves it.
BMessage Saved(HistoryRun* run) {
    run->document.SetSavesHistory(true);
    run->document.SetHistory(SavedHistory::Of(run->document.Portal(), run->history));
    BMessage record = run->Record();
    run->document.SetHistory({});
    return record;
}

void ReadInto(HistoryRun* run) {
    SavedHistory::Read(run->document.History(), run->document.Portal(), &run->history);
}

TimeLine LineOf(HistoryRun* run) {
    const ReadGuard guard(run->document.Portal());
    return ReadTimeLine(*run->document.Portal(), run->history);
}

#ifdef ORVEK_SANITIZED
constexpr std::size_t kAsked = 8;
#else
constexpr std::size_t kAsked = 300;
#endif

// Of every tenth report, in random order.
int32 CountWrong(HistoryRun* run, const std::vector<Report>& reports, std::size_t most = kAsked) {
    std::vector<std::size_t> asked;
    for (std::size_t i = 10; i < reports.size(); i += 10)
        if (reports[i].time != reports[i - 1].time) asked.push_back(i);
    std::shuffle(asked.begin(), asked.end(), std::mt19937(3));
    asked.resize(std::min(asked.size(), most));
    return run->CountWrong(reports, asked);
}

}  // namespace

TEST(SavedHistory, EveryTenthReportComesBackToTheBitAfterASave) {
    HistoryRun first(TwoCollisions());
    first.Run(100'000);
    ASSERT_EQ(first.mergers, 2);
    std::vector<std::byte> file;
    ASSERT_EQ(Saved(&first).Flatten(&file), B_OK);
    BMessage record;
    ASSERT_EQ(record.Unflatten(file.data(), file.size()), B_OK);

    HistoryRun again(record);
    EXPECT_TRUE(again.document.SavesHistory());
    ReadInto(&again);
    EXPECT_EQ(CountWrong(&again, first.recorder.reports), 0);
    const TimeLine line = LineOf(&again);
    ASSERT_EQ(line.runs.size(), 1U);
    EXPECT_TRUE(line.runs[0].isKept);
    EXPECT_EQ(line.marks.size(), 3U);
    EXPECT_EQ(line.marks[1].other, "Body 3");
    for (const int64 body : first.history.BodiesOf(first.Focus())) {
        const auto kept = first.history.Samples(first.Focus(), body, -1e9, 1e9);
        const auto read = again.history.Samples(again.Focus(), body, -1e9, 1e9);
        ASSERT_EQ(read.size(), kept.size());
        EXPECT_TRUE(std::ranges::equal(read, kept, [](const Sample& a, const Sample& b) {
            return a.time == b.time && a.position == b.position && a.velocity == b.velocity &&
                   a.isJoined == b.isJoined;
        }));
    }
    // Saved once more it is the same.
    EXPECT_EQ(Saved(&again).ToText(), record.ToText());
}

// A program without a time line keeps what it has read, and epochs that come and go around a run
// change nothing about where it belongs.
TEST(SavedHistory, ARunFindsItsEpochAmongOthers) {
    HistoryRun first(TwoCollisions());
    first.Run(10'000);
    first.Run(10'000);
    const std::size_t both = first.recorder.reports.size();
    HistoryRun passing(Saved(&first));
    passing.Run(1000);
    ASSERT_FALSE(passing.document.History().IsEmpty());
    HistoryRun again(passing.Record());
    ReadInto(&again);
    const TimeLine line = LineOf(&again);
    ASSERT_EQ(line.runs.size(), 3U);
    EXPECT_TRUE(line.runs[0].isKept);
    EXPECT_TRUE(line.runs[1].isKept);
    EXPECT_FALSE(line.runs[2].isKept);
    EXPECT_EQ(line.runs[1].end, first.recorder.reports[both - 1].time);

    // Not wanted, and of an epoch alone: not written.
    BMessage alone;
    EXPECT_FALSE(again.document.Store(&alone, false).Failed());
    EXPECT_FALSE(alone.HasName(SimulationDocument::kHistoryField));
    passing.document.SetSavesHistory(false);
    EXPECT_FALSE(passing.Record().HasName(SimulationDocument::kHistoryField));
    // An epoch with another end has no use for it.
    AbEpoch* const end = again.Focus()->Parent();
    HistoryRun other(passing.Record());
    auto* const planet = dynamic_cast<Body*>(other.Focus()->Parent()->SystemFromID(1));
    planet->SetM(2.0 * planet->M());
    SavedHistory::Read(first.Record().IsEmpty() ? BMessage() : passing.document.History(),
                       other.document.Portal(), &other.history);
    EXPECT_FALSE(other.history.SpanOf(other.Focus()->Parent()));
    EXPECT_TRUE(again.history.SpanOf(end));
}

// Also one that was edited, which no run could be made again for.
TEST(SavedHistory, ABranchComesBackWithTheWayToIt) {
    HistoryRun first({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {1e-3, 1.0, 0.0, 0.0, 1.0, 0.0}});
    first.Run(9000);
    const Report& seen = first.recorder.reports[1234];
    const double time = first.recorder.reports[6000].time;
    {
        ShownMoment shown(first.document.Portal(), &first.history, " & ");
        shown.SeekTo(time);
        const auto moment = shown.GetExact();
        std::unique_ptr<LCommand> command;
        if (const ReadGuard guard(first.document.Portal()); moment)
            command = MakeBranchCommand(first.document.Portal(), &first.history, *moment);
        ASSERT_TRUE(ExecuteFiled(first.document.Portal(), std::move(command)));
    }
    auto* const planet = dynamic_cast<Body*>(first.Focus()->SystemFromID(1));
    planet->SetVelocity(planet->Velocity() * 1.1);
    first.Run(500);

    HistoryRun again(Saved(&first));
    ReadInto(&again);
    const TimeLine line = LineOf(&again);
    ASSERT_EQ(line.runs.size(), 2U);
    EXPECT_EQ(line.runs[0].end, time);
    EXPECT_TRUE(line.runs[0].isKept);
    RunCheckpoint moment;
    ASSERT_EQ(again.history.MomentAt(line.runs[0].epoch, seen.time, {}, &moment), Finding::kFound);
    EXPECT_TRUE(IsAt(moment.state, seen));
    EXPECT_EQ(Saved(&again).ToText(), Saved(&first).ToText());

    // One that has changed since begins nowhere.
    HistoryRun other(Saved(&first));
    auto* const moved = dynamic_cast<Body*>(other.Focus()->Parent()->SystemFromID(1));
    moved->SetVelocity(moved->Velocity() * 1.1);
    ReadInto(&other);
    EXPECT_FALSE(LineOf(&other).runs[0].isKept);
}

// Little room: the newest is kept best, and what is there is still exact.
TEST(SavedHistory, MoreThanThereIsRoomForIsLeftOut) {
    HistoryRun first(TwoCollisions());
    first.Run(60'000);
    const BMessage whole = SavedHistory::Of(first.document.Portal(), first.history);
    const std::size_t room = whole.FlattenedSize() / 3;
    const std::size_t before = first.history.Bytes();
    BMessage record = SavedHistory::Of(first.document.Portal(), first.history, room);
    EXPECT_FALSE(record.IsEmpty());
    EXPECT_LE(record.FlattenedSize(), room);
    EXPECT_EQ(first.history.Bytes(), before) << "the program keeps what it had";
    HistoryRun again(first.Record());
    SavedHistory::Read(record, again.document.Portal(), &again.history);
    EXPECT_EQ(CountWrong(&again, first.recorder.reports, 8), 0);
    EXPECT_TRUE(SavedHistory::Of(first.document.Portal(), first.history, 1200).IsEmpty());
}

// Every byte of it may be another one.
TEST(SavedHistory, ADamagedOneCountsAsMissing) {
    HistoryRun first({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {1e-3, 1.0, 0.0, 0.0, 1.0, 0.0}});
    first.Run(9000);
    const BMessage record = first.Record();
    const BMessage history = SavedHistory::Of(first.document.Portal(), first.history);
    std::vector<std::byte> bytes;
    ASSERT_EQ(history.Flatten(&bytes), B_OK);
    std::mt19937 random(11);
    HistoryRun again(record);
    int32 read = 0;
    for (int32 i = 0; i < 300; i++) {
        std::vector<std::byte> damaged = bytes;
        for (int32 k = 0; k < 1 + i % 3; k++)
            damaged[random() % damaged.size()] = static_cast<std::byte>(random() % 256);
        BMessage found;
        if (found.Unflatten(damaged.data(), damaged.size(), nullptr, BMessage::Checksum::kIgnore) !=
            B_OK)
            continue;
        SavedHistory::Read(found, again.document.Portal(), &again.history);
        if (!again.history.SpanOf(again.Focus())) continue;
        read++;
        for (const int64 body : again.history.BodiesOf(again.Focus()))
            for (const Sample& sample : again.history.Samples(again.Focus(), body, -1e9, 1e9))
                EXPECT_TRUE(IsFinite(sample.position) && IsFinite(sample.velocity));
        static_cast<void>(again.history.Take(again.Focus()));
    }
    EXPECT_GT(read, 0);

    BMessage document(record);
    document.AddInt32(SimulationDocument::kHistoryField, 7);
    HistoryRun odd(document);
    EXPECT_TRUE(odd.document.History().IsEmpty());
}

// Nor is it in the way of the document, which can be saved again without it.
TEST(SavedHistory, ADocumentWithADamagedOneIsReadAndSaved) {
    HistoryRun first({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0}, {1e-3, 1.0, 0.0, 0.0, 1.0, 0.0}});
    first.Run(5000);
    std::vector<std::byte> bytes;
    ASSERT_EQ(Saved(&first).Flatten(&bytes), B_OK);
    const std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string magic = text.substr(0, 4);
    int32 damaged = 0;
    for (std::size_t at = text.find(magic, text.find(SimulationDocument::kHistoryField));
         at != std::string::npos; at = text.find(magic, at + 1)) {
        std::vector<std::byte> file = bytes;
        file[at] = std::byte{0};
        BMessage record;
        ASSERT_EQ(record.Unflatten(file.data(), file.size()), B_OK);
        HistoryRun again(record);
        EXPECT_TRUE(again.document.History().IsEmpty());
        EXPECT_EQ(again.Record().Flatten(&file), B_OK);
        damaged++;
    }
    EXPECT_GT(damaged, 5);
}
