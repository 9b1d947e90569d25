#include "Model/Systems/Body.h"

#include <cmath>

#include "Model/Commands/SetValueCommand.h"
#include "Platform/Application/FieldTable.h"

namespace {

constexpr char kClassName[] = "Body";

const ArchivableClass kBodyClass(kClassName, Body::Instantiate);

}  // namespace

struct Body::Fields {
    // The items of the two vectors in turn.
    static constexpr FieldTable kTable{
        Field<&Body::position_, &ThreeVector::x>{
            .name = "r", .meaning = "position (x, y, z), absolute, m", .missing = 0.0},
        Field<&Body::velocity_, &ThreeVector::x>{
            .name = "v", .meaning = "velocity (x, y, z), absolute, m/s", .missing = 0.0},
        Field<&Body::position_, &ThreeVector::y>{.name = "r", .missing = 0.0, .item = 1},
        Field<&Body::velocity_, &ThreeVector::y>{.name = "v", .missing = 0.0, .item = 1},
        Field<&Body::position_, &ThreeVector::z>{.name = "r", .missing = 0.0, .item = 2},
        Field<&Body::velocity_, &ThreeVector::z>{.name = "v", .missing = 0.0, .item = 2},
        Field<&Body::m_>{"Mass", "GM, m3/s2; its magnitude counts", 0.0},
        Field<&Body::radius_>{"Radius", "m; its magnitude counts", 0.0},
    };
};

Body::Body(const char* name, int64 id, rgb_color trail, rgb_color disc, int64 relTo)
    : DisplayedSystem(name, id, trail, true, disc, true, relTo) {}

Body::Body(BMessage* archive) : DisplayedSystem(archive) {
    Fields::kTable.Read(*archive, this);
    SetM(m_);
    SetRadius(radius_);
}

BArchivable* Body::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, kClassName) ? new Body(archive) : nullptr;
}

status_t Body::Archive(BMessage* into, bool deep) const {
    if (const status_t status = DisplayedSystem::Archive(into, deep); status != B_OK) return status;
    const status_t status = Fields::kTable.Write(*this, into);
    return status == B_OK ? into->AddString("class", kClassName) : status;
}

void Body::DescribeFields(FieldDescriptions* into) {
    Fields::kTable.Describe(into);
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
