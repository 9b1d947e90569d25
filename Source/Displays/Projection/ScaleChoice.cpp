#include "Displays/Projection/ScaleChoice.h"

#include "Interface Widgets/UnitMenu.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kReferenceField = "Scale Ref";
constexpr const char* kScaleField = "Scale";

}  // namespace

BMessage ScaleChoice::ToMessage(uint32 what) const {
    BMessage message(what);
    if (reference) message.AddInt32(kReferenceField, *reference);
    if (units) message.AddDouble(UnitMenu::kUnitField, *units);
    if (scale) message.AddDouble(kScaleField, *scale);
    return message;
}

ScaleChoice ScaleChoice::From(const BMessage& message) {
    ScaleChoice choice;
    int32 reference = 0;
    double number = 0.0;
    if (message.FindInt32(kReferenceField, &reference) == B_OK) choice.reference = reference;
    if (message.FindDouble(UnitMenu::kUnitField, &number) == B_OK) choice.units = number;
    if (message.FindDouble(kScaleField, &number) == B_OK) choice.scale = number;
    return choice;
}
