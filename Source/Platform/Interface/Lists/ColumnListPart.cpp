#include "Platform/Interface/Lists/ColumnListPart.h"

#include <QCollator>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <QTreeView>
#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Room in a column beside its characters.
constexpr int kColumnPadding = 2;
// As wide as columns become for what is in them, in characters.
constexpr int kMaxColumn = 40;
// Between the rows, in logical pixels.
constexpr int kRowPadding = 4;

}  // namespace

// Knows the editor that is open, and lets no change of the rows undo what the user has typed.
class ColumnListPart::NameDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    mutable QPointer<QLineEdit> editor;
    mutable int64 key = ColumnListRow::kNoKey;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                          const QModelIndex& index) const override {
        editor = new QLineEdit(index.data(Qt::EditRole).toString(), parent);
        editor->selectAll();
        key = ColumnListModel::KeyOf(index);
        return editor;
    }
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, kRowPadding);
    }
    // A picture stays as it is where its row is selected.
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const QVariant picture = index.data(Qt::DecorationRole);
        if (picture.typeId() == QMetaType::QPixmap)
            option->icon.addPixmap(picture.value<QPixmap>(), QIcon::Selected);
    }
    // Of a text that is cut, all of it.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        const bool isCut = event->type() == QEvent::ToolTip &&
                           sizeHint(option, index).width() > view->visualRect(index).width();
        if (!isCut) return QStyledItemDelegate::helpEvent(event, view, option, index);
        QToolTip::showText(
            event->globalPos(),
            index.data().toString() + QLatin1Char('\n') + index.data(Qt::ToolTipRole).toString(),
            view);
        return true;
    }
    void setEditorData(QWidget* /*editor*/, const QModelIndex& /*index*/) const override {}
    void setModelData(QWidget* widget, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        model->setData(index, static_cast<QLineEdit*>(widget)->text(), Qt::EditRole);
    }
};

class ColumnListPart::View : public QTreeView {
public:
    explicit View(ColumnListPart& part) : part_(part), delegate_(new NameDelegate(this)) {
        setItemDelegate(delegate_);
    }

    void StartRename() {
        const QModelIndex name = currentIndex().siblingAtColumn(0);
        if (name.isValid() && (name.flags() & Qt::ItemIsEditable)) edit(name);
    }
    [[nodiscard]] int WidthOf(int column) const { return sizeHintForColumn(column); }
    [[nodiscard]] QLineEdit* Editor() const { return delegate_->editor; }
    [[nodiscard]] int64 EditedKey() const { return delegate_->key; }
    // With what was typed, or without it.
    void CloseEditor(bool isTaken) {
        QLineEdit* const editor = Editor();
        if (editor == nullptr) return;
        if (isTaken) commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }

protected:
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override {
        // It is deleted later, and until then is no editor any more.
        delegate_->editor = nullptr;
        QTreeView::closeEditor(editor, hint);
    }

    void keyPressEvent(QKeyEvent* event) override {
        const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
        const int64 key = ColumnListModel::KeyOf(currentIndex());
        if (isPlain && state() != EditingState && key != ColumnListRow::kNoKey) {
            switch (event->key()) {
                case Qt::Key_Return:
                case Qt::Key_Enter:
                    return part_.TellAbout(kListInvoked, key);
                case Qt::Key_F2:
                    return StartRename();
                case Qt::Key_Delete:
                    return part_.TellAbout(kListDeleted, key);
                default:
                    break;
            }
        }
        QTreeView::keyPressEvent(event);
    }

    void contextMenuEvent(QContextMenuEvent* event) override {
        const QRect row = visualRect(currentIndex());
        const bool isKey = event->reason() == QContextMenuEvent::Keyboard && row.isValid();
        part_.OpenMenu(isKey ? viewport()->mapToGlobal(row.bottomLeft()) : event->globalPos());
    }

private:
    ColumnListPart& part_;
    NameDelegate* const delegate_;
};

ColumnListPart::ColumnListPart(std::vector<BColumnListView::Column> columns)
    : columns_(std::move(columns)) {}

ColumnListPart::~ColumnListPart() = default;

