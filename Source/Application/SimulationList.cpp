#include "Application/SimulationList.h"

#include <algorithm>
#include <new>
#include <system_error>
#include <thread>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Simulation/Simulation.h"

namespace {

// Where a simulation's window is until it has read its document.
constexpr BRect kFirstFrame{40.0f, 40.0f, 240.0f, 240.0f};

}  // namespace

Simulation* SimulationList::Begin(const std::function<void(Simulation*)>& init) {
    Simulation* simulation = nullptr;
    try {
        simulation = new Simulation(kFirstFrame, host_);
        simulations_.push_back(simulation);
        init(simulation);
        return simulation;
    } catch (const std::bad_alloc&) {
    } catch (const std::system_error&) {
    }
    if (std::erase(simulations_, simulation) > 0) BLooper::QuitIfAlive(simulation);
    return nullptr;
}

void SimulationList::Delete(Simulation* simulation) {
    if (std::erase(simulations_, simulation) == 0) return;
    BLooper::QuitIfAlive(simulation);
    quitRound_.Closed(simulation, simulations_);
}

void SimulationList::DeleteAll() {
    while (!simulations_.empty()) {
        Simulation* const simulation = simulations_.back();
        simulations_.pop_back();
        BLooper::QuitIfAlive(simulation);
    }
}

Simulation* SimulationList::Find(const void* simulation) const {
    const auto found = std::ranges::find(simulations_, simulation);
    return found == simulations_.end() ? nullptr : *found;
}

Simulation* SimulationList::FindUntouched(const void* simulation) const {
    Simulation* const found = Find(simulation);
    return found != nullptr && found->IsNewlyCreated() ? found : nullptr;
}

Simulation* SimulationList::Front() const {
    Simulation* front = nullptr;
    for (Simulation* const simulation : simulations_) {
        if (simulation->IsHidden()) continue;
        front = simulation;
        if (simulation->IsActive()) break;
    }
    return front;
}

Simulation* SimulationList::OnlyUntouched() const {
    return simulations_.size() == 1 ? FindUntouched(simulations_.front()) : nullptr;
}

void SimulationList::KeepRecoveryCopies() const {
    constexpr bigtime_t kPatience = 4'000'000;
    std::vector<std::thread> keepers;
    for (Simulation* const simulation : simulations_)
        keepers.emplace_back([target = BMessenger(static_cast<BHandler*>(simulation))] {
            const BMessage keep(Simulation::kKeepRecoveryCopy);
            BMessage reply;
            static_cast<void>(target.SendMessage(&keep, &reply, kPatience / 2, kPatience));
        });
    for (std::thread& keeper : keepers)
        keeper.join();
}

void SimulationList::KeepAutomaticCopies() const {
    for (Simulation* const simulation : simulations_)
        static_cast<void>(
            static_cast<BLooper*>(simulation)->PostMessage(Simulation::kKeepAutomaticCopy));
}
