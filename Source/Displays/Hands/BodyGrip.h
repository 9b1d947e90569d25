// A body held by the mouse: where it would be, or how it would move, if it were let go now. Knows
// nothing of windows. A plain value; pixels are logical ones.
#pragma once

#include "Displays/Hands/HandPlane.h"
#include "Displays/Hands/HandSystem.h"

class BodyGrip {
public:
    enum class Kind {
        kMove,   // it is put elsewhere
        kSteer,  // the head of the arrow of its velocity is dragged
        kThrow,  // it is a new one, whose velocity is the way of the mouse
    };
    // What the user holds down meanwhile.
    struct Bounds {
        int32 axis = HandPlane::kAnyWay;
        bool isCircular = false;  // the velocity becomes that of a circle about the neighbour
    };
    static constexpr double kArrowLength = 60.0;  // of a velocity that is seen from the side

    BodyGrip(Kind kind, HandSystem system, const HandBody& body, const HandPlane& plane);

    // The mouse is so far from where it took hold.
    void DragBy(BPoint way, const Bounds& bounds);

    [[nodiscard]] Kind GetKind() const { return kind_; }
    [[nodiscard]] const HandSystem& System() const { return system_; }
    [[nodiscard]] const HandPlane& Plane() const { return plane_; }
    [[nodiscard]] const HandBody& Start() const { return start_; }
    // As it would be.
    [[nodiscard]] const HandBody& Body() const { return body_; }
    // Where the arrow's head is, from where the body is seen.
    [[nodiscard]] BPoint Arrow() const;

private:
    Kind kind_;
    HandSystem system_;
    HandBody start_;
    HandBody body_;
    HandPlane plane_;
    double speedScale_;  // pixels for a metre per second
};

// So many pixels for a metre per second of that body in this frame; 0: it stands still.
[[nodiscard]] double ArrowScale(const HandSystem& system, const HandBody& body);
