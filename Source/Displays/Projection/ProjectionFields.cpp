#include "Displays/Projection/ProjectionFields.h"

#include "Displays/Base/ChosenField.h"
#include "Displays/Base/VectorField.h"

namespace {

constexpr const char* kUnits = "Units";

template <BPoint ProjectionFields::*kPlace>
bool IsPlaced(const ProjectionFields& fields) {
    return (fields.*kPlace).x != kNeverPlaced.x;
}

using F = ProjectionFields;
constexpr FieldTable kFields{
    Field<&F::axisAt>{.name = "Axis at",
                      .meaning = "where the axis dialog stood",
                      .isWritten = IsPlaced<&F::axisAt>,
                      .whenMissing = "never placed"},
    Field<&F::scaleAt>{.name = "Scale at",
                       .meaning = "where the scale dialog stood",
                       .isWritten = IsPlaced<&F::scaleAt>,
                       .whenMissing = "never placed"},
    Field<&F::projection, &Projection::scale>{"Scale", "pixels per metre"},
    Field<&F::projection, &Projection::axis>{"Sup axis",
                                             "the axis looked along: 1, 2, 3 for x, y, z"},
    Field<&F::reference>{"Ref to",
                         "what the scale dialog measures: 1 and 2 screen width and height, 3 and 4 "
                         "the window's, 5 a pixel"},
    Field<&F::units>{kUnits, "length unit of the scale dialog, m"},
    ChosenField<&F::projection, &Projection::center>(
        "View center", "the place seen in the middle, m; relative to what is followed", "0, 0, 0"),
    ChosenField<&F::followed>(
        "View follows", "the body or group that is followed; -3 for the centre of mass", "none"),
    ChosenField<&F::options, &DisplayOptions::names>("View names", "names are shown"),
    ChosenField<&F::options, &DisplayOptions::scaleBar>("View scale bar", "the scale bar is shown"),
    ChosenField<&F::options, &DisplayOptions::time>("View time", "the time is shown"),
    ChosenField<&F::options, &DisplayOptions::marks>("View marks", "small bodies are marked"),
    ChosenField<&F::pair, &TurningPair::first>(
        "View turns about", "the body from which another one stays in one direction", "none"),
    ChosenField<&F::pair, &TurningPair::second>("View turns with", "that other one", "none"),
    ChosenField<&F::pair, &TurningPair::axis>("View turning axis", "about which the display turns",
                                              "0, 0, 0: taken for z"),
    ChosenField<&F::trail, &TrailLength::time>(
        "View trail time", "s, from before which no trails are shown; 0: from any time"),
    ChosenField<&F::trail, &TrailLength::turns>(
        "View trail turns", "turns of each body that trails show; 0: any number"),
    ChosenField<&F::trail, &TrailLength::isFading>("View trail fades",
                                                   "trails fade towards their older ends"),
    ChosenField<&F::projection, &Projection::plane, &ViewPlane::right>(
        "View right", "what is seen to the right, a unit vector", "by the axis"),
    ChosenField<&F::projection, &Projection::plane, &ViewPlane::up>(
        "View up", "what is seen upwards, at right angles to it", "by the axis"),
    ChosenField<&F::measured, &MeasuredPair::from>("View measures from",
                                                   "the body that a line is measured from", "none"),
    ChosenField<&F::measured, &MeasuredPair::to>("View measures to", "the one it goes to", "none"),
};

}  // namespace

status_t ProjectionFields::Write(BMessage* archive) const {
    return kFields.Write(*this, archive);
}

status_t ProjectionFields::Read(const BMessage& archive) {
    kFields.Read(archive, this);
    projection.plane.Normalize();
    double found;
    return archive.FindDouble(kUnits, &found);
}

void ProjectionFields::DescribeFields(FieldDescriptions* into) {
    kFields.Describe(into);
}
