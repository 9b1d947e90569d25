#include "Displays/Hands/BodyMenu.h"

#include <algorithm>

#include "Displays/Base/Display.h"
#include "Displays/Hands/MeasureMenu.h"
#include "Displays/Projection/BodiesMenu.h"
#include "Displays/Projection/DisplayMenus.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Epochs/EpochLimits.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/Hands.h"

namespace {

// An item: uint32 "Do" is for the owner, about int64 "Body ID", which is selected first.
constexpr uint32 kChosen = FourCC("hmit");
constexpr const char* kDoField = "Do";
constexpr const char* kOtherField = "Other";  // int64, the body that it is about instead

// Only the heaviest are offered.
constexpr std::size_t kMaxBodies = 40;

}  // namespace

BodyMenu::BodyMenu(Display* display, const InterfaceTexts& texts)
    : display_(display), texts_(texts) {}

void BodyMenu::SetView(BView* view) {
    menu_ = new BPopUpMenu("Body", false, false);
    view->Adopt(menu_);
}

void BodyMenu::AddItem(int32 label, uint32 what) {
    auto* const message = new BMessage(kChosen);
    message->AddInt32(kDoField, static_cast<int32>(what));
    message->AddInt64(kBodyIDField, body_);
    menu_->AddItem(new BMenuItem(texts_.Text(label), message));
}

void BodyMenu::AddReferences(const BodyLabels& labels) {
    auto* const others = new BMenu(texts_.Text(kLabelHandRelativeTo));
    const std::size_t count = std::min(labels.bodies.size(), kMaxBodies);
    const auto add = [&](const char* name, int64 id) {
        auto* const message = new BMessage(kChosen);
        message->AddInt32(kDoField, static_cast<int32>(kSetRelativeTo));
        message->AddInt64(kBodyIDField, body_);
        message->AddInt64(kOtherField, id);
        others->AddItem(new BMenuItem(name, message));
    };
    add(texts_.Text(kLabelHandOrigin), kOriginID);
    for (std::size_t i = 0; i < count; i++)
        if (labels.bodies[i].id != body_) add(labels.bodies[i].name.c_str(), labels.bodies[i].id);
    others->SetTargetForItems(display_);
    menu_->AddItem(others);
}

void BodyMenu::OpenFor(int32 body, const BodyLabels& labels) {
    body_ = labels.bodies[static_cast<std::size_t>(body)].id;
    menu_->RemoveItems();
    AddItem(kLabelHandFollow, kFollow);
    AddReferences(labels);
    AddItem(kLabelMeasureBody, MeasureMenu::kTo);
    AddItem(kLabelHandTrailDisc, kShowTrailDisc);
    AddItem(kLabelHandGroup, kRequestGroup);
    menu_->AddSeparatorItem();
    AddItem(kLabelHandDelete, kDeleteBody);
    menu_->SetTargetForItems(display_);
    menu_->Go();
}

bool BodyMenu::Handle(const BMessage& message) {
    int32 what = 0;
    int64 body = kNoSystemID;
    if (message.what != kChosen || message.FindInt32(kDoField, &what) != B_OK ||
        message.FindInt64(kBodyIDField, &body) != B_OK)
        return false;
    const auto wanted = static_cast<uint32>(what);
    if (wanted == kFollow || wanted == MeasureMenu::kTo) {
        BMessage request(wanted);
        request.AddInt64(wanted == kFollow ? kFollowedSystem : BodiesMenu::kSystem, body);
        display_->MessageReceived(&request);
        return true;
    }
    BMessage edit(kEditBody);
    edit.AddInt64(kBodyIDField, body);
    if (wanted != kDeleteBody) WindowServer::Deliver(display_->Owner(), edit);
    BMessage request(wanted);
    int64 other = body;
    static_cast<void>(message.FindInt64(kOtherField, &other));
    request.AddInt64(kBodyIDField, other);
    WindowServer::Deliver(display_->Owner(), request);
    return true;
}
