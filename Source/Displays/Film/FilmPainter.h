// Draws the frames of a film, without a window: what a display would show of a kept run at a time,
// with trails as long as it shows them. Frames depend on the run and the view alone, so that two
// films of them are the same. Owned by whoever records, and used on one thread, which holds no lock
// of the document.
#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "Displays/Film/FilmPlan.h"
#include "Displays/Projection/ProjectionFields.h"
#include "Displays/Space/SpaceFields.h"
#include "Displays/Space/SpaceScene.h"

class UnitTable;
struct Moment;

// How a film looks. A plain value.
struct FilmView {
    float width = 1200.0f;  // logical pixels
    float height = 900.0f;
    double deviceScale = 1.0;  // device pixels to a logical one
    std::variant<ProjectionFields, SpaceFields> sight;
    const UnitTable* distanceUnits = nullptr;  // not owned
    const UnitTable* timeUnits = nullptr;      // not owned
    double distanceUval = 1.0;                 // m
    double timeUval = 1.0;                     // s
    std::string timePrefix;
};

class FilmPainter {
public:
    // Neither is owned.
    FilmPainter(EpochPortal* portal, const RunHistory* history, FilmRuns runs, FilmView view)
        : portal_(portal), history_(history), runs_(std::move(runs)), view_(std::move(view)) {}

    // All ways are seen in all frames: changes the view's scale and middle, or where its camera
    // is.
    void FitAll();
    // A camera looks from so far at the body that is the heaviest at the end.
    void LookFromDistance(double distance);
    // The bytes of a PNG file; none: what was kept of that time is gone.
    [[nodiscard]] std::vector<std::byte> FrameAt(double time) const;

private:
    [[nodiscard]] bool FindMoment(double time, Moment* moment) const;
    [[nodiscard]] std::vector<ThreeVector> Places() const;
    [[nodiscard]] std::vector<std::byte> Draw(const ProjectionFields& fields,
                                              const Moment& moment) const;
    [[nodiscard]] std::vector<std::byte> Draw(const SpaceFields& fields,
                                              const Moment& moment) const;
    // With trails, relative to what the camera follows.
    [[nodiscard]] SpaceScene MakeScene(const SpaceFields& fields, const Moment& moment) const;

    EpochPortal* const portal_;
    const RunHistory* const history_;
    const FilmRuns runs_;
    FilmView view_;
};
