// How long the quickest revolution among some bodies takes, as if each pair were alone; a body that
// falls from rest counts as one on a narrow ellipse. No state.
#pragma once

#include <vector>

class Body;

// In seconds; infinity where nobody is bound to anybody. The bodies' model lock is held. Of very
// many bodies only the heaviest are looked at as what others revolve around.
[[nodiscard]] double ShortestOrbit(const std::vector<Body*>& bodies);

// Seconds of the simulation per second, rounded, at which that takes about four seconds; infinity,
// which is as fast as possible, where there is no orbit.
[[nodiscard]] double AutoPace(const std::vector<Body*>& bodies);
