#include "Model/Epochs/NullEpoch.h"

#include <limits>
#include <memory>

#include "Platform/Application/BMessage.h"

BArchivable* NullEpoch::Instantiate(BMessage* archive) {
    std::unique_ptr<BArchivable> object(instantiate_object(archive));
    return dynamic_cast<NullEpoch*>(object.get()) ? object.release() : nullptr;
}

int32 NullEpoch::Circumstance() const {
    return kUnknownCircumstance;
}

double NullEpoch::Time() const {
    return std::numeric_limits<double>::quiet_NaN();
}

double NullEpoch::Cutoff() const {
    return kDefaultCutoff;
}

void NullEpoch::SetCalculatorState(BMessage* state) {
    delete state;
}
