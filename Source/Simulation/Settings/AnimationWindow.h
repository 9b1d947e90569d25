// The window of how finely and how often the displays draw a run, and of the memory that kept runs
// may take, which is the program's. Rules as for SettingsWindow.
#pragma once

#include "Simulation/Settings/SettingsWindow.h"

class BPopUpMenu;
class BView;
class InterfaceTexts;

class AnimationWindow : public SettingsWindow {
public:
    AnimationWindow(EpochPortal* portal, BLooper* owner, const DisplayContext& context);

    void MessageReceived(BMessage* message) override;

protected:
    void AboutToRefresh() override;

private:
    [[nodiscard]] BView* MakeBudgets(const InterfaceTexts& texts);

    BPopUpMenu* budgets_ = nullptr;
};
