#include "Displays/Space/SpaceFields.h"

#include "Displays/Base/ChosenField.h"
#include "Displays/Base/VectorField.h"

namespace {

constexpr const char* kDistance = "Space distance";

using F = SpaceFields;
constexpr FieldTable kFields{
    Field<&F::camera, &Camera::target>{.name = "Space target",
                                       .meaning = "the place seen in the middle, m; relative to "
                                                  "what is followed",
                                       .whenMissing = "0, 0, 0"},
    Field<&F::camera, &Camera::right>{.name = "Space right",
                                      .meaning = "what is seen to the right, a unit vector",
                                      .whenMissing = "x"},
    Field<&F::camera, &Camera::up>{.name = "Space up",
                                   .meaning = "what is seen upwards, at right angles to it",
                                   .whenMissing = "y"},
    Field<&F::camera, &Camera::distance>{.name = kDistance,
                                         .meaning = "from the eye to that place, 1 to 10^30 m",
                                         .whenMissing = "all bodies are seen"},
    ChosenField<&F::camera, &Camera::isParallel>("Space parallel",
                                                 "what is far away looks no smaller"),
    ChosenField<&F::followed>(
        "View follows", "the body or group that is followed; -3 for the centre of mass", "none"),
    ChosenField<&F::options, &SpaceOptions::names>("View names", "names are shown"),
    ChosenField<&F::options, &SpaceOptions::scaleBar>("View scale bar", "the scale bar is shown"),
    ChosenField<&F::options, &SpaceOptions::time>("View time", "the time is shown"),
    ChosenField<&F::options, &SpaceOptions::ecliptic>("Space ecliptic",
                                                      "the x-y plane is shown as a ruled disc"),
    ChosenField<&F::options, &SpaceOptions::axes>("Space axes", "the axes' directions are shown"),
    ChosenField<&F::options, &SpaceOptions::orbits>("Space orbits", "osculating orbits are shown"),
    ChosenField<&F::options, &SpaceOptions::velocities>("Space velocities",
                                                        "arrows show velocities"),
    ChosenField<&F::options, &SpaceOptions::accelerations>("Space accelerations",
                                                           "arrows show accelerations"),
    ChosenField<&F::options, &SpaceOptions::isLight>("Space light sky", "the sky is light"),
    ChosenField<&F::measured, &MeasuredPair::from>("View measures from",
                                                   "the body that a line is measured from", "none"),
    ChosenField<&F::measured, &MeasuredPair::to>("View measures to", "the one it goes to", "none"),
};

}  // namespace

status_t SpaceFields::Write(BMessage* archive) const {
    return kFields.Write(*this, archive);
}

bool SpaceFields::Read(const BMessage& archive) {
    kFields.Read(archive, this);
    camera.Normalize();
    return archive.HasName(kDistance);
}

void SpaceFields::DescribeFields(FieldDescriptions* into) {
    kFields.Describe(into);
}
