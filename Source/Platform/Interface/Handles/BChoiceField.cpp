#include "Platform/Interface/Handles/BChoiceField.h"

#include <QAbstractListModel>
#include <QComboBox>
#include <QListView>
#include <QStyledItemDelegate>
#include <QWheelEvent>
#include <algorithm>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

constexpr int kVisibleChoices = 20;
constexpr int kIndent = 16;
constexpr int kPadding = 3;  // above and below a text
constexpr int kLevelRole = Qt::UserRole;
constexpr const char* kId = "id";

class ChoiceModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void SetChoices(std::vector<BChoiceField::Choice> choices) {
        beginResetModel();
        choices_ = std::move(choices);
        endResetModel();
    }

    // -1 for none.
    [[nodiscard]] int RowOf(int64 id) const {
        const auto found = std::find_if(choices_.begin(), choices_.end(),
                                        [id](const auto& choice) { return choice.id == id; });
        return found == choices_.end() ? -1 : static_cast<int>(found - choices_.begin());
    }
    [[nodiscard]] int64 IdAt(int row) const { return choices_[static_cast<std::size_t>(row)].id; }

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(choices_.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        const auto row = static_cast<std::size_t>(index.row());
        if (!index.isValid() || row >= choices_.size()) return {};
        if (role == Qt::DisplayRole) return ToText(choices_[row].text);
        if (role == kLevelRole) return choices_[row].level;
        return {};
    }

private:
    std::vector<BChoiceField::Choice> choices_;
};

class IndentingDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem indented(option);
        indented.rect.setLeft(option.rect.left() + kIndent * index.data(kLevelRole).toInt());
        QStyledItemDelegate::paint(painter, indented, index);
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index).grownBy({0, kPadding, 0, kPadding});
    }
};

class ChoiceBox : public QComboBox {
public:
    ChoiceBox() {
        setModel(&model);
        // A list with a scroll bar; the toolkit's other form would cover the screen.
        setStyleSheet(QStringLiteral("QComboBox { combobox-popup: 0; }"));
        auto* const list = new QListView;
        list->setUniformItemSizes(true);
        setView(list);
        setItemDelegate(new IndentingDelegate(this));
        setMaxVisibleItems(kVisibleChoices);
        // The texts are not measured.
        setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    }

    ChoiceModel model;

protected:
    // Only a click or a key changes a choice: the wheel is for the window around it.
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

class ChoicePart : public ViewPart {
public:
    explicit ChoicePart(std::string label) : label_(std::move(label)) {}

    ChoiceBox* box = nullptr;

    void SetChoices(std::vector<BChoiceField::Choice> choices) const {
        box->model.SetChoices(std::move(choices));
        box->setCurrentIndex(-1);
    }

protected:
    QWidget* Make() override {
        box = new ChoiceBox;
        box->setAccessibleName(ToText(label_));
        QObject::connect(box, &QComboBox::activated, box, [this](int index) {
            BMessage message(kViewChanged);
            message.AddInt64(kId, box->model.IdAt(index));
            Tell(message);
        });
        return box;
    }

private:
    const std::string label_;
};

}  // namespace

BChoiceField::BChoiceField(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<ChoicePart>(label == nullptr ? "" : label)) {}

void BChoiceField::SetChoices(std::vector<Choice> choices) {
    auto list = std::make_shared<std::vector<Choice>>(std::move(choices));
    ChangePart<ChoicePart>(Part(), [list = std::move(list)](const ChoicePart& part) {
        part.SetChoices(std::move(*list));
    });
}

void BChoiceField::Choose(int64 id) {
    ChangePart<ChoicePart>(Part(), [=](const ChoicePart& part) {
        part.box->setCurrentIndex(part.box->model.RowOf(id));
    });
}

void BChoiceField::SetColumns(int32 count) {
    ChangePart<ChoicePart>(
        Part(), [=](const ChoicePart& part) { part.box->setMinimumContentsLength(count); });
}

void BChoiceField::Changed(const BMessage& message) {
    int64 id = 0;
    if (!IsEnabled() || Message() == nullptr || message.FindInt64(kId, &id) != B_OK) return;
    BMessage chosen(*Message());
    chosen.AddInt64(kId, id);
    Invoke(&chosen);
}
