#include "Displays/Film/FilmPainter.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ViewFrame.h"
#include "Displays/Space/SpaceCanvas.h"
#include "Displays/Space/SpaceTrails.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Units/UnitTable.h"
#include "Simulation/History/Moment.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr float kMargin = 2.0f;  // around the picture, for smoothed edges
constexpr bigtime_t kLong = std::numeric_limits<bigtime_t>::max() / 4;  // us
constexpr std::size_t kFitSamples = 4096;                               // of a body

class FrameMap final : public TrajectoryMap {
public:
    explicit FrameMap(const Projection& projection) : projection_(projection) {}

    BPoint Map(double x, double y, double z) override {
        return projection_.Map({0.0f, 0.0f}, x, y, z);
    }
    float DiscSize(double radius) override { return projection_.DiscSize(radius); }

private:
    const Projection& projection_;
};

// A projection's view with its texts.
class FrameView final : public TrajectoryView {
public:
    FrameView(FrameMap* map, const FilmView& view, const ProjectionFields& fields,
              BodyLabels labels, double time)
        : TrajectoryView("film", map),
          view_(view),
          fields_(fields),
          labels_(std::move(labels)),
          time_(time) {
        ResizeTo(view.width - 1.0f, view.height - 1.0f, view.deviceScale);
        SetMarked(fields.options.marks);
    }

    void PaintTrails(std::vector<KeptTrails::Trail> trails) {
        const BRect all = BitmapBounds();
        KeptTrails painter;
        painter.Begin(
            std::move(trails),
            {{all.left - kMargin, all.top - kMargin, all.right + kMargin, all.bottom + kMargin}},
            fields_.projection.Plane());
        while (!painter.IsDone())
            painter.Paint(this, kLong);
    }

protected:
    std::vector<OverlayItem> MakeOverlay() override {
        std::vector<OverlayItem> items;
        if (fields_.options.scaleBar)
            items.push_back(
                MakeScaleBar(fields_.projection.scale, view_.distanceUval, *view_.distanceUnits));
        if (fields_.options.time)
            items.push_back(
                MakeTimeText(view_.timePrefix, time_, view_.timeUval, *view_.timeUnits));
        if (fields_.options.names) AddNames(*this, labels_, -1, &items);
        return items;
    }

private:
    const FilmView& view_;
    const ProjectionFields& fields_;
    const BodyLabels labels_;
    const double time_;
};

// The mean of what is followed, and how it moves.
struct Reference {
    ThreeVector position;
    ThreeVector velocity;
};

Reference MeanOf(const std::vector<TrajectoryCache::Member>& members,
                 const std::vector<SpaceBody>& bodies) {
    Reference mean;
    double weight = 0.0;
    for (const TrajectoryCache::Member& member : members) {
        const SpaceBody& body = bodies[static_cast<std::size_t>(member.body)];
        mean.position += member.weight * body.position;
        mean.velocity += member.weight * body.velocity;
        weight += member.weight;
    }
    if (!(weight > 0.0)) return {};
    mean.position *= 1.0 / weight;
    mean.velocity *= 1.0 / weight;
    return mean;
}

}  // namespace

// False: the run is no more in the tree, or no more kept.
bool FilmPainter::FindMoment(double time, Moment* moment) const {
    const AbEpoch* const run = runs_.RunAt(time);
    if (run == nullptr || !portal_->HasEpoch(run) || !history_->SpanOf(run)) return false;
    *moment = NearMoment(*run, time, *history_);
    return moment->epoch != nullptr;
}

std::vector<std::byte> FilmPainter::FrameAt(double time) const {
    Moment moment;
    {
        const ReadGuard guard(portal_);
        if (!FindMoment(time, &moment)) return {};
    }
    return std::visit([&](const auto& fields) { return Draw(fields, moment); }, view_.sight);
}

// --- A projection ---

