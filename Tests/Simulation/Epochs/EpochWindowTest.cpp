#include "Simulation/Epochs/EpochWindow.h"

#include <gtest/gtest.h>

#include "Displays/Trajectories/TrajectoryView.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Canvas/BBitmap.h"
#include "Platform/Interface/Lists/BColumnListView.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/History/RunHistory.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Simulation/ListHand.h"

namespace {

// Columns.
constexpr std::size_t kRun = 1;
constexpr std::size_t kTime = 2;
constexpr std::size_t kLength = 3;
constexpr std::size_t kBodies = 4;
constexpr std::size_t kState = 5;

Epoch* AddBelow(AbEpoch* parent, const char* name) {
    auto* const epoch = new Epoch;
    if (name != nullptr) epoch->SetName(name);
    parent->AddChild(epoch);
    return epoch;
}

// The rows as they hang below each other: "name(...)", branches with a "+" before them.
std::string Lines(const std::vector<ColumnListRow>& rows, int64 parent = ColumnListRow::kNoKey) {
    std::string text;
    for (const ColumnListRow& row : rows) {
        if (row.parent != parent) continue;
        if (!text.empty()) text += ' ';
        text += (row.isBranch ? "+" : "") + row.cells[0].text;
        const std::string below = Lines(rows, row.key);
        if (!below.empty()) text += '(' + below + ')';
    }
    return text;
}

EpochList MakeList() {
    return EpochList(TestContext().texts, TestContext().timeUnits);
}

TEST(EpochList, ChainsAreLinesAndBranchesFollowThem) {
    Epoch root;
    Epoch* const a = AddBelow(&root, "A");
    Epoch* const b = AddBelow(AddBelow(a, "B"), "C");
    AbEpoch* const branch = AddBelow(b, "D");
    AddBelow(AddBelow(branch, "E"), "F");
    Epoch* const other = AddBelow(b, "G");
    AddBelow(other, "H");
    AddBelow(other, "I");
    AddBelow(AddBelow(&root, "J"), "K");

    EpochList list = MakeList();
    list.Read(&root, branch);
    const std::vector<ColumnListRow> rows = list.Rows();
    EXPECT_EQ(Lines(rows), "A(B C +D(E F) +G(+H +I)) J(K)");
    std::string inOrder;
    for (const ColumnListRow& row : rows)
        inOrder += row.cells[0].text;
    EXPECT_EQ(inOrder, "ABCDEFGHIJK");
    EXPECT_EQ(list.FocusKey(), EpochList::KeyOf(branch));
    EXPECT_EQ(list.IndexOf(EpochList::KeyOf(other)), 6);
    EXPECT_EQ(list.IndexOf(EpochList::KeyOf(&root)), -1);
}

TEST(EpochList, KeptRunsHavePicturesOfTheirTrails) {
    TestDocument document;
    RunHistory history(document.portal, document.document.GetCalculator());
    document.document.AddConsumer(&history);
    document.Run(40'000);
    const AbEpoch* const run = document.portal->FocusEpoch();
    RunPictures pictures;
    pictures.SetHistory(&history);
    EpochList list = MakeList();
    list.SetPictures(&pictures);
    const auto pictureOf = [&](const AbEpoch* epoch) {
        const ReadGuard guard(document.portal);
        list.Read(document.document.Root(), document.portal->FocusEpoch());
        return list.Rows()[static_cast<std::size_t>(list.IndexOf(EpochList::KeyOf(epoch)))]
            .cells[kLength]
            .picture;
    };
    const auto picture = pictureOf(run);
    ASSERT_NE(picture, nullptr);
    // Of a planet's path something is to be seen, and most is sky.
    int32 drawn = 0;
    for (int32 y = 0; y < picture->RowCount(); y++)
        for (int32 x = 0; x < picture->Width(); x++)
            if (picture->ColorAt(x, y) != TrajectoryView::kSky) drawn++;
    EXPECT_GT(drawn, picture->Width() / 2);
    EXPECT_LT(drawn, picture->Width() * picture->RowCount() / 2);
    // It is made once, until the run is longer, and rows without one keep its room.
    EXPECT_EQ(pictureOf(run), picture);
    EXPECT_EQ(pictureOf(run->Parent()), RunPictures::Blank());
    document.Run(1000);
    EXPECT_EQ(pictureOf(run), picture);
    EXPECT_NE(pictureOf(document.portal->FocusEpoch()), picture);
    // While a run goes on, those that have ended keep theirs.
    list.SetRunning(true);
    EXPECT_EQ(pictureOf(run), picture);
    EXPECT_EQ(pictureOf(document.portal->FocusEpoch()), RunPictures::Blank());
    document.document.RemoveConsumer(&history);
}

TEST(EpochList, LongHistoriesKeepOneDepthAndTheirName) {
    Epoch root;
    AbEpoch* last = AddBelow(&root, "Genesis");
    for (int i = 0; i < 5000; i++)
        last = AddBelow(last, nullptr);
    EpochList list = MakeList();
    list.Read(&root, last);
    const std::vector<ColumnListRow> rows = list.Rows();
    ASSERT_EQ(rows.size(), 5001u);
    EXPECT_EQ(rows[5000].cells[0].text, "Genesis");
    EXPECT_EQ(rows[5000].parent, rows[0].key);
    EXPECT_TRUE(rows[5000].isMarked);
}

TEST(EpochList, StatesTellWhatWasDone) {
    Epoch root;
    Epoch* const first = AddBelow(&root, "first");
    first->SetWriteable(false);
    Epoch* const run = AddBelow(first, nullptr);
    run->SetTime(31556925.2);
    run->SetTimeUval(86400.0);
    run->SetWriteable(false);
    Epoch* const edited = AddBelow(run, nullptr);
    edited->SetTime(run->Time());
    Epoch* const foreign = AddBelow(edited, nullptr);
    foreign->SetTime(3 * run->Time());
    foreign->SetTimeUval(86400.0);
    foreign->SetCircumstance(3);

    EpochList list = MakeList();
    list.Read(&root, edited);
    const std::vector<ColumnListRow> rows = list.Rows();
    const auto told = [](const ColumnListRow& row) {
        std::string text;
        for (const std::size_t cell : {kRun, kTime, kLength, kState})
            text += row.cells[cell].text + '|';
        return text;
    };
    EXPECT_EQ(told(rows[0]), "|0 yr||Logged|");
    EXPECT_EQ(told(rows[1]), "1|365.24219 dy|365.24219 dy|Paused|");
    EXPECT_EQ(told(rows[2]), "|1 yr||Edited, current|");
    EXPECT_EQ(told(rows[3]), "2|1095.7266 dy|730.48438 dy|Go|");
    list.SetRunning(true);
    edited->SetTime(1.5 * run->Time());
    EXPECT_TRUE(list.ReadFocus(edited));
    EXPECT_EQ(told(list.FocusRow()), "2|1.5 yr|0.5 yr|Go, current|");
    EXPECT_FALSE(list.ReadFocus(run));
}

class EpochWindowTest : public testing::Test {
protected:
    void SetUp() override {
        window_->Show();
        Settle(window_);
    }
    void TearDown() override {
        document_.control.Pause();
        if (window_->Lock()) window_->Quit();
    }

    BColumnListView* List() const {
        return static_cast<BColumnListView*>(window_->FindView("Epochs"));
    }
    AbEpoch* Focus() const { return document_.portal->FocusEpoch(); }

    void Press(ListHand::Key key) {
        ListHand::Press(List(), key);
        Settle(window_);
    }
    void Select(const AbEpoch* epoch) {
        window_->Lock();
        List()->Select(EpochList::KeyOf(epoch));
        window_->Unlock();
        Settle(window_);
    }
    int64 Selected() {
        window_->Lock();
        const int64 key = List()->Selection();
        window_->Unlock();
        return key;
    }
    std::string Column(std::size_t column) {
        return ListHand::Column(List(), static_cast<int>(column));
    }

    TestDocument document_;
    SimulationController controller_{&document_.document, &document_.control, &TestResources()};
    EpochWindow* window_ = new EpochWindow(document_.portal, document_.document.Root(),
                                           document_.owner, TestContext());
};

TEST_F(EpochWindowTest, AsksTheOwnerToRestoreAndToDelete) {
    AbEpoch* const first = Focus();
    controller_.DupCurrentEpoch();
    AbEpoch* const second = Focus();
    Settle(window_);
    EXPECT_EQ(Column(0), "Genesis|Genesis*");
    EXPECT_EQ(Selected(), EpochList::KeyOf(second));

    Select(first);
    Press(ListHand::Key::kEnter);
    const BMessage restore = document_.owner->WaitFor(kEditEpoch);
    int32 index = -1;
    EXPECT_EQ(restore.FindInt32("index", &index), B_OK);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(window_->EpochFor(restore), first);

    Press(ListHand::Key::kDelete);
    const BMessage remove = document_.owner->WaitFor(kDeleteEpoch);
    EXPECT_EQ(window_->EpochFor(remove), first);
    EXPECT_TRUE(controller_.DeleteEpoch(first));
    EXPECT_EQ(window_->EpochFor(remove), nullptr) << "another one asked for the same before";
    Settle(window_);
    EXPECT_EQ(Column(0), "Genesis*");
    controller_.Undo();
    EXPECT_EQ(window_->EpochFor(remove), first);
    Select(second);
    controller_.EditEpoch(first);
    Settle(window_);
    EXPECT_EQ(Column(0), "Genesis*|Genesis");
    EXPECT_EQ(Selected(), EpochList::KeyOf(first)) << "it goes with the focus";
}

TEST_F(EpochWindowTest, FollowsARunAndReadsWhenItIsShownAgain) {
    document_.Run(10);
    Settle(window_);
    EXPECT_EQ(Column(kState), "Logged|Paused, current*");
    EXPECT_EQ(Column(kRun), "1*");
    document_.Go();
    window_->SetRunning(true);
    Settle(window_);
    EXPECT_EQ(Column(kState), "Logged|Paused|Go, current*");
    EXPECT_EQ(Column(kRun), "1|2*");
    EXPECT_EQ(Column(kBodies), "4|4|4*");
    ASSERT_EQ(window_->PostMessage(B_QUIT_REQUESTED), B_OK);
    Settle(window_);
    EXPECT_TRUE(window_->IsHidden());
    document_.Pause();
    window_->SetRunning(false);
    Settle(window_);
    EXPECT_EQ(Column(kState), "Logged|Paused|Go, current*") << "nobody sees it";
    window_->Show();
    Settle(window_);
    // Paused, or as it was when nothing was computed in so short a time.
    EXPECT_EQ(Column(kState).find("Go"), std::string::npos);
}

}  // namespace
