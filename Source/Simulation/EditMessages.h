// What the messages to a simulation that edit its document come to. No state; on the thread that
// owns the document, with no lock of it held.
#pragma once

#include <functional>

#include "Platform/Support/SupportDefs.h"

class BMessage;
class EpochPortal;
class EpochWindow;
class SimulationController;

// Gets the number of the text that says why an edit was refused.
using TellRefusal = std::function<void(int32 text)>;

// False for any other message. What is half typed is committed before undoing and redoing.
bool CarryOutEdit(const BMessage& message, SimulationController* controller, EpochPortal* portal,
                  const EpochWindow& epochs, const TellRefusal& tellRefusal);
