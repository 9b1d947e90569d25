// Asks which mass bodies get whose file tells none. Made, shown and quit by the simulation's
// window, which it sends the mass, and then, however it was closed, kClosed. Rules of SubWindow.
#pragma once

#include "Interface Widgets/SubWindow.h"

class NumberTextControl;
class UnitTable;

class MissingMassWindow : public SubWindow {
public:
    // With double kMass, m3/s2.
    static constexpr uint32 kGiven = FourCC("msgv");
    static constexpr const char* kMass = "mass";
    static constexpr uint32 kClosed = FourCC("mscl");

    // `bodies`: how many. `units`: those of mass, not owned.
    MissingMassWindow(BPoint at, std::size_t bodies, const UnitTable* units, BLooper* owner,
                      const InterfaceTexts* texts);

    void MessageReceived(BMessage* message) override;
    bool QuitRequested() override;

private:
    void Answer();

    const UnitTable* const units_;
    NumberTextControl* const mass_;
};
