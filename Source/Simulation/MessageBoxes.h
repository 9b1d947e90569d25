// The message boxes of one simulation: the question whether to save, and the one that is seen while
// the window builds itself. Owned by the simulation's window, which gets their messages; used on
// its thread.
#pragma once

#include <string>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"

class BLooper;
class MessageWindow;
class SimulationHost;

class MessageBoxes {
public:
    // Messages that the buttons of the question send, with MessageWindow::kCheckBoxField.
    static constexpr uint32 kSaveThenQuit = FourCC("svtq");
    static constexpr uint32 kReallyQuit = FourCC("rlyq");
    static constexpr uint32 kCancelQuit = 1;

    // Neither is owned.
    MessageBoxes(BLooper* owner, SimulationHost* host) : owner_(owner), host_(host) {}

    void MakeQuitConfirm(const std::string& simulationName);
    // If the reply says that it is the answer for good, the application is told that `command` is.
    void HandleDefaultResponse(const BMessage& reply, int32 windowID, uint32 command);

    // The box that tells that the window builds itself; not seen before it is told to show itself.
    void MakeBuilding();
    // Not valid when there is none.
    [[nodiscard]] BMessenger Building() const;
    // True unless the user saw the box and has turned to another window.
    bool EndBuilding();

    [[nodiscard]] MessageWindow* MessageWindowFromID(int32 id) const;
    // Nothing for what is not in the list.
    void DeleteMessageWindow(const MessageWindow* box);
    void DeleteAll();

private:
    BLooper* const owner_;
    SimulationHost* const host_;
    std::vector<MessageWindow*> boxes_;
};
