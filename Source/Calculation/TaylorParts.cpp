#include "Calculation/TaylorParts.h"

#include <algorithm>
#include <unordered_map>

#include "Calculation/ForceEvaluator.h"
#include "Calculation/StepControl.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kIDsField = "IDs";
constexpr const char* kPositionPartsField = "DelR";
constexpr const char* kVelocityPartsField = "DelV";

status_t AddNumbers(BMessage* into, const char* name, const std::vector<double>& numbers) {
    if (numbers.empty()) return B_OK;
    return into->AddDoubles(name, numbers.data(), static_cast<int32>(numbers.size()));
}

// The first `count` numbers of a field. Nothing is allocated for more than the record holds.
status_t FindNumbers(const BMessage& archive, const char* name, int64 count,
                     std::vector<double>* numbers) {
    int32 available = 0;
    if (const status_t status = archive.GetInfo(name, nullptr, &available); status != B_OK)
        return status;
    if (available < count) return B_BAD_INDEX;
    numbers->resize(static_cast<std::size_t>(count));
    return archive.FindDoubles(name, 0, static_cast<int32>(count), numbers->data());
}

}  // namespace

void TaylorParts::ResortDels(const std::vector<Body*>& bodies) {
    std::unordered_map<int64, int32> formerPlaces;
    for (std::size_t i = 0; i < ids_.size(); i++)
        formerPlaces.emplace(ids_[i], static_cast<int32>(i));

    const auto count = static_cast<int32>(bodies.size());
    std::vector<int64> ids;
    Positions r(count);
    Velocities v(count);
    for (int32 i = 0; i < count; i++) {
        const Body& body = *bodies[static_cast<std::size_t>(i)];
        ids.push_back(body.ID());
        const auto former = formerPlaces.find(body.ID());
        const bool known = former != formerPlaces.end();
        if (known && r_.Sum(former->second) == body.Position())
            r.Copy(i, r_, former->second);
        else
            r.Start(i, body.Position());
        if (known && v_.Sum(former->second) == body.Velocity())
            v.Copy(i, v_, former->second);
        else
            v.Start(i, body.Velocity());
    }
    ids_ = std::move(ids);
    r_ = std::move(r);
    v_ = std::move(v);
}

bool TaylorParts::AreOf(const std::vector<Body*>& bodies) const {
    return std::equal(ids_.begin(), ids_.end(), bodies.begin(), bodies.end(),
                      [](int64 id, const Body* body) { return id == body->ID(); });
}

void TaylorParts::Advance(int32 order, const StepPowers& powers, ForceEvaluator* bodies) {
    if (order >= 4)
        AdvanceOrder4(powers, bodies);
    else
        AdvanceCarrying(order, powers, bodies);
}

void TaylorParts::AdvanceOrder4(const StepPowers& powers, ForceEvaluator* bodies) {
    const StepPowers h = powers;
    const std::ptrdiff_t count = bodies->CountBodies();
    const std::ptrdiff_t rStride = r_.RowStride();
    const std::ptrdiff_t vStride = v_.RowStride();
    for (int32 axis = 0; axis < 3; axis++) {
        const double* const acceleration = bodies->Acceleration(axis);
        const double* const jerk = bodies->Jerk(axis);
        const double* const snap = bodies->Snap(axis);
        double* const position = bodies->Position(axis);
        double* const velocity = bodies->Velocity(axis);
        double* const r = r_.Row(axis, 0);
        double* const v = v_.Row(axis, 0);
        // None of these arrays overlap.
#pragma GCC ivdep
        for (std::ptrdiff_t i = 0; i < count; i++) {
            const double r4 = r[4 * rStride + i] += snap[i] * h.h4;
            const double v3 = v[3 * vStride + i] += snap[i] * h.h3;
            const double r3 = r[3 * rStride + i] += jerk[i] * h.h3;
            const double v2 = v[2 * vStride + i] += jerk[i] * h.h2;
            const double r2 = r[2 * rStride + i] += acceleration[i] * h.h2;
            const double v1 = v[vStride + i] += acceleration[i] * h.h;
            const double r1 = r[rStride + i] += velocity[i] * h.h;
            velocity[i] = v3 + v2 + v1 + v[i];
            position[i] = r4 + r3 + r2 + r1 + r[i];
        }
    }
}

