#include "Simulation/Document/RecoveryFolder.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/NewEpochCommand.h"
#include "Simulation/Document/DocumentFile.h"
#include "Simulation/Document/DocumentSaver.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Platform/InThreads.h"
#include "Tests/Platform/TestFolder.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

namespace fs = std::filesystem;

struct RecoveryFolderTest : testing::Test {
    std::string Keep(const char* name, const char* original) {
        std::string copy;
        EXPECT_FALSE(folder.Keep(PlanetRecord(), name, original, &copy).Failed());
        return copy;
    }

    const TestFolder home;
    const RecoveryFolder folder{home.Path("state/orvek/recovery")};
};

TEST_F(RecoveryFolderTest, ACopyIsADocumentThatKnowsItsOrigin) {
    const std::string copy = Keep("Comets", "/somewhere/Comets");
    struct stat info {};
    ASSERT_EQ(stat(copy.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u) << "nobody else's business";
    BMessage record;
    ASSERT_FALSE(SimulationFile::Read(copy, &record).Failed());
    SimulationDocument document(nullptr);
    EXPECT_FALSE(document.Load(record).Failed());
    EXPECT_EQ(document.Portal()->BodiesInMassOrder().size(), 4u);
    BMessage again;
    ASSERT_FALSE(document.Store(&again, true).Failed());
    EXPECT_FALSE(again.HasName("Recovered name")) << "saved, it is a document like others";

    const std::vector<RecoveryCopy> list = folder.List();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].path, copy);
    EXPECT_EQ(list[0].documentName, "Comets");
    EXPECT_EQ(list[0].originalPath, "/somewhere/Comets");
    EXPECT_EQ(list[0].time, info.st_mtime);
}

TEST_F(RecoveryFolderTest, CopiesOfTheSameNameStandBesideEachOther) {
    InThreads(8, [this](int) { Keep("New Simulation", ""); });
    EXPECT_EQ(folder.List().size(), 8u);
    std::string copy = folder.List()[3].path;
    EXPECT_FALSE(folder.Keep(PlanetRecord(), "New Simulation", "", &copy).Failed());
    EXPECT_EQ(folder.List().size(), 8u) << "the same document's copy is replaced";
}

TEST_F(RecoveryFolderTest, NamesThatAreNoFileNames) {
    std::string snowmen;
    for (int i = 0; i < 200; i++)
        snowmen += "\u2603";
    for (const std::string& name :
         {std::string("a/b"), std::string(".."), std::string(), snowmen}) {
        const std::string copy = Keep(name.c_str(), "");
        ASSERT_EQ(folder.List().size(), 1u) << name;
        EXPECT_EQ(folder.List()[0].documentName, name);
        folder.Discard(copy);
    }
}

TEST_F(RecoveryFolderTest, OnlyCopiesAreListedAndDiscarded) {
    EXPECT_TRUE(folder.List().empty()) << "there is no such folder";
    Keep("Comets", "");
    ASSERT_FALSE(SimulationFile::Write(folder.Path() + "/stray", PlanetRecord()).Failed());
    std::ofstream(folder.Path() + "/text") << "KWZXNB00";
    fs::create_directory(folder.Path() + "/folder");
    EXPECT_EQ(folder.List().size(), 1u);
    const std::string outside = home.Write("outside", "precious");
    folder.Discard(outside);
    folder.Discard(folder.Path() + "/../../../outside");
    EXPECT_TRUE(fs::exists(outside));
}

