#include "Model/Systems/Body.h"

#include <cmath>

#include "Model/Commands/SetVectorCommand.h"
#include "Model/Systems/ArchiveFields.h"

namespace {

const ArchivableClass kBodyClass("Body", Body::Instantiate);

ThreeVector ReadVector(const BMessage* archive, const char* name) {
    return {FieldOr(archive, &BMessage::FindDouble, name, 0.0, 0),
            FieldOr(archive, &BMessage::FindDouble, name, 0.0, 1),
            FieldOr(archive, &BMessage::FindDouble, name, 0.0, 2)};
}

}  // namespace

Body::Body(const char* name, int64 id, rgb_color trail, rgb_color disc, int64 relTo)
    : DisplayedSystem(name, id, trail, true, disc, true, relTo) {}

Body::Body(BMessage* archive)
    : DisplayedSystem(archive),
      position_(ReadVector(archive, "r")),
      velocity_(ReadVector(archive, "v")) {
    SetM(FieldOr(archive, &BMessage::FindDouble, "Mass", 0.0));
    SetRadius(FieldOr(archive, &BMessage::FindDouble, "Radius", 0.0));
}

BArchivable* Body::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, "Body") ? new Body(archive) : nullptr;
}

status_t Body::Archive(BMessage* into, bool deep) const {
    status_t status = DisplayedSystem::Archive(into, deep);
    for (double ThreeVector::*component : {&ThreeVector::x, &ThreeVector::y, &ThreeVector::z}) {
        if (status == B_OK) status = into->AddDouble("r", position_.*component);
        if (status == B_OK) status = into->AddDouble("v", velocity_.*component);
    }
    if (status == B_OK) status = into->AddDouble("Mass", m_);
    if (status == B_OK) status = into->AddDouble("Radius", radius_);
    if (status == B_OK) status = into->AddString("class", "Body");
    return status;
}

void Body::SetM(double m) {
    m_ = std::fabs(m);
}

void Body::SetRadius(double radius) {
    radius_ = std::fabs(radius);
}

LCommand* Body::DisplaceCommand(ThreeVector from, ThreeVector to) {
    return new SetVectorCommand(this, &MassSystem::SetPosition, from, to);
}

LCommand* Body::BoostCommand(ThreeVector from, ThreeVector to) {
    return new SetVectorCommand(this, &MassSystem::SetVelocity, from, to);
}
