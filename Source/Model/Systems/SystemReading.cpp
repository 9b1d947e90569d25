#include "Model/Systems/SystemReading.h"

#include "Model/Systems/MassSystem.h"

thread_local SystemReading* SystemReading::sCurrent = nullptr;

void SystemReading::NoteLeftOut(const MassSystem& system, const MassSystem& sibling) {
    if (count_++ < kMaxTold) told_.push_back({system.Name(), sibling.Name()});
}
