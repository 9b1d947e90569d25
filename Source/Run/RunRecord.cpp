#include "Run/RunRecord.h"

#include <charconv>
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
constexpr const char* kGoalUntil = "Goal until";
constexpr const char* kReportsSize = "Reports size";
constexpr const char* kReportsEnd = "Reports end";
constexpr const char* kReportsEvery = "Reports every";
constexpr const char* kReportsTimes = "Reports times";
constexpr const char* kReportsAreSteps = "Reports are steps";
constexpr const char* kRefused = "refused";
constexpr const char* kNoFile = "the run has no such file";

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

bool IsInterval(int64 every) {
    return every >= 1;
}

constexpr FieldTable kMarkFields{
    Field<&ReportMark::size>{
        .name = kReportsSize,
        .meaning = "if the run writes its reports to a file: bytes of that until now",
        .whenMissing = kNoFile},
    Field<&ReportMark::lastRow>{.name = kReportsEnd,
                                .meaning = "the row that those bytes end with",
                                .whenMissing = kNoFile},
    Field<&ReportMark::every>{.name = kReportsEvery,
                              .meaning = "the interval of the reports in it",
                              .accepts = IsInterval,
                              .whenMissing = kNoFile},
};

constexpr FieldTable kEventFields{
    Field<&EventMark::size>{
        .name = "Events size",
        .meaning = "if the run writes its events to a file: bytes of that until now",
        .whenMissing = kNoFile},
    Field<&EventMark::lastRow>{.name = "Events end",
                               .meaning = "the row that those bytes end with",
                               .whenMissing = kNoFile},
    Field<&EventMark::escapeDistance>{.name = "Escape distance",
                                      .meaning = "m, beyond which an unbound body has escaped",
                                      .accepts = IsFinite,
                                      .whenMissing = kNoFile},
};

status_t WriteMark(const ReportMark& mark, BMessage* run) {
    const std::vector<double>& times = mark.times;
    return FieldWriter(run, kMarkFields.Write(mark, run))
        .Then(
            [&] {
                return run->AddDoubles(kReportsTimes, times.data(),
                                       static_cast<int32>(times.size()));
            },
            !times.empty())
        .Add(kReportsAreSteps, true, mark.areSteps)
        .Status();
}

// None: without a whole mark the run has no file that could be gone on with.
std::optional<ReportMark> FindMark(const BMessage& run) {
    ReportMark mark;
    if (kMarkFields.Read(run, &mark) != B_OK) return std::nullopt;
    int32 count = 0;
    if (run.GetInfo(kReportsTimes, nullptr, &count) == B_OK) {
        mark.times.resize(static_cast<std::size_t>(count));
        if (run.FindDoubles(kReportsTimes, 0, count, mark.times.data()) != B_OK)
            return std::nullopt;
    }
    static_cast<void>(run.FindBool(kReportsAreSteps, &mark.areSteps));  // need not be there
    return mark;
}

}  // namespace

int64 ReportMark::LastReport() const {
    int64 report = 0;
    std::from_chars(lastRow.data(), lastRow.data() + lastRow.size(), report);
    return report;
}

status_t RunRecord::AddTo(BMessage* document) const {
    BMessage run(B_ARCHIVED_OBJECT);
    if (run.AddMessage(kCalculator, &calculator) != B_OK || kFields.Write(*this, &run) != B_OK ||
        (goal.steps && run.AddInt64(kGoalSteps, *goal.steps) != B_OK) ||
        (goal.time && run.AddDouble(kGoalTime, *goal.time) != B_OK) ||
        (goal.until && run.AddString(kGoalUntil, *goal.until) != B_OK) ||
        (reports != steps && run.AddInt64(kReports, reports) != B_OK) ||
        (reportFile && WriteMark(*reportFile, &run) != B_OK) ||
        (eventFile && kEventFields.Write(*eventFile, &run) != B_OK))
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
    std::string goalUntil;
    if (run.FindString(kGoalUntil, &goalUntil) == B_OK) read.goal.until = std::move(goalUntil);
    if (!read.goal.steps && !read.goal.time && !read.goal.until) return B_BAD_DATA;
    if (run.FindInt64(kReports, &read.reports) != B_OK) read.reports = read.steps;
    if (read.reports < 0) return B_BAD_DATA;
    read.reportFile = FindMark(run);
    if (EventMark mark; kEventFields.Read(run, &mark) == B_OK) read.eventFile = std::move(mark);
    *this = std::move(read);
    return B_OK;
}

void RunRecord::DescribeFields(FieldDescriptions* into) {
    DescribeField(into, kCalculator, B_MESSAGE_TYPE, "1", kRefused,
                  "the integrator's state, and the fields below it");
    kFields.Describe(into);
    DescribeField(into, kGoalSteps, B_INT64_TYPE, "0, 1", "none",
                  "what was asked for: this, one of the next two, or several of them");
    DescribeField(into, kGoalTime, B_DOUBLE_TYPE, "0, 1", "none", "s");
    DescribeField(into, kGoalUntil, B_STRING_TYPE, "0, 1", "none", "as --until has it");
    DescribeField(into, kReports, B_INT64_TYPE, "0, 1", "as many as steps", "made until now");
    kMarkFields.Describe(into, true);
    DescribeField(into, kReportsTimes, B_DOUBLE_TYPE, "0, 1, ...", "it has reports",
                  "s, rising: the file has the states at these times");
    DescribeField(into, kReportsAreSteps, B_BOOL_TYPE, "0, 1", "false",
                  "true: the file has the states where steps end");
    kEventFields.Describe(into, true);
}
