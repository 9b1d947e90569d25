#include "Displays/Projection/ProjectionDialogs.h"

#include <cmath>

#include "Displays/Base/Display.h"
#include "Displays/Projection/AxisRequester.h"
#include "Displays/Projection/ProjectionFields.h"
#include "Displays/Projection/ScaleChoice.h"
#include "Displays/Projection/ScaleRequester.h"
#include "Displays/Projection/TrailLengthRequester.h"
#include "Interface Widgets/ScaleBox.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"

namespace {

bool IsPositive(double value) {
    return value > 0.0 && std::isfinite(value);
}

}  // namespace

void ProjectionDialogs::RequestAxis() {
    axis_.Open(display_, fields_->axisAt,
               [this] { return new AxisRequester(fields_->projection.axis, display_); });
}

bool ProjectionDialogs::CancelAxis() {
    return axis_.Close(&fields_->axisAt);
}

void ProjectionDialogs::CancelAll() {
    CancelAxis();
    CancelScale();
    CancelTrail();
}

void ProjectionDialogs::RequestTrail() {
    trail_.Open(display_, trailAt_,
                [this] { return new TrailLengthRequester(fields_->trail, display_, context_); });
}

void ProjectionDialogs::RequestScale() {
    scale_.Open(display_, fields_->scaleAt, [this] {
        return new ScaleRequester(fields_->projection.scale, fields_->reference, fields_->units,
                                  display_, context_);
    });
}

bool ProjectionDialogs::CancelScale() {
    return scale_.Close(&fields_->scaleAt);
}

std::optional<double> ProjectionDialogs::TakeScale(const BMessage& message) {
    if (!CancelScale()) return std::nullopt;
    const ScaleChoice choice = ScaleChoice::From(message);
    if (choice.reference) fields_->reference = *choice.reference;
    if (choice.units) {
        fields_->units = *choice.units;
        areUnitsChosen_ = true;
    }
    const bool isOther = choice.scale && *choice.scale != fields_->projection.scale;
    return isOther && IsPositive(*choice.scale) ? choice.scale : std::nullopt;
}

void ProjectionDialogs::SetPreferredUnits(const BMessage& message) {
    const ScaleChoice choice = ScaleChoice::From(message);
    if (!areUnitsChosen_ && choice.units && IsPositive(*choice.units))
        fields_->units = *choice.units;
}

double ProjectionDialogs::LengthUnit() const {
    return areUnitsChosen_ ? fields_->units : POSITION_UVAL_PREF;
}

void ProjectionDialogs::TellScale() const {
    BWindow* const requester = scale_.Requester();
    if (requester == nullptr) return;
    ScaleChoice now;
    now.scale = fields_->projection.scale;
    WindowServer::Deliver(requester, now.ToMessage(ScaleRequester::kScaleChanged));
}

void ProjectionDialogs::Pulse() {
    BWindow* const requester = scale_.Requester();
    if (!isResized_ || requester == nullptr) return;
    if (requester->PostMessage(ScaleBox::kReferenceChosen) == B_OK) isResized_ = false;
}

void ProjectionDialogs::AddPlaces(ProjectionFields* fields) const {
    fields->axisAt = axis_.Place(fields->axisAt);
    fields->scaleAt = scale_.Place(fields->scaleAt);
}
