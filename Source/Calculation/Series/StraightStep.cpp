#include "Calculation/Series/StraightStep.h"

#include <cmath>

StraightStep::StraightStep(const BodyRows& bodies, double time, double until) {
    constexpr int32 kLeastOrder = 8;
    store_.Resize(kLeastOrder, bodies.bodies, bodies.massive);
    SplitStates states;
    states.Resize(bodies.bodies, bodies.massive);
    for (int32 i = 0; i < bodies.bodies; i++)
        for (int32 axis = 0; axis < 3; axis++) {
            const int32 slot = states.SlotOf(i);
            states.High()[SplitStates::Index(slot, axis)] = bodies.position[axis][i];
            states.High()[SplitStates::Index(slot, 3 + axis)] = bodies.velocity[axis][i];
        }
    const double length = until - time;
    const double scale = std::copysign(std::ldexp(1.0, std::ilogb(length)), length);
    store_.SetScale(scale);
    store_.Begin(states);
    step_.Set({time, 0.0}, length / scale, 1);
}
