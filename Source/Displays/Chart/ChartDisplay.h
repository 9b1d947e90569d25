// A display that shows how things go with time: lines of what is kept of the runs on the line of
// the epoch in focus, or one quantity against another. The moment that all displays show is its
// cursor.
//
// The calculator never waits for it: the drawing thread does nothing, and during a run a clock has
// the window read what is new and paint. Other rules as for Display.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Chart/ChartDrawing.h"
#include "Displays/Chart/ChartFields.h"
#include "Displays/Chart/ChartTexts.h"
#include "Displays/Projection/PictureSaver.h"
#include "Displays/Projection/ShownModel.h"
#include "Displays/TimeLine/DisplayFoot.h"

class BMessageRunner;
class ChartMenus;
class ChartView;
class ShownMoment;

class ChartDisplay : public Display {
public:
    static constexpr int32 kType = 3;

    ChartDisplay(BRect frame, const char* title, EpochPortal* portal, Benaphore* done,
                 BLooper* owner, const DisplayContext& context);
    ~ChartDisplay() override;

    // Before Init. Where the lines come from, and whose moment is shown, with a time line; null:
    // there is none. Not owned.
    void SetHistory(const RunHistory* history, ShownMoment* shown = nullptr);

    [[nodiscard]] int32 Init(const char* simulationName) override;
    void MessageReceived(BMessage* message) override;
    void DispatchMessage(BMessage* message, BHandler* handler) override;
    status_t MiniArchive(BMessage* archive) const override;
    status_t Regenerate(const BMessage& archive) override;
    void Quit() override;

    void ReadData(int32 /*reports*/, double* /*times*/, double* /*positions*/,
                  double* /*velocities*/) override {}
    void DisplayData() override {}
    void Redisplay(int32 changes) override;

    // The owner's preferred unit of length, m.
    void SetPreferredUnit(double unit);

    // --- What moves the view ---
    // Shows what is so many pixels further right and down.
    void PanBy(float right, float down);
    // What is seen there stays there. Beside the plot only along the axis.
    void ZoomAbout(BPoint point, double factor);
    // About the middle.
    void Zoom(double across, double up);
    void FitAll();
    // All displays show what was then; nothing in a chart without time.
    void ShowMomentAt(BPoint point);
    // A key that the view does not take for itself.
    void TakeTimeKey(const KeyInput& input) { foot_->TakeKey(input); }
    void Repaint();

    [[nodiscard]] ChartView* View() const { return view_; }
    [[nodiscard]] const ChartFields& Fields() const { return fields_; }
    [[nodiscard]] const ChartReader& Reader() const { return reader_; }
    // As it is seen now.
    [[nodiscard]] ChartScene MakeScene() const;
    // All lines are as long as the runs.
    [[nodiscard]] bool IsComplete() const { return isComplete_; }

private:
    void RunStarted();
    void RunStopped();
    // Begins to make what there is to be seen now.
    void Update();
    void GoOn();
    bool TakeChoice(const BMessage& message);
    bool Save(const BMessage& message);
    void ShowFields();
    void TakeLines();
    [[nodiscard]] std::vector<int64> Bodies() const;
    [[nodiscard]] int64 AboutFor(int64 body) const;
    [[nodiscard]] std::string NameOf(int64 body) const;
    [[nodiscard]] ChartRange FittedAcross() const;
    [[nodiscard]] ChartRange FittedUp() const;
    void AddMarks(ChartScene* scene) const;
    [[nodiscard]] ChartDrawing DrawingOf(const ChartScene& scene) const;
    void SetView(const ChartRange& across, const ChartRange& up);

    const DisplayContext context_;
    ChartFields fields_;
    ChartTexts texts_;
    std::unique_ptr<ChartMenus> menus_;
    ChartView* view_ = nullptr;
    std::unique_ptr<DisplayFoot> foot_;
    const RunHistory* history_ = nullptr;
    ShownModel shown_;
    PictureSaver pictureSaver_;
    PictureSaver svgSaver_;
    PictureSaver csvSaver_;

    ChartReader reader_;
    TimeLine line_;
    std::unordered_map<int64, std::string> names_;  // also of bodies that are not there any more
    bool isComplete_ = false;
    bool isGoingOn_ = false;  // a message to go on is on its way
    std::unique_ptr<BMessageRunner> clock_;
};
