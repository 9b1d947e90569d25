#include "Tools/ExampleBuilder/ExampleDocument.h"

#include "Model/Epochs/Epoch.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"

namespace {

// Beside the simulation's window, which has no place yet: then the program moves displays clear of
// it, however wide it is with the fonts of the day.
constexpr BRect kDisplayFrame{428.0f, 40.0f, 1085.0f, 596.0f};
// What the frame leaves in height for the picture when menu bar and scroll bar are taken off.
constexpr double kPicturePixels = 520.0;
constexpr int32 kProjectionDisplay = 1;

// A projection display on which the picture fits.
status_t AddDisplay(const ExampleText& text, BMessage* record) {
    BMessage display;
    status_t status = display.AddRect("Disp frame", kDisplayFrame);
    if (status == B_OK && text.picture > 0.0)
        status = display.AddDouble("Scale", kPicturePixels / text.picture);
    if (status == B_OK) status = display.AddInt32("Sup axis", text.axis);
    if (status == B_OK) status = record->AddMessage("Displays", &display);
    if (status == B_OK) status = record->AddInt32("Disp type", kProjectionDisplay);
    return status;
}

// For the menu of examples. Readers of documents skip it.
status_t AddDescription(const ExampleText& text, BMessage* record) {
    status_t status = text.title.empty() ? B_OK : record->AddString("Description", text.title);
    for (const std::string& line : text.see)
        if (status == B_OK && !text.title.empty()) status = record->AddString("Description", line);
    return status;
}

status_t MakeRecord(const ExampleText& text, const Epoch& epoch, int64 focusID, BMessage* record) {
    BMessage archive(B_ARCHIVED_OBJECT);
    status_t status = epoch.Archive(&archive);
    if (status == B_OK) status = record->AddMessage("Epochs", &archive);
    if (status == B_OK) status = record->AddInt32("Cur Epoch", 0);
    if (status == B_OK) status = record->AddBool("Cur Ep Writ", true);
    if (status == B_OK) status = record->AddInt64("Cur Sys", focusID);
    if (status == B_OK) status = record->AddInt32("Body Name Index", 0);
    if (status == B_OK) status = record->AddDouble("Pace", Pace::Auto().Number());
    if (status == B_OK) status = AddDisplay(text, record);
    return status;
}

}  // namespace

DocumentError WriteExample(const std::string& path, const ExampleText& text, const Epoch& epoch,
                           int64 focusID) {
    BMessage record;
    DocumentError error = DocumentError::Record(MakeRecord(text, epoch, focusID, &record));
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
