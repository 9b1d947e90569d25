// Documents that a run writes, and how runs are stopped.
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <limits>
#include <thread>
#include <utility>

#include "Model/Systems/CompositeSystem.h"
#include "Simulation/Document/RunControlView.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

class RunSave : public RunFixture {
protected:
    const std::string document_ = PutDocument("document", *TestSystem());
};

TEST_F(RunSave, TheNewEpochHasTheSettingsOfTheCommandLineAndTheOldOneItsOwn) {
    const Outcome outcome = RunProgram(
        {"-n", "50", "--cutoff", "1e-8", "--order", "3", "-o", Path("saved"), document_});
    ASSERT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.err.find("order 3"), std::string::npos) << "said aloud";
    SimulationDocument document(nullptr);
    ASSERT_FALSE(document.Load(GetRecord(Path("saved"))).Failed());
    const AbEpoch* focus = document.Portal()->FocusEpoch();
    const AbEpoch* start = document.Root()->ChildAt(0);
    EXPECT_EQ(focus->Cutoff(), 1e-8);
    EXPECT_EQ(focus->Order(), 3);
    EXPECT_EQ(start->Cutoff(), 1e-11);
    EXPECT_EQ(start->Order(), 4);
}

TEST_F(RunSave, ASavedRunGoesOnLikeOneThatNeverStopped) {
    // Beyond a promotion of the parts, so that losing them would show; a shift to the centre of
    // mass would hide it.
    const std::string steps = "2000";
    const std::unique_ptr<Epoch> epoch = TestSystem();
    epoch->SetCOMOnGo(false);
    const std::string start = PutDocument("start", *epoch);
    std::string from = start;
    for (int run = 0; run < 3; run++) {
        // The last one over its own document.
        const std::string to = run < 2 ? Path("saved " + std::to_string(run)) : from;
        const Outcome outcome = RunProgram({"-q", "-n", steps, "-o", to, from});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        from = to;
    }

    SimulationDocument document(nullptr), saved(nullptr);
    ASSERT_FALSE(document.Load(GetRecord(start)).Failed());
    RunControlView view;
    RunControl control(document.Portal(), document.GetCalculator(), &view);
    StepRunner runner(&document);
    for (int run = 0; run < 3; run++)
        runner.Run(&control, std::stoll(steps));
    ASSERT_FALSE(saved.Load(GetRecord(from)).Failed());
    EXPECT_EQ(BitsOf(&saved), BitsOf(&document));
    EXPECT_EQ(Outline(saved.Root()), Outline(document.Root()));
}

TEST_F(RunSave, WhatCannotBeWrittenIsNamedAndEndsTheRun) {
    const std::string before = Get(document_);
    const std::string nowhere = Path("no/folder");
    const std::string old = Put("old.png", "old");
    const std::string alias = Path("alias");
    ASSERT_EQ(symlink(document_.c_str(), alias.c_str()), 0);
    const char* const endless = "1000000000";
    const char* const clash = "this would overwrite the document or another output";
    const std::tuple<std::vector<std::string>, std::string, const char*> runs[] = {
        {{"-n", endless, "-o", nowhere, "--csv", Path("new")},
         nowhere,
         "No such file or directory"},
        {{"-n", endless, "-o", Path("new"), "--csv", "/dev/full"},
         "/dev/full",
         "No space left on device"},
        {{"-n", "5", "-o", document_}, document_, "File too large"},
#ifdef ORVEK_GUI
        {{"-n", endless, "--png", nowhere}, nowhere, "No such file or directory"},
        {{"-n", endless, "--png", Path("")}, Path(""), "Is a directory"},
        {{"-n", "5", "--png", document_}, document_, clash},
        {{"-q", "-n", "5", "--png", old}, old, "File too large"},
#endif
        {{"-n", "5", "--csv", document_}, document_, clash},
        {{"-n", "5", "--csv", alias}, alias, clash},
        {{"-n", "5", "--csv", Path("new"), "-o", Path("new")}, Path("new"), clash},
    };
    for (const auto& [options, file, reason] : runs) {
        std::vector<std::string> arguments = options;
        arguments.push_back(document_);
        // Disk full, as far as a process can have that for itself.
        const Outcome outcome = RunProgram(arguments, {.prepare = [] {
                                               const rlimit limit{1024, 1024};
                                               setrlimit(RLIMIT_FSIZE, &limit);
                                           }});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "orvek-run: " + file + ": " + reason + "\n");
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(Get(document_), before);
        EXPECT_EQ(Get(old), "old");
        EXPECT_NE(access(Path("new").c_str(), F_OK), 0) << file;
    }
}