TEST_F(RecoveryFolderTest, AFailureLeavesNoTraceAndTheLastCopy) {
    home.Write("state", "not a folder");
    std::string copy;
    EXPECT_TRUE(folder.Keep(PlanetRecord(), "Comets", "", &copy).Failed());
    EXPECT_TRUE(copy.empty());
    fs::remove(home.Path("state"));
    copy = Keep("Comets", "");
    BMessage tooDeep;
    for (int i = 0; i <= BMessage::kMaxNesting; i++) {
        BMessage outer;
        outer.AddMessage("m", std::move(tooDeep));
        tooDeep = std::move(outer);
    }
    EXPECT_TRUE(folder.Keep(tooDeep, "Comets", "", &copy).Failed());
    std::string other;
    EXPECT_TRUE(folder.Keep(tooDeep, "Comets", "", &other).Failed());
    EXPECT_EQ(folder.List().size(), 1u);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

// As on another display: its document is open there.
TEST_F(RecoveryFolderTest, CopiesOfAProgramThatRunsAreNotListed) {
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        Keep("Comets", "");
        static_cast<void>(write(pipes[1], "k", 1));
        pause();
        _exit(0);
    }
    char told = 0;
    EXPECT_EQ(read(pipes[0], &told, 1), 1);
    EXPECT_TRUE(folder.List().empty());
    // Its parent may take its time before it asks how it has ended.
    kill(child, SIGKILL);
    siginfo_t ending{};
    EXPECT_EQ(waitid(P_PID, static_cast<id_t>(child), &ending, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(folder.List().size(), 1u);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(folder.List().size(), 1u);
    close(pipes[0]);
    close(pipes[1]);
}

// --- Saving ---

struct DocumentSaverTest : RecoveryFolderTest {
    DocumentSaverTest() {
        EXPECT_FALSE(document.Load(PlanetRecord()).Failed());
        EXPECT_EQ(get_ref_for_path(home.Path().c_str(), &place), B_OK);
        file.SetUntitled(place, "Comets");
    }
    void Edit() {
        ExecuteFiled(document.Portal(), std::make_unique<NewEpochCommand>(document.Portal()));
    }

    SimulationDocument document{nullptr};
    DocumentFile file{folder};
    entry_ref place;
};

// Edits that come after an epoch alone was saved have the copy that is there renewed.
TEST_F(DocumentSaverTest, TheTreeBehindASavedEpochIsKept) {
    Edit();
    EXPECT_FALSE(SaveDocument(&document, &file, place, "epoch", false).error.Failed());
    EXPECT_TRUE(document.GetUndoChain()->IsSaved());
    EXPECT_EQ(folder.List().size(), 1u);
    Edit();
    EXPECT_FALSE(KeepCopyIfUnsaved(&document, &file).Failed());
    ASSERT_EQ(folder.List().size(), 1u);
    BMessage record;
    ASSERT_FALSE(SimulationFile::Read(folder.List()[0].path, &record).Failed());
    SimulationDocument copy(nullptr);
    ASSERT_FALSE(copy.Load(record).Failed());
    EXPECT_EQ(Outline(copy.Root()), Outline(document.Root()));

    EXPECT_FALSE(SaveDocument(&document, &file, place, "whole", true).error.Failed());
    EXPECT_TRUE(folder.List().empty());
    EXPECT_FALSE(KeepCopyIfUnsaved(&document, &file).Failed());
    EXPECT_TRUE(folder.List().empty()) << "nothing is unsaved";
}

TEST_F(DocumentSaverTest, ACopyHasNoHistoryOfRuns) {
    BMessage runs;
    runs.AddInt32("Runs", 1);
    document.SetSavesHistory(true);
    document.SetHistory(runs);
    BMessage record;
    ASSERT_FALSE(document.Store(&record, true).Failed());
    ASSERT_TRUE(record.HasName(SimulationDocument::kHistoryField));
    Edit();
    EXPECT_FALSE(KeepCopyIfUnsaved(&document, &file).Failed());
    ASSERT_FALSE(SimulationFile::Read(folder.List()[0].path, &record).Failed());
    EXPECT_FALSE(record.HasName(SimulationDocument::kHistoryField));
    SimulationDocument copy(nullptr);
    ASSERT_FALSE(copy.Load(record).Failed());
    EXPECT_TRUE(copy.SavesHistory());
}

TEST_F(DocumentSaverTest, ASavedDocumentNeedsNoCopyForAnEpoch) {
    EXPECT_FALSE(SaveDocument(&document, &file, place, "whole", true).isCopyNeeded);
    const SaveResult result = SaveDocument(&document, &file, place, "no/such/folder", false);
    EXPECT_TRUE(result.error.Failed());
    EXPECT_FALSE(result.isCopyNeeded);
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(DocumentSaverTest, AFileThatAnotherProgramHasWrittenIsToldOfOnce) {
    const std::string path = home.Path("Comets");
    const auto write = [&](const char* text) { std::ofstream(path) << text; };
    EXPECT_FALSE(SaveDocument(&document, &file, place, "Comets", true).error.Failed());
    EXPECT_FALSE(file.HasChangedUnseen());
    // The same contents in another file, as after a copy to and fro.
    fs::copy_file(path, home.Path("copy"));
    fs::rename(home.Path("copy"), path);
    EXPECT_FALSE(file.HasChangedUnseen());

    write("theirs");
    EXPECT_TRUE(file.HasChangedUnseen());
    EXPECT_FALSE(file.HasChangedUnseen());
    write("others");
    fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::hours(1));
    EXPECT_TRUE(file.HasChangedUnseen()) << "again";
    // What was read counts as what was written; where nothing lies, nothing can be lost.
    BMessage record;
    file.SetFile(place, "Comets", record);
    EXPECT_FALSE(file.HasChangedUnseen());
    fs::remove(path);
    EXPECT_FALSE(file.HasChangedUnseen());
    // And not what lies there when it is opened.
    EXPECT_FALSE(SaveDocument(&document, &file, place, "Comets", true).error.Failed());
    constexpr auto kStamped = SimulationFile::Stamping::kInRecord;
    ASSERT_FALSE(SimulationFile::Read(path, &record, kStamped).Failed());
    file.SetFile(place, "Comets", record);
    EXPECT_FALSE(file.HasChangedUnseen());
    write("while it was opened");
    file.SetFile(place, "Comets", record);
    EXPECT_TRUE(file.HasChangedUnseen());
}

TEST_F(DocumentSaverTest, ARecoveredDocumentGoesBackToItsPlaceIfThatIsThere) {
    fs::create_directory(home.Path("there"));
    file.SetRecovered({Keep("Comets", ""), "Comets", home.Path("there/Halley"), 0}, {}, "new");
    EXPECT_TRUE(file.HasFile());
    EXPECT_EQ(file.Path(), home.Path("there/Halley"));
    file.SetRecovered({Keep("Comets", ""), "Comets", home.Path("gone/Halley"), 0}, {}, "new");
    EXPECT_FALSE(file.HasFile());
    EXPECT_EQ(file.Name(), "Comets");
    file.SetRecovered({Keep("Comets", ""), "", "", 0}, {}, "new");
    EXPECT_EQ(file.Name(), "new");
    EXPECT_EQ(folder.List().size(), 3u);
    file.DiscardRecovered();
    EXPECT_EQ(folder.List().size(), 2u);
}

TEST_F(DocumentSaverTest, ARecoveredDocumentKnowsWhetherItsFileHasChanged) {
    const std::string path = home.Path("Halley");
    const auto write = [&](const char* contents) { std::ofstream(path) << contents; };
    write("mine");
    file.SetFile(place, "Halley", {});
    ASSERT_FALSE(
        file.KeepCopy(PlanetRecord(), "Halley", path, DocumentFile::Copy::kNeeded).Failed());
    const RecoveryCopy copy = folder.List().front();
    BMessage record;
    ASSERT_FALSE(SimulationFile::Read(copy.path, &record).Failed());

    DocumentFile recovered(folder);
    recovered.SetRecovered(copy, record, "new");
    EXPECT_FALSE(recovered.HasChangedUnseen());
    write("another's");
    EXPECT_TRUE(recovered.HasChangedUnseen());
    EXPECT_FALSE(recovered.HasChangedUnseen()) << "told";
}

}  // namespace
