#include "Displays/Comparison/ComparisonControl.h"

#include <utility>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Comparison/DifferencesWindow.h"
#include "Displays/Comparison/EpochDifferences.h"
#include "Displays/Projection/PictureMover.h"
#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ShownModel.h"
#include "Displays/Trajectories/TrajectoryDisplay.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Resources/Views.h"

namespace {

constexpr int32 kTreeChanged =
    kEpochRenamed | kEpochAdded | kEpochRemoved | kFocusEpochChanged | kTimeChanged;
constexpr float kShift = 40.0f;  // of the window, from the display's left-top corner

}  // namespace

bool ComparisonControl::Handle(const BMessage& message) {
    void* other = nullptr;
    switch (message.what) {
        case CompareMenu::kCompare:
            static_cast<void>(message.FindPointer(CompareMenu::kEpoch, &other));
            CompareWith(static_cast<const AbEpoch*>(other));
            return true;
        case CompareMenu::kWhyDiffer:
            ShowDifferences();
            return true;
        case RunComparison::kChanged:
            display_->DrawDiscs();
            return true;
        default:
            return false;
    }
}

void ComparisonControl::CompareWith(const AbEpoch* other) {
    {
        const ReadGuard guard(display_->Epoch());
        const bool isThere = other != nullptr && display_->Epoch()->HasEpoch(other);
        comparison_.CompareWith(isThere ? other : nullptr, menu_->NameOf(other));
    }
    menu_->ShowOther(comparison_.Other());
    Measure();
    mover_->Redraw(false);
}

void ComparisonControl::Redisplay(int32 changes) {
    if ((changes & kTreeChanged) != 0) {
        menu_->Read(display_->Epoch());
        comparison_.ModelChanged();
        menu_->ShowOther(comparison_.Other());
    }
    Measure();
}

// A moment between two samples is not known to the bit.
void ComparisonControl::Measure() {
    const Moment& moment = shown_->GetMoment();
    if (!moment.IsPast() || moment.isExact) comparison_.Measure(shown_->Time(), shown_->Labels());
}

void ComparisonControl::ShowDifferences() const {
    if (!comparison_.IsOn()) return;
    std::string text;
    {
        EpochPortal* const portal = display_->Epoch();
        const ReadGuard guard(portal);
        const AbEpoch* const run = shown_->GetMoment().run;
        const AbEpoch* const shown =
            run != nullptr && portal->HasEpoch(run) ? run : portal->FocusEpoch();
        text = DescribeDifferences({shown, context_.texts->Label(kTextThisStory)},
                                   {comparison_.Other(), menu_->NameOf(comparison_.Other())},
                                   context_);
    }
    const BRect frame = display_->Frame();
    auto* const window =
        new DifferencesWindow({frame.left + kShift, frame.top + kShift}, text, *context_.texts);
    window->Show();
}

void ComparisonControl::AddTexts(double unit, std::vector<OverlayItem>* items) const {
    if (!comparison_.IsOn()) return;
    for (std::string& line : comparison_.Lines(shown_->Time(), unit, shown_->Labels()))
        items->push_back(MakeTextBelow(*items, std::move(line), *display_->View()));
    comparison_.AddRings(shown_->Time(), shown_->Labels(), items);
}
