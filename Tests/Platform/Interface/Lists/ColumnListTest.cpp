#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTreeView>
#include <random>

#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Lists/BColumnListView.h"
#include "Platform/Interface/Lists/ColumnListModel.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

ColumnListRow Row(int64 key, int64 parent, const std::string& name, double number = 0.0) {
    ColumnListRow row;
    row.key = key;
    row.parent = parent;
    row.cells = {{name}, {std::to_string(static_cast<int>(number)) + " yr", number}};
    row.isEditable = true;
    return row;
}

// 1 has 2 and 3 below it, 3 has 4; 5 is alone.
std::vector<ColumnListRow> SampleRows() {
    constexpr int64 kNone = ColumnListRow::kNoKey;
    return {Row(1, kNone, "Genesis", 10), Row(2, 1, "Run 1", 9), Row(3, 1, "Run 2", 100),
            Row(4, 3, "Genesis", 20), Row(5, kNone, "Apart", 3)};
}

// The keys of the rows below an index, those below them in brackets.
std::string Outline(const QAbstractItemModel& model, const QModelIndex& parent = {}) {
    std::string text;
    for (int i = 0; i < model.rowCount(parent); i++) {
        const QModelIndex index = model.index(i, 0, parent);
        if (i > 0) text += ' ';
        text += std::to_string(ColumnListModel::KeyOf(index));
        if (model.rowCount(index) > 0) text += '(' + Outline(model, index) + ')';
    }
    return text;
}

std::string Outline(const std::vector<ColumnListRow>& rows, int64 parent = ColumnListRow::kNoKey) {
    std::string text;
    for (const ColumnListRow& row : rows) {
        if (row.parent != parent) continue;
        if (!text.empty()) text += ' ';
        text += std::to_string(row.key);
        const std::string below = Outline(rows, row.key);
        if (!below.empty()) text += '(' + below + ')';
    }
    return text;
}

class RandomRows {
public:
    // Some of the keys 0 to 39, each below a random one before it.
    std::vector<ColumnListRow> Make() {
        std::vector<int64> keys(40);
        for (std::size_t i = 0; i < keys.size(); i++)
            keys[i] = static_cast<int64>(i);
        // Mostly in the same order, as a list is that changes.
        for (int swaps = Below(4); swaps > 0; swaps--)
            std::swap(keys[Index(40)], keys[Index(40)]);
        keys.resize(10 + Index(31));
        std::vector<ColumnListRow> rows;
        for (const int64 key : keys) {
            const std::size_t parent = (static_cast<std::size_t>(key) * 7 + Index(3)) % 20;
            const bool isTop = parent >= rows.size();
            rows.push_back(Row(key, isTop ? ColumnListRow::kNoKey : rows[parent].key,
                               std::to_string(Below(3))));
        }
        return rows;
    }
    std::size_t Index(int count) { return static_cast<std::size_t>(Below(count)); }

private:
    int Below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

    std::mt19937 random_{42};
};

TEST(ColumnListModel, TakesOverAnyRowsFromAnyOthers) {
    WindowServer::Perform([] {
        ColumnListModel model({{QStringLiteral("Name"), false}, {QStringLiteral("Time"), true}},
                              [](int64, const QString&) {});
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        RandomRows random;
        int kept = 0;
        for (int round = 0; round < 300; round++) {
            const std::vector<ColumnListRow> rows = random.Make();
            const int64 key = rows[random.Index(10)].key;
            const QPersistentModelIndex watched = model.IndexOf(key);
            model.Show(rows);
            ASSERT_EQ(Outline(model), Outline(rows)) << "round " << round;
            for (const ColumnListRow& row : rows)
                ASSERT_EQ(model.IndexOf(row.key).data().toString().toStdString(),
                          row.cells[0].text);
            if (!watched.isValid()) continue;
            EXPECT_EQ(ColumnListModel::KeyOf(watched), key);
            kept++;
        }
        EXPECT_GT(kept, 30);
    });
}

TEST(ColumnListModel, RowsThatAddUpToNoTreeAreDropped) {
    WindowServer::Perform([] {
        ColumnListModel model({{QStringLiteral("Name"), false}}, [](int64, const QString&) {});
        for (int i = 0; i < 2; i++) {
            model.Show({Row(1, ColumnListRow::kNoKey, "a"), Row(2, 7, "no parent"), Row(3, 1, "b"),
                        Row(1, 3, "again")});
            EXPECT_EQ(Outline(model), "1(3)");
        }
    });
}

