// Asks how far a run is to go. Made, shown and quit by the simulation's window, which it sends a
// RunTarget and then, however it was closed, "krnt". Rules of SubWindow.
#pragma once

#include <string>
#include <vector>

#include "Interface Widgets/SubWindow.h"
#include "Platform/Interface/Handles/BChoiceField.h"
#include "Simulation/Document/RunTarget.h"

class BGroupView;
class NumberTextControl;
class UnitTable;

class RunTargetWindow : public SubWindow {
public:
    static constexpr uint32 kClosed = FourCC("krnt");

    struct Bodies {
        std::vector<BChoiceField::Choice> all;  // the heaviest first
        int64 focus = 0;                        // chosen at first
        int64 heaviest = 0;
    };

    // `units`: those of time, not owned; `timeUval`: the one that is used (s).
    RunTargetWindow(BPoint at, Bodies bodies, const UnitTable* units, double timeUval,
                    BLooper* owner, const InterfaceTexts* texts);

    void MessageReceived(BMessage* message) override;
    bool QuitRequested() override;

private:
    BChoiceField* AddChoice(BGroupView* column, const char* name, int32 label);
    void AddButtons(BGroupView* column);
    void ChooseKind(RunTarget::Kind kind);
    void EnableFields();
    void Answer();

    const UnitTable* const units_;
    const double timeUval_;
    const Bodies bodies_;
    RunTarget target_;
    BChoiceField* kind_ = nullptr;
    NumberTextControl* time_ = nullptr;
    BChoiceField* body_ = nullptr;
    BChoiceField* other_ = nullptr;
};
