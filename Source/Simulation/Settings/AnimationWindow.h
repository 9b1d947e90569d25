// The window of how finely and how often the displays draw a run. Rules as for SettingsWindow.
#pragma once

#include "Simulation/Settings/SettingsWindow.h"

class AnimationWindow : public SettingsWindow {
public:
    AnimationWindow(EpochPortal* portal, BLooper* owner, const DisplayContext& context);
};
