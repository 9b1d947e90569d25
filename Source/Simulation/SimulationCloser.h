// Closing one simulation: the question whether to save it, what its answers come to, and the
// request to the application to delete the window. Owned by the window and used on its thread.
#pragma once

#include <string>

class BMessage;
class MessageBoxes;
class MessageWindow;
class RunControl;
class Simulation;
class SimulationDocument;
class SimulationHost;
class SimulationSaver;

class SimulationCloser {
public:
    // None is owned.
    SimulationCloser(Simulation* simulation, SimulationHost* host, SimulationDocument* document,
                     RunControl* run, SimulationSaver* saver, MessageBoxes* boxes);

    // Closes the simulation, or asks whether to save it first.
    void Request();
    // The answers; false for a message about something else.
    bool Handle(const BMessage& message);
    // Deletes the box, which may have been the question.
    void BoxClosed(const MessageWindow* box);
    // Closes it as it is. `reason`: why the document could not be read; empty for any other end.
    void Close(const std::string& reason = {});
    // The application has been asked to delete the window, or is doing so.
    [[nodiscard]] bool IsClosing() const { return isClosing_; }
    void BeginQuit() { isClosing_ = true; }

private:
    void SaveThenClose(const BMessage& answer);
    void CloseUnsaved(const BMessage& answer);
    void OfferCopy();
    // The simulation stays open after all.
    void Cancel();

    Simulation* const simulation_;
    SimulationHost* const host_;
    SimulationDocument* const document_;
    RunControl* const run_;
    SimulationSaver* const saver_;
    MessageBoxes* const boxes_;
    bool isAsked_ = false;  // the user, who has not answered
    bool isClosing_ = false;
};
