#include "Tests/Simulation/SettingsFixture.h"

#include "Model/Sharing/ChangeFlags.h"
#include "Platform/Application/BMessage.h"

SettingsFixture::SettingsFixture() {
    EntryHand::WaitUntilActive(root);
    SettingsFixture::Settle();
}

// From a list over its box and the window to the model and back are more ways than one Settle waits
// for.
void SettingsFixture::Settle() {
    simulation.Settle();
    simulation.Settle();
}

void SettingsFixture::Send(const BMessage& message) {
    simulation.Send(message);
    Settle();
}

void SettingsFixture::Enter(const std::string& line, const std::string& text) {
    hand.Enter(line, text);
    Settle();
}

void SettingsFixture::Choose(const std::string& field, const std::string& text) {
    hand.Choose(field, text);
    Settle();
}

void SettingsFixture::Change(const std::function<void(AbEpoch&)>& change, int32 flags) {
    portal->WriteLock();
    change(*portal->FocusEpoch());
    portal->TellObservers(flags);
    portal->WriteUnlock();
    Settle();
}

void SettingsFixture::Focus(int64 id) {
    Change([&](AbEpoch&) { portal->SetSystemFromID(id); }, kFocusSystemChanged);
}
