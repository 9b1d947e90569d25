#include "Tests/Simulation/ListHand.h"

#include <QApplication>
#include <QTest>
#include <QTreeView>

#include "Platform/Interface/Lists/BColumnListView.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

template <typename Action>
void Do(const BColumnListView* list, Action action) {
    WindowServer::Perform([&] {
        action(*FindWidget<QTreeView>(list));
        QApplication::processEvents();  // what the toolkit has put off
    });
}

}  // namespace

void ListHand::Press(const BColumnListView* list, Key key) {
    Do(list, [key](QTreeView& view) {
        QTest::keyClick(&view, key == Key::kEnter ? Qt::Key_Return : Qt::Key_Delete);
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
