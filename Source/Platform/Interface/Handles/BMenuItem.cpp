#include "Platform/Interface/Handles/BMenuItem.h"

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"
#include "Platform/Interface/Canvas/BBitmap.h"
#include "Platform/Interface/Canvas/PixelImage.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Server/ArchiveFields.h"
#include "Platform/Interface/Server/KeyCodes.h"
#include "Platform/Interface/Server/MenuItemPart.h"

namespace {

const ArchivableClass kClass("BMenuItem", BMenuItem::Instantiate);
const ArchivableClass kSeparatorClass("BSeparatorItem", BSeparatorItem::Instantiate);

}  // namespace

BMenuItem::BMenuItem(const char* label, BMessage* message, char shortcut, uint32 modifiers)
    : BInvoker(message),
      part_(std::make_shared<MenuItemPart>(false)),
      label_(label == nullptr ? "" : label),
      shortcut_(shortcut),
      modifiers_(modifiers) {}

BMenuItem::BMenuItem(BMenu* submenu, BMessage* message)
    : BMenuItem(submenu->Name().c_str(), message) {
    submenu_.reset(submenu);
}

BMenuItem::BMenuItem(Separator) : part_(std::make_shared<MenuItemPart>(true)) {}

BMenuItem::BMenuItem(Separator, BMessage* archive)
    : BArchivable(archive), part_(std::make_shared<MenuItemPart>(true)) {}

BMenuItem::BMenuItem(BMessage* archive)
    : BArchivable(archive), part_(std::make_shared<MenuItemPart>(false)) {
    if (archive == nullptr) return;
    archive->FindString("_label", &label_);
    bool isDisabled = false;
    archive->FindBool("_disable", &isDisabled);
    isEnabled_ = !isDisabled;
    archive->FindBool("_marked", &isMarked_);
    int32 number = 0;
    if (archive->FindInt32("_shortcut", &number) == B_OK) shortcut_ = static_cast<char>(number);
    if (archive->FindInt32("_mods", &number) == B_OK) modifiers_ = static_cast<uint32>(number);
    archive->FindString("_tip", &tip_);
    BMessage nested;
    if (archive->FindMessage("_msg", &nested) == B_OK)
        BInvoker::SetMessage(new BMessage(std::move(nested)));
    if (archive->FindMessage("_submenu", &nested) == B_OK) submenu_ = InstantiateAs<BMenu>(&nested);
}

BMenuItem::~BMenuItem() {
    WindowServer::Queue([part = part_] { part->Remove(); });
}

BArchivable* BMenuItem::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "BMenuItem") ? new BMenuItem(archive) : nullptr;
}

status_t BMenuItem::Archive(BMessage* into, bool deep) const {
    return FieldWriter(into, BArchivable::Archive(into, deep))
        .Then([&] { return AddClassName(*this, into); })
        .Add("_label", label_, !label_.empty())
        .Add("_disable", true, !isEnabled_)
        .Add("_marked", true, isMarked_)
        .Add("_shortcut", int32{shortcut_}, shortcut_ != 0)
        .Add("_mods", static_cast<int32>(modifiers_), modifiers_ != 0)
        .Add("_tip", tip_, !tip_.empty())
        .Then([&] { return into->AddMessage("_msg", Message()); }, Message() != nullptr)
        .Then([&] { return AddArchive(*submenu_, "_submenu", into); }, deep && submenu_ != nullptr)
        .Status();
}

void BMenuItem::SetLabel(const char* label) {
    label_ = label == nullptr ? "" : label;
    UpdatePart();
    if (menu_ != nullptr) menu_->UpdateField();
}

void BMenuItem::SetEnabled(bool isEnabled) {
    isEnabled_ = isEnabled;
    UpdatePart();
}

void BMenuItem::SetMarked(bool isMarked) {
    isMarked_ = isMarked;
    if (menu_ != nullptr) {
        if (isMarked && menu_->IsRadioMode()) menu_->UnmarkOthers(this);
        menu_->UpdateField();
    }
    UpdatePart();
}

char BMenuItem::Shortcut(uint32* modifiers) const {
    if (modifiers != nullptr) *modifiers = modifiers_;
    return shortcut_;
}

void BMenuItem::SetShortcut(char shortcut, uint32 modifiers) {
    shortcut_ = shortcut;
    modifiers_ = modifiers;
    UpdatePart();
}

void BMenuItem::SetIcon(const BBitmap* icon, const BBitmap* fine) {
    WindowServer::Queue([part = part_, image = ToImage(icon), fineImage = ToImage(fine)] {
        part->SetIcon(image, fineImage);
    });
}

void BMenuItem::SetToolTip(const std::string& text) {
    tip_ = text;
    UpdatePart();
}

void BMenuItem::UpdatePart() {
    if (menu_ == nullptr) return;
    const MenuItemPart::Look look{
        ToLabel(label_),     ToText(tip_), ToSequence(static_cast<uint8>(shortcut_), modifiers_),
        isEnabled_,          isMarked_,    isMarked_ || menu_->IsRadioMode(),
        menu_->IsRadioMode()};
    WindowServer::Queue([part = part_, look] { part->SetLook(look); });
}

status_t BMenuItem::Invoke(const BMessage* message) {
    if (message == nullptr) message = Message();
    if (message == nullptr) return B_BAD_VALUE;
    BMessage copy(*message);
    copy.AddInt64(kWhenField, system_time());
    copy.AddPointer(kSourceField, this);
    copy.AddInt32(kIndexField, menu_ == nullptr ? -1 : menu_->IndexOf(this));
    return BInvoker::Invoke(&copy);
}

BMessenger BMenuItem::DefaultTarget() const {
    BWindow* const window = menu_ == nullptr ? nullptr : menu_->Window();
    return window == nullptr ? BMessenger{} : BMessenger(window);
}

BSeparatorItem::BSeparatorItem() : BMenuItem(Separator{}) {}

BSeparatorItem::BSeparatorItem(BMessage* archive) : BMenuItem(Separator{}, archive) {}

BArchivable* BSeparatorItem::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "BSeparatorItem") ? new BSeparatorItem(archive)
                                                             : nullptr;
}
