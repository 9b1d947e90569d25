// Where a run of high order stands: the step that it is in, and the place in it. With these it goes
// on to the same bits. A plain value.
#pragma once

#include <vector>

#include "Calculation/Series/SeriesStepper.h"
#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;

struct SeriesRecord {
    // Of a body where the step begins, m and m/s: place and velocity, then what they lack.
    static constexpr int32 kNumbers = 12;

    int32 order = 0;
    double cutoff = 0.0;
    SeriesPlace place;
    double theta = 0.0;  // the last report's place in the step, in scales
    std::vector<double> states;
    // Pairs that overlap and go on through each other: the later and the earlier body of each, in
    // mass order.
    std::vector<int32> passed;
    // The run was stopped before it could be told whether it stands there at all.
    bool isUnchecked = false;

    [[nodiscard]] bool IsEmpty() const { return states.empty(); }
    [[nodiscard]] std::size_t CountBodies() const { return states.size() / kNumbers; }

    // The fields "SeriesOrder", "SeriesCutoff", "SeriesStep" and "SeriesBegin", where there are
    // such pairs "SeriesPassed", and "SeriesUnchecked" where that is so; none when it is empty.
    [[nodiscard]] status_t Archive(BMessage* into) const;
    // Empty if there are none. B_BAD_DATA: no run can stand there. Changes nothing unless all is
    // well.
    [[nodiscard]] status_t Regenerate(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);
};
