// A thousand random edits, undone to the start and redone to the end: at every depth of the history
// the whole tree must have the bytes it had there before. And no edit touches a record.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "Model/Commands/DeleteEpochCommand.h"
#include "Model/Commands/DeleteSystemCommand.h"
#include "Model/Commands/DissolveSystemCommand.h"
#include "Model/Commands/GroupSystemsCommand.h"
#include "Model/Commands/MacroCommand.h"
#include "Model/Commands/NewEpochCommand.h"
#include "Model/Commands/NewSystemCommand.h"
#include "Model/Commands/SetCompVectorCommand.h"
#include "Model/Commands/SetEpochNameCommand.h"
#include "Model/Commands/SetEpochToCommand.h"
#include "Model/Commands/SetPropertyCommand.h"
#include "Model/Commands/SetValueCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Units/DimValue.h"
#include "Tests/Model/TestDocument.h"

namespace {

constexpr std::size_t kMaxEpochs = 12;
// Every state is compared with all its contents, which sanitizers make ten times slower.
#ifdef ORVEK_SANITIZED
constexpr std::size_t kEnoughEpochs = kMaxEpochs / 2;
constexpr int32 kManyEdits = 300;
#else
constexpr std::size_t kEnoughEpochs = kMaxEpochs;
constexpr int32 kManyEdits = 1000;
#endif

class RandomEditor {
public:
    RandomEditor(TestDocument* document, uint32 seed) : document_(document), random_(seed) {}

    std::unique_ptr<LCommand> NextCommand() {
        EpochPortal* portal = &document_->portal;
        if (document_->Epochs().size() > kMaxEpochs)
            return std::make_unique<DeleteEpochCommand>(portal, AnyEpoch());
        switch (Number(0, 15)) {
            case 0:
                return std::make_unique<NewEpochCommand>(portal);
            case 1:
                return std::make_unique<DeleteEpochCommand>(portal, AnyEpoch());
            case 2:
                if (AbEpoch* target = AnyEpoch(); target != &document_->root)
                    return std::make_unique<SetEpochToCommand>(portal, target);
                return NextEdit();
            default:
                return NextEdit();
        }
    }

    // Of the epoch in focus.
    std::unique_ptr<LCommand> NextEdit() {
        EpochPortal* portal = &document_->portal;
        switch (Number(0, 12)) {
            case 0:
                return std::make_unique<SetCompVectorCommand>(portal, Quantity(), AnyID(),
                                                              Number(0, 2), Value());
            case 1:
                return std::make_unique<SetCompVectorCommand>(
                    portal, Quantity(), AnyID(),
                    DimVector(Number(-99, 99), Number(-99, 99), Number(-99, 99), 2.0));
            case 2:
                return OfSystem<double>(AnyID(), &MassSystem::M, &MassSystem::SetM, Number(-9, 99));
            case 3:
                return OfSystem<int64>(AnyID(), &MassSystem::RelativeTo, &MassSystem::SetRelativeTo,
                                       AnyID());
            case 4:
                return OfEpoch<double>(&AbEpoch::Time, &AbEpoch::SetTime, Number(-99, 99));
            case 5:
            case 6: {
                const int64 id = document_->root.MaxSystemID() + 1;
                const int64 parent = Number(0, 3) == 0 ? AnyID() : kRootSystemID;
                MassSystem* system = Number(0, 4) == 0
                                         ? static_cast<MassSystem*>(NewComposite("Group", id))
                                         : NewBody("Body", id, Number(0, 9), {1.0 / 3.0, 0.1, 7.0});
                return std::make_unique<NewSystemCommand>(portal, system, parent);
            }
            case 7:
                return std::make_unique<DeleteSystemCommand>(portal, AnyID(), AnyID());
            case 8:
                // Undoing the renaming of an inherited name makes it the epoch's own, by design.
                if (portal->FocusEpoch()->NameFromParent())
                    return OfEpoch<bool>(&AbEpoch::NameFromParent, &AbEpoch::SetNameFromParent,
                                         false);
                return std::make_unique<SetEpochNameCommand>(portal, std::to_string(random_()));
            case 9: {
                const int32 old = document_->calculator.segmentLength;
                return std::make_unique<SetCalcIntCommand>(
                    &document_->calculator, &AbCalculator::SetSegmentLength, Number(1, 99), old);
            }
            case 10:
                return std::make_unique<GroupSystemsCommand>(
                    portal, std::vector<int64>{AnyID(), AnyID()}, "Group",
                    document_->root.MaxSystemID() + 1);
            case 11:
                return std::make_unique<DissolveSystemCommand>(portal, AnyID());
            default: {
                auto macro = std::make_unique<MacroCommand>(2);
                macro->AddCommand(OfSystem<std::string>(
                    AnyID(), &MassSystem::Name, &MassSystem::SetName, std::to_string(random_())));
                macro->AddCommand(std::make_unique<SetSystemToCommand>(portal, AnyID()));
                return macro;
            }
        }
    }

private:
    int32 Number(int32 low, int32 high) {
        return std::uniform_int_distribution<int32>(low, high)(random_);
    }
    DimValue Value() { return {static_cast<double>(Number(-99, 99)), Number(1, 9) * 1.0}; }
    const VectorQuantity& Quantity() {
        return Number(0, 1) == 0 ? kPositionQuantity : kVelocityQuantity;
    }

    int64 AnyID() {
        const auto systems = document_->portal.SystemsInIDOrder();
        const auto place = static_cast<std::size_t>(Number(0, static_cast<int32>(systems.size())));
        return place < systems.size() ? systems[place]->ID() : 12345;  // one that no system has
    }
    AbEpoch* AnyEpoch() {
        const auto epochs = document_->Epochs();
        return epochs[static_cast<std::size_t>(Number(0, static_cast<int32>(epochs.size()) - 1))];
    }

