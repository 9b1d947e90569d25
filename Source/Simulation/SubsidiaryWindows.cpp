#include "Simulation/SubsidiaryWindows.h"

#include <algorithm>
#include <initializer_list>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Base/WindowPlacement.h"
#include "Interface Widgets/MenuArchives.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/WindowFields.h"
#include "Simulation/Epochs/EpochWindow.h"
#include "Simulation/GroupWindow.h"
#include "Simulation/OpenSimulations.h"
#include "Simulation/RunTargetWindow.h"
#include "Simulation/Settings/AnimationWindow.h"
#include "Simulation/Settings/TrailDiscWindow.h"
#include "Simulation/SimulationMenus.h"
#include "Simulation/WindowPlaces.h"

namespace {

// More check boxes than these nobody looks through.
constexpr int32 kMaxChoices = 500;
constexpr float kGroupShift = 40.0f;

// Over one of another window of the same document nobody would see that there are two.
void ShowOrActivate(BWindow* window, const BLooper* simulation) {
    const BAutolock lock(window);
    if (!lock.IsLocked()) return;
    if (window->IsHidden()) {
        keep_on_screen(window);
        OpenSimulations::Shared().PlaceBeside(window, simulation);
        window->Show();
    } else {
        window->Activate();
    }
}

}  // namespace

SubsidiaryWindows::SubsidiaryWindows(SimulationDocument* document, BLooper* owner,
                                     const DisplayContext& context)
    : epochs_(new EpochWindow(document->Portal(), document->Root(), owner, context)),
      animation_(new AnimationWindow(document->Portal(), owner, context)),
      trailDisc_(new TrailDiscWindow(document->Portal(), owner, context)),
      document_(document),
      owner_(owner),
      context_(context) {
    epochs_->Run();
    animation_->Run();
    trailDisc_->Run();
}

void SubsidiaryWindows::Quit() {
    EndGroupRequest();
    EndRunRequest();
    for (BWindow* const window : std::initializer_list<BWindow*>{epochs_, animation_, trailDisc_}) {
        OpenSimulations::Shared().Leave(window);
        BLooper::QuitIfAlive(window);
    }
    epochs_ = nullptr;
    animation_ = nullptr;
    trailDisc_ = nullptr;
}

void SubsidiaryWindows::SetTitles(const char* simulationName) {
    epochs_->SetTitleFor(simulationName);
    animation_->SetTitleFor(simulationName);
    trailDisc_->SetTitleFor(simulationName);
}

void SubsidiaryWindows::Find(const BMessage& archive) {
    const auto find = [&](BWindow* window, const char* at, const char* shown) {
        FindWindowInfo(archive, window, at, shown);
        if (archive.HasName(at))
            OpenSimulations::Shared().MoveTo(window, owner_,
                                             {window->Frame().left, window->Frame().top});
    };
    find(epochs_, kEpochsAtField, kEpochsShownField);
    FindWindowSize(archive, epochs_, kEpochsWidthField, kEpochsHeightField);
    find(animation_, kAnimationAtField, kAnimationShownField);
    find(trailDisc_, kColorsAtField, kColorsShownField);
}

void SubsidiaryWindows::Archive(BMessage* into) const {
    SetWindowInfo(into, *animation_, kAnimationAtField, kAnimationShownField);
    SetWindowInfo(into, *trailDisc_, kColorsAtField, kColorsShownField);
    SetWindowInfo(into, *epochs_, kEpochsAtField, kEpochsShownField);
    SetWindowSize(into, *epochs_, kEpochsWidthField, kEpochsHeightField);
}

bool SubsidiaryWindows::Handle(const BMessage& message, const BWindow& window) {
    switch (message.what) {
        case kShowEpochs:
            ShowOrActivate(epochs_, owner_);
            break;
        case kShowAnimation:
            ShowOrActivate(animation_, owner_);
            break;
        case kShowTrailDisc:
            ShowOrActivate(trailDisc_, owner_);
            break;
        case SimulationMenus::kRequestGroup:
            RequestGroup(window);
            break;
        case GroupWindow::kClosed:
            EndGroupRequest();
            break;
        case MenuArchives::kRequestRun:
            RequestRun(window);
            break;
        case RunTargetWindow::kClosed:
            EndRunRequest();
            break;
        default:
            return false;
    }
    return true;
}

void SubsidiaryWindows::RequestGroup(const BWindow& window) {
    if (group_ != nullptr) return group_->Activate();
    std::vector<GroupWindow::Choice> choices;
    {
        const ReadGuard guard(document_->Portal());
        const MassSystem* const focus = document_->Portal()->FocusSystem();
        const MassSystem* const parent = focus->Parent();
        const int32 count = parent == nullptr ? 0 : std::min(parent->CountChildren(), kMaxChoices);
        for (int32 i = 0; i < count; i++) {
            const MassSystem* const system = parent->ChildAt(i);
            choices.push_back({system->ID(), system->Name(), system == focus});
        }
    }
    if (choices.empty()) return;
    const BRect frame = window.Frame();
    group_ = new GroupWindow({frame.left + kGroupShift, frame.top + kGroupShift}, choices, owner_,
                             context_.texts);
    group_->Show();
}

void SubsidiaryWindows::EndGroupRequest() {
    BLooper::QuitIfAlive(group_);
    group_ = nullptr;
}

void SubsidiaryWindows::RequestRun(const BWindow& window) {
    if (target_ != nullptr) return target_->Activate();
    RunTargetWindow::Bodies bodies;
    double timeUval = 1.0;
    {
        const ReadGuard guard(document_->Portal());
        for (const Body* const body : document_->Portal()->BodiesInMassOrder())
            bodies.all.push_back({body->ID(), body->Name(), 0});
        if (!bodies.all.empty()) bodies.focus = bodies.heaviest = bodies.all.front().id;
        const MassSystem* const focus = document_->Portal()->FocusSystem();
        if (dynamic_cast<const Body*>(focus) != nullptr) bodies.focus = focus->ID();
        timeUval = document_->Portal()->FocusEpoch()->TimeUval();
    }
    const BRect frame = window.Frame();
    target_ =
        new RunTargetWindow({frame.left + kGroupShift, frame.top + kGroupShift}, std::move(bodies),
                            context_.timeUnits, timeUval, owner_, context_.texts);
    target_->Show();
}

void SubsidiaryWindows::EndRunRequest() {
    BLooper::QuitIfAlive(target_);
    target_ = nullptr;
}

bool SubsidiaryWindows::CommitAnimation() {
    return animation_->CommitChanges();
}
