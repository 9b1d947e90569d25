// The osculating orbits of the systems in the epoch in focus, as text or as JSON. No state; takes
// the portal's lock.
#pragma once

#include <string>

class ProgramResources;
class SimulationDocument;

// One line a system, below one that names the columns: sizes in the unit of the system's position,
// angles in degrees, times in that of the epoch.
[[nodiscard]] std::string ListOrbits(SimulationDocument* document,
                                     const ProgramResources& resources);
// One array on one line: metres, radians, seconds and m3/s2, to the last bit.
[[nodiscard]] std::string OrbitsAsJson(SimulationDocument* document);
