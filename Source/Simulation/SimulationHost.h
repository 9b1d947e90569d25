// What a simulation's window needs of the program around it. The application object implements it;
// tests have one of their own. Any thread may call.
#pragma once

#include "Displays/Base/DisplayContext.h"
#include "Platform/Support/SupportDefs.h"

class BLooper;
class ProgramResources;

class SimulationHost {
public:
    virtual ~SimulationHost() = default;

    // Where messages for the application go. Outlives all simulations.
    [[nodiscard]] virtual BLooper* Application() = 0;
    [[nodiscard]] virtual const ProgramResources& Resources() const = 0;
    // Texts, units and menus.
    [[nodiscard]] virtual const DisplayContext& Context() const = 0;
    // The command that answers the question once and for all; 0 for none.
    [[nodiscard]] virtual uint32 DefaultResponse(int32 windowID) const = 0;
    // The document lies there now: for the list of recent ones. An absolute path.
    virtual void NoteDocument(const char* path) = 0;

protected:
    SimulationHost() = default;
    SimulationHost(const SimulationHost&) = default;
    SimulationHost& operator=(const SimulationHost&) = default;
};
