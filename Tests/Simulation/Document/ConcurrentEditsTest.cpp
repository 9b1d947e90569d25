// Several threads on one document at once: edits, undo and redo while runs start and stop.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/SetPropertyCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Simulation/Document/RunControlView.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

class ConcurrentEdits : public testing::Test {
protected:
    ConcurrentEdits() {
        EXPECT_FALSE(document_.Load(PlanetRecord()).Failed());
        document_.GetUndoChain()->SetMaxUndoLevel(1 << 30);
    }

    void Rename(int64 id, const std::string& name) {
        ExecuteFiled(document_.Portal(), std::make_unique<SetSystemPropertyCommand<std::string>>(
                                             document_.Portal(), id, &MassSystem::Name,
                                             &MassSystem::SetName, name, kNameChanged));
    }
    // Positions depend on when a run was paused.
    std::string NamesInFocus() {
        std::string names;
        const AbEpoch* const epoch = document_.Portal()->FocusEpoch();
        for (int64 id = 0; id <= epoch->RootSystem()->MaxSystemID(); id++)
            if (const MassSystem* system = epoch->SystemFromID(id)) names += system->Name() + ' ';
        return names;
    }

    SimulationDocument document_{nullptr};
    RunControlView view_;
    RunControl run_{document_.Portal(), document_.GetCalculator(), &view_};
};

TEST_F(ConcurrentEdits, NothingIsLostAndNothingHangs) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(2);
    const std::string before = NamesInFocus();

    std::atomic<int32> edits = 0;
    std::vector<std::thread> editors;
    for (int64 id = 0; id < 2; id++)
        editors.emplace_back([&, id] {
            for (int32 count = 0; Clock::now() < end; count++) {
                Rename(id, std::to_string(count));
                edits++;
            }
        });
    std::atomic<int32> redone = 0;
    std::thread undoer([&] {
        UndoChain* const chain = document_.GetUndoChain();
        while (Clock::now() < end) {
            chain->Lock();
            // Undone and done again in one: other edits stay on top of what they were made on.
            const bool undone = chain->CanUndo();
            chain->Undo();
            if (undone && chain->CanRedo()) redone++;
            chain->Redo();
            chain->Unlock();
        }
    });
    int32 runs = 0;
    for (; Clock::now() < end; runs++) {
        run_.TogglePause();
        std::this_thread::yield();
        run_.TogglePause();
    }
    for (std::thread& editor : editors)
        editor.join();
    undoer.join();

    EXPECT_TRUE(edits > 0 && redone > 0 && runs > 0);
    // One step for each edit and each run.
    EXPECT_EQ(document_.GetUndoChain()->ExecutedCount(), edits + runs);

    const std::string after = NamesInFocus();
    UndoChain* const chain = document_.GetUndoChain();
    while (chain->CanUndo())
        chain->Undo();
    EXPECT_EQ(NamesInFocus(), before);
    EXPECT_EQ(document_.Root()->CountChildren(), 1);
    EXPECT_EQ(document_.Root()->ChildAt(0)->CountChildren(), 0);
    // Edits made while a run went on are redone in copies, since the run's epoch is a record now;
    // none is lost.
    while (chain->CanRedo())
        chain->Redo();
    EXPECT_EQ(NamesInFocus(), after);
}

}  // namespace