QWidget* ColumnListPart::Make() {
    view_ = new View(*this);
    std::vector<ColumnListTitle> titles;
    titles.reserve(columns_.size());
    for (const BColumnListView::Column& column : columns_)
        titles.push_back({ToText(column.title), column.isRightAligned});
    model_ = new ColumnListModel(std::move(titles),
                                 [this](int64 key, const QString& text) { TellRename(key, text); });
    model_->setParent(view_);
    view_->setModel(model_);
    view_->setUniformRowHeights(true);
    view_->setAllColumnsShowFocus(true);
    view_->setAlternatingRowColors(true);
    view_->setExpandsOnDoubleClick(false);
    view_->setEditTriggers(QAbstractItemView::SelectedClicked);
    SetColumnWidths();
    QObject::connect(view_, &QTreeView::doubleClicked, view_, [this](const QModelIndex& index) {
        TellAbout(kListInvoked, ColumnListModel::KeyOf(index));
    });
    QObject::connect(view_, &QTreeView::expanded, view_,
                     [this](const QModelIndex& index) { KeepOpen(index, true); });
    QObject::connect(view_, &QTreeView::collapsed, view_,
                     [this](const QModelIndex& index) { KeepOpen(index, false); });
    QObject::connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, view_,
                     [this] { TellSelection(); });
    return view_;
}

void ColumnListPart::SetColumnWidths() {
    QHeaderView& header = *view_->header();
    const int character = view_->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    for (std::size_t i = 0; i < columns_.size(); i++)
        header.resizeSection(static_cast<int>(i), character * (columns_[i].width + kColumnPadding));
    header.setSectionsMovable(false);
    header.setSectionsClickable(true);
    header.setSortIndicatorShown(true);
    header.setSortIndicatorClearable(true);
    header.setSortIndicator(-1, Qt::AscendingOrder);
    QObject::connect(&header, &QHeaderView::sectionResized, view_, [this](int column) {
        if (!isWidening_) sized_.insert(column);
    });
    QObject::connect(&header, &QHeaderView::sortIndicatorChanged, view_,
                     [this](int column, Qt::SortOrder order) { SortBy(column, order); });
}

// Those that the user has not sized get room for what is seen in them, and never less again.
void ColumnListPart::WidenColumns() {
    QHeaderView& header = *view_->header();
    const int most = kMaxColumn * view_->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    isWidening_ = true;
    for (int i = 0; i + 1 < header.count(); i++) {
        const int wanted = std::min(view_->WidthOf(i), most);
        if (!sized_.contains(i) && wanted > header.sectionSize(i)) header.resizeSection(i, wanted);
    }
    isWidening_ = false;
}

// --- Rows ---

void ColumnListPart::SetRows(std::vector<ColumnListRow> rows) {
    rows_ = std::move(rows);
    DecorateRoot();
    Update([this] { return model_->Show(Arranged()); });
    WidenColumns();
}

void ColumnListPart::ChangeRow(ColumnListRow row) {
    const auto found = std::find_if(rows_.begin(), rows_.end(),
                                    [&](const ColumnListRow& old) { return old.key == row.key; });
    if (found == rows_.end()) return;
    row.parent = found->parent;
    *found = std::move(row);
    if (sortColumn_ < 0)
        model_->Change(*found);
    else
        Update([this] { return model_->Show(Arranged()); });
}

void ColumnListPart::SortBy(int column, Qt::SortOrder order) {
    sortColumn_ = column < static_cast<int>(columns_.size()) ? column : -1;
    sortOrder_ = order;
    view_->CloseEditor(true);
    DecorateRoot();
    Update([this] {
        model_->Reset(Arranged());
        return true;
    });
    view_->scrollTo(model_->IndexOf(selected_));
}

// A list in which no row hangs below another one needs no room for branches.
void ColumnListPart::DecorateRoot() {
    view_->setRootIsDecorated(sortColumn_ < 0 &&
                              std::any_of(rows_.begin(), rows_.end(), [](const ColumnListRow& row) {
                                  return row.parent != ColumnListRow::kNoKey;
                              }));
}

std::vector<ColumnListRow> ColumnListPart::Arranged() const {
    if (sortColumn_ < 0) return rows_;
    struct Place {
        double number;
        QCollatorSortKey text;
        std::size_t row;
    };
    QCollator collator;
    collator.setNumericMode(true);
    std::vector<Place> places;
    places.reserve(rows_.size());
    const auto column = static_cast<std::size_t>(sortColumn_);
    for (std::size_t i = 0; i < rows_.size(); i++) {
        const auto& cells = rows_[i].cells;
        const ColumnListRow::Cell cell =
            column < cells.size() ? cells[column] : ColumnListRow::Cell{};
        places.push_back({cell.number, collator.sortKey(ToText(cell.text)), i});
    }
    const auto isBefore = [](const Place& a, const Place& b) {
        if (std::isnan(a.number) != std::isnan(b.number)) return std::isnan(b.number);
        return std::isnan(a.number) ? a.text < b.text : a.number < b.number;
    };
    const bool isAscending = sortOrder_ == Qt::AscendingOrder;
    std::stable_sort(places.begin(), places.end(), [&](const Place& a, const Place& b) {
        return isAscending ? isBefore(a, b) : isBefore(b, a);
    });
    std::vector<ColumnListRow> sorted;
    sorted.reserve(rows_.size());
    for (const Place& place : places) {
        sorted.push_back(rows_[place.row]);
        sorted.back().parent = ColumnListRow::kNoKey;
    }
    return sorted;
}

