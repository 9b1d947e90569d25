// The window of the system in focus's trail and disc: their colours, and whether they are drawn,
// with a picture of how they will look. Rules as for SettingsWindow.
#pragma once

#include <string>

#include "Model/Systems/MassSystem.h"
#include "Simulation/Settings/SettingsWindow.h"

class BBox;
class ColorControl;
class SwitchControl;
class TrailPreview;

class TrailDiscWindow : public SettingsWindow {
public:
    TrailDiscWindow(EpochPortal* portal, BLooper* owner, const DisplayContext& context);

    void MessageReceived(BMessage* message) override;

protected:
    void AboutToRefresh() override;
    void Refreshed() override;

private:
    void ShowPreview();

    ColorControl* trailColor_ = nullptr;
    SwitchControl* trailOn_ = nullptr;
    ColorControl* discColor_ = nullptr;
    SwitchControl* discOn_ = nullptr;
    TrailPreview* preview_ = nullptr;
    BBox* colors_ = nullptr;
    int64 system_ = kNoSystemID;
    std::string name_;
};
