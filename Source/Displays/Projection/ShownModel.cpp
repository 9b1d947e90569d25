#include "Displays/Projection/ShownModel.h"

#include <utility>

#include "Model/Sharing/AbCalculator.h"
#include "Simulation/History/ShownMoment.h"

bool ShownModel::IsStale() const {
    return source_ != nullptr && source_->Get().epoch != drawn_;
}

void ShownModel::TakeMoment() {
    if (source_ != nullptr) moment_ = source_->Get();
}

const AbEpoch& ShownModel::Epoch() const {
    return moment_.IsPast() ? *moment_.epoch : *portal_->FocusEpoch();
}

bool ShownModel::IsRunning() const {
    const AbCalculator* const calculator = portal_->GetCalculator();
    return !IsPast() && calculator != nullptr && calculator->IsRunning();
}

bool ShownModel::TakeWhetherMoved() {
    if (moment_.epoch == drawn_) return false;
    drawn_ = moment_.epoch;
    return true;
}

bool ShownModel::TakeWhetherRestored() {
    const AbEpoch* const before = std::exchange(focus_, portal_->FocusEpoch());
    for (const AbEpoch* epoch = focus_; epoch != nullptr; epoch = epoch->Parent())
        if (epoch == before) return false;
    return before != nullptr;
}

bool ShownModel::TakeLabels(const std::vector<Body*>& bodies) {
    BodyLabels labels = ReadBodyLabels(Epoch(), bodies);
    if (labels == labels_) return false;
    labels_ = std::move(labels);
    return true;
}

void ShownModel::TakeTime(bool isRunning) {
    timeUval_ = Epoch().TimeUval();
    if (!isRunning) time_ = Epoch().Time();
}
