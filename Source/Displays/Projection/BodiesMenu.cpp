#include "Displays/Projection/BodiesMenu.h"

#include <algorithm>

#include "Displays/Base/Display.h"
#include "Displays/Projection/BodyLabels.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuItem.h"

namespace {

constexpr std::size_t kMaxBodies = 40;

}  // namespace

void BodiesMenu::ShowBodies(const BodyLabels& labels) {
    RemoveItems();
    const std::size_t count = std::min(labels.bodies.size(), kMaxBodies);
    for (std::size_t i = 0; i < count; i++) {
        auto* const message = new BMessage(what_);
        message->AddInt64(kSystem, labels.bodies[i].id);
        AddItem(new BMenuItem(labels.bodies[i].name.c_str(), message));
    }
    SetTargetForItems(display_);
    // It takes two.
    SetEnabled(labels.bodies.size() > 1);
}
