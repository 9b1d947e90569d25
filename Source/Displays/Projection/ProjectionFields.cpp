#include "Displays/Projection/ProjectionFields.h"

#include "Displays/Base/VectorField.h"

namespace {

constexpr const char* kUnits = "Units";

template <BPoint ProjectionFields::*kPlace>
bool IsPlaced(const ProjectionFields& fields) {
    return (fields.*kPlace).x != kNeverPlaced.x;
}

template <auto... kMember>
bool IsUnusual(const ProjectionFields& fields) {
    const ProjectionFields usual;
    return !(Field<kMember...>::Of(fields) == Field<kMember...>::Of(usual));
}

template <auto... kMember>
constexpr Field<kMember...> NewerField(const char* name, const char* meaning,
                                       const char* whenMissing = nullptr) {
    return {.name = name,
            .meaning = meaning,
            .isWritten = IsUnusual<kMember...>,
            .whenMissing = whenMissing};
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
    NewerField<&F::projection, &Projection::center>(
        "View center", "the place seen in the middle, m; relative to what is followed", "0, 0, 0"),
    NewerField<&F::followed>(
        "View follows", "the body or group that is followed; -3 for the centre of mass", "none"),
    NewerField<&F::options, &DisplayOptions::names>("View names", "names are shown"),
    NewerField<&F::options, &DisplayOptions::scaleBar>("View scale bar", "the scale bar is shown"),
    NewerField<&F::options, &DisplayOptions::time>("View time", "the time is shown"),
    NewerField<&F::options, &DisplayOptions::marks>("View marks", "small bodies are marked"),
    NewerField<&F::pair, &TurningPair::first>(
        "View turns about", "the body from which another one stays in one direction", "none"),
    NewerField<&F::pair, &TurningPair::second>("View turns with", "that other one", "none"),
    NewerField<&F::pair, &TurningPair::axis>("View turning axis", "about which the display turns",
                                             "0, 0, 0: taken for z"),
    NewerField<&F::trail, &TrailLength::time>(
        "View trail time", "s, from before which no trails are shown; 0: from any time"),
    NewerField<&F::trail, &TrailLength::turns>(
        "View trail turns", "turns of each body that trails show; 0: any number"),
    NewerField<&F::trail, &TrailLength::isFading>("View trail fades",
                                                  "trails fade towards their older ends"),
};

}  // namespace

status_t ProjectionFields::Write(BMessage* archive) const {
    return kFields.Write(*this, archive);
}

status_t ProjectionFields::Read(const BMessage& archive) {
    kFields.Read(archive, this);
    double found;
    return archive.FindDouble(kUnits, &found);
}

void ProjectionFields::DescribeFields(FieldDescriptions* into) {
    kFields.Describe(into);
}
