#include "Displays/Projection/ProjectionDialogs.h"

#include "Displays/Base/Display.h"
#include "Displays/Projection/AxisRequester.h"
#include "Displays/Projection/ProjectionFields.h"
#include "Displays/Projection/ScaleChoice.h"
#include "Displays/Projection/ScaleRequester.h"
#include "Interface Widgets/ScaleBox.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"

void ProjectionDialogs::RequestAxis() {
    axis_.Open(display_, fields_->axisAt,
               [this] { return new AxisRequester(fields_->projection.axis, display_); });
}

bool ProjectionDialogs::CancelAxis() {
    return axis_.Close(&fields_->axisAt);
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
