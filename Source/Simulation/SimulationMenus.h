// The menu bar of a simulation's window. Made by the window, which takes the bar over; used on its
// thread with the window locked.
#pragma once

#include "Interface Widgets/ProgramMessages.h"

class BHandler;
class BMenu;
class BMenuBar;
class BMenuItem;
class InterfaceTexts;
class Simulation;
class SimulationHost;
class UndoChain;

class SimulationMenus {
public:
    // To the simulation's window: ask what to group; put the members of the group in focus in its
    // place.
    static constexpr uint32 kRequestGroup = ::kRequestGroup;
    static constexpr uint32 kDissolveGroup = FourCC("dsgr");

    // Open more of the document's displays.
    static constexpr uint32 kOpenDisplays = FourCC("opds");

    SimulationMenus(const Simulation* simulation, SimulationHost* host);

    [[nodiscard]] BMenuBar* Bar() const { return bar_; }
    // The item that lets the simulation go or pause.
    void ShowGo(const char* label, bool isEnabled);
    // Whether there is a moment of the past to branch at and to come back from.
    void ShowMoment(bool isPast);
    void ShowRunBackwards(bool isPossible);
    // What can be undone and redone, by name.
    void ShowHistory(UndoChain* history);
    // Whether what is kept of runs is saved with the document.
    void ShowSavesHistory(bool isSaved);
    // Whether the document has displays that are not open.
    void ShowWaitingDisplays(bool areThere);
    // Whether what is in focus is a group, which can be dissolved.
    void ShowFocus(bool isGroup);

private:
    BMenuItem* AddItem(BMenu* menu, int32 label, uint32 what, int32 key = 0, uint32 modifiers = 0);
    void AddAppMenu(const Simulation* simulation, SimulationHost* host);
    void AddFileMenu();
    void AddEditMenu();
    void AddBodiesMenu();
    void AddSimulationMenu(SimulationHost* host);
    void AddDisplayMenu();
    void Show(BMenuItem* item, bool isPossible, int32 name, int32 plainLabel, int32 namedLabel);

    const InterfaceTexts& texts_;
    BMenuBar* const bar_;
    BMenuItem* go_ = nullptr;
    BMenuItem* branch_ = nullptr;
    BMenuItem* backToNow_ = nullptr;
    BMenuItem* runBackwards_ = nullptr;
    BMenuItem* undo_ = nullptr;
    BMenuItem* redo_ = nullptr;
    BMenuItem* dissolve_ = nullptr;
    BMenuItem* openDisplays_ = nullptr;
    BMenuItem* saveHistory_ = nullptr;
};
