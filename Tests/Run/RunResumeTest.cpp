// Runs that are killed and taken up again from their checkpoint.
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <thread>

#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

namespace fs = std::filesystem;

using Arguments = std::vector<std::string>;

// The run in a checkpoint that is there, as far as the tests look at it.
struct Kept {
    int64 steps = 0;
    std::size_t bodies = 0;
};

class RunResume : public RunFixture {
protected:
    // Nothing if there is no checkpoint.
    static Kept Look(const std::string& path) {
        BMessage record, run, calculator;
        Kept kept;
        int32 bodies = 0;
        if (SimulationFile::Read(path, &record).Failed() ||
            record.FindMessage("Run", &run) != B_OK ||
            run.FindMessage("Calculator", &calculator) != B_OK)
            return kept;
        if (calculator.GetInfo("SeriesBegin", nullptr, &bodies) == B_OK)
            bodies /= 12;  // numbers of each
        else if (calculator.GetInfo("IDs", nullptr, &bodies) != B_OK)
            return kept;
        EXPECT_EQ(run.FindInt64("Steps", &kept.steps), B_OK);
        kept.bodies = static_cast<std::size_t>(bodies);
        return kept;
    }
    // Starts the program and kills it as soon as its checkpoint is as wanted; the checkpoint.
    Kept RunAndKill(Arguments arguments, const std::function<bool(const Kept&)>& isWanted,
                    int signal = SIGKILL) const {
        Kept kept;
        const auto stop = [&](pid_t program) {
            while (!isWanted(kept) && IsRunning(program))
                kept = Look(checkpoint_);
            kill(program, signal);
        };
        arguments.insert(arguments.end(), {"-q", "-o", saved_, "--checkpoint", "0.005s"});
        const Outcome outcome = RunProgram(arguments, {.meanwhile = stop});
        EXPECT_EQ(outcome.signal, signal == SIGKILL ? SIGKILL : 0) << outcome.err;
        kept = Look(checkpoint_);
        EXPECT_TRUE(isWanted(kept));
        return kept;
    }
    Outcome Resume(Arguments more = {}) const {
        more.insert(more.end(), {"--resume", checkpoint_, "--json", "-o", saved_});
        return RunProgram(more);
    }
    // Both are summaries of the whole run, but for the time that they took.
    static void ExpectSame(const Outcome& resumed, const Outcome& whole) {
        ASSERT_EQ(resumed.status, 0) << resumed.err;
        for (const char* member :
             {"sha256", "steps", "start_time_s", "end_time_s", "bodies", "mergers",
              "merger_kinetic_energy_loss_m5_s4", "relative_energy_error",
              "relative_momentum_drift", "relative_angular_momentum_drift", "ending", "epoch"})
            EXPECT_EQ(Member(resumed.out, member), Member(whole.out, member)) << member;
    }

    const std::string saved_ = Path("saved");
    const std::string checkpoint_ = Path("saved.checkpoint");
};

