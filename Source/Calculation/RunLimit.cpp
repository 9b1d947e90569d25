#include "Calculation/RunLimit.h"

#include <cmath>

#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kRefused = "refused";

bool IsTimeLimit(double time) {
    return !std::isnan(time);
}

bool IsCount(int64 count) {
    return count >= 0;
}

constexpr FieldTable kFields{
    Field<&RunLeft::until>{.name = "Until",
                           .meaning = "the time at which the run is to stop, s, or infinity",
                           .accepts = IsTimeLimit,
                           .whenMissing = kRefused},
    Field<&RunLeft::steps>{.name = "Reports left",
                           .meaning = "steps until it stops",
                           .accepts = IsCount,
                           .whenMissing = kRefused},
};

constexpr FieldTable kDirection{
    Field<&RunLeft::isBackwards>{.name = "Backwards",
                                 .meaning = "time falls",
                                 .missing = false,
                                 .isWritten = [](const RunLeft& left) { return left.isBackwards; }},
};

}  // namespace

status_t RunLeft::Archive(BMessage* into) const {
    const status_t status = kFields.Write(*this, into);
    return status == B_OK ? kDirection.Write(*this, into) : status;
}

status_t RunLeft::Regenerate(const BMessage& archive) {
    RunLeft read;
    const status_t status = kFields.Read(archive, &read);
    static_cast<void>(kDirection.Read(archive, &read));  // need not be there
    if (status == B_OK) *this = read;
    return status;
}

void RunLeft::DescribeFields(FieldDescriptions* into) {
    kFields.Describe(into);
    kDirection.Describe(into);
}
