#include "ListHand.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include "BColumnListView.h"
#include "TestWindow.h"

namespace {

Qt::Key ToKey(ListHand::Key key) {
    switch (key) {
        case ListHand::Key::kEnter:
            return Qt::Key_Return;
        case ListHand::Key::kDelete:
            return Qt::Key_Delete;
        default:
            return Qt::Key_F2;
    }
}

template <typename Action>
void Do(const BColumnListView* list, Action action) {
    WindowServer::Perform([&] {
        action(*FindWidget<QTreeView>(list));
        QApplication::processEvents();  // what the toolkit has put off
    });
}

}  // namespace

void ListHand::Press(const BColumnListView* list, Key key) {
    Do(list, [key](QTreeView& view) { QTest::keyClick(&view, ToKey(key)); });
}

bool ListHand::Type(const BColumnListView* list, const std::string& text) {
    bool isTyped = false;
    Do(list, [&](QTreeView& view) {
        auto* const editor = view.viewport()->findChild<QLineEdit*>();
        isTyped = editor != nullptr;
        if (isTyped) editor->setText(QString::fromStdString(text));
    });
    return isTyped;
}

void ListHand::Enter(const BColumnListView* list) {
    Do(list, [](QTreeView& view) {
        QTest::keyClick(view.viewport()->findChild<QLineEdit*>(), Qt::Key_Return);
    });
}

std::string ListHand::Column(const BColumnListView* list, int column) {
    std::string text;
    Do(list, [&](QTreeView& view) {
        view.scrollToTop();
        for (QModelIndex index = view.indexAt({1, 1}); index.isValid();
             index = view.indexBelow(index)) {
            const QModelIndex cell = index.siblingAtColumn(column);
            if (!text.empty()) text += '|';
            text += cell.data().toString().toStdString();
            if (cell.data(Qt::FontRole).value<QFont>().bold()) text += '*';
        }
    });
    return text;
}