// `change` tells whether rows came, went or moved: then the row at the top and the selected one are
// put back in their places.
template <typename Change>
void ColumnListPart::Update(Change change) {
    const int64 top = view_->verticalScrollBar()->value() == 0
                          ? ColumnListRow::kNoKey
                          : ColumnListModel::KeyOf(view_->indexAt({0, 0}));
    isUpdating_ = true;
    view_->setAutoScroll(false);
    if (change()) {
        OpenParents();
        const QModelIndex selected = model_->IndexOf(selected_);
        if (selected.isValid() && ColumnListModel::KeyOf(view_->currentIndex()) != selected_)
            view_->setCurrentIndex(selected);
        if (const QModelIndex index = model_->IndexOf(top); index.isValid())
            view_->scrollTo(index, QAbstractItemView::PositionAtTop);
    }
    view_->setAutoScroll(true);
    isUpdating_ = false;
    TellSelection();
}

void ColumnListPart::OpenParents() {
    model_->ForEachParent([this](int64 key, const QModelIndex& index) {
        if (!closed_.contains(key)) view_->expand(index);
    });
}

void ColumnListPart::KeepOpen(const QModelIndex& index, bool isOpen) {
    if (isUpdating_) return;
    if (isOpen)
        closed_.erase(ColumnListModel::KeyOf(index));
    else
        closed_.insert(ColumnListModel::KeyOf(index));
}

// Sent in any case, so that it comes after what the user selected before.
void ColumnListPart::Select(int64 key) {
    if (const QModelIndex index = model_->IndexOf(key); index.isValid()) {
        selected_ = key;
        Reveal(key);
        view_->setCurrentIndex(index);
    }
    TellSelected(true);
}

void ColumnListPart::Reveal(int64 key) {
    const QModelIndex index = model_->IndexOf(key);
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent())
        view_->expand(above);
    view_->scrollTo(index);
}

// --- Names ---

void ColumnListPart::StartRename() {
    view_->setFocus(Qt::OtherFocusReason);
    view_->StartRename();
}

std::optional<BColumnListView::Rename> ColumnListPart::TakeRename() {
    const QLineEdit* const editor = view_->Editor();
    if (editor == nullptr) return std::nullopt;
    const BColumnListView::Rename rename{view_->EditedKey(),
                                         editor->text().trimmed().toStdString()};
    const QString before = model_->IndexOf(rename.key).data().toString();
    view_->CloseEditor(false);
    if (rename.text.empty() || rename.text == before.toStdString()) return std::nullopt;
    return rename;
}

// --- What the view is told ---

void ColumnListPart::TellAbout(const char* event, int64 key) const {
    if (key == ColumnListRow::kNoKey) return;
    BMessage message(kViewChanged);
    message.AddInt64(event, key);
    Tell(message);
}

void ColumnListPart::TellSelection() {
    if (isUpdating_) return;
    const QModelIndexList rows = view_->selectionModel()->selectedRows();
    const int64 key = rows.isEmpty() ? ColumnListRow::kNoKey : ColumnListModel::KeyOf(rows.first());
    if (std::exchange(selected_, key) != key) TellSelected(false);
}

void ColumnListPart::TellSelected(bool isSilent) const {
    BMessage message(kViewChanged);
    message.AddInt64(kListSelected, selected_);
    message.AddBool(kListSilent, isSilent);
    Tell(message);
}

void ColumnListPart::TellRename(int64 key, const QString& text) const {
    BMessage message(kViewChanged);
    message.AddInt64(kListRenamed, key);
    message.AddString(BColumnListView::kTextField, text.toStdString());
    Tell(message);
}

void ColumnListPart::OpenMenu(QPoint at) const {
    if (menu_ == nullptr) return;
    if (auto* const menu = qobject_cast<QMenu*>(menu_->Widget())) menu->popup(at);
}
