#include "Calculation/RunState.h"

#include <cmath>

#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kInverseStepField = "Inverse step";
constexpr const char* kAnchorField = "Anchor";
constexpr const char* kElapsedField = "Elapsed";

struct Number {
    const char* field;
    double RunState::*member;
};

constexpr Number kNumbers[] = {{kInverseStepField, &RunState::inverseStep},
                               {kAnchorField, &RunState::anchor},
                               {kElapsedField, &RunState::elapsed}};

}  // namespace

status_t RunState::Archive(BMessage* into) const {
    for (const auto& [field, member] : kNumbers)
        if (const status_t status = into->AddDouble(field, this->*member); status != B_OK)
            return status;
    return B_OK;
}

status_t RunState::Regenerate(const BMessage& archive) {
    RunState read;
    for (const auto& [field, member] : kNumbers)
        if (const status_t status = archive.FindDouble(field, &(read.*member)); status != B_OK)
            return status;
    if (!(read.inverseStep > 0.0) || !std::isfinite(read.inverseStep) ||
        !std::isfinite(read.anchor) || !std::isfinite(read.elapsed))
        return B_BAD_DATA;
    *this = read;
    return B_OK;
}
