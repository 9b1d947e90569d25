// What a display is to show where all of the orbits are to be seen. No state.
#pragma once

#include <vector>

#include "Displays/Projection/BodyLabels.h"
#include "Displays/Projection/OrbitForecast.h"
#include "Displays/Trajectories/KeptTrails.h"

// Places in the display's frame: those of the bodies, of the trails, and, of bodies whose trail
// does not cover a revolution, where they will be during one.
[[nodiscard]] std::vector<ThreeVector> OrbitPlaces(const TrajectoryCache& cache,
                                                   const BodyLabels& labels,
                                                   const OrbitForecast& forecast,
                                                   const std::vector<KeptTrails::Trail>& trails);
