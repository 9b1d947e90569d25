#include "SetEpochToCommand.h"

#include <memory>

#include "AbCalculator.h"
#include "AppDefs.h"
#include "BMessage.h"
#include "EpochPortal.h"

SetEpochToCommand::SetEpochToCommand(EpochPortal* portal, AbEpoch* target, int32 what)
    : portal_(portal), target_(target), what_(what) {}

void SetEpochToCommand::Execute() {
    previousEpoch_ = nullptr;
    if (!portal_->HasEpoch(target_)) return;
    previousEpoch_ = portal_->FocusEpoch();
    previousSystem_ = portal_->FocusSystem();
    const AbCalculator* calculator = portal_->GetCalculator();
    if (calculator && !previousEpoch_->CalculatorState()) {
        auto state = std::make_unique<BMessage>(B_ARCHIVED_OBJECT);
        if (calculator->Archive(state.get(), true) == B_OK)
            previousEpoch_->SetCalculatorState(state.release());
    }
    portal_->SetEpochTo(target_);
    portal_->TellObservers(what_);
}

void SetEpochToCommand::Undo() {
    if (!previousEpoch_) return;
    portal_->SetEpochTo(previousEpoch_);
    portal_->SetSystemTo(previousSystem_);
    portal_->TellObservers(what_);
}
