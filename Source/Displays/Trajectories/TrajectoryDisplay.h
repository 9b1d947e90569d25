// A display that shows bodies and their trails in one trajectory view. How positions become points
// is left to the subclass (TrajectoryMap). Rules as for Display.
#pragma once

#include <vector>

#include "Displays/Base/Display.h"
#include "Displays/Trajectories/TrajectoryMap.h"
#include "Displays/Trajectories/TrajectoryView.h"

class BScrollView;
class Body;

class TrajectoryDisplay : public Display, public TrajectoryMap {
public:
    TrajectoryDisplay(BRect frame, const char* title, EpochPortal* portal, Benaphore* done,
                      BLooper* owner, const InterfaceTexts* texts);

    // Also builds the view.
    [[nodiscard]] int32 Init(const char* simulationName) override;
    void DisplayData() override;
    void ReadData(int32 reports, double* times, double* positions, double* velocities) override;
    void Redisplay(int32 changes) override;
    void PrepareForGo(int32 reportsPerSegment) override;
    // The window goes to another screen: the picture has grown already, and has what it had.
    void ScreenChanged(BRect frame) override;

    // What Map does, as numbers.
    [[nodiscard]] virtual PlaneMap Plane() const { return {}; }
    [[nodiscard]] TrajectoryView* View() const { return view_; }
    [[nodiscard]] BScrollView* ScrollView() const { return scrollView_; }
    [[nodiscard]] BPoint DisplayCenter() const { return view_->Center(); }
    void ClearLow() { view_->ClearLow(); }
    void DrawDiscs() { view_->DrawDiscs(); }
    void EraseDiscs(bool all) { view_->EraseDiscs(all); }
    void MakeDiscDomains() { view_->MakeDiscDomains(); }
    void SetLastDisp() { view_->SetLastDisp(); }
    // The scroll bars tell which part is in view of the bodies, of their trails, and of what else
    // there is, in the display's frame.
    void ShowBars(Extent all);

protected:
    [[nodiscard]] virtual TrajectoryView* MakeView();
    // The epochs that are shown from now on, with the moment in focus: the document's, unless a
    // subclass shows another one. With the window's lock and the model's read lock.
    [[nodiscard]] virtual EpochPortal TakeShown();
    // The bodies, their order or what they look like may be others. With the window's lock and the
    // model's read lock, before the view takes them over.
    virtual void TakeBodies(const std::vector<Body*>& /*bodies*/) {}
    // The model is ahead of what was handed over. With the model's read lock.
    [[nodiscard]] virtual bool IsRunning() const;

private:
    TrajectoryView* view_ = nullptr;
    BScrollView* scrollView_ = nullptr;
    int32 unshown_ = 0;  // batches drawn and not shown; drawing thread
};
