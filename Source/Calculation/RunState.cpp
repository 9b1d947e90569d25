#include "Calculation/RunState.h"

#include <cmath>

#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kRefused = "refused";

bool IsFinite(double number) {
    return std::isfinite(number);
}

bool IsPositive(double number) {
    return number > 0.0 && std::isfinite(number);
}

constexpr FieldTable kFields{
    Field<&RunState::inverseStep>{.name = "Inverse step",
                                  .meaning = "1 over the length of the step, 1/s",
                                  .accepts = IsPositive,
                                  .whenMissing = kRefused},
    Field<&RunState::anchor>{.name = "Anchor",
                             .meaning = "the time from which steps are counted, s",
                             .accepts = IsFinite,
                             .whenMissing = kRefused},
    Field<&RunState::elapsed>{
        .name = "Elapsed",
        .meaning = "the sum of the steps since, s; with the anchor the epoch's time",
        .accepts = IsFinite,
        .whenMissing = kRefused},
};

}  // namespace

status_t RunState::Archive(BMessage* into) const {
    return kFields.Write(*this, into);
}

status_t RunState::Regenerate(const BMessage& archive) {
    RunState read;
    const status_t status = kFields.Read(archive, &read);
    if (status == B_OK) *this = read;
    return status;
}

void RunState::DescribeFields(FieldDescriptions* into) {
    kFields.Describe(into);
}
