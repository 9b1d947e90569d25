#include "Interface Widgets/RecentMenu.h"

#include <algorithm>

#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/RecentDocuments.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Storage/BPath.h"

namespace {

const ArchivableClass kClass("RecentMenu", RecentMenu::Instantiate);

constexpr const char* kClearLabel = "_clear";

// The document's name, or where it lies if another one has the same name.
std::string LabelOf(const std::string& path, const std::vector<std::string>& all) {
    const std::string leaf = BPath(path.c_str()).Leaf();
    const auto same = std::count_if(all.begin(), all.end(), [&](const std::string& other) {
        return BPath(other.c_str()).Leaf() == leaf;
    });
    return same > 1 ? path : leaf;
}

}  // namespace

RecentMenu::RecentMenu(const char* name, const char* clearLabel)
    : BMenu(name), clearLabel_(clearLabel) {}

RecentMenu::RecentMenu(BMessage* archive) : BMenu(archive) {
    if (archive != nullptr) archive->FindString(kClearLabel, &clearLabel_);
}

BArchivable* RecentMenu::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "RecentMenu") ? new RecentMenu(archive) : nullptr;
}

status_t RecentMenu::Archive(BMessage* into, bool /*deep*/) const {
    const status_t status = BMenu::Archive(into, false);
    return status == B_OK ? into->AddString(kClearLabel, clearLabel_) : status;
}

void RecentMenu::SetRequester(const void* simulation) {
    requester_ = simulation;
}

void RecentMenu::AttachedToWindow() {
    RecentDocuments::Shared().Subscribe(BMessenger(this));
    Fill();
}

void RecentMenu::DetachedFromWindow() {
    RecentDocuments::Shared().Unsubscribe(BMessenger(this));
}

void RecentMenu::MessageReceived(BMessage* message) {
    if (message->what == RecentDocuments::kChanged)
        Fill();
    else
        BMenu::MessageReceived(message);
}

void RecentMenu::Fill() {
    RemoveItems();
    const std::vector<std::string> paths = RecentDocuments::Shared().Paths();
    for (const std::string& path : paths) {
        auto* const message = new BMessage(kOpenRecent);
        message->AddString(kPathField, path);
        message->AddPointer(kSimulationField, requester_);
        AddItem(new BMenuItem(LabelOf(path, paths).c_str(), message));
    }
    AddSeparatorItem();
    AddItem(new BMenuItem(clearLabel_.c_str(), new BMessage(kClearRecent)));
    SetTargetForItems(be_app);
    SetEnabled(!paths.empty());
}
