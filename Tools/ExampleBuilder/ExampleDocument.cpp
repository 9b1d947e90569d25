#include "Tools/ExampleBuilder/ExampleDocument.h"

#include <cmath>

#include "Model/Epochs/Epoch.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"

namespace {

// Beside the simulation's window, which has no place yet: then the program moves displays clear of
// it, however wide it is with the fonts of the day. As large as a screen of 1366 x 768 has room
// for.
constexpr BRect kDisplayFrame{470.0f, 40.0f, 1342.0f, 720.0f};
// What the frame leaves in height for the picture when bars, pace and time line are taken off.
constexpr double kPicturePixels = 560.0;
constexpr int32 kProjectionDisplay = 1;
constexpr int32 kSpaceDisplay = 2;
// From how far a length fills what a camera sees from side to side, in such lengths.
constexpr double kCameraDistance = 1.2071;

status_t AddDirection(BMessage* display, const char* name, const ThreeVector& direction) {
    const double coordinates[] = {direction.x, direction.y, direction.z};
    return display->AddDoubles(name, coordinates, 3);
}

status_t AddCamera(const ExampleText& text, BMessage* display) {
    const double sine = std::sin(text.camera->azimuth);
    const double cosine = std::cos(text.camera->azimuth);
    const double rise = std::sin(text.camera->elevation);
    const double level = std::cos(text.camera->elevation);
    status_t status = AddDirection(display, "Space right", {-sine, cosine, 0.0});
    if (status == B_OK)
        status = AddDirection(display, "Space up", {-rise * cosine, -rise * sine, level});
    if (status == B_OK && text.picture > 0.0)
        status = display->AddDouble("Space distance", kCameraDistance * text.picture);
    return status;
}

status_t AddProjection(const ExampleText& text, const ChosenSystems& chosen, BMessage* display) {
    status_t status = display->AddInt32("Sup axis", text.axis);
    if (status == B_OK && text.picture > 0.0)
        status = display->AddDouble("Scale", kPicturePixels / text.picture);
    if (status != B_OK || chosen.turnsWith == kNoSystemID) return status;
    status = display->AddInt64("View turns about", chosen.turnsAbout);
    if (status == B_OK) status = display->AddInt64("View turns with", chosen.turnsWith);
    return status;
}

// A display on which the picture fits.
status_t AddDisplay(const ExampleText& text, const ChosenSystems& chosen, BMessage* record) {
    BMessage display;
    status_t status = display.AddRect("Disp frame", kDisplayFrame);
    if (status == B_OK) status = display.AddBool("View names", text.names);
    if (status == B_OK && chosen.followed != kNoSystemID)
        status = display.AddInt64("View follows", chosen.followed);
    if (status == B_OK)
        status = text.camera ? AddCamera(text, &display) : AddProjection(text, chosen, &display);
    if (status == B_OK) status = record->AddMessage("Displays", &display);
    const int32 kind = text.camera ? kSpaceDisplay : kProjectionDisplay;
    if (status == B_OK) status = record->AddInt32("Disp type", kind);
    return status;
}

// For the menu and the gallery of examples. Readers of documents skip it.
status_t AddDescription(const ExampleText& text, BMessage* record) {
    status_t status = text.title.empty() ? B_OK : record->AddString("Description", text.title);
    for (const std::string& line : text.see)
        if (status == B_OK && !text.title.empty()) status = record->AddString("Description", line);
    if (status == B_OK && !text.source.empty()) status = record->AddString("Source", text.source);
    return status;
}

status_t MakeRecord(const ExampleText& text, const Epoch& epoch, const ChosenSystems& chosen,
                    BMessage* record) {
    BMessage archive(B_ARCHIVED_OBJECT);
    status_t status = epoch.Archive(&archive);
    if (status == B_OK) status = record->AddMessage("Epochs", &archive);
    if (status == B_OK) status = record->AddInt32("Cur Epoch", 0);
    if (status == B_OK) status = record->AddBool("Cur Ep Writ", true);
    if (status == B_OK) status = record->AddInt64("Cur Sys", chosen.focus);
    if (status == B_OK) status = record->AddInt32("Body Name Index", 0);
    if (status == B_OK) status = record->AddDouble("Pace", Pace::Auto().Number());
    if (status == B_OK) status = AddDisplay(text, chosen, record);
    return status;
}

}  // namespace

DocumentError WriteExample(const std::string& path, const ExampleText& text, const Epoch& epoch,
                           const ChosenSystems& chosen) {
    BMessage record;
    DocumentError error = DocumentError::Record(MakeRecord(text, epoch, chosen, &record));
    if (error.Failed()) return error;

    SimulationDocument document(nullptr);
    error = document.Load(record);
    if (error.Failed()) return error;
    BMessage stored;
    error = document.Store(&stored, true);
    if (error.Failed()) return error;
    error = DocumentError::Record(AddDescription(text, &stored));
    if (error.Failed()) return error;
    return SimulationFile::Write(path, stored);
}
