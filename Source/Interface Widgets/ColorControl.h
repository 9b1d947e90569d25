// An entry of a colour: a swatch that opens the desktop's colour dialog, and for each of red, green
// and blue a slider and a number. While a knob is held or the dialog is open the entry shows the
// colour and sends its window kColorShown; letting go is one edit, of the system for which it was
// begun. Rules as for Entry.
#pragma once

#include <array>

#include "Interface Widgets/Entry.h"

class BColorControl;
class BGridView;
class BSlider;
class InterfaceTexts;
class NumberTextControl;

class ColorControl : public ValueEntry<rgb_color> {
public:
    // Sent to the window when ShownColor() has changed.
    static constexpr uint32 kColorShown = FourCC("clsh");

    // `label` is the dialog's title and what a screen reader says.
    ColorControl(const char* name, const char* label, EpochPortal* portal,
                 const InterfaceTexts& texts);

    // What the entry shows: the colour in force, or the one that the user is just choosing.
    [[nodiscard]] rgb_color ShownColor() const { return shown_; }

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;

protected:
    bool CommitPending() override;
    void Present(const std::optional<rgb_color>& value, bool replacesAll) override;
    void ShowEnabled(bool isEnabled) override;

private:
    static constexpr uint32 kMoving = FourCC("clmv");
    static constexpr uint32 kMoved = FourCC("clmd");
    static constexpr uint32 kChoosing = FourCC("clcg");
    static constexpr uint32 kChosen = FourCC("clok");

    struct Channel {
        BSlider* slider = nullptr;
        NumberTextControl* number = nullptr;
    };

    void AddChannel(BGridView* grid, std::size_t index, const std::string& spoken,
                    const std::string& label, const InterfaceTexts& texts);
    [[nodiscard]] rgb_color SliderColor() const;
    // Any thread. Nothing for an invalid text, which is rejected.
    [[nodiscard]] std::optional<uint8> ReadChannel(std::size_t index, const std::string& typed,
                                                   uint8 inForce);
    void ShowSliders(rgb_color color);
    // `replacesAll`: also numbers that the user is just typing.
    void ShowNumbers(rgb_color color, bool replacesAll);
    // While the user is choosing: what is under the hand is left alone.
    void Try(rgb_color color);
    void Take(rgb_color color);

    BColorControl* const swatch_;
    std::array<Channel, 3> channels_;
    rgb_color shown_;
    Source begun_;  // where the colour goes that the user is just choosing
};
