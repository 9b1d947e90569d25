// Shows the bodies of a simulation: trails in the offscreen picture, which keeps them, and discs on
// top of it. Moving a disc copies the picture back where the disc was. Owned by its window; needs
// none, though: a program without windows may draw with it and save the picture.
//
// Threads. ReadPositions comes from the calculation thread, DisplayData from the drawing thread,
// PrepareForGo from the calculation thread, the rest from the window's thread; each locks the
// view's window, if it is in one.
#pragma once

#include <optional>
#include <vector>

#include "Displays/Trajectories/TrajectoryCache.h"
#include "Interface Widgets/SmartView.h"
#include "Platform/Interface/Handles/BView.h"

class TrajectoryView : public SmartView {
public:
    // The sky, on which the colours of bodies stand out.
    static constexpr rgb_color kSky{6, 7, 12, 255};

    // `map` is not owned.
    TrajectoryView(const char* name, TrajectoryMap* map, rgb_color sky = kSky);

    // The place that the projection takes for the view's middle. It is a point of the picture, and
    // shows in the middle of the view until the view is scrolled.
    [[nodiscard]] BPoint Center() const { return {0.0f, 0.0f}; }

    // A run begins with batches of so many reports. The caller holds the model's read lock.
    void PrepareForGo(int32 reportsPerSegment, const std::vector<Body*>& bodies);
    // Takes a batch over.
    void ReadPositions(int32 reports, const double* positions);
    // Draws it, once. What is not shown at once is seen with the next that is.
    void DisplayData(bool isShown = true);
    // Brings the picture up to date after these changes of the model (ChangeFlags.h). The caller
    // holds the model's read lock. During a run the bodies stay where the last batch had them.
    void Redisplay(int32 changes, const std::vector<Body*>& bodies, bool isRunning = false);

    void SetSegmentLength(float length);
    void SetReference(std::vector<TrajectoryCache::Member> members);
    void SetTurning(const std::optional<TrajectoryCache::Turning>& turning);
    // A bright point stands for every disc that is smaller.
    void SetMarked(bool areMarked);
    [[nodiscard]] const TrajectoryCache& Cache() const { return cache_; }
    // After a change of what `map` answers: ClearLow, MakeDiscDomains if sizes changed,
    // SetLastDisp, DrawDiscs.
    void MakeDiscDomains();
    void SetLastDisp();
    // Erases trails and discs; what the user sees changes with the next DrawDiscs.
    void ClearLow();
    // Draws all discs and shows the picture as it is then.
    void DrawDiscs();
    // Copies the picture back where discs were: all of them, or those that have moved by a pixel.
    void EraseDiscs(bool all);

    void FrameResized(BRect bounds) override;

protected:
    // The texts over the picture, asked for whenever it is shown.
    [[nodiscard]] virtual std::vector<OverlayItem> MakeOverlay() { return {}; }
    // Shows the picture and its overlay.
    void ShowPicture();

private:
    void DrawBatch();
    void DrawTrails();
    void PaintDiscs();
    void PaintMark(const TrajectoryCache::Disc& disc);
    [[nodiscard]] BRect ClippingFrame() const;

    TrajectoryCache cache_;
};

// The lock of the window that a view is in, for the length of a block; none for a view without a
// window. False when the window is gone: then the block must do nothing.
class ViewLock {
public:
    explicit ViewLock(BView* view)
        : view_(view),
          isInWindow_(view->Looper() != nullptr),
          isHeld_(isInWindow_ && view->LockLooper()) {}
    ~ViewLock() {
        if (isHeld_) view_->UnlockLooper();
    }
    ViewLock(const ViewLock&) = delete;
    ViewLock& operator=(const ViewLock&) = delete;

    explicit operator bool() const { return isHeld_ || !isInWindow_; }

private:
    BView* const view_;
    const bool isInWindow_;
    const bool isHeld_;
};
