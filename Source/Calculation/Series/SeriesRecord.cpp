#include "Calculation/Series/SeriesRecord.h"

#include <algorithm>
#include <cmath>

#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kOrderField = "SeriesOrder";
constexpr const char* kStepField = "SeriesStep";
constexpr const char* kBeginField = "SeriesBegin";
constexpr const char* kPassedField = "SeriesPassed";
constexpr const char* kUncheckedField = "SeriesUnchecked";
constexpr const char* kNotUsed = "not used";

bool IsFinite(double number) {
    return std::isfinite(number);
}

bool IsUnit(double scale) {
    int exponent = 0;
    return std::frexp(std::fabs(scale), &exponent) == 0.5;
}

bool IsPlace(double theta) {
    return std::isfinite(theta) && theta >= 0.0;
}

constexpr FieldTable kFields{
    Field<&SeriesRecord::order>{.name = kOrderField,
                                .meaning = "the order that was used: 8, 12, 16, 20 or 24",
                                .whenMissing = kNotUsed},
    Field<&SeriesRecord::cutoff>{.name = "SeriesCutoff",
                                 .meaning = "the cutoff that was used, 1e-16 to 1e-6",
                                 .whenMissing = kNotUsed},
    Field<&SeriesRecord::place, &SeriesPlace::time, &SplitTime::high>{
        .name = kStepField,
        .meaning = "s: the time at which the step begins, as the sum of two numbers; the unit of "
                   "its series, a power of two, negative where time falls; the length of the step "
                   "before, 0 if there was none; and, in that unit, where in the step the epoch is",
        .accepts = IsFinite,
        .whenMissing = kNotUsed},
    Field<&SeriesRecord::place, &SeriesPlace::time, &SplitTime::low>{
        .name = kStepField, .accepts = IsFinite, .item = 1},
    Field<&SeriesRecord::place, &SeriesPlace::scale>{
        .name = kStepField, .accepts = IsUnit, .item = 2},
    Field<&SeriesRecord::place, &SeriesPlace::length>{
        .name = kStepField, .accepts = IsFinite, .item = 3},
    Field<&SeriesRecord::theta>{.name = kStepField, .accepts = IsPlace, .item = 4},
};

bool AreFinite(const std::vector<double>& numbers) {
    return std::all_of(numbers.begin(), numbers.end(),
                       [](double number) { return std::isfinite(number); });
}

status_t FindStates(const BMessage& archive, std::vector<double>* states) {
    int32 count = 0;
    if (const status_t status = archive.GetInfo(kBeginField, nullptr, &count); status != B_OK)
        return status;
    states->resize(static_cast<std::size_t>(count));
    return archive.FindDoubles(kBeginField, 0, count, states->data());
}

// Pairs of indices, the later body first, up to the first pair that is not valid.
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
    FieldWriter fields(into, kFields.Write(*this, into));
    for (const int32 body : passed)
        fields.Add(kPassedField, body);
    return fields.Add(kUncheckedField, true, isUnchecked)
        .Then([&] {
            return into->AddDoubles(kBeginField, states.data(), static_cast<int32>(states.size()));
        })
        .Status();
}

status_t SeriesRecord::Regenerate(const BMessage& archive) {
    SeriesRecord read;
    if (!archive.HasName(kOrderField)) {
        *this = read;
        return B_OK;
    }
    if (const status_t status = kFields.Read(archive, &read); status != B_OK) return status;
    if (const status_t status = FindStates(archive, &read.states); status != B_OK) return status;
    if (!AreFinite(read.states) || read.states.size() % kNumbers != 0) return B_BAD_DATA;
    read.passed = FindPassed(archive, static_cast<int32>(read.CountBodies()));
    static_cast<void>(archive.FindBool(kUncheckedField, &read.isUnchecked));  // need not be there
    *this = std::move(read);
    return B_OK;
}

void SeriesRecord::DescribeFields(FieldDescriptions* into) {
    kFields.Describe(into);
    DescribeField(into, kBeginField, B_DOUBLE_TYPE, "12 N", kNotUsed,
                  "per body: position and velocity where the step begins (x, y, z, vx, vy, vz), "
                  "then the six numbers that are to be added to these");
    DescribeField(into, kPassedField, B_INT32_TYPE, "0, 2, ...", "none",
                  "pairs of bodies that are passing through each other, whose contact has been "
                  "reported: the later and the earlier body in mass order");
    DescribeField(into, kUncheckedField, B_BOOL_TYPE, "0, 1", "false",
                  "true: whether the state counts was still to be found out");
}
