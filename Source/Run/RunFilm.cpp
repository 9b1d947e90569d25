#include "Run/RunFilm.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <string>
#include <utility>

#include "Displays/Film/FilmFiles.h"
#include "Displays/Film/FilmPainter.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Interface/Server/HeadlessGraphics.h"
#include "Resources/EpochWindow.h"
#include "Resources/Film.h"
#include "Run/Options.h"
#include "Run/RunnerOutput.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/History/RunHistory.h"

namespace {

FilmView ViewOf(const Options& options, const ProgramResources& resources, double timeUval) {
    FilmView view;
    view.width = static_cast<float>(options.width);
    view.height = static_cast<float>(options.height);
    view.distanceUnits = &resources.DistanceUnits();
    view.timeUnits = &resources.TimeUnits();
    view.distanceUval = POSITION_UVAL_PREF;
    view.timeUval = timeUval;
    view.timePrefix = resources.InterfaceLabel(kLabelTimeIs);
    if (options.camera) {
        view.sight.emplace<SpaceFields>().camera.LookFrom(options.camera->azimuth,
                                                          options.camera->elevation);
        return view;
    }
    auto& fields = view.sight.emplace<ProjectionFields>();
    fields.projection.axis = options.axis;
    fields.options.names = false;
    if (options.scale > 0.0) fields.projection.scale = options.scale;
    return view;
}

}  // namespace

RunFilm::RunFilm(const Options& options, const ProgramResources& resources,
                 const RunnerOutput& output, SimulationDocument* document)
    : options_(options), resources_(resources), output_(output), document_(document) {
    if (!options_.frames) return;
    history_ = std::make_unique<RunHistory>(document_->Portal(), document_->GetCalculator());
    document_->AddConsumer(history_.get());
    files_ = std::make_unique<FilmFolder>(*options_.frames, options_.overwrites);
}

RunFilm::~RunFilm() {
    if (history_ != nullptr) document_->RemoveConsumer(history_.get());
}

void RunFilm::NoteMergers(const MergeResult& merged) {
    if (history_ != nullptr) history_->NoteMergers(merged);
}

// Sooner now than after a long run.
int RunFilm::CheckPlace() {
    return files_ == nullptr ? RunnerOutput::kDone : Fail(files_->Begin());
}

int RunFilm::Write() {
    if (history_ == nullptr) return RunnerOutput::kDone;
    EpochPortal* const portal = document_->Portal();
    FilmRuns runs;
    double timeUval = 1.0;
    {
        const ReadGuard guard(portal);
        runs = ReadFilmRuns(*portal, *history_);
        timeUval = portal->FocusEpoch()->TimeUval();
    }
    if (runs.IsEmpty())
        return output_.Fail(*options_.frames, resources_.InterfaceLabel(kTextFilmNoRun));
    const double inForce = document_->GetCalculator()->GetPace().Number();
    const double pace = options_.pace.value_or(
        inForce > 0.0 ? inForce : std::abs(runs.End() - runs.Start()) / FilmPlan::kUsualSeconds);
    const FilmPlan plan = FilmPlan::Of(runs, pace, options_.framesPerSecond);
    if (plan.CountFrames() > FilmPlan::kMaxFrames)
        return output_.Fail(*options_.frames, FillIn(resources_.InterfaceLabel(kTextFilmTooLong),
                                                     {std::to_string(FilmPlan::kMaxFrames)}));
    char name[] = "orvek-run";
    const HeadlessGraphics fonts(name);
    FilmPainter painter(portal, history_.get(), std::move(runs),
                        ViewOf(options_, resources_, timeUval));
    if (options_.camera && options_.camera->distance)
        painter.LookFromDistance(*options_.camera->distance);
    else if (options_.camera || !(options_.scale > 0.0))
        painter.FitAll();
    for (int64 frame = 0; frame < plan.CountFrames(); frame++)
        if (const int error = files_->Add(painter.FrameAt(plan.TimeOf(frame))); error != 0)
            return Fail(error);
    return Fail(files_->End());
}

int RunFilm::Fail(int error) const {
    if (error == 0) return RunnerOutput::kDone;
    return output_.Fail(*options_.frames, error == EEXIST
                                              ? resources_.InterfaceLabel(kTextFilmExists)
                                              : std::string(std::strerror(error)));
}
