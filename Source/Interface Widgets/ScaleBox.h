// The sentence of the scale dialog: make a reference on the screen be a length. Rules as for BView.
// The reference menu sends kReferenceChosen with int32 "index" to the window; the rest as
// NumberBox.
#pragma once

#include "Interface Widgets/NumberBox.h"

class BMenu;
class InterfaceTexts;

class ScaleBox : public BGroupView {
public:
    static constexpr uint32 kReferenceChosen = FourCC("strf");

    // What the length is compared with, in the order of the menu.
    enum Reference : int32 {
        kScreenWidth = 1,
        kScreenHeight = 2,
        kWindowWidth = 3,
        kWindowHeight = 4,
        kOnePixel = 5,
    };

    ScaleBox(const char* name, const InterfaceTexts& texts, const UnitTable* units,
             const BMessage& unitMenuField);

    // The marked item's; with none marked it marks the window's width.
    [[nodiscard]] int32 GetReference();
    // Marks nothing for a number that is none of the references.
    void SetReference(int32 reference);
    [[nodiscard]] NumberBox& Length() { return *length_; }

private:
    BMenu* references_ = nullptr;
    NumberBox* const length_;
};
