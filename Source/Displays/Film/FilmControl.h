// Lets a display's user record it: opens the window that asks how. Owned by the display and used
// with its lock.
#pragma once

#include "Displays/Projection/ProjectionFields.h"
#include "Displays/Projection/RequesterSlot.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
class BView;
class Display;
class RunHistory;
class ShownModel;
struct DisplayContext;

class FilmControl {
public:
    static constexpr uint32 kRequest = FourCC("rcfl");

    // None is owned.
    FilmControl(Display* display, const ShownModel* shown, const DisplayContext& context)
        : display_(display), shown_(shown), context_(context) {}

    // Null: there is nothing to record. Not owned.
    void SetHistory(const RunHistory* history) { history_ = history; }
    // False for a message about something else. The view is what is recorded, the unit (m) that of
    // its lengths.
    bool Handle(const BMessage& message, const BView& view, double lengthUnit);
    void Close() { window_.Close(&place_); }

private:
    void Open(const BView& view, double lengthUnit);

    Display* const display_;
    const ShownModel* const shown_;
    const DisplayContext& context_;
    const RunHistory* history_ = nullptr;
    RequesterSlot window_;
    BPoint place_ = kNeverPlaced;
};
