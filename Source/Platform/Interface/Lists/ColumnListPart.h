// The window server's half of a column list: the toolkit's tree view, in which the rows are shown
// as they hang below each other, or sorted and plain. Server's thread.
#pragma once

#include <QLineEdit>
#include <QPointer>
#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

#include "Platform/Interface/Lists/BColumnListView.h"
#include "Platform/Interface/Lists/ColumnListModel.h"
#include "Platform/Interface/Server/ViewPart.h"

// What the part tells its view: int64 by one of these names, the key of the row concerned.
inline constexpr const char* kListSelected = "selected";
inline constexpr const char* kListSilent = "silent";  // bool: selected by the program
inline constexpr const char* kListInvoked = "invoked";
inline constexpr const char* kListDeleted = "deleted";
inline constexpr const char* kListRenamed = "renamed";  // with string kTextField

class ColumnListPart : public ViewPart {
public:
    explicit ColumnListPart(std::vector<BColumnListView::Column> columns);
    ~ColumnListPart() override;

    void SetRows(std::vector<ColumnListRow> rows);
    void ChangeRow(ColumnListRow row);
    void Select(int64 key);
    void Reveal(int64 key);
    void SetMenu(std::shared_ptr<ViewPart> menu) { menu_ = std::move(menu); }
    void StartRename();
    std::optional<BColumnListView::Rename> TakeRename();

protected:
    QWidget* Make() override;

private:
    class View;
    class NameDelegate;

    void SetColumnWidths();
    void WidenColumns();
    void SortBy(int column, Qt::SortOrder order);
    // The rows in the order of the column that they are sorted by, or as they came.
    void DecorateRoot();
    [[nodiscard]] std::vector<ColumnListRow> Arranged() const;
    template <typename Change>
    void Update(Change change);
    void OpenParents();
    void KeepOpen(const QModelIndex& index, bool isOpen);
    void TellAbout(const char* event, int64 key) const;
    void TellSelection();
    void TellSelected(bool isSilent) const;
    void TellRename(int64 key, const QString& text) const;
    void OpenMenu(QPoint at) const;

    const std::vector<BColumnListView::Column> columns_;
    std::vector<ColumnListRow> rows_;  // as they came
    int sortColumn_ = -1;              // -1: the tree
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    std::unordered_set<int64> closed_;  // by the user
    int64 selected_ = ColumnListRow::kNoKey;
    bool isUpdating_ = false;
    std::unordered_set<int> sized_;  // columns, by the user
    bool isWidening_ = false;
    std::shared_ptr<ViewPart> menu_;
    ColumnListModel* model_ = nullptr;  // the view's
    View* view_ = nullptr;              // the part's widget
};
