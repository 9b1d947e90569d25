// The menu bar of a space display. Made by the display's Init; used with the display's lock.
#pragma once

#include "Displays/Projection/DisplayMenus.h"
#include "Displays/Space/SpaceOptions.h"

class BMessage;
struct SpaceFields;

class SpaceMenus : public DisplayMenus {
public:
    // What the display is asked for.
    static constexpr uint32 kPerspective = FourCC("sppe");

    SpaceMenus(Display* display, const DisplayContext& context);

    void ShowOptions(const SpaceFields& fields);
    // What a message of the menu toggles; null: it is none.
    [[nodiscard]] static bool SpaceOptions::*OptionOf(const BMessage& message);

private:
    void AddOwnMenu(Display* display, const DisplayContext& context);

    BMenuItem* perspective_ = nullptr;
    std::vector<BMenuItem*> options_;
};