    template <typename T>
    std::unique_ptr<LCommand> OfSystem(int64 id, T (MassSystem::*get)() const,
                                       void (MassSystem::*set)(T), std::type_identity_t<T> value) {
        return std::make_unique<SetSystemPropertyCommand<T>>(&document_->portal, id, get, set,
                                                             value, kBodyDataChanged);
    }
    template <typename T>
    std::unique_ptr<LCommand> OfEpoch(T (AbEpoch::*get)() const, void (AbEpoch::*set)(T),
                                      std::type_identity_t<T> value) {
        return std::make_unique<SetEpochPropertyCommand<T>>(&document_->portal, get, set, value,
                                                            kEpochSettingsChanged);
    }

    TestDocument* document_;
    std::mt19937 random_;
};

// What every epoch that is a record holds, its name apart.
std::map<const AbEpoch*, std::string> Records(const TestDocument& document) {
    std::map<const AbEpoch*, std::string> records;
    for (const AbEpoch* epoch : document.Epochs())
        if (!epoch->Writeable()) {
            BMessage record;
            EXPECT_EQ(epoch->Archive(&record, false), B_OK);
            for (const char* field : {"Epoch Name", "N Inh", "Calc"})
                record.RemoveName(field);
            records[epoch] = Bytes(record);
        }
    return records;
}

// Does something that must leave all records as they are.
template <typename Step>
void LeavingRecords(const TestDocument& document, Step step) {
    const auto before = Records(document);
    step();
    for (const auto& [epoch, content] : Records(document))
        if (const auto was = before.find(epoch); was != before.end()) {
            ASSERT_TRUE(was->second == content) << epoch->Name() << " was touched";
        }
}

class RandomEdit : public testing::TestWithParam<uint32> {};

TEST_P(RandomEdit, UndoAndRedoVisitTheSameStates) {
    constexpr int32 kEdits = kManyEdits;
    TestDocument document;
    document.chain.SetMaxUndoLevel(kEdits);
    RandomEditor editor(&document, GetParam());
    const auto state = [&] {
        return std::hash<std::string>{}(document.Snapshot() +
                                        std::to_string(document.calculator.segmentLength));
    };
    std::vector<std::size_t> states{state()};
    std::size_t mostEpochs = 0;
    for (int32 i = 0; i < kEdits; i++) {
        LeavingRecords(document, [&] { document.Run(editor.NextCommand().release()); });
        states.push_back(state());
        mostEpochs = std::max(mostEpochs, document.Epochs().size());
    }
    EXPECT_GT(mostEpochs, kEnoughEpochs);
    std::size_t depth = kEdits;
    while (document.chain.CanUndo()) {
        document.chain.Undo();
        ASSERT_EQ(state(), states[--depth]) << "undone to " << depth;
    }
    EXPECT_EQ(depth, 0u);
    while (document.chain.CanRedo()) {
        document.chain.Redo();
        ASSERT_EQ(state(), states[++depth]) << "redone to " << depth;
    }
    EXPECT_EQ(depth, static_cast<std::size_t>(kEdits));
}

// A run makes its epoch a record when it ends, and no step of the history tells of it. What was
// edited meanwhile is undone in a copy that was not there before, and earlier steps find another
// tree.
TEST_P(RandomEdit, HistoryStaysSoundWhenEpochsBecomeRecords) {
    constexpr int32 kEdits = 150;
    constexpr int32 kAll = 1000;
    TestDocument document;
    document.chain.SetMaxUndoLevel(kAll);
    RandomEditor editor(&document, GetParam());
    std::mt19937 random(GetParam());
    const auto undo = [&](std::size_t most) {
        for (; most > 0 && document.chain.CanUndo(); most--) {
            LeavingRecords(document, [&] { document.chain.Undo(); });
            ASSERT_TRUE(document.portal.HasEpoch(document.portal.FocusEpoch()));
        }
    };
    const auto redo = [&](std::size_t most) {
        for (; most > 0 && document.chain.CanRedo(); most--) {
            LeavingRecords(document, [&] { document.chain.Redo(); });
            ASSERT_TRUE(document.portal.HasEpoch(document.portal.FocusEpoch()));
        }
    };
    const auto run = [&] {
        document.Run(new NewEpochCommand(&document.portal));
        for (auto edits = random() % 5; edits > 0; edits--)
            document.Run(editor.NextEdit().release());
        document.portal.FocusEpoch()->SetWriteable(false);
    };
    for (int32 i = 0; i < kEdits; i++) {
        document.Run(editor.NextCommand().release());
        if (random() % 4 != 0) continue;
        run();
        undo(random() % 20);
        redo(random() % 20);
    }
    // Undoing the renaming of an inherited name makes it the epoch's own, by design: once.
    undo(kAll);
    redo(kAll);

    undo(kAll);
    std::vector<std::string> states{document.Snapshot()};
    for (; document.chain.CanRedo(); states.push_back(document.Snapshot()))
        redo(1);
    for (std::size_t depth = states.size(); document.chain.CanUndo();) {
        undo(1);
        ASSERT_TRUE(document.Snapshot() == states[--depth - 1]) << "undone to " << depth - 1;
    }
    for (std::size_t depth = 0; document.chain.CanRedo();) {
        redo(1);
        ASSERT_TRUE(document.Snapshot() == states[++depth]) << "redone to " << depth;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEdit, testing::Values(4u, 28u, 101u, 127u, 150u, 200u));

}  // namespace
