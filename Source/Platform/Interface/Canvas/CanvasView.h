// A view that shows a drawing in two layers: the canvas, which keeps what was drawn on it (trails),
// and the picture, a copy of it on which things that move are drawn (discs) and from which they are
// removed by copying the canvas back. Over both lies an overlay of texts. The user sees nothing of
// it until Sync(), and then all of it at once.
//
// Whoever holds the lock of the view's window may draw, on any thread; before the view is in a
// window, and in a program without windows, whoever owns it. The hooks are called on the window's
// thread. Coordinates are those of Canvas: a point of the canvas keeps its coordinates for ever,
// whatever part of the canvas the view shows. The canvas grows to cover what is shown and never
// gives up what the view has shown, up to kMaxReach logical pixels around the shown part.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Interface/Canvas/Canvas.h"
#include "Platform/Interface/Canvas/CanvasInput.h"
#include "Platform/Interface/Handles/BView.h"
#include "Platform/Support/GraphicsDefs.h"

class CanvasPart;

// What stands over a canvas and does not belong to its picture: a text, a scale bar, a ring or a
// line.
// Plain values.
struct OverlayItem {
    enum class Kind {
        kText,
        kBar,   // a horizontal line with a tick at each end, the text above its middle
        kRing,  // around the point `where` of the canvas; without a text
        kLine,  // through `points` of the canvas; without a text
        kDashes,
    };
    // What `where` is counted from: a point of the canvas (x right, y down), or inward from a
    // corner of the view. Texts grow away from that corner; at kCanvas to the right, above the
    // point.
    enum class Anchor { kCanvas, kLeftTop, kRightTop, kLeftBottom, kRightBottom };

    Kind kind = Kind::kText;
    Anchor anchor = Anchor::kLeftTop;
    BPoint where;
    std::string text;
    rgb_color color{230, 230, 230, 255};
    float length = 0.0f;  // of a bar, or across a ring, in logical pixels
    std::vector<BPoint> points;

    bool operator==(const OverlayItem&) const = default;
};

class CanvasView : public BView {
public:
    // Which point of the view keeps showing the same point of the canvas when the view is resized.
    // At first that point shows (0, 0).
    enum class Anchor { kLeftTop, kCenter };
    enum class Transit { kEntered, kInside, kExited };

    static constexpr float kMaxReach = 512.0f;

    CanvasView(const char* name, Anchor anchor, rgb_color background);
    ~CanvasView() override;

    // --- What is shown ---
    // The part of the canvas that the view shows. Without a window it is what ResizeTo said.
    [[nodiscard]] BRect Bounds() const override;
    // Puts a point of the canvas under the view's anchor. Sync() makes it seen.
    void ScrollTo(BPoint anchorPoint);
    [[nodiscard]] BPoint AnchorPoint() const;
    // For a view without a window: width and height in logical pixels (right - left, bottom - top),
    // and device pixels per logical pixel.
    void ResizeTo(float width, float height, double scale = 1.0);

    // --- Drawing ---
    [[nodiscard]] rgb_color Background() const { return canvas_.Background(); }
    // Of new areas, and of what Erase leaves.
    void SetBackground(rgb_color background);
    // The layer that is kept. Lines: BeginLineArray, AddLine, EndLineArray; FillRect, DrawDisc ...
    [[nodiscard]] Canvas& LowerLayer() { return canvas_; }
    [[nodiscard]] const Canvas& LowerLayer() const { return canvas_; }
    // Copies what was drawn on the canvas since the last time into the picture, over what is there.
    void SyncLayers();
    // Copies the canvas's pixels of the rectangle into the picture, so removing what was drawn
    // there.
    void CopyFromCanvas(BRect rect) { picture_.CopyFrom(canvas_, rect); }
    // Draws on the picture.
    void DrawDisc(BPoint center, float radius, rgb_color color) {
        picture_.DrawDisc(center, radius, color);
    }
    [[nodiscard]] Canvas& UpperLayer() { return picture_; }
    [[nodiscard]] const Canvas& UpperLayer() const { return picture_; }
    // Fills canvas and picture with the background.
    void Erase();
    // Replaces the texts over the picture.
    void SetOverlay(std::vector<OverlayItem> items);
    // Where an item lies as the view is now, shadow and all, as a part of the canvas; empty where
    // there are no fonts.
    [[nodiscard]] BRect FrameOf(const OverlayItem& item) const;
    // Brings what was drawn to the screen: hands it to the server, which copies the changed parts.
    void Sync();
    // How many Syncs have reached the screen; several between two refreshes count once.
    [[nodiscard]] int64 CountShown() const;

    // What the view shows, with or without the overlay, as the bytes of a PNG file; none for a view
    // without a size.
    [[nodiscard]] std::vector<std::byte> EncodePNG(bool withOverlay = true) const;

    // Asks for a pointer shape: an open hand that says "can be dragged", a closed one while it is.
    enum class Pointer { kArrow, kOpenHand, kClosedHand, kCrosshair };
    void SetPointer(Pointer pointer);

    // --- Hooks ---
    virtual void MouseDown(const MouseInput& input);
    virtual void MouseUp(const MouseInput& input);
    // Also without a button. Several moves may come as one.
    virtual void MouseMoved(const MouseInput& input, Transit transit);
    // Several turns may come as one, which is their sum.
    virtual void WheelTurned(const WheelInput& input);
    virtual void Pinched(const PinchInput& input);
    // The view has the keyboard.
    virtual void KeyDown(const KeyInput& input);
    virtual void KeyUp(const KeyInput& input);
    // The size or the device scale has changed; the layers have already grown and keep their
    // contents. Ends in a Sync() by itself.
    virtual void FrameResized(BRect bounds);

protected:
    void Changed(const BMessage& message) override;

private:
    [[nodiscard]] CanvasPart& CanvasServer() const;
    void HandleInput();
    void CoverBounds();
    void Grow(BRect shown);

    Canvas canvas_;
    Canvas picture_;
    std::vector<OverlayItem> overlay_;
};
