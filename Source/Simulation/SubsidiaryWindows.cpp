#include "Simulation/SubsidiaryWindows.h"

#include <algorithm>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Base/WindowPlacement.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/WindowFields.h"
#include "Simulation/Epochs/EpochWindow.h"
#include "Simulation/GroupWindow.h"
#include "Simulation/Settings/AnimationWindow.h"
#include "Simulation/Settings/TrailDiscWindow.h"
#include "Simulation/SimulationMenus.h"
#include "Simulation/WindowPlaces.h"

namespace {

// More check boxes than these nobody looks through.
constexpr int32 kMaxChoices = 500;
constexpr float kGroupShift = 40.0f;

void ShowOrActivate(BWindow* window) {
    const BAutolock lock(window);
    if (!lock.IsLocked()) return;
    if (window->IsHidden()) {
        keep_on_screen(window);
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
    BLooper::QuitIfAlive(epochs_);
    BLooper::QuitIfAlive(animation_);
    BLooper::QuitIfAlive(trailDisc_);
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
    FindWindowInfo(archive, epochs_, kEpochsAtField, kEpochsShownField);
    FindWindowSize(archive, epochs_, kEpochsWidthField, kEpochsHeightField);
    FindWindowInfo(archive, animation_, kAnimationAtField, kAnimationShownField);
    FindWindowInfo(archive, trailDisc_, kColorsAtField, kColorsShownField);
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
            ShowOrActivate(epochs_);
            break;
        case kShowAnimation:
            ShowOrActivate(animation_);
            break;
        case kShowTrailDisc:
            ShowOrActivate(trailDisc_);
            break;
        case SimulationMenus::kRequestGroup:
            RequestGroup(window);
            break;
        case GroupWindow::kClosed:
            EndGroupRequest();
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

bool SubsidiaryWindows::CommitAnimation() {
    return animation_->CommitChanges();
}
