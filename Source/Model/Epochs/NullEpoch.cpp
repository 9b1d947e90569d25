#include "Model/Epochs/NullEpoch.h"

#include <limits>

#include "Platform/Application/BMessage.h"

BArchivable* NullEpoch::Instantiate(BMessage* archive) {
    return InstantiateAs<NullEpoch>(archive).release();
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