TEST_F(RunResume, AKilledRunGoesOnToTheSameBitsAtEveryOrder) {
    const std::string document = PutDocument("document", *TestSystem());
    // With many promotions, and bodies that stay together.
    for (const auto& [order, cutoff] :
         {std::pair{"2", "1e-6"}, {"3", "1e-10"}, {"4", "1e-11"}, {"16", "1e-16"}}) {
        SCOPED_TRACE(order);
        const Arguments run = {"-n", "400000", "--order", order, "--cutoff", cutoff, document};
        Arguments whole = run;
        whole.insert(whole.end(), {"--json", "-o", Path("whole")});
        const Outcome uninterrupted = RunProgram(whole);
        fs::remove(checkpoint_);
        int64 before = 0;
        Arguments arguments = run;
        // Killed twice: what was resumed is killed and resumed again.
        for (int kills = 0; kills < 2; kills++) {
            const Kept kept =
                RunAndKill(arguments, [=](const Kept& k) { return k.steps > before; });
            EXPECT_LT(kept.steps, 400'000);
            before = kept.steps;
            arguments = {"--resume", checkpoint_};
        }
        ExpectSame(Resume(), uninterrupted);
        SimulationDocument resumed(nullptr), straight(nullptr);
        ASSERT_FALSE(resumed.Load(GetRecord(saved_)).Failed());
        ASSERT_FALSE(straight.Load(GetRecord(Path("whole"))).Failed());
        EXPECT_EQ(Outline(resumed.Root()), Outline(straight.Root()));
        BMessage* const state = resumed.Portal()->FocusEpoch()->CalculatorState();
        BMessage* const expected = straight.Portal()->FocusEpoch()->CalculatorState();
        ASSERT_TRUE(state != nullptr && expected != nullptr);
        EXPECT_TRUE(*state == *expected);
        EXPECT_FALSE(resumed.Portal()->FocusEpoch()->Writeable());
    }
}

// It ends where it was to end when it began, at the very moment.
TEST_F(RunResume, ARunUntilSomethingHappensKeepsItsEnd) {
    const auto epoch = TestSystem();
    epoch->RootSystem()->AddChild(
        MakeBody("Stranger", 9, 0.0, {1e14, 0, 0}, {1e5, 0, 0}).release());
    const Arguments run = {"--until", "escape=Stranger, 4.1e15 m",    "--order", "16", "--cutoff",
                           "1e-16",   PutDocument("document", *epoch)};
    Arguments whole = run;
    whole.emplace_back("--json");
    const Outcome uninterrupted = RunProgram(whole);
    EXPECT_NEAR(std::stod(Member(uninterrupted.out, "end_time_s")), 4e10, 4e8);
    RunAndKill(run, [](const Kept& kept) { return kept.steps > 0; });
    ExpectSame(Resume(), uninterrupted);
}

TEST_F(RunResume, MergersBeforeAndAfterACheckpointAreThoseOfTheWholeRun) {
    const std::string document = PutDocument("document", *MergingSystem());
    // About as many steps before the merger as after it.
    const Arguments run = {"--for", "150", "--cutoff", "1e-17", document};
    Arguments whole = run;
    whole.insert(whole.end(), {"--json"});
    const Outcome uninterrupted = RunProgram(whole);
    ASSERT_EQ(Member(uninterrupted.out, "mergers"), "1") << uninterrupted.out;
    for (const std::size_t bodies : {3u, 2u}) {
        fs::remove(checkpoint_);
        RunAndKill(run, [=](const Kept& kept) { return kept.bodies == bodies; });
        ExpectSame(Resume(), uninterrupted);
    }
    // What the run does at a collision is part of it.
    fs::remove(checkpoint_);
    Arguments stopping = run;
    stopping.insert(stopping.end(), {"--on-collision", "stop"});
    RunAndKill(stopping, [](const Kept& kept) { return kept.bodies == 3; });
    const Outcome outcome = Resume();
    EXPECT_EQ(Member(outcome.out, "ending"), "\"collision\"");
}

TEST_F(RunResume, ACheckpointIsADocumentAndGoesWhenTheRunIsDone) {
    const std::string document = PutDocument("document", *TestSystem());
    const Kept kept =
        RunAndKill({"-n", "1000000000", "--csv", Path("csv"), "--every", "100", document},
                   [](const Kept& k) { return k.steps > 0; });
    // The reports are there up to the checkpoint.
    const std::string csv = Get(Path("csv"));
    const std::vector<CsvRow> rows = ParseCsv(csv.substr(0, csv.rfind('\n') + 1));
    EXPECT_GE(rows.back().report, kept.steps / 100 * 100);
    // A plain run logs an epoch of its own, below a record.
    const Outcome listing = RunProgram({"--epochs", checkpoint_});
    EXPECT_EQ(listing.out.find("writeable"), std::string::npos) << listing.out;
    const Outcome plain = RunProgram({"-n", "10", "--json", "-o", Path("plain"), checkpoint_});
    EXPECT_EQ(Member(plain.out, "steps"), "10");
    EXPECT_FALSE(GetRecord(Path("plain")).HasName("Run"));
    // Told to stop it keeps one more, and reports are numbered on from there.
    fs::remove(checkpoint_);
    const Kept stopped = RunAndKill(
        {"-n", "1000000000", document}, [](const Kept& k) { return k.steps > 0; }, SIGTERM);
    BMessage record = GetRecord(checkpoint_);
    BMessage run, calculator;
    ASSERT_EQ(record.FindMessage("Run", &run), B_OK);
    ASSERT_EQ(run.FindMessage("Calculator", &calculator), B_OK);
    run.ReplaceInt64("Goal steps", stopped.steps + 1000);
    calculator.ReplaceInt64("Reports left", 1000);
    run.RemoveName("Calculator");
    run.AddMessage("Calculator", &calculator);
    record.RemoveName("Run");
    record.AddMessage("Run", &run);
    const std::string shorter = PutRecord("shorter", record);
    const Outcome resumed = RunProgram(
        {"--resume", shorter, "-o", saved_, "--checkpoint", "1h", "--json", "--csv", Path("more")});
    EXPECT_EQ(Member(resumed.out, "steps"), std::to_string(stopped.steps + 1000));
    const std::vector<CsvRow> more = ParseCsv(Get(Path("more")));
    EXPECT_EQ(more.front().report, stopped.steps);
    EXPECT_EQ(more.back().report, stopped.steps + 1000);
    EXPECT_FALSE(fs::exists(checkpoint_));
}

TEST_F(RunResume, TheFileOfReportsIsThatOfARunThatNeverStopped) {
    const std::string document = PutDocument("document", *TestSystem());
    const std::string merging = PutDocument("merging", *MergingSystem());
    const std::string csv = Path("csv");
    for (const Arguments& run : {Arguments{"-n", "60000", document},
                                 {"-n", "60001", "--every", "7", document},
                                 {"--for", "150", "--cutoff", "1e-16", "--every", "5", merging}}) {
        Arguments whole = run;
        whole.insert(whole.end(), {"-q", "--csv", Path("whole")});
        ASSERT_EQ(RunProgram(whole).status, 0);
        const std::string expected = Get(Path("whole"));
        fs::remove(checkpoint_);
        fs::remove(csv);
        Arguments part = run;
        part.insert(part.end(), {"--csv", csv});
        // The last part is told to stop, and adds the row of the place where it does.
        int64 before = 0;
        for (const int signal : {SIGKILL, SIGKILL, SIGTERM}) {
            before = RunAndKill(
                         part, [=](const Kept& k) { return k.steps > before; }, signal)
                         .steps;
            part = {"--resume", checkpoint_, "--csv", csv};
        }
        ASSERT_EQ(Resume({"--csv", csv}).status, 0);
        EXPECT_TRUE(Get(csv) == expected) << run.front();
    }
}

// What is written of it is chosen when the run begins, and need not be said again.
TEST_F(RunResume, FilesOfTheMotionAreThoseOfARunThatNeverStopped) {
    const auto epoch = TestSystem();
    epoch->RootSystem()->AddChild(
        MakeBody("Stranger", 9, 0.0, {1e14, 0, 1e9}, {1e5, 0, -1}).release());
    epoch->SetTime(0.0);
    std::string times;
    for (int i = -1; i < 65; i++)
        times += std::to_string(5.03 * i) + " yr\n";
    const Arguments run = {
        "--for", "300 yr", "--order", "16", "--cutoff", "1e-16", PutDocument("document", *epoch)};
    const std::string csv = Path("csv");
    const std::string events = Path("events");
    for (const Arguments& states :
         {Arguments{"--at", "@" + Put("times", times)}, {"--step-times", "--every", "7"}}) {
        Arguments whole = run;
        whole.insert(whole.end(), {"-q", "--csv", Path("whole"), "--events", Path("all")});
        whole.insert(whole.end(), states.begin(), states.end());
        ASSERT_EQ(RunProgram(whole).status, 0);
        Arguments part = run;
        part.insert(part.end(), {"--csv", csv, "--events", events});
        part.insert(part.end(), states.begin(), states.end());
        for (const std::string& file : {checkpoint_, csv, events})
            fs::remove(file);
        int64 before = 0;
        for (const int signal : {SIGKILL, SIGKILL, SIGTERM}) {
            before = RunAndKill(
                         part, [=](const Kept& k) { return k.steps > before; }, signal)
                         .steps;
            part = {"--resume", checkpoint_, "--csv", csv, "--events", events};
        }
        // Others are refused, and what is there stays.
        const Outcome others = Resume({"--csv", csv, "--at", "1 yr"});
        EXPECT_EQ(others.status, 1);
        EXPECT_NE(others.err.find("other times"), std::string::npos) << others.err;
        for (const std::string& file : {csv, Path("all")})
            EXPECT_EQ(Resume({"--events", file, "--escape-distance", "1 m"}).status, 1);
        EXPECT_EQ(Get(Path("all")).find("time,event"), 0u);
        ASSERT_EQ(Resume({"--csv", csv, "--events", events}).status, 0);
        EXPECT_TRUE(Get(csv) == Get(Path("whole"))) << states.front();
        EXPECT_TRUE(Get(events) == Get(Path("all"))) << states.front();
        EXPECT_NE(Get(events).find(",escape,9,Stranger"), std::string::npos);
    }
}

// The bodies that are left have events of their own.
TEST_F(RunResume, EventsAfterAMergerBeforeACheckpointAreThoseOfTheWholeRun) {
    const std::string events = Path("events");
    const std::string document = PutDocument("document", *MergingSystem());
    const Arguments run = {"--for", "500000", "--order", "8", "--cutoff", "1e-16", document};
    Arguments whole = run;
    whole.insert(whole.end(), {"-q", "--events", Path("all")});
    ASSERT_EQ(RunProgram(whole).status, 0);
    Arguments part = run;
    part.insert(part.end(), {"--events", events});
    RunAndKill(part, [](const Kept& kept) { return kept.bodies == 2; });
    ASSERT_EQ(Resume({"--events", events}).status, 0);
    EXPECT_TRUE(Get(events) == Get(Path("all")));
    EXPECT_NE(Get(events).find(",contact,"), std::string::npos);
    EXPECT_GT(std::ranges::count(Get(events), '\n'), 5);
}

TEST_F(RunResume, AFileThatIsNotOfItsReportsIsLeftAlone) {
    const std::string document = PutDocument("document", *TestSystem());
    RunAndKill({"-n", "1000000000", "--csv", Path("csv"), "--every", "100", document},
               [](const Kept& k) { return k.steps > 500; });
    const std::string reports = Get(Path("csv"));
    const std::size_t header = reports.find('\n') + 1;
    std::string otherRow = reports;
    for (std::size_t i = header; i < otherRow.size(); i++)
        if (otherRow[i] == '7') otherRow[i] = '8';
    for (const std::string& contents :
         {std::string("mine\n"), reports.substr(0, reports.size() / 100), otherRow,
          "report,x" + reports.substr(8)}) {
        const std::string path = Put("other", contents);
        const Outcome outcome = Resume({"--csv", path});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err.find("orvek-run: " + path + ": not the reports of this run"), 0u)
            << outcome.err;
        EXPECT_TRUE(Get(path) == contents);
    }
    const Outcome interval = Resume({"--csv", Path("csv"), "--every", "10"});
    EXPECT_EQ(interval.status, 1);
    EXPECT_NE(interval.err.find("another interval"), std::string::npos) << interval.err;
    EXPECT_TRUE(Get(Path("csv")) == reports);
    // So is every file if the run had none when it was checked.
    fs::remove(checkpoint_);
    RunAndKill({"-n", "1000000000", document}, [](const Kept& k) { return k.steps > 0; });
    EXPECT_EQ(Resume({"--csv", Path("csv")}).status, 1);
    EXPECT_TRUE(Get(Path("csv")) == reports);
}