TEST_F(RunSave, WhatAnEndedProgramLeftIsRemovedAndTold) {
    const std::string left = Put(".orvek-0123abcd.tmp", "half a document");
    const Outcome outcome = RunProgram({"-n", "5", "-o", Path("saved"), document_});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.err.find("saving: 1\n"), std::string::npos) << outcome.err;
    EXPECT_NE(access(left.c_str(), F_OK), 0);
    // Also where there is no room for the document: there most of all.
    Put(".orvek-0123abcd.tmp", "half a document");
    const Outcome failed = RunProgram({"-n", "5", "-o", Path("new"), document_}, {.prepare = [] {
                                          const rlimit limit{1024, 1024};
                                          setrlimit(RLIMIT_FSIZE, &limit);
                                      }});
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(failed.err.find("saving: 1\n"), std::string::npos) << failed.err;
    EXPECT_NE(access(left.c_str(), F_OK), 0);
}

TEST_F(RunSave, AReaderThatGoesAwayEndsTheRun) {
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    const auto read = [this](pid_t) {
        std::ifstream pipe(Path("pipe"));
        std::string line;
        std::getline(pipe, line);
    };
    const Outcome outcome =
        RunProgram({"-n", "1000000000", "--csv", Path("pipe"), document_}, {.meanwhile = read});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "orvek-run: " + Path("pipe") + ": Broken pipe\n");
}

// Sends the signal when the run is well on its way: reports come through the pipe.
class RunInterrupted : public RunSave, public testing::WithParamInterface<int> {};

TEST_P(RunInterrupted, WritesWhatWasAskedForAndSaysSo) {
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    std::string csv;
    const auto interrupt = [&](pid_t program) {
        std::ifstream pipe(Path("pipe"));
        for (std::string line; std::getline(pipe, line); csv += line + '\n')
            if (csv.size() > 100000 && program > 0) kill(std::exchange(program, 0), GetParam());
    };
    const Outcome outcome = RunProgram(
        {"-n", "1000000000", "--json", "--csv", Path("pipe"), "-o", Path("saved"), document_},
        {.meanwhile = interrupt});
    EXPECT_EQ(outcome.status, 128 + GetParam());
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(Member(outcome.out, "ending"), "\"interrupted\"");
    const std::vector<CsvRow> rows = ParseCsv(csv);
    ASSERT_EQ(rows.size() % 4, 0u);
    EXPECT_EQ(std::to_string(rows.back().report), Member(outcome.out, "steps"));
    SimulationDocument document(nullptr);
    ASSERT_FALSE(document.Load(GetRecord(Path("saved"))).Failed());
    EXPECT_EQ(document.Portal()->FocusEpoch()->Time(), rows.back().time);
}

INSTANTIATE_TEST_SUITE_P(Signals, RunInterrupted, testing::Values(SIGINT, SIGTERM));

// Of a document that takes a while.
#ifdef ORVEK_SANITIZED
constexpr int64 kManyGrains = 15'000;
constexpr int64 kManyGroups = 15'000;
#else
constexpr int64 kManyGrains = 150'000;
constexpr int64 kManyGroups = 200'000;
#endif

std::unique_ptr<Epoch> Dust(int64 grains) {
    auto epoch = TestSystem();
    for (int64 i = 0; i < grains; i++)
        epoch->RootSystem()->AddChild(
            MakeBody("Grain", 100 + i, 0, {1e12 + 1e8 * static_cast<double>(i), 1e9, 0}, {})
                .release());
    return epoch;
}

std::unique_ptr<Epoch> Groups(int64 groups) {
    auto epoch = TestSystem();
    for (int64 i = 0; i < groups; i++)
        epoch->RootSystem()->AddChild(
            new CompositeSystem("Group", 100 + i, rgb_color{}, rgb_color{}, kOriginID));
    return epoch;
}

