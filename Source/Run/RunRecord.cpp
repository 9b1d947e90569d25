#include "Run/RunRecord.h"

#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <utility>

#include "Platform/Application/AppDefs.h"

namespace {

constexpr const char* kRun = "Run";
constexpr const char* kCalculator = "Calculator";
constexpr const char* kSteps = "Steps";
constexpr const char* kReports = "Reports";  // unless there are as many as steps
constexpr const char* kSeconds = "Seconds";
constexpr const char* kGoalSteps = "Goal steps";
constexpr const char* kGoalTime = "Goal time";
constexpr const char* kStopsAtCollision = "Stop at collision";
constexpr const char* kStartTime = "Start time";
constexpr const char* kStart = "Conserved";
constexpr const char* kMergers = "Mergers";
constexpr const char* kMergerTotals = "Merger totals";
constexpr const char* kReportsSize = "Reports size";
constexpr const char* kReportsEnd = "Reports end";
constexpr const char* kReportsEvery = "Reports every";

using StartNumbers = std::array<double, 9>;
using MergerNumbers = std::array<double, 5>;

StartNumbers NumbersOf(const Conserved& c) {
    const ThreeVector p = c.momentum, l = c.angularMomentum;
    return {c.energy, p.x, p.y, p.z, l.x, l.y, l.z, c.momentumScale, c.angularMomentumScale};
}

Conserved ConservedFrom(const StartNumbers& n) {
    return {n[0], {n[1], n[2], n[3]}, {n[4], n[5], n[6]}, n[7], n[8]};
}

MergerNumbers NumbersOf(const MergerTotals& totals) {
    const ThreeVector spin = totals.angularMomentumChange;
    return {totals.kineticEnergyLoss, totals.energyChange, spin.x, spin.y, spin.z};
}

MergerTotals TotalsFrom(int64 count, const MergerNumbers& n) {
    return {count, n[0], n[1], {n[2], n[3], n[4]}};
}

template <std::size_t kCount>
status_t Add(BMessage* into, const char* name, const std::array<double, kCount>& numbers) {
    return into->AddDoubles(name, numbers.data(), static_cast<int32>(kCount));
}

template <std::size_t kCount>
status_t Find(const BMessage& from, const char* name, std::array<double, kCount>* numbers) {
    return from.FindDoubles(name, 0, static_cast<int32>(kCount), numbers->data());
}

status_t Add(BMessage* into, const ReportMark& mark) {
    for (const status_t status :
         {into->AddInt64(kReportsSize, mark.size), into->AddString(kReportsEnd, mark.lastRow),
          into->AddInt64(kReportsEvery, mark.every)})
        if (status != B_OK) return status;
    return B_OK;
}

// Without a whole one the run has no file that could be gone on with.
std::optional<ReportMark> FindMark(const BMessage& from) {
    ReportMark mark;
    if (from.FindInt64(kReportsSize, &mark.size) != B_OK ||
        from.FindString(kReportsEnd, &mark.lastRow) != B_OK ||
        from.FindInt64(kReportsEvery, &mark.every) != B_OK || mark.every < 1)
        return std::nullopt;
    return mark;
}

bool Succeed(std::initializer_list<status_t> statuses) {
    for (const status_t status : statuses)
        if (status != B_OK) return false;
    return true;
}

}  // namespace

int64 ReportMark::LastReport() const {
    int64 report = 0;
    std::from_chars(lastRow.data(), lastRow.data() + lastRow.size(), report);
    return report;
}

status_t RunRecord::AddTo(BMessage* document) const {
    BMessage run(B_ARCHIVED_OBJECT);
    if (!Succeed(
            {run.AddMessage(kCalculator, &calculator), run.AddInt64(kSteps, steps),
             run.AddDouble(kSeconds, seconds), run.AddBool(kStopsAtCollision, stopsAtCollision),
             run.AddDouble(kStartTime, startTime), Add(&run, kStart, NumbersOf(start)),
             run.AddInt64(kMergers, mergers.count), Add(&run, kMergerTotals, NumbersOf(mergers)),
             goal.steps ? run.AddInt64(kGoalSteps, *goal.steps) : B_OK,
             goal.time ? run.AddDouble(kGoalTime, *goal.time) : B_OK,
             reports != steps ? run.AddInt64(kReports, reports) : B_OK,
             reportFile ? Add(&run, *reportFile) : B_OK}))
        return B_NO_MEMORY;
    return document->AddMessage(kRun, &run);
}

status_t RunRecord::FindIn(const BMessage& document) {
    BMessage run;
    if (const status_t status = document.FindMessage(kRun, &run); status != B_OK) return status;
    RunRecord read;
    StartNumbers startNumbers{};
    MergerNumbers mergerNumbers{};
    int64 count = 0;
    if (!Succeed({run.FindMessage(kCalculator, &read.calculator),
                  run.FindInt64(kSteps, &read.steps), run.FindDouble(kSeconds, &read.seconds),
                  run.FindBool(kStopsAtCollision, &read.stopsAtCollision),
                  run.FindDouble(kStartTime, &read.startTime), Find(run, kStart, &startNumbers),
                  run.FindInt64(kMergers, &count), Find(run, kMergerTotals, &mergerNumbers)}))
        return B_BAD_DATA;
    int64 goalSteps = 0;
    double goalTime = 0.0;
    if (run.FindInt64(kGoalSteps, &goalSteps) == B_OK) read.goal.steps = goalSteps;
    if (run.FindDouble(kGoalTime, &goalTime) == B_OK) read.goal.time = goalTime;
    if (!read.goal.steps && !read.goal.time) return B_BAD_DATA;
    if (run.FindInt64(kReports, &read.reports) != B_OK) read.reports = read.steps;
    if (read.steps < 0 || read.reports < 0 || count < 0 || !std::isfinite(read.seconds))
        return B_BAD_DATA;
    read.reportFile = FindMark(run);
    read.start = ConservedFrom(startNumbers);
    read.mergers = TotalsFrom(count, mergerNumbers);
    *this = std::move(read);
    return B_OK;
}
