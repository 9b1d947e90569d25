// The windows beside the main one of a simulation: the epochs, the animation, the trail and
// disc of the body in focus, and the questions what to group and how far to run. Made, shown and
// quit by the main window, on its thread; each runs a thread of its own from the start, hidden or
// not.
#pragma once

class AnimationWindow;
class BLooper;
class BMessage;
class BWindow;
class EpochWindow;
class GroupWindow;
class RunTargetWindow;
class SimulationDocument;
class TrailDiscWindow;
struct DisplayContext;

class SubsidiaryWindows {
public:
    // Neither is owned.
    SubsidiaryWindows(SimulationDocument* document, BLooper* owner, const DisplayContext& context);
    // With no lock of the document held. Afterwards there are no windows.
    void Quit();

    void SetTitles(const char* simulationName);
    // Where the document has them, and back.
    void Find(const BMessage& archive);
    void Archive(BMessage* into) const;

    // What is to be shown, or has closed; false for a message about something else. Questions are
    // asked beside `window`.
    bool Handle(const BMessage& message, const BWindow& window);

    [[nodiscard]] EpochWindow* Epochs() const { return epochs_; }
    // Makes the settings of the simulation as a whole commands. Any thread.
    bool CommitAnimation();

private:
    // Asks which systems to group.
    void RequestGroup(const BWindow& window);
    void EndGroupRequest();
    // Asks how far a run is to go.
    void RequestRun(const BWindow& window);
    void EndRunRequest();

    EpochWindow* epochs_;
    AnimationWindow* animation_;
    TrailDiscWindow* trailDisc_;
    GroupWindow* group_ = nullptr;       // while it asks
    RunTargetWindow* target_ = nullptr;  // likewise
    SimulationDocument* const document_;
    BLooper* const owner_;
    const DisplayContext& context_;
};
