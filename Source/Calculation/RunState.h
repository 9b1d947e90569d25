// What a run of orders 2 to 4 needs between two of its steps beside its bodies and the saved state,
// so that it goes on to the same bits. A plain value.
#pragma once

#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;

struct RunState {
    double inverseStep = 0.0;  // 1/s
    double anchor = 0.0;       // s, the time from which the steps are counted
    double elapsed = 0.0;      // s, the sum of the steps since

    [[nodiscard]] status_t Archive(BMessage* into) const;
    // B_BAD_DATA: no run can stand there. Changes nothing unless all is well.
    [[nodiscard]] status_t Regenerate(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);
};