std::vector<std::byte> FilmPainter::Draw(const ProjectionFields& fields,
                                         const Moment& moment) const {
    EpochPortal shown(*portal_);
    shown.SetEpochTo(moment.epoch.get());
    const std::vector<Body*> bodies = shown.BodiesInMassOrder();
    ViewFrame frame = ReadFrame(*moment.epoch, bodies, fields.followed, fields.pair);
    const double time = moment.epoch->Time();

    TrailSource source;
    source.history = history_;
    source.now = time;
    source.run = moment.run;
    source.length = fields.trail;
    const auto id = [&](int32 body) { return bodies[static_cast<std::size_t>(body)]->ID(); };
    for (const TrajectoryCache::Member& member : frame.reference)
        source.reference.push_back({id(member.body), member.weight});
    if (frame.turning)
        source.turning = {id(frame.turning->first), id(frame.turning->second), frame.turning->axis};

    FrameMap map(fields.projection);
    FrameView view(&map, view_, fields, ReadBodyLabels(*moment.epoch, bodies), time);
    view.SetReference(std::move(frame.reference));
    view.SetTurning(frame.turning);
    view.PrepareForGo(1, bodies);
    view.PaintTrails(source.Take(source.FindParts(portal_)));
    view.DrawDiscs();
    return view.EncodePNG();
}

// --- Space ---

SpaceScene FilmPainter::MakeScene(const SpaceFields& fields, const Moment& moment) const {
    EpochPortal shown(*portal_);
    shown.SetEpochTo(moment.epoch.get());
    const std::vector<Body*> bodies = shown.BodiesInMassOrder();
    SpaceScene scene;
    scene.TakeBodies(bodies);
    scene.time = moment.epoch->Time();
    scene.lengthUnit = view_.distanceUval;
    const std::vector<TrajectoryCache::Member> followed =
        ReadMembers(*moment.epoch, bodies, fields.followed);
    const Reference reference = MeanOf(followed, scene.bodies);
    std::vector<TrailSource::Member> members;
    members.reserve(followed.size());
    for (const TrajectoryCache::Member& member : followed)
        members.push_back({scene.bodies[static_cast<std::size_t>(member.body)].id, member.weight});
    for (SpaceBody& body : scene.bodies) {
        body.position -= reference.position;
        body.velocity -= reference.velocity;
    }
    SpaceTrails trails;
    trails.SetHistory(history_);
    trails.ModelChanged(moment.run, std::move(members));
    trails.Update(portal_, &scene);
    return scene;
}

std::vector<std::byte> FilmPainter::Draw(const SpaceFields& fields, const Moment& moment) const {
    SpaceCanvas canvas("film");
    canvas.ResizeTo(view_.width - 1.0f, view_.height - 1.0f, view_.deviceScale);
    const SpaceUnits units{view_.distanceUnits, view_.distanceUval, view_.timeUnits, view_.timeUval,
                           view_.timePrefix};
    canvas.Paint(MakeScene(fields, moment), fields.camera, fields.options, units);
    return canvas.EncodePNG();
}

// --- What is seen ---

std::vector<ThreeVector> FilmPainter::Places() const {
    std::vector<ThreeVector> places;
    for (const FilmRuns::Run& run : runs_.runs)
        for (const int64 body : history_->BodiesOf(run.epoch))
            for (const Sample& sample :
                 history_->Samples(run.epoch, body, std::min(run.start, run.end),
                                   std::max(run.start, run.end), kFitSamples))
                places.push_back(sample.position);
    return places;
}

void FilmPainter::FitAll() {
    if (auto* const fields = std::get_if<ProjectionFields>(&view_.sight))
        return fields->projection.Fit(Places(), static_cast<double>(view_.width),
                                      static_cast<double>(view_.height));
    SpaceCanvas canvas("film");
    canvas.ResizeTo(view_.width - 1.0f, view_.height - 1.0f, view_.deviceScale);
    canvas.FitCamera(Places(), &std::get<SpaceFields>(view_.sight).camera);
}

void FilmPainter::LookFromDistance(double distance) {
    auto* const fields = std::get_if<SpaceFields>(&view_.sight);
    Moment moment;
    if (fields == nullptr || runs_.IsEmpty()) return;
    {
        const ReadGuard guard(portal_);
        if (!FindMoment(runs_.End(), &moment)) return;
    }
    const SpaceScene scene = MakeScene(*fields, moment);
    if (!scene.bodies.empty()) fields->camera.target = scene.bodies.front().position;
    fields->camera.distance = distance;
    fields->camera.Normalize();
}
