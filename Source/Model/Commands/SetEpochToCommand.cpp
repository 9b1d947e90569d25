#include "Model/Commands/SetEpochToCommand.h"

#include <memory>

#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"

SetSystemToCommand::SetSystemToCommand(EpochPortal* portal, int64 systemID)
    : portal_(portal), systemID_(systemID) {}

void SetSystemToCommand::Execute() {
    previousID_ = portal_->FocusSystem()->ID();
    portal_->SetSystemFromID(systemID_);
    portal_->TellObservers(kFocusSystemChanged);
}

void SetSystemToCommand::Undo() {
    portal_->SetSystemFromID(previousID_);
    portal_->TellObservers(kFocusSystemChanged);
}

SetEpochToCommand::SetEpochToCommand(EpochPortal* portal, AbEpoch* target, int32 what)
    : portal_(portal), target_(target), what_(what) {}

void SetEpochToCommand::Execute() {
    previousEpoch_ = nullptr;
    if (!portal_->HasEpoch(target_)) return;
    previousEpoch_ = portal_->FocusEpoch();
    previousSystemID_ = portal_->FocusSystem()->ID();
    const AbCalculator* calculator = portal_->GetCalculator();
    if (calculator && !previousEpoch_->CalculatorState()) {
        auto state = std::make_unique<BMessage>(B_ARCHIVED_OBJECT);
        if (calculator->Archive(state.get(), true) == B_OK)
            previousEpoch_->SetCalculatorState(state.release());
    }
    if (portal_->HasEpoch(leftAt_)) {
        portal_->SetEpochTo(leftAt_);
        portal_->SetSystemFromID(leftAtSystemID_);
    } else {
        portal_->SetEpochTo(target_);
    }
    portal_->TellObservers(what_);
}

void SetEpochToCommand::Undo() {
    if (!previousEpoch_) return;
    leftAt_ = portal_->FocusEpoch();
    leftAtSystemID_ = portal_->FocusSystem()->ID();
    portal_->SetEpochTo(previousEpoch_);
    portal_->SetSystemFromID(previousSystemID_);
    portal_->TellObservers(what_);
}
