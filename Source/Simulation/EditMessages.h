// What the messages to a simulation that edit its document come to. No state; on the thread that
// owns the document, with no lock of it held.
#pragma once

class BMessage;
class EpochPortal;
class EpochWindow;
class SimulationController;

// False for any other message. What is half typed is committed before undoing and redoing.
bool CarryOutEdit(const BMessage& message, SimulationController* controller, EpochPortal* portal,
                  const EpochWindow& epochs);
