// The dial of the pace: what passes of the simulation's time in a second, as a line that takes any
// unit of time, as a slider from a second to as fast as possible, and as a switch for Auto. It sets
// the calculator's pace at once, and says when the machine cannot follow. Two keys of the window,
// where no field has the keyboard, halve and double it. Rules as for BView.
#pragma once

#include <string>

#include "Model/Sharing/Pace.h"
#include "Platform/Interface/Handles/BGroupView.h"

class BCheckBox;
class BEntryControl;
class BSlider;
class BStringView;
class EpochPortal;
class InterfaceTexts;
class UnitTable;

class PaceControl : public BGroupView {
public:
    // None is owned. `timeUnits`: what can be typed.
    PaceControl(EpochPortal* portal, const UnitTable* timeUnits, const InterfaceTexts& texts);

    // Shows the pace in force after these changes of the model (-1: all). Takes the read lock; the
    // caller must not hold it.
    void Redisplay(int32 changes);
    // Says whether the machine follows: from time to time during a run, and at its end.
    void ShowWhetherBehind();

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;

private:
    static constexpr uint32 kMoving = FourCC("pcmv");
    static constexpr uint32 kMoved = FourCC("pcen");
    static constexpr uint32 kEntered = FourCC("pctx");
    static constexpr uint32 kAuto = FourCC("pcau");
    static constexpr uint32 kSlower = FourCC("pcsl");
    static constexpr uint32 kFaster = FourCC("pcfs");

    [[nodiscard]] double InForce() const;
    void Set(Pace pace);
    void ScaleBy(double factor);
    void TakeKnob(const BMessage& message);
    void TakeSwitch();
    void TakeText();
    [[nodiscard]] std::string Brief(double secondsPerSecond) const;
    [[nodiscard]] std::string Full(double secondsPerSecond) const;
    void ShowText(bool replacesAll);

    EpochPortal* const portal_;
    const UnitTable* const timeUnits_;
    const InterfaceTexts& texts_;
    BEntryControl* const line_;
    BSlider* const slider_;
    BCheckBox* const auto_;
    BStringView* const behind_;
    double shown_ = 0.0;  // seconds per second
    bool isHeld_ = false;
    bool isBehind_ = false;
};
