// The open simulations: what is asked of one of them, or of all. Owned by the application, on its
// thread.
#pragma once

#include <functional>
#include <vector>

#include "Application/QuitRound.h"

class Simulation;
class SimulationHost;

class SimulationList {
public:
    // The host is not owned.
    explicit SimulationList(SimulationHost* host) : host_(host) {}

    // `init` gives the new window what it shows. Null when there is no memory, or no thread, for
    // another simulation.
    Simulation* Begin(const std::function<void(Simulation*)>& init);
    // Forgets and quits it; nothing for what is not open.
    void Delete(Simulation* simulation);
    void DeleteAll();

    [[nodiscard]] const std::vector<Simulation*>& All() const { return simulations_; }
    [[nodiscard]] bool IsEmpty() const { return simulations_.empty(); }
    // Null unless it is one of these.
    [[nodiscard]] Simulation* Find(const void* simulation) const;
    // The same, for a window in which a file may be opened.
    [[nodiscard]] Simulation* FindUntouched(const void* simulation) const;
    // The active one, else the one that was shown last; null: none is seen.
    [[nodiscard]] Simulation* Front() const;
    // The one that the program began with, if it is the only one and has not served its purpose.
    [[nodiscard]] Simulation* OnlyUntouched() const;

    // Each is asked to close; `Delete` and `KeepsOpen` tell what has come of it.
    void QuitAll() { quitRound_.Begin(simulations_); }
    void KeepsOpen(const Simulation* simulation) { quitRound_.Cancelled(simulation); }
    [[nodiscard]] bool IsQuitting() const { return quitRound_.IsUnderWay(); }

    // Returns when all have done so, or when it has taken too long: the desktop waits.
    void KeepRecoveryCopies() const;
    void KeepAutomaticCopies() const;

private:
    SimulationHost* const host_;
    std::vector<Simulation*> simulations_;
    QuitRound quitRound_;
};
