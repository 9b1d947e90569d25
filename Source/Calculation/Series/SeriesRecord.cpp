#include "Calculation/Series/SeriesRecord.h"

#include <algorithm>
#include <cmath>

#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kOrderField = "SeriesOrder";
constexpr const char* kCutoffField = "SeriesCutoff";
// Time as a sum of two numbers, scale, length of the step before, place in this step.
constexpr const char* kStepField = "SeriesStep";
constexpr const char* kBeginField = "SeriesBegin";
constexpr const char* kPassedField = "SeriesPassed";
constexpr const char* kUncheckedField = "SeriesUnchecked";
constexpr int32 kStepNumbers = 5;

bool AreFinite(const std::vector<double>& numbers) {
    return std::all_of(numbers.begin(), numbers.end(),
                       [](double number) { return std::isfinite(number); });
}

bool IsPowerOfTwo(double number) {
    int exponent = 0;
    return std::frexp(number, &exponent) == 0.5;
}

status_t FindNumbers(const BMessage& archive, const char* field, std::vector<double>* numbers) {
    int32 count = 0;
    if (const status_t status = archive.GetInfo(field, nullptr, &count); status != B_OK)
        return status;
    numbers->resize(static_cast<std::size_t>(count));
    return archive.FindDoubles(field, 0, count, numbers->data());
}

// Whole pairs of such bodies, up to the first that is none.
std::vector<int32> FindPassed(const BMessage& archive, int32 bodies) {
    std::vector<int32> passed;
    int32 later = 0;
    int32 earlier = 0;
    for (int32 at = 0; archive.FindInt32(kPassedField, at, &later) == B_OK &&
                       archive.FindInt32(kPassedField, at + 1, &earlier) == B_OK;
         at += 2) {
        if (earlier < 0 || later <= earlier || later >= bodies) break;
        passed.push_back(later);
        passed.push_back(earlier);
    }
    return passed;
}

}  // namespace

status_t SeriesRecord::Archive(BMessage* into) const {
    if (IsEmpty()) return B_OK;
    if (const status_t status = into->AddInt32(kOrderField, order); status != B_OK) return status;
    if (const status_t status = into->AddDouble(kCutoffField, cutoff); status != B_OK)
        return status;
    const double step[kStepNumbers] = {place.time.high, place.time.low, place.scale, place.length,
                                       theta};
    if (const status_t status = into->AddDoubles(kStepField, step, kStepNumbers); status != B_OK)
        return status;
    for (const int32 body : passed)
        if (const status_t status = into->AddInt32(kPassedField, body); status != B_OK)
            return status;
    if (isUnchecked)
        if (const status_t status = into->AddBool(kUncheckedField, true); status != B_OK)
            return status;
    return into->AddDoubles(kBeginField, states.data(), static_cast<int32>(states.size()));
}

status_t SeriesRecord::Regenerate(const BMessage& archive) {
    SeriesRecord read;
    std::vector<double> step;
    if (!archive.HasName(kOrderField)) {
        *this = read;
        return B_OK;
    }
    if (const status_t status = archive.FindInt32(kOrderField, &read.order); status != B_OK)
        return status;
    if (const status_t status = archive.FindDouble(kCutoffField, &read.cutoff); status != B_OK)
        return status;
    if (const status_t status = FindNumbers(archive, kStepField, &step); status != B_OK)
        return status;
    if (const status_t status = FindNumbers(archive, kBeginField, &read.states); status != B_OK)
        return status;
    if (step.size() != kStepNumbers || !AreFinite(step) || !AreFinite(read.states) ||
        read.states.size() % kNumbers != 0)
        return B_BAD_DATA;
    read.place = {{step[0], step[1]}, step[2], step[3]};
    read.theta = step[4];
    read.passed = FindPassed(archive, static_cast<int32>(read.CountBodies()));
    static_cast<void>(archive.FindBool(kUncheckedField, &read.isUnchecked));  // need not be there
    if (!IsPowerOfTwo(std::fabs(read.place.scale)) || read.theta < 0.0) return B_BAD_DATA;
    *this = std::move(read);
    return B_OK;
}
