// A trajectory view without a window, and bodies for it. Points are metres: one pixel a metre, y
// upward as in space, the origin in the middle of a view of 201 by 201 pixels.
#pragma once

#include <memory>
#include <vector>

#include "Displays/Trajectories/TrajectoryMap.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Model/Systems/Body.h"

class FlatMap : public TrajectoryMap {
public:
    BPoint Map(double x, double y, double /*z*/) override {
        return {static_cast<float>(scale * x), static_cast<float>(-scale * y)};
    }
    float DiscSize(double radius) override { return static_cast<float>(scale * radius); }

    double scale = 1.0;
};

class TestSky {
public:
    static constexpr rgb_color kTrail{0, 255, 0, 255};
    static constexpr rgb_color kDisc{255, 0, 0, 255};

    explicit TestSky(double deviceScale = 1.0) : view("sky", &map) {
        view.ResizeTo(200.0f, 200.0f, deviceScale);
    }

    Body& Add(double radius, ThreeVector position = {}) {
        bodies_.push_back(std::make_unique<Body>("body", static_cast<int64>(bodies_.size()), kTrail,
                                                 kDisc, kOriginID));
        bodies_.back()->SetRadius(radius);
        bodies_.back()->SetPosition(position);
        return *bodies_.back();
    }

    [[nodiscard]] std::vector<Body*> Bodies() const {
        std::vector<Body*> bodies;
        for (const auto& body : bodies_)
            bodies.push_back(body.get());
        return bodies;
    }

    void Start(int32 capacity = 100) { view.PrepareForGo(capacity, Bodies()); }
    // x, y, z of every body, report by report.
    void Draw(const std::vector<double>& positions) {
        view.ReadPositions(static_cast<int32>(positions.size() / (3 * bodies_.size())),
                           positions.data());
        view.DisplayData();
    }

    [[nodiscard]] rgb_color TrailAt(BPoint point) const { return view.LowerLayer().PixelAt(point); }
    [[nodiscard]] rgb_color SeenAt(BPoint point) const { return view.UpperLayer().PixelAt(point); }
    [[nodiscard]] bool IsSky(rgb_color color) const { return color == TrajectoryView::kSky; }

    FlatMap map;
    TrajectoryView view;

private:
    std::vector<std::unique_ptr<Body>> bodies_;
};
