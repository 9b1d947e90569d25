#include "Model/Systems/DisplayedSystem.h"

#include "Model/Units/DimValue.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/FieldTable.h"

namespace {

void SetIfValid(double* uval, double value) {
    if (IsValidUval(value)) *uval = value;
}

// Older files left the alpha at 0, but a system is never shown transparent.
void MakeOpaque(rgb_color* color) {
    if (color->alpha == 0) color->alpha = 255;
}

}  // namespace

struct DisplayedSystem::Fields {
    static constexpr FieldTable kTable{
        Field<&DisplayedSystem::name_>{"Body Name", "name", "Planet X"},
        Field<&DisplayedSystem::positionUval_>{"r Uval", "unit of positions, m",
                                               &POSITION_UVAL_PREF, IsValidUval},
        Field<&DisplayedSystem::speedUval_>{"v Uval", "unit of speeds, m/s", &SPEED_UVAL_PREF,
                                            IsValidUval},
        Field<&DisplayedSystem::massUval_>{"M Uval", "unit of masses, as GM, m3/s2",
                                           &MASS_UVAL_PREF, IsValidUval},
        Field<&DisplayedSystem::radiusUval_>{"Rad Uval", "unit of radii, m", &RADIUS_UVAL_PREF,
                                             IsValidUval},
        Field<&DisplayedSystem::trailColor_>{"Trail Color", "an alpha of 0 is read as 255",
                                             DEFAULT_TRAIL_DISC_COLOR},
        Field<&DisplayedSystem::discColor_>{"Disc Color", "an alpha of 0 is read as 255",
                                            DEFAULT_TRAIL_DISC_COLOR},
        Field<&DisplayedSystem::trailOn_>{"Trail On", "the trail is shown", true},
        Field<&DisplayedSystem::discOn_>{"Disc On", "the disc is shown", true},
        Field<&DisplayedSystem::relativeTo_>{
            "Rel to", "the system relative to which it is shown; -2: absolute", kOriginID},
    };
};

DisplayedSystem::DisplayedSystem(const char* name, int64 id, rgb_color trail, bool trailOn,
                                 rgb_color disc, bool discOn, int64 relTo)
    : MassSystem(id),
      name_(name),
      trailColor_(trail),
      discColor_(disc),
      trailOn_(trailOn),
      discOn_(discOn),
      relativeTo_(relTo) {
    SetIfValid(&massUval_, MASS_UVAL_PREF);
    SetIfValid(&radiusUval_, RADIUS_UVAL_PREF);
    SetIfValid(&positionUval_, POSITION_UVAL_PREF);
    SetIfValid(&speedUval_, SPEED_UVAL_PREF);
}

DisplayedSystem::DisplayedSystem(BMessage* archive) : MassSystem(archive) {
    Fields::kTable.Read(*archive, this);
    MakeOpaque(&trailColor_);
    MakeOpaque(&discColor_);
}

DisplayedSystem::DisplayedSystem(const DisplayedSystem& other)
    : MassSystem(other),
      name_(other.name_),
      positionUval_(other.positionUval_),
      speedUval_(other.speedUval_),
      massUval_(other.massUval_),
      radiusUval_(other.radiusUval_),
      trailColor_(other.trailColor_),
      discColor_(other.discColor_),
      trailOn_(other.trailOn_),
      discOn_(other.discOn_),
      relativeTo_(other.relativeTo_) {}

DisplayedSystem& DisplayedSystem::operator=(const DisplayedSystem& other) {
    if (this == &other) return *this;
    MassSystem::operator=(other);
    name_ = other.name_;
    positionUval_ = other.positionUval_;
    speedUval_ = other.speedUval_;
    massUval_ = other.massUval_;
    radiusUval_ = other.radiusUval_;
    trailColor_ = other.trailColor_;
    discColor_ = other.discColor_;
    trailOn_ = other.trailOn_;
    discOn_ = other.discOn_;
    relativeTo_ = other.relativeTo_;
    parent_ = nullptr;
    return *this;
}

status_t DisplayedSystem::Archive(BMessage* into, bool deep) const {
    const status_t status = MassSystem::Archive(into, deep);
    return status == B_OK ? Fields::kTable.Write(*this, into) : status;
}

void DisplayedSystem::DescribeFields(FieldDescriptions* into) {
    Fields::kTable.Describe(into);
}

void DisplayedSystem::SetRelativeTo(int64 id) {
    if (id != ID()) relativeTo_ = id;
}

void DisplayedSystem::SetPositionUval(double uval) {
    SetIfValid(&positionUval_, uval);
}

void DisplayedSystem::SetSpeedUval(double uval) {
    SetIfValid(&speedUval_, uval);
}

void DisplayedSystem::SetMassUval(double uval) {
    SetIfValid(&massUval_, uval);
}

void DisplayedSystem::SetRadiusUval(double uval) {
    SetIfValid(&radiusUval_, uval);
}
