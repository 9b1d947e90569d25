#include "Displays/Hands/MeasureMenu.h"

#include "Displays/Base/Display.h"
#include "Displays/Projection/BodiesMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuItem.h"
#include "Resources/Hands.h"

MeasureMenu::MeasureMenu(Display* display, const InterfaceTexts& texts)
    : BMenu(texts.Text(kLabelMeasure)),
      bodies_(new BodiesMenu(texts.Text(kLabelMeasureTo), kTo, display)) {
    AddItem(new BMenuItem(texts.Text(kLabelMeasureNothing), new BMessage(kNothing)));
    AddItem(new BMenuItem(texts.Text(kLabelMeasureByClick), new BMessage(kByClick)));
    SetTargetForItems(display);
    AddItem(bodies_);
}

void MeasureMenu::ShowBodies(const BodyLabels& labels) {
    bodies_->ShowBodies(labels);
}
