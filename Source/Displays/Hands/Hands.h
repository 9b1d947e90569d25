// Takes hold of bodies in a display: the user drags the selected one while the run is paused, or
// the head of the arrow of its velocity, throws in a new one with the Ctrl key, selects by a click
// and opens a body's menu with the right button. What is let go becomes a message to the owner,
// which edits the document as if it had been typed; a gesture that is given up has changed nothing.
// Owned by its display, and used with the display's lock.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Hands/BodyGrip.h"
#include "Displays/Hands/BodyMenu.h"
#include "Displays/Hands/Measurement.h"
#include "Displays/Hands/OrbitPreview.h"
#include "Platform/Interface/Canvas/CanvasView.h"

class Display;
class HandSight;
class ShownModel;

class Hands {
public:
    // None is owned.
    Hands(Display* display, ShownModel* shown, HandSight* sight, const DisplayContext& context);
    ~Hands();
    Hands(const Hands&) = delete;
    Hands& operator=(const Hands&) = delete;

    // When the view is in the window. Not owned.
    void SetView(CanvasView* view);

    // --- What the user does; true: it is the hands' affair alone ---
    [[nodiscard]] bool MouseDown(const MouseInput& input);
    [[nodiscard]] bool MouseMoved(const MouseInput& input, CanvasView::Transit transit);
    [[nodiscard]] bool MouseUp(const MouseInput& input);
    [[nodiscard]] bool KeyDown(const KeyInput& input);
    [[nodiscard]] bool KeyUp(const KeyInput& input);
    // A button was released where it was pressed.
    void Click(BPoint point);
    void RightClick(BPoint point);
    // A message of a body's menu, of those of the display that are for hands, or of the preview.
    [[nodiscard]] bool Handle(const BMessage& message);

    // After a change of what the display shows of the model. Takes its read lock.
    void ModelChanged();
    void GiveUp();
    [[nodiscard]] int64 SelectedID() const { return selected_; }
    [[nodiscard]] bool IsHolding() const { return press_.has_value(); }
    // What stands over the picture.
    void AddOverlay(std::vector<OverlayItem>* items) const;

private:
    // A button that was pressed on something to hold.
    struct Press {
        BodyGrip::Kind kind;
        int64 body;      // kNoSystemID: a new one
        BPoint at;       // where it took hold, in the view
        BPoint pointer;  // where the mouse is on the canvas
        bool hasMoved = false;
        bool isDrag = false;               // before anything could be held
        const AbEpoch* nearRun = nullptr;  // of a moment of it that is not exact yet; only compared
    };

    [[nodiscard]] HandSystem ReadSystem() const;
    void Begin(BodyGrip::Kind kind, int64 body, const MouseInput& input);
    void TakeHold(BPoint inView);
    void Drag();
    void LetGo();
    void Send(BodyGrip::Kind kind, const HandBody& body);
    [[nodiscard]] bool IsNowExact(const HandSystem& now) const;
    void TakeHoldAgain(const HandSystem& system);
    // A new one, which is seen there.
    [[nodiscard]] HandBody MakeBody(const HandSystem& system, BPoint at) const;
    void ThrowIn();
    void ShowPreview();
    [[nodiscard]] const HandBody* Selected() const;
    [[nodiscard]] std::optional<BPoint> HeadOf(const HandBody& body) const;
    [[nodiscard]] bool IsInView(BPoint inView) const;
    [[nodiscard]] bool TakeKey(const KeyInput& input, bool isDown);
    void AddSelectionRing(std::vector<OverlayItem>* items) const;
    void AddSelection(std::vector<OverlayItem>* items) const;

    Display* const display_;
    ShownModel* const shown_;
    HandSight* const sight_;
    const DisplayContext& context_;
    CanvasView* view_ = nullptr;
    BodyMenu menu_;
    Measurement measurement_;
    OrbitPreview preview_;

    HandSystem system_;  // as it was shown last, while no run was on
    int64 selected_ = kNoSystemID;
    std::optional<Press> press_;
    std::optional<BodyGrip> grip_;  // of the press, once the run has paused
    BPoint way_;
    BodyGrip::Bounds bounds_;
};
