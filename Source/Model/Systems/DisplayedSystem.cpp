#include "Model/Systems/DisplayedSystem.h"

#include "Model/Systems/ArchiveFields.h"
#include "Model/Units/DefaultUnits.h"
#include "Model/Units/DimValue.h"

namespace {

void SetIfValid(double* uval, double value) {
    if (IsValidUval(value)) *uval = value;
}

rgb_color ReadColor(const BMessage* archive, const char* name) {
    rgb_color color = FieldOr(archive, &BMessage::FindColor, name, DEFAULT_TRAIL_DISC_COLOR);
    // Older files left the alpha at 0, but a system is never shown transparent.
    if (color.alpha == 0) color.alpha = 255;
    return color;
}

}  // namespace

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

DisplayedSystem::DisplayedSystem(BMessage* archive)
    : MassSystem(archive),
      name_(FieldOr(archive, &BMessage::FindString, "Body Name", std::string("Planet X"))),
      trailColor_(ReadColor(archive, "Trail Color")),
      discColor_(ReadColor(archive, "Disc Color")),
      trailOn_(FieldOr(archive, &BMessage::FindBool, "Trail On", true)),
      discOn_(FieldOr(archive, &BMessage::FindBool, "Disc On", true)),
      relativeTo_(FieldOr(archive, &BMessage::FindInt64, "Rel to", kOriginID)) {
    const auto read = [archive](double* uval, const char* field, double preferred) {
        SetIfValid(uval, preferred);
        SetIfValid(uval, FieldOr(archive, &BMessage::FindDouble, field, preferred));
    };
    read(&positionUval_, "r Uval", POSITION_UVAL_PREF);
    read(&speedUval_, "v Uval", SPEED_UVAL_PREF);
    read(&massUval_, "M Uval", MASS_UVAL_PREF);
    read(&radiusUval_, "Rad Uval", RADIUS_UVAL_PREF);
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
    status_t status = MassSystem::Archive(into, deep);
    if (status == B_OK) status = into->AddString("Body Name", name_);
    if (status == B_OK) status = into->AddDouble("r Uval", positionUval_);
    if (status == B_OK) status = into->AddDouble("v Uval", speedUval_);
    if (status == B_OK) status = into->AddDouble("M Uval", massUval_);
    if (status == B_OK) status = into->AddDouble("Rad Uval", radiusUval_);
    if (status == B_OK) status = into->AddColor("Trail Color", trailColor_);
    if (status == B_OK) status = into->AddColor("Disc Color", discColor_);
    if (status == B_OK) status = into->AddBool("Trail On", trailOn_);
    if (status == B_OK) status = into->AddBool("Disc On", discOn_);
    if (status == B_OK) status = into->AddInt64("Rel to", relativeTo_);
    return status;
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