// At the lower orders the two sums run on from coordinate to coordinate and from body to body (z to
// x, bodies in order), so that each includes the totals before it. This is deliberate: documents of
// order 2 or 3 move in just this way and must go on doing so. Only at order 4 does a new sum begin
// with every coordinate.
void TaylorParts::AdvanceCarrying(int32 order, const StepPowers& powers, ForceEvaluator* bodies) {
    if (order >= 3)
        AdvanceCarrying<true>(powers, bodies);
    else
        AdvanceCarrying<false>(powers, bodies);
}

template <bool kHasJerk>
void TaylorParts::AdvanceCarrying(const StepPowers& powers, ForceEvaluator* bodies) {
    const StepPowers h = powers;
    const std::ptrdiff_t rStride = r_.RowStride();
    const std::ptrdiff_t vStride = v_.RowStride();
    double positionSum = 0.0;
    double velocitySum = 0.0;
    for (int32 i = 0; i < bodies->CountBodies(); i++) {
        for (int32 axis = 2; axis >= 0; axis--) {
            double& position = bodies->Position(axis)[i];
            double& velocity = bodies->Velocity(axis)[i];
            const double acceleration = bodies->Acceleration(axis)[i];
            double* const r = r_.Row(axis, 0) + i;
            double* const v = v_.Row(axis, 0) + i;
            if constexpr (kHasJerk) {
                const double jerk = bodies->Jerk(axis)[i];
                positionSum += r[3 * rStride] += jerk * h.h3;
                velocitySum += v[2 * vStride] += jerk * h.h2;
            }
            const double r2 = r[2 * rStride] += acceleration * h.h2;
            const double v1 = v[vStride] += acceleration * h.h;
            const double r1 = r[rStride] += velocity * h.h;
            velocitySum = velocitySum + v1 + v[0];
            positionSum = positionSum + r2 + r1 + r[0];
            velocity = velocitySum;
            position = positionSum;
        }
    }
}

void TaylorParts::MoveStraight(double seconds, ForceEvaluator* bodies) {
    for (int32 i = 0; i < bodies->CountBodies(); i++) {
        for (int32 axis = 0; axis < 3; axis++)
            r_.Row(axis, 1)[i] += bodies->Velocity(axis)[i] * seconds;
        const ThreeVector position = r_.Sum(i);
        bodies->Position(0)[i] = position.x;
        bodies->Position(1)[i] = position.y;
        bodies->Position(2)[i] = position.z;
    }
}

void TaylorParts::Promote(int32 order) {
    r_.Promote(order);
    v_.Promote(order);
}

status_t TaylorParts::Archive(BMessage* into) const {
    if (!ids_.empty()) {
        const auto count = static_cast<int32>(ids_.size());
        if (const status_t status = into->AddInt64s(kIDsField, ids_.data(), count); status != B_OK)
            return status;
    }
    if (const status_t status = AddNumbers(into, kPositionPartsField, r_.ToArchive());
        status != B_OK)
        return status;
    return AddNumbers(into, kVelocityPartsField, v_.ToArchive());
}

status_t TaylorParts::Regenerate(const BMessage& archive) {
    int32 count = 0;
    if (const status_t status = archive.GetInfo(kIDsField, nullptr, &count); status != B_OK)
        return status;
    std::vector<int64> ids(static_cast<std::size_t>(count));
    if (const status_t status = archive.FindInt64s(kIDsField, 0, count, ids.data()); status != B_OK)
        return status;
    std::vector<double> positions;
    std::vector<double> velocities;
    const int64 bodies = count;
    if (const status_t status = FindNumbers(archive, kPositionPartsField,
                                            bodies * Positions::kNumbersPerBody, &positions);
        status != B_OK)
        return status;
    if (const status_t status = FindNumbers(archive, kVelocityPartsField,
                                            bodies * Velocities::kNumbersPerBody, &velocities);
        status != B_OK)
        return status;
    ids_ = std::move(ids);
    r_ = Positions(count);
    r_.FromArchive(positions);
    v_ = Velocities(count);
    v_.FromArchive(velocities);
    return B_OK;
}

void TaylorParts::DescribeFields(FieldDescriptions* into) {
    const auto perBody = [](int32 numbers) { return std::to_string(numbers) + " N"; };
    DescribeField(into, kIDsField, B_INT64_TYPE, "N", "not used", "the bodies");
    DescribeField(into, kPositionPartsField, B_DOUBLE_TYPE, perBody(Positions::kNumbersPerBody),
                  "not used", "per body, per x, y, z: parts 0 to 4 of the position");
    DescribeField(into, kVelocityPartsField, B_DOUBLE_TYPE, perBody(Velocities::kNumbersPerBody),
                  "not used", "per body, per x, y, z: parts 0 to 3 of the velocity");
}
