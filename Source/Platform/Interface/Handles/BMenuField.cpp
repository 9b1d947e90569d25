#include "Platform/Interface/Handles/BMenuField.h"

#include <QHBoxLayout>
#include <QLabel>
#include <mutex>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"
#include "Platform/Interface/Server/ArchiveFields.h"
#include "Platform/Interface/Server/PopUpButton.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

const ArchivableClass kClass("BMenuField", BMenuField::Instantiate);

class FieldPart : public ViewPart {
public:
    PopUpButton* button = nullptr;
    QLabel* title = nullptr;

    // Any thread. A menu that is being filled changes its field with each item; the last change
    // counts.
    void SetTexts(const QString& shown, const QStringList& all) {
        const std::lock_guard lock(mutex_);
        shown_ = shown;
        all_ = all;
        if (isQueued_) return;
        isQueued_ = WindowServer::Queue([part = shared_from_this(), this] { ShowTexts(); });
    }

    void SetLabel(const QString& label) const {
        title->setText(label);
        title->setVisible(!label.isEmpty());
        button->setAccessibleName(label);
    }

protected:
    QWidget* Make() override {
        auto* const widget = new QWidget;
        auto* const layout = new QHBoxLayout(widget);
        layout->setContentsMargins(0, 0, 0, 0);
        title = new QLabel;
        title->hide();
        button = new PopUpButton;
        layout->addWidget(title);
        layout->addWidget(button, 1);
        widget->setFocusProxy(button);
        return widget;
    }

private:
    void ShowTexts() {
        const std::lock_guard lock(mutex_);
        isQueued_ = false;
        if (Widget() != nullptr) button->SetTexts(shown_, all_);
    }

    std::mutex mutex_;
    QString shown_;
    QStringList all_;
    bool isQueued_ = false;
};

}  // namespace

BMenuField::BMenuField(const char* name, const char* label, BMenu* menu)
    : BView(name, std::make_shared<FieldPart>()) {
    SetLabel(label);
    Adopt(menu);
    ShowMenu();
}

BMenuField::BMenuField(BMessage* archive) : BView(archive, std::make_shared<FieldPart>()) {
    if (archive == nullptr) return;
    std::string label;
    archive->FindString("_label", &label);
    SetLabel(label.c_str());
    bool isDisabled = false;
    archive->FindBool("_disable", &isDisabled);
    if (isDisabled) SetEnabled(false);
    BMessage nested;
    if (archive->FindMessage("_menu", &nested) != B_OK) return;
    auto menu = InstantiateAs<BMenu>(&nested);
    if (menu == nullptr) return;
    Adopt(menu.release());
    ShowMenu();
}

BArchivable* BMenuField::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "BMenuField") ? new BMenuField(archive) : nullptr;
}

status_t BMenuField::Archive(BMessage* into, bool deep) const {
    return FieldWriter(into, AddClassName(*this, into))
        .Then([&] { return BView::Archive(into, deep); })
        .Add("_label", label_, !label_.empty())
        .Add("_disable", true, !isEnabled_)
        .Then([&] { return AddArchive(*Menu(), "_menu", into); }, deep && Menu() != nullptr)
        .Status();
}

BMenu* BMenuField::Menu() const {
    return static_cast<BMenu*>(ChildAt(0));
}

void BMenuField::SetLabel(const char* label) {
    label_ = label == nullptr ? "" : label;
    ChangePart<FieldPart>(Part(),
                          [text = ToText(label_)](FieldPart& part) { part.SetLabel(text); });
}

void BMenuField::SetEnabled(bool isEnabled) {
    isEnabled_ = isEnabled;
    ChangePart<ViewPart>(Part(), [=](ViewPart& part) { part.SetEnabled(isEnabled); });
}

void BMenuField::SetColumns(int32 count) {
    ChangePart<FieldPart>(Part(),
                          [=](FieldPart& part) { part.button->setMinimumContentsLength(count); });
}

void BMenuField::AttachedToWindow() {
    // What is shown may depend on the derived class, which was not there before.
    UpdateText();
}

bool BMenuField::ShowsMarked() const {
    return Menu()->IsLabelFromMarked();
}

void BMenuField::ShowMenu() {
    ChangePart<FieldPart>(Part(), [menu = Menu()->Part()](FieldPart& part) {
        if (menu->Widget() != nullptr) part.button->SetMenu(static_cast<QMenu*>(menu->Widget()));
    });
    UpdateText();
}

void BMenuField::UpdateText() {
    if (Menu() == nullptr) return;
    QString shown = ToText(Menu()->Name());
    QStringList all;
    if (ShowsMarked()) {
        const BMenuItem* const marked = Menu()->FindMarked();
        if (marked != nullptr) shown = ToText(marked->MarkedLabel());
        for (int32 i = 0; i < Menu()->CountItems(); i++)
            all.append(ToText(Menu()->ItemAt(i)->MarkedLabel()));
    }
    static_cast<FieldPart&>(*Part()).SetTexts(shown, all);
}
