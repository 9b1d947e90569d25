#include "Displays/Projection/FrameMenu.h"

#include <algorithm>

#include "Displays/Base/Display.h"
#include "Displays/Projection/BodyLabels.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuItem.h"
#include "Resources/DisplayFeatures.h"

namespace {

// Only the heaviest are offered.
constexpr std::size_t kMaxBodies = 40;

}  // namespace

FrameMenu::FrameMenu(Display* display, const InterfaceTexts& texts)
    : BMenu(texts.Text(kLabelFrame)),
      display_(display),
      fixed_(Add(texts.Text(kLabelFrameFixed), kFixed)),
      barycenter_(Add(texts.Text(kLabelFrameBarycenter), kBarycenter)),
      followed_(Add(texts.Text(kLabelFrameFollowed), kFollowedBody)),
      bodies_(new BMenu(texts.Text(kLabelFrameTurning))) {
    AddSeparatorItem();
    AddItem(bodies_);
}

BMenuItem* FrameMenu::Add(const char* label, uint32 what) {
    auto* const item = new BMenuItem(label, new BMessage(what));
    item->SetTarget(display_);
    AddItem(item);
    return item;
}

void FrameMenu::ShowBodies(const BodyLabels& labels, const TurningPair& pair) {
    bodies_->RemoveItems();
    const std::size_t count = std::min(labels.bodies.size(), kMaxBodies);
    for (std::size_t i = 0; i < count; i++) {
        auto* const message = new BMessage(kTurn);
        message->AddInt64(kSystem, labels.bodies[i].id);
        auto* const item = new BMenuItem(labels.bodies[i].name.c_str(), message);
        item->SetTarget(display_);
        item->SetMarked(pair.IsOn() && labels.bodies[i].id == pair.second);
        bodies_->AddItem(item);
    }
    // It takes two.
    bodies_->SetEnabled(labels.bodies.size() > 1);
}

void FrameMenu::ShowFrame(int64 followed, const TurningPair& pair) {
    const bool isStill = !pair.IsOn();
    fixed_->SetMarked(isStill && followed == kNoSystemID);
    barycenter_->SetMarked(isStill && followed == kRootSystemID);
    followed_->SetMarked(isStill && followed >= 0);
    followed_->SetEnabled(followed >= 0);
    for (int32 i = 0; i < bodies_->CountItems(); i++) {
        BMenuItem* const item = bodies_->ItemAt(i);
        int64 id = kNoSystemID;
        const bool isBody =
            item->Message() != nullptr && item->Message()->FindInt64(kSystem, &id) == B_OK;
        item->SetMarked(isBody && pair.IsOn() && id == pair.second);
    }
}
