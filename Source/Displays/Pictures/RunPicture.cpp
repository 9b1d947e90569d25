#include "Displays/Pictures/RunPicture.h"

#include <algorithm>
#include <new>

#include "Displays/Projection/PictureTexts.h"
#include "Displays/Trajectories/TrajectoryMap.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Model/Units/UnitTable.h"

namespace {

constexpr int32 kBatch = 1024;  // samples drawn at once

class ProjectionMap final : public TrajectoryMap {
public:
    BPoint Map(double x, double y, double z) override {
        return projection.Map({0.0f, 0.0f}, x, y, z);
    }
    float DiscSize(double radius) override { return projection.DiscSize(radius); }

    Projection projection;
};

ThreeVector PlaceAt(const double* coordinates) {
    return {coordinates[0], coordinates[1], coordinates[2]};
}

}  // namespace

class RunPicture::PictureView final : public TrajectoryView {
public:
    PictureView(ProjectionMap* map, const PictureSettings& settings, double time)
        : TrajectoryView("picture", map), map_(*map), settings_(settings), time_(time) {
        ResizeTo(settings.width - 1.0f, settings.height - 1.0f, settings.deviceScale);
    }

    void DrawStage(const Stage& stage) {
        std::vector<Body*> bodies;
        for (const std::unique_ptr<Body>& body : stage.bodies)
            bodies.push_back(body.get());
        PrepareForGo(kBatch, bodies);
        const std::size_t batch = kBatch * stage.Stride();
        for (std::size_t at = 0; at < stage.samples.size(); at += batch)
            DrawSamples(stage, stage.samples.data() + at,
                        std::min(batch, stage.samples.size() - at));
        if (!stage.last.empty()) DrawSamples(stage, stage.last.data(), stage.last.size());
        DrawDiscs();
    }

protected:
    std::vector<OverlayItem> MakeOverlay() override {
        std::vector<OverlayItem> texts;
        if (settings_.distanceUnits != nullptr)
            texts.push_back(
                MakeScaleBar(map_.projection.scale, POSITION_UVAL_PREF, *settings_.distanceUnits));
        if (settings_.timeUnits != nullptr)
            texts.push_back(MakeTimeText(settings_.timePrefix, time_, settings_.timeUval,
                                         *settings_.timeUnits));
        return texts;
    }

private:
    void DrawSamples(const Stage& stage, const double* samples, std::size_t count) {
        ReadPositions(static_cast<int32>(count / stage.Stride()), samples);
        DisplayData();
    }

    const ProjectionMap& map_;
    const PictureSettings& settings_;
    const double time_;
};

// --- Keeping ---

void RunPicture::PrepareForGo(const std::vector<Body*>& bodies, double time) {
    time_ = time;
    stages_.emplace_back();
    for (const Body* body : bodies)
        stages_.back().bodies.push_back(std::make_unique<Body>(*body));
}

void RunPicture::ReadData(int32 reports, const double* times, const double* positions,
                          const double* velocities) {
    if (reports <= 0 || stages_.empty()) return;
    time_ = times[reports - 1];
    try {
        Keep(&stages_.back(), reports, positions);
        if (velocities == nullptr) return;
        const std::size_t stride = stages_.back().Stride();
        const double* const last = velocities + static_cast<std::size_t>(reports - 1) * stride;
        stages_.back().lastVelocities.assign(last, last + stride);
    } catch (const std::bad_alloc&) {
        // The trails end here; there is still something to draw.
    }
}

void RunPicture::Keep(Stage* kept, int32 reports, const double* positions) {
    Stage& stage = *kept;
    const std::size_t stride = stage.Stride();
    for (int32 i = 0; i < reports; i++, reports_++) {
        const double* const report = positions + static_cast<std::size_t>(i) * stride;
        if (reports_ % interval_ != 0) continue;
        stage.samples.insert(stage.samples.end(), report, report + stride);
        coordinates_ += stride;
        if (coordinates_ > maxCoordinates_) Thin();
    }
    const double* const last = positions + static_cast<std::size_t>(reports - 1) * stride;
    stage.last.assign(last, last + stride);
}

