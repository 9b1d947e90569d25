#include "Displays/Projection/ProjectionFields.h"

#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kAxisAt = "Axis at";
constexpr const char* kScaleAt = "Scale at";
constexpr const char* kScale = "Scale";
constexpr const char* kAxis = "Sup axis";
constexpr const char* kReference = "Ref to";
constexpr const char* kUnits = "Units";

// Of newer readers. The centre is three doubles.
constexpr const char* kCenter = "View center";
constexpr const char* kFollows = "View follows";
constexpr const char* kShowNames = "View names";
constexpr const char* kShowScaleBar = "View scale bar";
constexpr const char* kShowTime = "View time";
constexpr int32 kCoordinates = 3;

// The find operations overwrite their result on failure.
template <typename Value>
status_t Take(const BMessage& archive, status_t (BMessage::*find)(const char*, Value*) const,
              const char* name, Value* value) {
    Value found{};
    const status_t status = (archive.*find)(name, &found);
    if (status == B_OK) *value = found;
    return status;
}

}  // namespace

status_t ProjectionFields::Write(BMessage* archive) const {
    status_t status = B_OK;
    if (axisAt.x != kNeverPlaced.x) status = archive->AddPoint(kAxisAt, axisAt);
    if (status == B_OK && scaleAt.x != kNeverPlaced.x)
        status = archive->AddPoint(kScaleAt, scaleAt);
    if (status == B_OK) status = archive->AddDouble(kScale, projection.scale);
    if (status == B_OK) status = archive->AddInt32(kAxis, projection.axis);
    if (status == B_OK) status = archive->AddInt32(kReference, reference);
    if (status == B_OK) status = archive->AddDouble(kUnits, units);

    const ThreeVector& center = projection.center;
    const double place[kCoordinates] = {center.x, center.y, center.z};
    const DisplayOptions usual;
    if (status == B_OK && !(center == ThreeVector{}))
        status = archive->AddDoubles(kCenter, place, kCoordinates);
    if (status == B_OK && followed != kNoSystemID) status = archive->AddInt64(kFollows, followed);
    if (status == B_OK && options.names != usual.names)
        status = archive->AddBool(kShowNames, options.names);
    if (status == B_OK && options.scaleBar != usual.scaleBar)
        status = archive->AddBool(kShowScaleBar, options.scaleBar);
    if (status == B_OK && options.time != usual.time)
        status = archive->AddBool(kShowTime, options.time);
    return status;
}

status_t ProjectionFields::Read(const BMessage& archive) {
    Take(archive, &BMessage::FindPoint, kAxisAt, &axisAt);
    Take(archive, &BMessage::FindPoint, kScaleAt, &scaleAt);
    Take(archive, &BMessage::FindDouble, kScale, &projection.scale);
    Take(archive, &BMessage::FindInt32, kAxis, &projection.axis);
    Take(archive, &BMessage::FindInt32, kReference, &reference);
    const status_t status = Take(archive, &BMessage::FindDouble, kUnits, &units);

    double place[kCoordinates];
    if (archive.FindDoubles(kCenter, 0, kCoordinates, place) == B_OK)
        projection.center = {place[0], place[1], place[2]};
    Take(archive, &BMessage::FindInt64, kFollows, &followed);
    Take(archive, &BMessage::FindBool, kShowNames, &options.names);
    Take(archive, &BMessage::FindBool, kShowScaleBar, &options.scaleBar);
    Take(archive, &BMessage::FindBool, kShowTime, &options.time);
    return status;
}
