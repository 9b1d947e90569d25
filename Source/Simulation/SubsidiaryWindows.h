// The windows beside the main one of a simulation: the epochs, the animation, the trail and
// disc of the body in focus, and the question what to group. Made, shown and quit by the main
// window, on its thread; each runs a thread of its own from the start, hidden or not.
#pragma once

class AnimationWindow;
class BLooper;
class BMessage;
class BWindow;
class EpochWindow;
class GroupWindow;
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

    // Shows the window, or brings it to the front.
    void ShowEpochs();
    void ShowAnimation();
    void ShowTrailDisc();
    // Asks which systems to group, beside `window`.
    void RequestGroup(const BWindow& window);
    void EndGroupRequest();

    [[nodiscard]] EpochWindow* Epochs() const { return epochs_; }
    // Makes the settings of the simulation as a whole commands. Any thread.
    bool CommitAnimation();

private:
    EpochWindow* epochs_;
    AnimationWindow* animation_;
    TrailDiscWindow* trailDisc_;
    GroupWindow* group_ = nullptr;  // while it asks
    SimulationDocument* const document_;
    BLooper* const owner_;
    const DisplayContext& context_;
};
