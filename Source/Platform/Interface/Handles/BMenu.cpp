#include "Platform/Interface/Handles/BMenu.h"

#include <QCursor>
#include <QMenu>
#include <algorithm>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"
#include "Platform/Interface/Handles/BMenuField.h"
#include "Platform/Interface/Handles/BMenuItem.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/ArchiveFields.h"
#include "Platform/Interface/Server/MenuItemPart.h"
#include "Platform/Interface/Server/Mnemonics.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

const ArchivableClass kClass("BMenu", BMenu::Instantiate);
const ArchivableClass kPopUpClass("BPopUpMenu", BPopUpMenu::Instantiate);

class MenuPart : public ViewPart {
protected:
    QWidget* Make() override {
        auto* const menu = new QMenu;
        QObject::connect(menu, &QMenu::aboutToShow, menu, [menu] { MarkMnemonics(*menu); });
        QObject::connect(menu, &QMenu::aboutToHide, menu, [menu] { ShowPassingTip({}, {}, menu); });
        return menu;
    }
};

}  // namespace

BMenu::BMenu(const char* name) : BMenu(name, std::make_shared<MenuPart>()) {}

BMenu::BMenu(const char* name, std::shared_ptr<ViewPart> part) : BView(name, std::move(part)) {}

BMenu::BMenu(BMessage* archive) : BMenu(archive, std::make_shared<MenuPart>()) {}

BMenu::BMenu(BMessage* archive, std::shared_ptr<ViewPart> part) : BView(archive, std::move(part)) {
    if (archive != nullptr) ReadArchive(archive);
}

BMenu::~BMenu() {
    RemoveItems();
}

// --- Archives ---

BArchivable* BMenu::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "BMenu") ? new BMenu(archive) : nullptr;
}

void BMenu::ReadArchive(BMessage* archive) {
    archive->FindBool("_radio", &isRadioMode_);
    archive->FindBool("_dyn_label", &isLabelFromMarked_);
    bool isDisabled = false;
    archive->FindBool("_disable", &isDisabled);
    if (isDisabled) SetEnabled(false);
    BMessage nested;
    for (int32 i = 0; archive->FindMessage("_items", i, &nested) == B_OK; i++) {
        if (auto item = InstantiateAs<BMenuItem>(&nested))
            BMenu::AddItem(item.release(), CountItems());
    }
}

status_t BMenu::Archive(BMessage* into, bool deep) const {
    FieldWriter fields(into, AddClassName(*this, into));
    fields.Then([&] { return BView::Archive(into, deep); })
        .Add("_radio", true, isRadioMode_)
        .Add("_dyn_label", true, isLabelFromMarked_)
        .Add("_disable", true, !isEnabled_);
    for (const auto& item : items_)
        fields.Then([&] { return AddArchive(*item, "_items", into); }, deep);
    return fields.Status();
}

// --- Items ---

bool BMenu::AddItem(BMenuItem* item) {
    return AddItem(item, CountItems());
}

bool BMenu::AddItem(BMenuItem* item, int32 index) {
    if (item == nullptr || item->menu_ != nullptr || index < 0 || index > CountItems())
        return false;
    items_.insert(items_.begin() + index, std::unique_ptr<BMenuItem>(item));
    item->menu_ = this;
    std::shared_ptr<ViewPart> submenu;
    if (item->Submenu() != nullptr) {
        item->Submenu()->superitem_ = item;
        Adopt(item->Submenu());
        submenu = item->Submenu()->Part();
    }
    WindowServer::Queue([menu = Part(), part = item->part_, submenu, index] {
        part->Insert(*menu, index, submenu.get());
    });
    if (item->IsMarked() && isRadioMode_) UnmarkOthers(item);
    item->UpdatePart();
    UpdateField();
    return true;
}

bool BMenu::AddItem(BMenu* submenu) {
    return AddItem(submenu, CountItems());
}

bool BMenu::AddItem(BMenu* submenu, int32 index) {
    if (submenu == nullptr || submenu->Parent() != nullptr || index < 0 || index > CountItems())
        return false;
    auto item = std::make_unique<BMenuItem>(submenu);
    if (AddItem(item.get(), index)) {
        (void)item.release();
        return true;
    }
    (void)item->submenu_.release();  // the caller keeps it
    return false;
}

bool BMenu::AddSeparatorItem() {
    auto item = std::make_unique<BSeparatorItem>();
    if (!AddItem(item.get())) return false;
    (void)item.release();
    return true;
}

