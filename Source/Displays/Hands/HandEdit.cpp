#include "Displays/Hands/HandEdit.h"

#include "Interface Widgets/ProgramMessages.h"

namespace {

void AddVector(BMessage* message, const char* name, const ThreeVector& vector) {
    const double values[] = {vector.x, vector.y, vector.z};
    message->AddDoubles(name, values, 3);
}

}  // namespace

BMessage MakeHandEdit(BodyGrip::Kind kind, const HandBody& body) {
    BMessage edit(kind == BodyGrip::Kind::kMove    ? kPlaceBody
                  : kind == BodyGrip::Kind::kSteer ? kSteerBody
                                                   : kThrowBody);
    if (kind != BodyGrip::Kind::kThrow) edit.AddInt64(kBodyIDField, body.id);
    if (kind != BodyGrip::Kind::kSteer) AddVector(&edit, kPlaceField, body.position);
    if (kind != BodyGrip::Kind::kMove) AddVector(&edit, kVelocityField, body.velocity);
    return edit;
}
