// A display that one can turn: the bodies in space, with their trails, seen through a camera.
//
// The calculator waits for it no longer than it takes to copy a report: the drawing thread only
// notes that there is something new, and during a run a clock has the window paint. Other rules as
// for Display.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Film/FilmControl.h"
#include "Displays/Hands/Hands.h"
#include "Displays/Projection/PictureSaver.h"
#include "Displays/Projection/ShownModel.h"
#include "Displays/Space/SpaceFields.h"
#include "Displays/Space/SpaceSight.h"
#include "Displays/Space/SpaceTexts.h"
#include "Displays/Space/SpaceTrails.h"
#include "Displays/TimeLine/DisplayFoot.h"

class BMessageRunner;
class ShownMoment;
class SpaceMenus;
class SpaceView;

class SpaceDisplay : public Display {
public:
    static constexpr int32 kType = 2;

    SpaceDisplay(BRect frame, const char* title, EpochPortal* portal, Benaphore* done,
                 BLooper* owner, const DisplayContext& context);
    ~SpaceDisplay() override;

    // Before Init. Where trails come from, and whose moment is shown, with a time line; null: there
    // is none. Not owned.
    void SetHistory(const RunHistory* history, ShownMoment* shown = nullptr);

    [[nodiscard]] int32 Init(const char* simulationName) override;
    void MessageReceived(BMessage* message) override;
    void DispatchMessage(BMessage* message, BHandler* handler) override;
    status_t MiniArchive(BMessage* archive) const override;
    // What is missing stays as it is; without a camera all bodies are seen.
    status_t Regenerate(const BMessage& archive) override;
    void Quit() override;

    void PrepareForGo(int32 reportsPerSegment) override;
    void ReadData(int32 reports, double* times, double* positions, double* velocities) override;
    void DisplayData() override { hasNews_ = true; }
    void Redisplay(int32 changes) override;

    // The owner's preferred unit of length, m.
    void SetPreferredUnit(double unit);

    // --- What moves the camera ---
    // As if what is seen were a ball, dragged by so many pixels. Level: the horizon stays so.
    void Turn(BPoint way, bool isLevel);
    // Shows what is so many pixels further right and down.
    void PanBy(float right, float down);
    // What is seen there stays there.
    void ZoomAbout(BPoint point, double factor);
    // 1, 2 or 3: x, y or z, as projections do.
    void LookAlong(int32 axis);
    // From above the orbit of this body, which then goes round anticlockwise.
    void LookOnto(int64 body);
    void TogglePerspective();
    void FitAll();
    // What is followed stands still in the middle.
    void Follow(int64 system);
    // -1: nothing.
    void FollowBody(int32 body);
    // Shows things as they are now.
    void Repaint();
    void ShowTexts();
    [[nodiscard]] Hands& GetHands() { return hands_; }
    // A key that the view does not take for itself.
    void TakeTimeKey(const KeyInput& input) { foot_->TakeKey(input); }

    [[nodiscard]] SpaceView* View() const { return view_; }
    [[nodiscard]] const SpaceFields& Fields() const { return fields_; }
    [[nodiscard]] MeasuredPair& Measured() { return fields_.measured; }
    [[nodiscard]] const SpaceScene& Scene() const { return scene_; }
    // Has been painted so often.
    [[nodiscard]] int64 CountPaintings() const { return paintings_; }

private:
    struct Report {
        std::vector<double> positions;
        std::vector<double> velocities;
        double time = 0.0;  // s
    };

    void TakeBodies(const std::vector<Body*>& bodies);
    void TakeReference(const std::vector<Body*>& bodies);
    void TakeReport();
    void MoveToReference();
    void RunStarted();
    void RunStopped();
    void Tick();
    // By the hand: while it does, there are trails enough that are quick to draw.
    void CameraMoved();
    void CameraRests();
    void ToggleOption(bool SpaceOptions::*option);
    [[nodiscard]] bool IsRunning() const { return shown_.IsRunning(); }

    const DisplayContext context_;
    SpaceFields fields_;
    SpaceUnits units_;
    std::unique_ptr<SpaceMenus> menus_;
    SpaceView* view_ = nullptr;
    std::unique_ptr<DisplayFoot> foot_;
    ShownModel shown_;
    PictureSaver pictureSaver_;
    FilmControl film_{this, &shown_, context_};
    SpaceSight sight_{this, &shown_};
    Hands hands_{this, &shown_, &sight_, context_};

    SpaceScene scene_;
    SpaceTrails trails_;
    std::vector<TrajectoryCache::Member> reference_;
    // In the document's frame, of the scene's bodies.
    std::vector<ThreeVector> positions_;
    std::vector<ThreeVector> velocities_;
    bool needsFit_ = true;
    std::atomic<int64> paintings_{0};

    std::mutex reportMutex_;  // guards the next two; no other lock is taken meanwhile
    Report report_;           // the newest one
    std::size_t runBodies_ = 0;
    std::atomic<bool> hasNews_{false};
    std::unique_ptr<BMessageRunner> clock_;
    bigtime_t movedAt_ = 0;  // 0: the camera rests
    std::unique_ptr<BMessageRunner> rest_;
};
