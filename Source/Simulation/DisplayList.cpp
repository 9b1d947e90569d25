#include "Simulation/DisplayList.h"

#include <algorithm>
#include <utility>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Base/WindowPlacement.h"
#include "Displays/Chart/ChartDisplay.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Displays/Space/SpaceDisplay.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/UnitMenu.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BScreen.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/WindowFields.h"
#include "Simulation/OpenSimulations.h"

namespace {

// A display that no document has placed, beside the simulation's window; the next ones below it.
constexpr BRect kUsualFrame{460.0f, 76.0f, 1259.0f, 675.0f};
constexpr float kCascade = 28.0f;
constexpr int32 kCascadeLength = 8;
// Of two windows that stand side by side.
constexpr float kBorders = 12.0f;
constexpr float kMinWidth = 200.0f;
constexpr float kMinHeight = 100.0f;

void Deliver(Display* display, uint32 what) {
    WindowServer::Deliver(display, BMessage(what));
}

}  // namespace

DisplayList::DisplayList(SimulationDocument* document, const RunHistory* history,
                         ShownMoment* shown, RunControl* run, BLooper* owner,
                         const DisplayContext& context)
    : document_(document),
      history_(history),
      shown_(shown),
      run_(run),
      owner_(owner),
      context_(context) {}

template <typename Kind>
Display* DisplayList::MakeKind(const char* simulationName) const {
    auto* const display = new Kind(kUsualFrame, simulationName, document_->Portal(),
                                   document_->GetCalculator()->WriteOk(), owner_, context_);
    display->SetHistory(history_, shown_);
    if (display->Init(simulationName) == 0) return display;
    display->Quit();
    return nullptr;
}

Display* DisplayList::Make(int32 type, const char* simulationName) const {
    if (type == ProjectionDisplay::kType) return MakeKind<ProjectionDisplay>(simulationName);
    if (type == SpaceDisplay::kType) return MakeKind<SpaceDisplay>(simulationName);
    if (type == ChartDisplay::kType) return MakeKind<ChartDisplay>(simulationName);
    return nullptr;
}

bool DisplayList::Create(int32 type, const BMessage* archive, const char* simulationName) {
    run_->Rest();
    Display* const display = Make(type, simulationName);
    if (display != nullptr) {
        const float shift = kCascade * static_cast<float>(Count() % kCascadeLength);
        BRect frame = kUsualFrame;
        frame = {frame.left + shift, frame.top + shift, frame.right + shift, frame.bottom + shift};
        confine_to_frame_and_screen(display, frame, kMinWidth, kMinHeight);
        // Fields that are missing or wrong leave what is usual.
        if (archive != nullptr) static_cast<void>(display->Regenerate(*archive));
        // Over one of another window of the same document nobody would see that there are two.
        OpenSimulations::Shared().Place(display, owner_);
        TellUnits(display);
        displays_.push_back(display);
        document_->AddConsumer(display);
        if (run_->PauseCount() <= 0) Deliver(display, ProjectionDisplay::kRunStarted);
        display->Show();
    }
    run_->UnRest();
    return display != nullptr;
}

void DisplayList::Delete(const Display* display) {
    const auto found = std::find(displays_.begin(), displays_.end(), display);
    if (found == displays_.end()) return;
    Display* const doomed = *found;
    displays_.erase(found);
    run_->Rest();
    document_->RemoveConsumer(doomed);
    OpenSimulations::Shared().Leave(doomed);
    BLooper::QuitIfAlive(doomed);
    run_->UnRest();
}

void DisplayList::DeleteAll() {
    run_->Rest();
    while (!displays_.empty())
        Delete(displays_.back());
    run_->UnRest();
}

void DisplayList::KeepClearOf(BRect frame) const {
    const float left = frame.right + kBorders;
    for (Display* const display : displays_) {
        const BRect covered = display->Frame();
        const BScreen screen(display);
        const bool hasRoom = screen.IsValid() && left + covered.Width() < screen.Frame().right;
        if (hasRoom && covered.left > frame.left && covered.left < left)
            display->MoveTo({left, covered.top});
    }
}

void DisplayList::Tell(uint32 what) const {
    for (Display* const display : displays_)
        Deliver(display, what);
}

void DisplayList::SetTitles(const char* simulationName) const {
    for (Display* const display : displays_)
        display->SetTitle(simulationName);
}

void DisplayList::SetPreferredUnits(double unit) {
    if (unit == preferredUnits_) return;
    preferredUnits_ = unit;
    for (Display* const display : displays_)
        TellUnits(display);
}

void DisplayList::TellUnits(Display* display) const {
    if (auto* const space = dynamic_cast<SpaceDisplay*>(display); space != nullptr) {
        const BAutolock lock(space);
        if (lock.IsLocked()) space->SetPreferredUnit(preferredUnits_);
        return;
    }
    if (auto* const chart = dynamic_cast<ChartDisplay*>(display); chart != nullptr) {
        const BAutolock lock(chart);
        if (lock.IsLocked()) chart->SetPreferredUnit(preferredUnits_);
        return;
    }
    auto* const projection = dynamic_cast<ProjectionDisplay*>(display);
    if (projection == nullptr) return;
    const BAutolock lock(projection);
    if (!lock.IsLocked()) return;
    BMessage message;
    message.AddDouble(UnitMenu::kUnitField, preferredUnits_);
    projection->SetPreferredUnits(&message);
}

void DisplayList::Find(const char* simulationName) {
    DeleteAll();
    waiting_.clear();
    const BMessage& fields = document_->WindowFields();
    BMessage display;
    int32 type = 0;
    for (int32 i = 0; fields.FindMessage(kDisplaysField, i, &display) == B_OK; i++)
        if (fields.FindInt32(kDisplayTypesField, i, &type) == B_OK)
            waiting_.push_back({std::move(display), type});
    OpenWaiting(simulationName);
}

void DisplayList::OpenWaiting(const char* simulationName) {
    for (int32 i = 0; i < kMaxOpenedUnasked && !waiting_.empty(); i++) {
        const Waiting next = std::move(waiting_.front());
        waiting_.pop_front();
        Create(next.type, &next.archive, simulationName);
    }
}

void DisplayList::Archive(BMessage* into) const {
    for (Display* const display : displays_) {
        BMessage archive;
        {
            const BAutolock lock(display);
            if (!lock.IsLocked() || display->MiniArchive(&archive) != B_OK) continue;
        }
        into->AddMessage(kDisplaysField, std::move(archive));
        into->AddInt32(kDisplayTypesField, display->Type());
    }
    for (const Waiting& waiting : waiting_) {
        if (into->AddMessage(kDisplaysField, &waiting.archive) != B_OK) return;
        into->AddInt32(kDisplayTypesField, waiting.type);
    }
}
