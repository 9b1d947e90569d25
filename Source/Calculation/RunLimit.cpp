#include "Calculation/RunLimit.h"

#include <cmath>

#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kUntilField = "Until";
constexpr const char* kStepsField = "Reports left";

}  // namespace

status_t RunLeft::Archive(BMessage* into) const {
    if (const status_t status = into->AddDouble(kUntilField, until); status != B_OK) return status;
    return into->AddInt64(kStepsField, steps);
}

status_t RunLeft::Regenerate(const BMessage& archive) {
    RunLeft read;
    if (const status_t status = archive.FindDouble(kUntilField, &read.until); status != B_OK)
        return status;
    if (const status_t status = archive.FindInt64(kStepsField, &read.steps); status != B_OK)
        return status;
    if (std::isnan(read.until) || read.steps < 0) return B_BAD_DATA;
    *this = read;
    return B_OK;
}
