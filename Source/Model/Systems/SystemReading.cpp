#include "Model/Systems/SystemReading.h"

#include "Model/Systems/MassSystem.h"
#include "Platform/Application/BMessage.h"

thread_local SystemReading* SystemReading::sCurrent = nullptr;

void SystemReading::NoteLeftOut(const MassSystem& system, const MassSystem& sibling) {
    if (count_++ < kMaxTold) told_.push_back({system.Name(), sibling.Name()});
}

void SystemReading::NoteForeign(const BMessage& record) {
    if (foreignCount_++ == 0) static_cast<void>(record.FindString("class", &foreignClass_));
}
