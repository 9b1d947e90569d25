// The box "Global Controls" of a simulation's window: Go and Pause, the centre of mass, and entries
// of what the epoch in focus is calculated with. Owned by the window, which takes its messages
// ("tgps", "2com"). Rules as for BView; but what the user has typed may be committed by any thread.
#pragma once

#include <string>
#include <vector>

#include "Interface Widgets/EntryGroup.h"
#include "Platform/Interface/Handles/BBox.h"
#include "Simulation/History/Moment.h"

class BButton;
class EpochPortal;
class InterfaceTexts;
class MyMenuField;
class QuantityControl;
class SliderControl;
class SwitchControl;
struct DisplayContext;

class GlobalControlsBox : public BBox {
public:
    // The portal is the document's own; neither is owned.
    GlobalControlsBox(EpochPortal* portal, const DisplayContext& context);

    // Shows what is in force after these changes of the model (-1: all), or was at a moment of the
    // past. Takes the read lock; the caller must not hold it.
    void Redisplay(int32 changes, const Moment& moment = {});
    // Makes what is half typed undoable commands; true if that changed something. Any thread that
    // holds no lock of the document, with or without the window's.
    bool CommitEpochValues();
    // Entries that would change the motion rest while it is calculated.
    void EnableRunControls(bool enable);
    void ShowGoPause(const char* label, bool isEnabled);

private:
    void AddRun(const DisplayContext& context);
    void AddCenter(const InterfaceTexts& texts);
    void AddCalculation(const InterfaceTexts& texts);
    void AddOrder(const InterfaceTexts& texts);
    void AddOnContact(const InterfaceTexts& texts);
    MyMenuField* AddMenu(const char* name, const char* title, const char* tip,
                         std::vector<int32> numbers, const std::vector<std::string>& words);

    EpochPortal* const portal_;
    BButton* go_ = nullptr;
    BButton* now_ = nullptr;
    SwitchControl* uponGo_ = nullptr;
    QuantityControl* time_ = nullptr;
    SliderControl* cutoff_ = nullptr;
    MyMenuField* order_ = nullptr;
    MyMenuField* onContact_ = nullptr;
    EntryGroup entries_;
};
