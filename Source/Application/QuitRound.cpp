#include "Application/QuitRound.h"

#include <algorithm>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Simulation/Simulation.h"

void QuitRound::Begin(const std::vector<Simulation*>& simulations) {
    if (left_.empty()) left_.assign(simulations.begin(), simulations.end());
    isUnderWay_ = true;
    AskFirst();
}

void QuitRound::AskFirst() {
    if (left_.empty()) return;
    WindowServer::Deliver(left_.front(), BMessage(B_QUIT_REQUESTED));
}

void QuitRound::Closed(const Simulation* simulation, const std::vector<Simulation*>& open) {
    if (left_.empty()) return;
    const bool wasAsked = left_.front() == simulation;
    std::erase(left_, simulation);
    if (left_.empty()) left_.assign(open.begin(), open.end());
    if (wasAsked) AskFirst();
}

void QuitRound::Cancelled(const Simulation* simulation) {
    if (left_.empty() || left_.front() != simulation) return;
    left_.clear();
    isUnderWay_ = false;
}
