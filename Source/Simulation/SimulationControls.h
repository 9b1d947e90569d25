// What there is in a simulation's window: menus, boxes, status, and the subsidiary windows; built
// in steps, brought up to date after changes of the model, and told by the run control. Owned by
// the window and used on its thread with the window locked, except where it says otherwise. Until a
// part is built, what concerns it does nothing.
#pragma once

#include <memory>
#include <string>

#include "Simulation/Document/RunControlView.h"
#include "Simulation/History/Moment.h"
#include "Simulation/RunMonitor.h"
#include "Simulation/RunResults.h"

class BGroupView;
class BScrollView;
class BWindow;
class BodySettingsBox;
class DisplayList;
class GlobalControlsBox;
class PaceControl;
class Simulation;
class SimulationDocument;
class SimulationHost;
class SimulationMenus;
class StatusLine;
class SubsidiaryWindows;

class SimulationControls final : public RunControlView {
public:
    // None is owned.
    SimulationControls(Simulation* simulation, SimulationHost* host, SimulationDocument* document,
                       DisplayList* displays);
    ~SimulationControls() override;

    // --- Building, in this order ---
    void BuildMainMenuBar();
    void BuildRootView();
    void BuildBodySettingsBox();
    void BuildGlobalControlsBox();
    // The views lie in the window, which deletes them; the subsidiary windows end here. With no
    // lock of the document held.
    void QuitWindows();

    // Null until they are built.
    [[nodiscard]] SubsidiaryWindows* Windows() const { return windows_.get(); }

    [[nodiscard]] BWindow* Window() const { return window_; }
    // Nobody has touched it yet.
    [[nodiscard]] bool IsOfNewSimulation() const;
    [[nodiscard]] const Moment& Shown() const { return moment_; }
    // Of the moment that is shown from then on.
    void Redisplay(int32 changes, Moment moment);
    // What can be undone and redone, and whether the document is saved.
    void ShowHistory();
    void ShowMessage(const std::string& text);
    // How far two runs are apart that a display compares; empty: none does.
    void ShowSeparation(const std::string& text);
    // Makes the window as high as its contents, as far as the screen has room, and no narrower.
    // First when nothing is said yet.
    void FitWindow();
    // In as many lines as it takes; the window grows.
    void ShowInFull(const std::string& text);
    // Likewise, what happened in the run: it goes when another epoch is shown, and comes back with
    // the run's.
    void ShowRunEvent(const std::string& text);
    // What was said before the window was shown did not know its width.
    void WindowShown();
    // What the document that was opened has lost or got, and offers to open the displays that are
    // not open.
    void ShowOpened(const std::string& notice);
    // The figures of the run as they are now.
    void ShowRun();
    // What is known of the run that led to the epoch in focus.
    [[nodiscard]] const Evidence& GetEvidence() const { return evidence_; }
    // A more exact run differs from that of the epoch by so much.
    void NoteDifference(const AbEpoch* epoch, double difference);
    // From now on says that another order would be better, where it is so.
    void SuggestOrder();
    // In the run that goes on; the calculator rests.
    void NoteMergers(const MergeResult& merged);

    // Everything that is half typed becomes commands; true if that changed something. Any thread
    // that holds no lock of the document, once all is built.
    bool CommitBoxes();

    // --- RunControlView ---
    void LockWindow() override;
    void UnlockWindow() override;
    void ShowGoPause(Offer offer) override;
    void EnableRunControls(bool enable) override;
    void SetNonPhysicalBodyValues() override;
    void SetPhysicalBodyValues() override;
    void SetEpochValues() override;
    void SetSimValues() override;
    void RunStarting() override;
    void RunStopped() override;

private:
    void ShowFigures(const RunMonitor::Figures& figures);
    // Of the run that led to the epoch in focus, if it is known.
    void ShowResult();
    // Of the epoch in focus; null: there is none.
    [[nodiscard]] RunResult* Result();
    void ShowRunBackwards();
    void ShowOrderAdvice();

    const Simulation* const simulation_;
    BWindow* const window_;
    SimulationHost* const host_;
    SimulationDocument* const document_;
    DisplayList* const displays_;
    RunMonitor monitor_;
    RunResults results_;
    Evidence evidence_;
    bool isGoOffered_ = true;
    bool suggestsOrder_ = false;
    std::unique_ptr<SimulationMenus> menus_;
    std::unique_ptr<SubsidiaryWindows> windows_;
    BGroupView* rootView_ = nullptr;
    BScrollView* scroll_ = nullptr;  // around the boxes
    BGroupView* boxes_ = nullptr;
    BodySettingsBox* bodySettings_ = nullptr;
    GlobalControlsBox* globalControls_ = nullptr;
    PaceControl* pace_ = nullptr;
    StatusLine* status_ = nullptr;
    Moment moment_;
    float width_ = 0.0f;  // what the window needs with one line of a message
    float height_ = 0.0f;
};
