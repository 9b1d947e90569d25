#include "Run/RunRecord.h"

#include <cmath>
#include <utility>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kRun = "Run";
constexpr const char* kCalculator = "Calculator";
constexpr const char* kConserved = "Conserved";
constexpr const char* kMergerTotals = "Merger totals";
constexpr const char* kReports = "Reports";
constexpr const char* kGoalSteps = "Goal steps";
constexpr const char* kGoalTime = "Goal time";
constexpr const char* kRefused = "refused";

bool IsFinite(double number) {
    return std::isfinite(number);
}

bool IsCount(int64 count) {
    return count >= 0;
}

constexpr FieldTable kFields{
    Field<&RunRecord::steps>{.name = "Steps",
                             .meaning = "steps taken until now",
                             .accepts = IsCount,
                             .whenMissing = kRefused},
    Field<&RunRecord::seconds>{.name = "Seconds",
                               .meaning = "of real time that they took",
                               .accepts = IsFinite,
                               .whenMissing = kRefused},
    Field<&RunRecord::stopsAtCollision>{.name = "Stop at collision",
                                        .meaning = "bodies that touch end the run",
                                        .whenMissing = kRefused},
    Field<&RunRecord::startTime>{.name = "Start time", .meaning = "s", .whenMissing = kRefused},
    Field<&RunRecord::start, &Conserved::energy>{
        .name = kConserved,
        .meaning = "at the start: energy, momentum, angular momentum (x, y, z each), and the sums "
                   "of the magnitudes of the last two",
        .whenMissing = kRefused},
    Field<&RunRecord::start, &Conserved::momentum, &ThreeVector::x>{.name = kConserved, .item = 1},
    Field<&RunRecord::start, &Conserved::momentum, &ThreeVector::y>{.name = kConserved, .item = 2},
    Field<&RunRecord::start, &Conserved::momentum, &ThreeVector::z>{.name = kConserved, .item = 3},
    Field<&RunRecord::start, &Conserved::angularMomentum, &ThreeVector::x>{.name = kConserved,
                                                                           .item = 4},
    Field<&RunRecord::start, &Conserved::angularMomentum, &ThreeVector::y>{.name = kConserved,
                                                                           .item = 5},
    Field<&RunRecord::start, &Conserved::angularMomentum, &ThreeVector::z>{.name = kConserved,
                                                                           .item = 6},
    Field<&RunRecord::start, &Conserved::momentumScale>{.name = kConserved, .item = 7},
    Field<&RunRecord::start, &Conserved::angularMomentumScale>{.name = kConserved, .item = 8},
    Field<&RunRecord::mergers, &MergerTotals::count>{
        .name = "Mergers", .meaning = "until now", .accepts = IsCount, .whenMissing = kRefused},
    Field<&RunRecord::mergers, &MergerTotals::kineticEnergyLoss>{
        .name = kMergerTotals,
        .meaning = "kinetic energy lost, change of energy, change of angular momentum (x, y, z)",
        .whenMissing = kRefused},
    Field<&RunRecord::mergers, &MergerTotals::energyChange>{.name = kMergerTotals, .item = 1},
    Field<&RunRecord::mergers, &MergerTotals::angularMomentumChange, &ThreeVector::x>{
        .name = kMergerTotals, .item = 2},
    Field<&RunRecord::mergers, &MergerTotals::angularMomentumChange, &ThreeVector::y>{
        .name = kMergerTotals, .item = 3},
    Field<&RunRecord::mergers, &MergerTotals::angularMomentumChange, &ThreeVector::z>{
        .name = kMergerTotals, .item = 4},
};

}  // namespace

status_t RunRecord::AddTo(BMessage* document) const {
    BMessage run(B_ARCHIVED_OBJECT);
    if (run.AddMessage(kCalculator, &calculator) != B_OK || kFields.Write(*this, &run) != B_OK ||
        (goal.steps && run.AddInt64(kGoalSteps, *goal.steps) != B_OK) ||
        (goal.time && run.AddDouble(kGoalTime, *goal.time) != B_OK) ||
        (reports != steps && run.AddInt64(kReports, reports) != B_OK))
        return B_NO_MEMORY;
    return document->AddMessage(kRun, &run);
}

status_t RunRecord::FindIn(const BMessage& document) {
    BMessage run;
    if (const status_t status = document.FindMessage(kRun, &run); status != B_OK) return status;
    RunRecord read;
    if (run.FindMessage(kCalculator, &read.calculator) != B_OK || kFields.Read(run, &read) != B_OK)
        return B_BAD_DATA;
    int64 goalSteps = 0;
    double goalTime = 0.0;
    if (run.FindInt64(kGoalSteps, &goalSteps) == B_OK) read.goal.steps = goalSteps;
    if (run.FindDouble(kGoalTime, &goalTime) == B_OK) read.goal.time = goalTime;
    if (!read.goal.steps && !read.goal.time) return B_BAD_DATA;
    if (run.FindInt64(kReports, &read.reports) != B_OK) read.reports = read.steps;
    if (read.reports < 0) return B_BAD_DATA;
    *this = std::move(read);
    return B_OK;
}

void RunRecord::DescribeFields(FieldDescriptions* into) {
    DescribeField(into, kCalculator, B_MESSAGE_TYPE, "1", kRefused,
                  "the integrator's state, and the fields below it");
    kFields.Describe(into);
    DescribeField(into, kGoalSteps, B_INT64_TYPE, "0, 1", "none",
                  "what was asked for: this, the next or both");
    DescribeField(into, kGoalTime, B_DOUBLE_TYPE, "0, 1", "none", "s");
    DescribeField(into, kReports, B_INT64_TYPE, "0, 1", "as many as steps", "made until now");
}