#ifndef ORVEK_SANITIZED  // which keep what is freed
// What a body more costs, so that the program's own size does not count.
TEST_F(RunSave, MemoryStaysInProportionToTheDocument) {
    const auto measure = [this](const std::string& name, int64 grains, off_t* size) {
        const std::string path = PutDocument(name, *Dust(grains));
        struct stat info {};
        EXPECT_EQ(stat(path.c_str(), &info), 0);
        *size = info.st_size;
        const Outcome outcome = RunProgram({"-q", "-n", "1", "-o", Path(name + " out"), path});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return int64{outcome.peakMemory} * 1024;
    };
    off_t small = 0;
    off_t large = 0;
    const int64 less = measure("small", 10'000, &small);
    const int64 more = measure("large", 100'000, &large);
    EXPECT_LT(more - less, 8 * (large - small));
    EXPECT_LT(more, 8 * large);
}
#endif

TEST_F(RunSave, ASignalWhileADocumentIsReadEndsTheProgramAtOnce) {
    using Clock = std::chrono::steady_clock;
    const std::string path = PutDocument("large", *Groups(kManyGroups));
    const auto start = Clock::now();
    ASSERT_EQ(RunProgram({"-q", "-n", "0", path}).status, 0);
    const auto whole = Clock::now() - start;

    Clock::duration answered{};
    const Outcome outcome =
        RunProgram({"-q", "-n", "100000000", path}, {.meanwhile = [&](pid_t program) {
                       std::this_thread::sleep_for(whole / 3);
                       const auto sent = Clock::now();
                       kill(program, SIGTERM);
                       siginfo_t info{};
                       waitid(P_PID, static_cast<id_t>(program), &info, WEXITED | WNOWAIT);
                       answered = Clock::now() - sent;
                   }});
    EXPECT_EQ(outcome.status, 143);
    EXPECT_LT(answered, whole / 3);
}

// There is nothing yet that could not be made again.
TEST_F(RunSave, ASignalDuringEditsOrASaveWithoutARunEndsTheProgramAtOnce) {
    using Clock = std::chrono::steady_clock;
    const std::string path = PutDocument("large", *Dust(kManyGrains * 2 / 3));
    const std::string old = Put("old", Get(document_));
    std::vector<std::string> edits = {"-q", "-n", "0", path};
    for (int i = 0; i < 400; i++)
        edits.insert(edits.end(), {"--edit", "new-body"});
    const std::vector<std::string> save = {"-q", "-n", "0", "-o", old, path};
    for (const auto& arguments : {edits, save}) {
        const auto start = Clock::now();
        ASSERT_EQ(RunProgram({"-q", "-n", "0", path}).status, 0);
        const auto reading = Clock::now() - start;
        Clock::duration answered{};
        const Outcome outcome =
            RunProgram(arguments, {.meanwhile = [&](pid_t program) {
                           std::this_thread::sleep_for(reading * 5 / 4);
                           const auto sent = Clock::now();
                           kill(program, SIGTERM);
                           siginfo_t info{};
                           waitid(P_PID, static_cast<id_t>(program), &info, WEXITED | WNOWAIT);
                           answered = Clock::now() - sent;
                       }});
        EXPECT_EQ(outcome.status, 143) << arguments.size();
        EXPECT_LT(answered, std::chrono::milliseconds(250)) << arguments.size();
        EXPECT_TRUE(Get(old) == Get(document_));
    }
}

// Hours may have gone into them.
TEST_F(RunSave, ASignalWhileResultsAreWrittenIsAnsweredAndTheNextOneEndsTheProgram) {
    const std::string path = PutDocument("large", *Dust(60'000));
    for (const int signals : {1, 2}) {
        const std::string old = Put("old", Get(document_));
        const std::string pipe = Path("pipe " + std::to_string(signals));
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        const auto stop = [&](pid_t program) {
            // The reports are complete, and the program begins to save.
            std::ifstream reports(pipe);
            reports.ignore(std::numeric_limits<std::streamsize>::max());
            for (int i = 0; i < signals; i++) {
                kill(program, SIGTERM);
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        };
        const Outcome outcome =
            RunProgram({"-n", "1", "--csv", pipe, "-o", old, path}, {.meanwhile = stop});
        EXPECT_EQ(outcome.status, 143);
        EXPECT_NE(outcome.err.find("a second signal ends it"), std::string::npos) << outcome.err;
        EXPECT_EQ(Get(old) == Get(document_), signals == 2);
        EXPECT_EQ(outcome.out.empty(), signals == 2) << "the summary";
    }
}

}  // namespace
