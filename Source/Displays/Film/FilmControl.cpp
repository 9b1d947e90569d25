#include "Displays/Film/FilmControl.h"

#include <cmath>
#include <utility>

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Film/FilmWindow.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Displays/Projection/ShownModel.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/ShortestOrbit.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BView.h"
#include "Resources/EpochWindow.h"

namespace {

// As fast as the run is shown, or such that the film is neither long nor short.
double PaceOf(const EpochPortal& portal, const FilmRuns& runs) {
    const double whole = std::abs(runs.End() - runs.Start()) / FilmPlan::kUsualSeconds;
    const AbCalculator* const calculator = portal.GetCalculator();
    if (calculator == nullptr) return whole;
    const Pace pace = calculator->GetPace();
    if (pace.IsUnlimited()) return whole;
    const double asShown = pace.IsAuto() ? AutoPace(portal.BodiesInMassOrder()) : pace.Number();
    return std::isfinite(asShown) ? asShown : whole;
}

}  // namespace

bool FilmControl::Handle(const BMessage& message, const BView& view, double lengthUnit) {
    if (message.what != kRequest) return false;
    Open(view, lengthUnit);
    return true;
}

// As the display is now.
void FilmControl::Open(const BView& view, double lengthUnit) {
    if (history_ == nullptr) return;
    FilmWindow::Subject subject{display_->Epoch(), history_, {}, {}, 1.0, display_->Title()};
    {
        const ReadGuard guard(display_->Epoch());
        subject.runs = ReadFilmRuns(*display_->Epoch(), *history_);
        if (!subject.runs.IsEmpty()) subject.pace = PaceOf(*display_->Epoch(), subject.runs);
    }
    BMessage fields;
    if (display_->MiniArchive(&fields) != B_OK) return;
    FilmView& film = subject.view;
    if (display_->Type() == ProjectionDisplay::kType)
        static_cast<void>(film.sight.emplace<ProjectionFields>().Read(fields));
    else
        film.sight.emplace<SpaceFields>().Read(fields);
    const BRect bounds = view.Bounds();
    film.width = bounds.Width() + 1.0f;
    film.height = bounds.Height() + 1.0f;
    film.distanceUnits = context_.distanceUnits;
    film.timeUnits = context_.timeUnits;
    film.distanceUval = lengthUnit;
    film.timeUval = shown_->TimeUval();
    film.timePrefix = context_.texts->Label(kLabelTimeIs);
    Close();
    window_.Open(display_, place_, [&] { return new FilmWindow(std::move(subject), context_); });
}