class ColumnListTest : public WindowFixture {
protected:
    void SetUp() override {
        list_->SetSelectionMessage(new BMessage(FourCC("slct")));
        list_->SetDeletionMessage(new BMessage(FourCC("dele")));
        list_->SetRenameMessage(new BMessage(FourCC("rnam")));
        list_->SetRows(SampleRows());
        Show(list_);
    }

    QTreeView* View() const { return FindWidget<QTreeView>(list_); }

    template <typename Use>
    void ByHand(Use use) {
        window_->ByHand([&] {
            use(*View());
            QApplication::processEvents();  // what the toolkit has put off
        });
    }
    void Press(int key) {
        ByHand([key](QTreeView& view) { QTest::keyClick(&view, static_cast<Qt::Key>(key)); });
    }
    void ClickTitle(int column) {
        ByHand([column](QTreeView& view) {
            QHeaderView& header = *view.header();
            const int x = header.sectionViewportPosition(column) + header.sectionSize(column) / 2;
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, {x, header.height() / 2});
        });
    }
    QPoint Middle(QTreeView& view, int64 key) const {
        const QModelIndex index = static_cast<ColumnListModel*>(view.model())->IndexOf(key);
        return view.visualRect(index).center();
    }
    std::string Shown() {
        return WindowServer::Ask([&] { return Outline(*View()->model()); });
    }
    bool IsOpen(int64 key) {
        return WindowServer::Ask([&] {
            return View()->isExpanded(static_cast<ColumnListModel*>(View()->model())->IndexOf(key));
        });
    }
    QLineEdit* Editor() {
        return WindowServer::Ask([&] { return View()->viewport()->findChild<QLineEdit*>(); });
    }
    // What came, as "code:key:text".
    std::vector<std::string> Messages() {
        std::vector<std::string> texts;
        for (const BMessage& message : window_->Take()) {
            std::string& text = texts.emplace_back();
            for (int shift = 24; shift >= 0; shift -= 8)
                text += static_cast<char>(message.what >> shift);
            int64 key = 0;
            if (message.FindInt64(BColumnListView::kKeyField, &key) == B_OK)
                text += ':' + std::to_string(key);
            std::string name;
            if (message.FindString(BColumnListView::kTextField, &name) == B_OK) text += ':' + name;
        }
        return texts;
    }
    using Texts = std::vector<std::string>;

    BColumnListView* list_ = new BColumnListView("list", {{"Name", 15, false}, {"Time", 10, true}},
                                                 new BMessage(FourCC("invk")));
};

TEST_F(ColumnListTest, TheKeyboardSelectsInvokesAndDeletes) {
    window_->Do([&] { list_->Select(1); });
    EXPECT_TRUE(Messages().empty());
    Press(Qt::Key_Down);
    EXPECT_EQ(list_->Selection(), 2);
    Press(Qt::Key_Return);
    Press(Qt::Key_Delete);
    Press(Qt::Key_End);
    EXPECT_EQ(Messages(), (Texts{"slct:2", "invk:2", "dele:2", "slct:5"}));
}

TEST_F(ColumnListTest, ADoubleClickInvokesAndRenamesNothing) {
    window_->Do([&] { list_->Select(3); });
    ByHand([&](QTreeView& view) {
        const QPoint at = Middle(view, 3);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, at);
        QTest::qWait(2 * QApplication::doubleClickInterval());
    });
    EXPECT_EQ(Messages(), Texts{"invk:3"});
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_TRUE(IsOpen(3));
}

TEST_F(ColumnListTest, TitlesSortAndBringBackTheTree) {
    window_->Do([&] { list_->Select(4); });
    EXPECT_EQ(Shown(), "1(2 3(4)) 5");
    ClickTitle(0);
    EXPECT_EQ(Shown(), "5 1 4 2 3");
    ClickTitle(1);
    EXPECT_EQ(Shown(), "5 2 1 4 3");
    ClickTitle(1);
    EXPECT_EQ(Shown(), "3 4 1 2 5");
    // Where a row belongs changes with what it holds.
    window_->Do([&] { list_->ChangeRow(Row(5, ColumnListRow::kNoKey, "Apart", 50)); });
    EXPECT_EQ(Shown(), "3 5 4 1 2");
    ClickTitle(1);
    EXPECT_EQ(Shown(), "1(2 3(4)) 5");
    EXPECT_EQ(list_->Selection(), 4);
    EXPECT_TRUE(Messages().empty());
}

