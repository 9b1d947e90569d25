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
    const int32 count = bodies->CountBodies();
    for (int32 axis = 0; axis < 3; axis++) {
        const double* const acceleration = bodies->Acceleration(axis);
        const double* const jerk = bodies->Jerk(axis);
        const double* const snap = bodies->Snap(axis);
        double* const position = bodies->Position(axis);
        double* const velocity = bodies->Velocity(axis);
        const double* const r0 = r_.Row(axis, 0);
        double* const r1 = r_.Row(axis, 1);
        double* const r2 = r_.Row(axis, 2);
        double* const r3 = r_.Row(axis, 3);
        double* const r4 = r_.Row(axis, 4);
        const double* const v0 = v_.Row(axis, 0);
        double* const v1 = v_.Row(axis, 1);
        double* const v2 = v_.Row(axis, 2);
        double* const v3 = v_.Row(axis, 3);
        // None of these arrays overlap.
#pragma GCC ivdep
        for (int32 i = 0; i < count; i++) {
            r4[i] += snap[i] * h.h4;
            v3[i] += snap[i] * h.h3;
            r3[i] += jerk[i] * h.h3;
            v2[i] += jerk[i] * h.h2;
            r2[i] += acceleration[i] * h.h2;
            v1[i] += acceleration[i] * h.h;
            r1[i] += velocity[i] * h.h;
            velocity[i] = v3[i] + v2[i] + v1[i] + v0[i];
            position[i] = r4[i] + r3[i] + r2[i] + r1[i] + r0[i];
        }
    }
}

// At the lower orders the two sums run on from coordinate to coordinate and from body to body (z to
// x, bodies in order), so that each includes the totals before it. This is deliberate: documents of
// order 2 or 3 move in just this way and must go on doing so. Only at order 4 does a new sum begin
// with every coordinate.
void TaylorParts::AdvanceCarrying(int32 order, const StepPowers& powers, ForceEvaluator* bodies) {
    double positionSum = 0.0;
    double velocitySum = 0.0;
    for (int32 i = 0; i < bodies->CountBodies(); i++) {
        for (int32 axis = 2; axis >= 0; axis--) {
            double& position = bodies->Position(axis)[i];
            double& velocity = bodies->Velocity(axis)[i];
            const double acceleration = bodies->Acceleration(axis)[i];
            if (order >= 3) {
                const double jerk = bodies->Jerk(axis)[i];
                r_.Row(axis, 3)[i] += jerk * powers.h3;
                v_.Row(axis, 2)[i] += jerk * powers.h2;
                positionSum += r_.Row(axis, 3)[i];
                velocitySum += v_.Row(axis, 2)[i];
            }
            r_.Row(axis, 2)[i] += acceleration * powers.h2;
            v_.Row(axis, 1)[i] += acceleration * powers.h;
            r_.Row(axis, 1)[i] += velocity * powers.h;
            velocitySum = velocitySum + v_.Row(axis, 1)[i] + v_.Row(axis, 0)[i];
            positionSum =
                positionSum + r_.Row(axis, 2)[i] + r_.Row(axis, 1)[i] + r_.Row(axis, 0)[i];
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
