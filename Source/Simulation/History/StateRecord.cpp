#include "Simulation/History/StateRecord.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "Model/Epochs/EpochLimits.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"
#include "Simulation/Document/SystemState.h"

namespace {

constexpr const char* kTime = "Time";
constexpr const char* kIDs = "IDs";
constexpr const char* kNames = "Names";
constexpr const char* kBodies = "Bodies";
constexpr std::size_t kNumbersOfBody = 8;

int32 CountItems(const BMessage& record, const char* name, type_code type) {
    type_code found = 0;
    int32 count = 0;
    return record.GetInfo(name, &found, &count) == B_OK && found == type ? count : 0;
}

bool AreBodies(const std::vector<int64>& ids) {
    std::unordered_set<int64> known;
    return std::ranges::all_of(
        ids, [&](int64 id) { return id >= 0 && id <= kMaxSystemID && known.insert(id).second; });
}

}  // namespace

status_t ReadNumbers(const BMessage& record, const char* name, std::vector<double>* numbers) {
    const int32 count = CountItems(record, name, B_DOUBLE_TYPE);
    numbers->resize(static_cast<std::size_t>(count));
    if (count == 0) return B_OK;
    const status_t status = record.FindDoubles(name, 0, count, numbers->data());
    if (status != B_OK) return status;
    const auto isFinite = [](double number) { return std::isfinite(number); };
    return std::ranges::all_of(*numbers, isFinite) ? B_OK : B_BAD_DATA;
}

status_t ReadNumbers(const BMessage& record, const char* name, std::vector<int64>* numbers) {
    const int32 count = CountItems(record, name, B_INT64_TYPE);
    numbers->resize(static_cast<std::size_t>(count));
    return count == 0 ? B_OK : record.FindInt64s(name, 0, count, numbers->data());
}

status_t StateRecord::Write(const SystemState& state, const std::vector<double>& radii,
                            BMessage* into) {
    std::vector<double> numbers;
    numbers.reserve(kNumbersOfBody * state.CountBodies());
    for (std::size_t i = 0; i < state.CountBodies(); i++) {
        const double* const r = &state.positions[3 * i];
        const double* const v = &state.velocities[3 * i];
        numbers.insert(numbers.end(), {state.gm[i], radii[i], r[0], r[1], r[2], v[0], v[1], v[2]});
    }
    status_t status = into->AddDouble(kTime, state.time);
    const auto count = static_cast<int32>(state.CountBodies());
    if (status == B_OK && count > 0) status = into->AddInt64s(kIDs, state.ids.data(), count);
    for (std::size_t i = 0; i < state.CountBodies() && status == B_OK; i++)
        status = into->AddString(kNames, state.names[i]);
    if (status == B_OK && count > 0)
        status = into->AddDoubles(kBodies, numbers.data(), static_cast<int32>(numbers.size()));
    return status;
}

status_t StateRecord::Read(const BMessage& record, SystemState* state, std::vector<double>* radii) {
    status_t status = record.FindDouble(kTime, &state->time);
    if (status == B_OK) status = ReadNumbers(record, kIDs, &state->ids);
    std::vector<double> numbers;
    if (status == B_OK) status = ReadNumbers(record, kBodies, &numbers);
    if (status != B_OK) return status;
    if (!std::isfinite(state->time) || state->ids.empty() || !AreBodies(state->ids) ||
        numbers.size() != kNumbersOfBody * state->ids.size())
        return B_BAD_DATA;
    for (std::size_t i = 0; i < state->ids.size(); i++) {
        const double* const body = &numbers[kNumbersOfBody * i];
        std::string name;
        status = record.FindString(kNames, static_cast<int32>(i), &name);
        if (status != B_OK) return status;
        state->names.push_back(std::move(name));
        state->gm.push_back(body[0]);
        radii->push_back(body[1]);
        state->positions.insert(state->positions.end(), body + 2, body + 5);
        state->velocities.insert(state->velocities.end(), body + 5, body + 8);
    }
    return B_OK;
}

void StateRecord::DescribeFields(FieldDescriptions* into) {
    constexpr const char* kDamaged = "damaged";
    DescribeField(into, kTime, B_DOUBLE_TYPE, "1", kDamaged, "s");
    DescribeField(into, kIDs, B_INT64_TYPE, "per body", kDamaged, "identifiers, in mass order");
    DescribeField(into, kNames, B_STRING_TYPE, "per body", kDamaged, "");
    DescribeField(into, kBodies, B_DOUBLE_TYPE, "8 per body", kDamaged,
                  "GM (m3/s2), radius (m), place (m) and velocity (m/s)");
}