TEST_F(ColumnListTest, ARowIsRenamedInPlace) {
    window_->Do([&] { list_->Select(2); });
    Press(Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr);
    // What else changes does not disturb the typing.
    WindowServer::Perform([&] { QTest::keyClicks(Editor(), QStringLiteral("Far ")); });
    window_->Do([&] {
        std::vector<ColumnListRow> rows = SampleRows();
        rows[1].cells[1].text = "11 yr";
        rows.insert(rows.begin(), Row(6, ColumnListRow::kNoKey, "first"));
        list_->SetRows(rows);
    });
    ByHand([&](QTreeView&) {
        QTest::keyClicks(Editor(), QStringLiteral("away"));
        QTest::keyClick(Editor(), Qt::Key_Return);
    });
    EXPECT_EQ(Messages(), Texts{"rnam:2:Far away"});

    Press(Qt::Key_F2);
    ByHand([&](QTreeView&) {
        Editor()->clear();
        QTest::keyClick(Editor(), Qt::Key_Return);
    });
    EXPECT_TRUE(Messages().empty());

    // What is half typed can be taken; then it is not told.
    Press(Qt::Key_F2);
    WindowServer::Perform([&] { Editor()->setText(QStringLiteral("  End of all ")); });
    const auto typed = list_->TakePendingRename();
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->key, 2);
    EXPECT_EQ(typed->text, "End of all");
    EXPECT_FALSE(list_->TakePendingRename());
    window_->Settle();
    EXPECT_TRUE(Messages().empty());
}

TEST_F(ColumnListTest, ClosedRowsAndTheSelectionSurviveAnUpdate) {
    ByHand([](QTreeView& view) { view.collapse(view.model()->index(0, 0)); });
    window_->Do([&] { list_->Select(5); });
    std::vector<ColumnListRow> rows = SampleRows();
    rows.insert(rows.begin() + 2, Row(7, 1, "new"));
    rows.insert(rows.begin() + 3, Row(8, 7, "newer"));
    // 5 moves below another row: it is another place, and the same row.
    rows.back().parent = 2;
    window_->Do([&] { list_->SetRows(rows); });
    EXPECT_EQ(Shown(), "1(2(5) 7(8) 3(4))");
    EXPECT_FALSE(IsOpen(1));
    EXPECT_TRUE(IsOpen(7));
    EXPECT_EQ(list_->Selection(), 5);
    EXPECT_TRUE(Messages().empty());

    window_->Do([&] { list_->Reveal(8); });
    EXPECT_TRUE(IsOpen(1));
    rows.erase(rows.end() - 1);
    window_->Do([&] { list_->SetRows(rows); });
    EXPECT_NE(list_->Selection(), 5);
    EXPECT_EQ(Messages().size(), 1u);
}

TEST_F(ColumnListTest, TheContextMenuOpensForTheRow) {
    auto* const menu = new BPopUpMenu("menu", false, false);
    menu->AddItem(new BMenuItem("Item", new BMessage(FourCC("item"))));
    window_->Do([&] { list_->SetContextMenu(menu); });
    ByHand([&](QTreeView& view) {
        const QPoint at = Middle(view, 3);
        QTest::mouseClick(view.viewport(), Qt::RightButton, {}, at);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &event);
        QTest::keyClick(static_cast<QWidget*>(menu->Part()->Widget()), Qt::Key_Down);
        QTest::keyClick(static_cast<QWidget*>(menu->Part()->Widget()), Qt::Key_Return);
    });
    EXPECT_EQ(list_->Selection(), 3);
    EXPECT_EQ(Messages(), (Texts{"slct:3", "item"}));
}

// All rows open, one thousands of levels deep.
TEST_F(ColumnListTest, DeepAndLongListsAreNoTrouble) {
    constexpr int64 kDepth = 5000;
    std::vector<ColumnListRow> rows;
    for (int64 key = 0; key < 2 * kDepth; key++)
        rows.push_back(Row(key, key < kDepth ? key - 1 : ColumnListRow::kNoKey, "epoch"));
    window_->Do([&] { list_->SetRows(rows); });
    rows.push_back(Row(2 * kDepth, kDepth - 1, "one more"));
    rows.erase(rows.begin() + kDepth + 17);
    window_->Do([&] { list_->SetRows(rows); });
    window_->Do([&] { list_->Select(2 * kDepth); });
    EXPECT_EQ(WindowServer::Ask([&] { return ColumnListModel::KeyOf(View()->currentIndex()); }),
              2 * kDepth);
    ClickTitle(0);
    window_->Do([&] { list_->SetRows({}); });
    EXPECT_EQ(Shown(), "");
}

}  // namespace