void RunPicture::Thin() {
    interval_ *= 2;
    coordinates_ = 0;
    for (Stage& stage : stages_) {
        stage.KeepEverySecond();
        coordinates_ += stage.samples.size();
    }
}

void RunPicture::Stage::KeepEverySecond() {
    const std::size_t stride = Stride();
    if (stride == 0) return;
    const std::size_t kept = (samples.size() / stride + 1) / 2;
    for (std::size_t i = 1; i < kept; i++)
        std::copy_n(samples.begin() + static_cast<std::ptrdiff_t>(2 * i * stride), stride,
                    samples.begin() + static_cast<std::ptrdiff_t>(i * stride));
    samples.resize(kept * stride);
}

// --- Drawing ---

std::vector<ThreeVector> RunPicture::Places() const {
    std::vector<ThreeVector> places;
    for (const Stage& stage : stages_) {
        for (const std::unique_ptr<Body>& body : stage.bodies)
            places.push_back(body->Position());
        for (const std::vector<double>* list : {&stage.samples, &stage.last})
            for (std::size_t i = 0; i < list->size(); i += 3)
                places.push_back(PlaceAt(&(*list)[i]));
    }
    return places;
}

// Times are counted in samples, and velocities come from the samples before and after.
void RunPicture::AddTrails(const Stage& stage, double firstTime, SpaceScene* scene) {
    const std::size_t stride = stage.Stride();
    if (stride == 0) return;
    const std::size_t count = stage.samples.size() / stride;
    for (std::size_t body = 0; body < stage.bodies.size(); body++) {
        const Body& look = *stage.bodies[body];
        if (!look.TrailOn()) continue;
        std::vector<ThreeVector> places{look.Position()};
        for (std::size_t i = 0; i < count; i++)
            places.push_back(PlaceAt(&stage.samples[i * stride + 3 * body]));
        if (!stage.last.empty()) {
            const ThreeVector last = PlaceAt(&stage.last[3 * body]);
            if (!(last == places.back())) places.push_back(last);
        }
        KeptTrails::Trail trail{look.ID(), look.TrailColor(), {}};
        for (std::size_t i = 0; i < places.size(); i++) {
            const std::size_t before = i > 0 ? i - 1 : i;
            const std::size_t after = i + 1 < places.size() ? i + 1 : i;
            ThreeVector velocity = places[after] - places[before];
            if (after > before) velocity *= 1.0 / static_cast<double>(after - before);
            trail.samples.push_back(
                {firstTime + static_cast<double>(i), places[i], velocity, i > 0});
        }
        scene->trails.push_back(std::move(trail));
    }
}

SpaceScene RunPicture::Scene() const {
    SpaceScene scene;
    scene.time = time_;
    if (stages_.empty()) return scene;
    double samples = 0.0;
    for (const Stage& stage : stages_) {
        AddTrails(stage, samples, &scene);
        samples += static_cast<double>(stage.samples.size()) /
                   static_cast<double>(std::max<std::size_t>(stage.Stride(), 1));
    }
    for (KeptTrails::Trail& trail : scene.trails)
        trail.fullAt = samples;
    const Stage& now = stages_.back();
    std::vector<Body*> bodies;
    for (const std::unique_ptr<Body>& body : now.bodies)
        bodies.push_back(body.get());
    scene.TakeBodies(bodies);
    for (std::size_t i = 0; i < scene.bodies.size() && !now.last.empty(); i++)
        scene.bodies[i].position = PlaceAt(&now.last[3 * i]);
    for (std::size_t i = 0; i < scene.bodies.size() && !now.lastVelocities.empty(); i++)
        scene.bodies[i].velocity = PlaceAt(&now.lastVelocities[3 * i]);
    return scene;
}

std::vector<std::byte> RunPicture::Encode(const PictureSettings& settings) const {
    if (stages_.empty()) return {};
    ProjectionMap map;
    map.projection.axis = settings.axis;
    if (settings.scale > 0.0)
        map.projection.scale = settings.scale;
    else
        map.projection.Fit(Places(), static_cast<double>(settings.width),
                           static_cast<double>(settings.height));
    PictureView view(&map, settings, time_);
    for (const Stage& stage : stages_)
        view.DrawStage(stage);
    return view.EncodePNG();
}
