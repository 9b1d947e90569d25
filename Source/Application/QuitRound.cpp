#include "QuitRound.h"

#include <algorithm>

#include "AppDefs.h"
#include "BMessage.h"
#include "BMessenger.h"
#include "Simulation.h"
#include "WindowServer.h"

void QuitRound::Begin(const std::vector<Simulation*>& simulations) {
    if (left_.empty()) left_.assign(simulations.begin(), simulations.end());
    isUnderWay_ = true;
    AskFirst();
}

void QuitRound::AskFirst() {
    if (left_.empty()) return;
    WindowServer::Deliver(BMessenger(static_cast<BHandler*>(left_.front())),
                          BMessage(B_QUIT_REQUESTED));
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