bool BMenu::RemoveItem(BMenuItem* item) {
    return RemoveItem(IndexOf(item)) != nullptr;
}

BMenuItem* BMenu::RemoveItem(int32 index) {
    if (ItemAt(index) == nullptr) return nullptr;
    const auto place = items_.begin() + index;
    BMenuItem* const item = place->release();
    items_.erase(place);
    item->menu_ = nullptr;
    if (item->Submenu() != nullptr) {
        RemoveChild(item->Submenu());
        item->Submenu()->superitem_ = nullptr;
    }
    WindowServer::Queue([part = item->part_] { part->Remove(); });
    UpdateField();
    return item;
}

void BMenu::RemoveItems() {
    while (!items_.empty())
        delete RemoveItem(CountItems() - 1);
}

BMenuItem* BMenu::ItemAt(int32 index) const {
    if (index < 0 || index >= CountItems()) return nullptr;
    return items_[static_cast<std::size_t>(index)].get();
}

BMenu* BMenu::SubmenuAt(int32 index) const {
    BMenuItem* const item = ItemAt(index);
    return item == nullptr ? nullptr : item->Submenu();
}

int32 BMenu::IndexOf(const BMenuItem* item) const {
    for (int32 i = 0; i < CountItems(); i++)
        if (ItemAt(i) == item) return i;
    return -1;
}

BMenuItem* BMenu::FindItem(const char* label) const {
    if (label == nullptr) return nullptr;
    for (const auto& item : items_) {
        if (item->Label() == label) return item.get();
        if (item->Submenu() == nullptr) continue;
        if (BMenuItem* const found = item->Submenu()->FindItem(label)) return found;
    }
    return nullptr;
}

BMenuItem* BMenu::FindItem(uint32 command) const {
    for (const auto& item : items_) {
        if (item->Message() != nullptr && item->Command() == command) return item.get();
        if (item->Submenu() == nullptr) continue;
        if (BMenuItem* const found = item->Submenu()->FindItem(command)) return found;
    }
    return nullptr;
}

BMenuItem* BMenu::FindMarked() const {
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [](const auto& item) { return item->IsMarked(); });
    return found == items_.end() ? nullptr : found->get();
}

// --- Marks and targets ---

void BMenu::SetRadioMode(bool isRadioMode) {
    isRadioMode_ = isRadioMode;
    for (const auto& item : items_)
        item->UpdatePart();
}

void BMenu::SetLabelFromMarked(bool isLabelFromMarked) {
    isLabelFromMarked_ = isLabelFromMarked;
    UpdateField();
}

void BMenu::SetEnabled(bool isEnabled) {
    isEnabled_ = isEnabled;
    ChangeWidget<QWidget>(Part(), [=](QWidget& widget) { widget.setEnabled(isEnabled); });
    if (superitem_ != nullptr) superitem_->SetEnabled(isEnabled);
}

void BMenu::UnmarkOthers(const BMenuItem* marked) {
    for (const auto& item : items_)
        if (item.get() != marked && item->IsMarked()) item->SetMarked(false);
}

void BMenu::UpdateField() {
    if (auto* const field = dynamic_cast<BMenuField*>(Parent()); field != nullptr)
        field->UpdateText();
}

void BMenu::SetTargetForItems(const BHandler* target) {
    SetTargetForItems(BMessenger(target));
}

void BMenu::SetTargetForItems(const BMessenger& target) {
    for (const auto& item : items_)
        item->SetTarget(target);
}

void BMenu::Changed(const BMessage& message) {
    int64 id = 0;
    message.FindInt64(MenuItemPart::kItemField, &id);
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [id](const auto& item) { return item->part_->Id() == id; });
    if (found == items_.end() || !(*found)->IsEnabled()) {
        // It was removed or disabled after the user had chosen it: the marks are as they were.
        for (const auto& item : items_)
            item->UpdatePart();
        return;
    }
    if (isRadioMode_) (*found)->SetMarked(true);
    (*found)->Invoke();
}

BPopUpMenu::BPopUpMenu(const char* name, bool isRadioMode, bool isLabelFromMarked) : BMenu(name) {
    SetRadioMode(isRadioMode);
    SetLabelFromMarked(isLabelFromMarked);
}

BPopUpMenu::BPopUpMenu(BMessage* archive) : BMenu(archive) {}

BArchivable* BPopUpMenu::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "BPopUpMenu") ? new BPopUpMenu(archive) : nullptr;
}

void BPopUpMenu::Go() {
    ChangeWidget<QMenu>(Part(), [](QMenu& menu) { menu.popup(QCursor::pos()); });
}
