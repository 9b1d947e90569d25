#include "Run/Sweep/SweepEvents.h"

#include "Model/Systems/Body.h"
#include "Run/CsvText.h"
#include "Simulation/Document/CollisionMerger.h"

void SweepEvents::Add(const Merger& merger) {
    Add("merger ", merger.time, merger.survivorName + " < " + merger.absorbedName);
}

void SweepEvents::BodiesAre(double /*time*/, const std::vector<Body*>& bodies, int32 /*massive*/) {
    names_.clear();
    for (const Body* const body : bodies)
        names_.push_back(body->Name());
}

void SweepEvents::Touched(double time, const BodyArrays& /*bodies*/,
                          const std::vector<CollidingPair>& pairs) {
    if (isMerging_) return;
    for (const CollidingPair& pair : pairs)
        Add("contact ", time,
            names_[static_cast<std::size_t>(pair.earlier)] + " + " +
                names_[static_cast<std::size_t>(pair.later)]);
}

void SweepEvents::Add(std::string_view what, double time, const std::string& bodies) {
    if (!text_.empty()) text_ += "; ";
    text_ += what;
    AppendCsv(&text_, time);
    text_ += ' ' + bodies;
}
