// A display that shows the bodies as seen along one axis, at a scale that the user chooses with a
// dialog, the wheel or a pinch. Its archive has, beside the fields that every reader knows, some
// that only newer ones read. Rules as for Display.
#pragma once

#include <memory>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Comparison/ComparisonControl.h"
#include "Displays/Film/FilmControl.h"
#include "Displays/Hands/Hands.h"
#include "Displays/Projection/DisplayMenus.h"
#include "Displays/Projection/KeptTrailsPainter.h"
#include "Displays/Projection/LastMotion.h"
#include "Displays/Projection/PictureMover.h"
#include "Displays/Projection/PictureSaver.h"
#include "Displays/Projection/ProjectionDialogs.h"
#include "Displays/Projection/ProjectionFields.h"
#include "Displays/Projection/ProjectionSight.h"
#include "Displays/Projection/ShownModel.h"
#include "Displays/TimeLine/DisplayFoot.h"
#include "Displays/Trajectories/TrajectoryDisplay.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Interface/Canvas/CanvasView.h"

class ProjectionView;
struct KeyInput;
class RunHistory;
class ShownMoment;

class ProjectionDisplay : public TrajectoryDisplay {
public:
    static constexpr int32 kType = 1;
    // From the owner, when a run has stopped and when one starts.
    static constexpr uint32 kRunStopped = kPauseRun;
    static constexpr uint32 kRunStarted = kUnPauseRun;
    // The answer to an axis message.
    static constexpr uint32 kAxisDone = kUnRestRun;

    ProjectionDisplay(BRect frame, const char* title, EpochPortal* portal, Benaphore* done,
                      BLooper* owner, const DisplayContext& context);
    ~ProjectionDisplay() override;

    // Where trails come from when the picture has lost them; null: from nowhere. Not owned. Before
    // the display is shown.
    // With `shown` the display has a time line, and shows that moment. Not owned either.
    void SetHistory(const RunHistory* history, ShownMoment* shown = nullptr);
    [[nodiscard]] const RunHistory* History() const { return keptTrails_.History(); }

    [[nodiscard]] int32 Init(const char* simulationName) override;
    void MessageReceived(BMessage* message) override;
    void DispatchMessage(BMessage* message, BHandler* handler) override;
    void FrameResized(float width, float height) override;
    void Quit() override;
    // Also the fields of the projection; a dialog that is open is noted where it stands.
    status_t MiniArchive(BMessage* archive) const override;
    // The status of finding "Units". Ranges are not checked.
    status_t Regenerate(const BMessage& archive) override;
    BPoint Map(double x, double y, double z) override;
    float DiscSize(double radius) override;
    [[nodiscard]] PlaneMap Plane() const override { return fields_.projection.Plane(); }
    // A key that the sky does not take for itself.
    void TakeTimeKey(const KeyInput& input) { foot_->TakeKey(input); }
    virtual void Pulse();

    // Trails of a limited length are painted anew now and then.
    void DisplayData() override;
    void ReadData(int32 reports, double* times, double* positions, double* velocities) override;
    void PrepareForGo(int32 reportsPerSegment) override;
    [[nodiscard]] std::optional<BodyMotion> LastMotionOf(int32 body) const {
        return motion_.Of(body);
    }
    void Redisplay(int32 changes) override;

    // --- Axis and scale ---
    void RequestAxis() { dialogs_.RequestAxis(); }
    bool CancelAxisRequest() { return dialogs_.CancelAxis(); }
    void SetAxis(BMessage* message);
    void RequestScale() { dialogs_.RequestScale(); }
    bool CancelScaleRequest() { return dialogs_.CancelScale(); }
    void SetScale(BMessage* message);
    // The owner's preferred unit of length, until the user has chosen one in the dialog.
    void SetPreferredUnits(BMessage* message) { dialogs_.SetPreferredUnits(*message); }
    [[nodiscard]] const Projection& GetProjection() const { return fields_.projection; }

    // --- What moves the view ---
    void LookAlong(int32 axis) { mover_.LookAlong(axis); }
    void LookOnto(int64 body) { mover_.LookOnto(body); }
    void ZoomAbout(BPoint point, double factor) { mover_.ZoomAbout(point, factor); }
    void PanBy(float right, float down) { mover_.PanBy(right, down); }
    void FitAll() { mover_.FitAll(); }
    // What is followed stands still in the middle; trails are relative to it, where they are kept
    // also those of before.
    void Follow(int64 system) { SetFrame(system, fields_.pair); }
    void FollowBody(int32 body);
    [[nodiscard]] int64 Followed() const { return fields_.followed; }
    // The same, and the direction of a pair of bodies stays. kRootSystemID: the centre of mass.
    void SetFrame(int64 followed, const TurningPair& pair);
    // With this body and what is followed, or else what the body goes about.
    void TurnWith(int64 body);
    void SetTrailLength(const TrailLength& length);
    // Another epoch's run is shown beside this one's; null: none is.
    void CompareWith(const AbEpoch* other) { compared_.CompareWith(other); }

    // The texts over the picture. `pointedAt`: the body under the mouse, or -1.
    [[nodiscard]] std::vector<OverlayItem> MakeTexts(int32 pointedAt) const;
    [[nodiscard]] Hands& GetHands() { return hands_; }
    [[nodiscard]] const DisplayOptions& Options() const { return fields_.options; }

protected:
    [[nodiscard]] TrajectoryView* MakeView() override;
    [[nodiscard]] EpochPortal TakeShown() override;
    void TakeBodies(const std::vector<Body*>& bodies) override;
    [[nodiscard]] bool IsRunning() const override;

private:
    void ShowOtherMoment();
    void ToggleOption(bool DisplayOptions::*option);
    void ShowFollowed();
    void ShowFrame();
    // What the fields say of trails and marks.
    void ApplyFields();
    ProjectionView* Sky() const;

    const DisplayContext context_;
    ProjectionFields fields_;
    ProjectionDialogs dialogs_;
    std::unique_ptr<DisplayMenus> menus_;
    std::unique_ptr<DisplayFoot> foot_;

    ShownModel shown_;
    LastMotion motion_;
    KeptTrailsPainter keptTrails_;
    PictureMover mover_;
    ComparisonControl compared_;
    PictureSaver pictureSaver_;
    FilmControl film_{this, &shown_, context_};
    ProjectionSight sight_{this, &fields_, &shown_};
    Hands hands_{this, &shown_, &sight_, context_};
};
