#include "Displays/Projection/LookMenu.h"

#include "Displays/Base/Display.h"
#include "Displays/Projection/BodiesMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuItem.h"
#include "Resources/Space.h"

LookMenu::LookMenu(Display* display, const InterfaceTexts& texts)
    : BMenu(texts.Text(kLabelLookAlong)),
      bodies_(new BodiesMenu(texts.Text(kLabelLookOntoOrbit), kLookOnto, display)) {
    const auto add = [&](int32 label, int32 axis) {
        auto* const message = new BMessage(kLook);
        message->AddInt32(kAxis, axis);
        AddItem(new BMenuItem(texts.Text(label), message));
    };
    add(kLabelLookAlongZ, 3);
    add(kLabelLookAlongX, 1);
    add(kLabelLookAlongY, 2);
    SetTargetForItems(display);
    AddSeparatorItem();
    AddItem(bodies_);
}

void LookMenu::ShowBodies(const BodyLabels& labels) {
    bodies_->ShowBodies(labels);
}