// Pairs of bodies that fall into one another, one after the other, so that nearly every batch of
// reports ends with a merger.
std::unique_ptr<Epoch> ManyMergers(int64 pairs) {
    auto epoch = std::make_unique<Epoch>();
    for (int64 i = 0; i < pairs; i++) {
        const double x = 1e4 * static_cast<double>(i);
        AddSmallBody(epoch.get(), 2 * i, {x, 0, 0});
        AddSmallBody(epoch.get(), 2 * i + 1, {x, 1 + 0.02 * static_cast<double>(i), 0});
    }
    return epoch;
}

TEST_F(RunResume, ToldToStopWhileBodiesTouchItKeepsACheckpoint) {
    const std::string document = PutDocument("document", *ManyMergers(20));
    const Arguments run = {"--for", "1.2", "--cutoff", "1e-9", document};
    Arguments whole = run;
    whole.insert(whole.end(), {"--json"});
    const auto start = std::chrono::steady_clock::now();
    const Outcome uninterrupted = RunProgram(whole);
    const auto lasted = std::chrono::steady_clock::now() - start;
    ASSERT_GT(std::stoi(Member(uninterrupted.out, "mergers")), 10);
    int interrupted = 0;
    for (int turn = 0; turn < 12; turn++) {
        fs::remove(checkpoint_);
        Arguments arguments = run;
        arguments.insert(arguments.end(), {"--json", "-o", saved_, "--checkpoint", "1h"});
        const Outcome stopped =
            RunProgram(arguments, {.meanwhile = [&](pid_t program) {
                           std::this_thread::sleep_for(lasted * (4 + turn) / 20);
                           kill(program, SIGTERM);
                       }});
        EXPECT_NE(Member(stopped.out, "ending"), "\"collision\"");
        // It may have been too quick.
        if (Member(stopped.out, "ending") != "\"interrupted\"") continue;
        EXPECT_EQ(stopped.status, 143);
        interrupted++;
        ASSERT_TRUE(fs::exists(checkpoint_)) << "turn " << turn;
        ExpectSame(Resume(), uninterrupted);
    }
    EXPECT_GT(interrupted, 3);
}

