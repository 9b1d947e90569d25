// The dialog that chooses a display's scale: how long a part of the screen is to be in the world.
// Made, shown and quit by the display. However the user closes it, it tells the display and stays
// until the display quits it.
#pragma once

#include "Platform/Interface/Handles/BWindow.h"

class Display;
class ScaleBox;
struct DisplayContext;

class ScaleRequester : public BWindow {
public:
    // With a ScaleChoice.
    static constexpr uint32 kSetScale = FourCC("stsc");
    static constexpr uint32 kCancel = FourCC("cnsc");
    // To the dialog, with a ScaleChoice: the scale is the display's now. What is being typed stays.
    static constexpr uint32 kScaleChanged = FourCC("scch");

    // `reference`: ScaleBox::Reference; `units`: the unit that the length is shown in, m.
    ScaleRequester(double scale, int32 reference, double units, Display* display,
                   const DisplayContext& context);

    void MessageReceived(BMessage* message) override;
    bool QuitRequested() override;

private:
    void SetScaleRef(int32 reference);
    void Redisplay();
    void CommitLength();
    [[nodiscard]] double PixelsOf(int32 reference) const;

    Display* const display_;
    ScaleBox* const box_;
    double scale_;
    double pixels_ = 1.0;  // of the reference
    bool isUnitChanged_ = false;
};