TEST_F(RunResume, WhatCannotBeResumedIsSaid) {
    const std::string document = PutDocument("document", *TestSystem());
    EXPECT_NE(RunProgram({"--resume", document}).err.find("holds no run"), std::string::npos);
    RunAndKill({"-n", "1000000000", document}, [](const Kept& k) { return k.steps > 0; });
    BMessage record = GetRecord(checkpoint_);
    BMessage run;
    ASSERT_EQ(record.FindMessage("Run", &run), B_OK);
    BMessage changed = GetRecord(document);
    changed.AddMessage("Run", &run);
    const Outcome misfit =
        RunProgram({"--resume", PutRecord("misfit", changed), "-o", Path("new")});
    EXPECT_EQ(misfit.status, 1);
    EXPECT_NE(misfit.err.find("does not fit"), std::string::npos) << misfit.err;
    for (const Arguments& wrong : {Arguments{"--checkpoint", "10min"},
                                   {"--checkpoint", "ten", "-o", "x"},
                                   {"--checkpoint", "-1s", "-o", "x"},
                                   {"--resume", "x", "y"},
                                   {"--resume", "x", "-n", "5"},
                                   {"--resume", "x", "--edit", "new-body"},
                                   {"--resume", "x", "--order", "3"},
                                   {"--resume", "x", "--on-collision", "stop"}})
        EXPECT_EQ(RunProgram(wrong).status, 2) << wrong.back();
    // A checkpoint that cannot be kept is told, and the run is not lost.
    fs::create_directory(Path("folder"));
    const std::string saved = Path("folder/saved");
    const auto takeAway = [&](pid_t program) {
        while (!fs::exists(saved + ".checkpoint") && IsRunning(program)) {
        }
        std::error_code failure;
        do
            fs::remove(saved + ".checkpoint", failure);
        while (!fs::create_directory(saved + ".checkpoint", failure));
    };
    const Outcome outcome = RunProgram(
        {"-n", "600000", "-o", saved, "--checkpoint", "0.01s", document}, {.meanwhile = takeAway});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.err.find("no checkpoint"), std::string::npos) << outcome.err;
    EXPECT_TRUE(fs::exists(saved));
}

}  // namespace
