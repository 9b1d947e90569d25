#include "Displays/Comparison/ComparisonControl.h"

#include <utility>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Comparison/DifferencesWindow.h"
#include "Displays/Projection/PictureMover.h"
#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ProjectionDialogs.h"
#include "Displays/Projection/ShownModel.h"
#include "Displays/Trajectories/TrajectoryDisplay.h"
#include "Interface Widgets/HistoryMessages.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Kernel/OS.h"
#include "Resources/Views.h"
#include "Simulation/History/Moment.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr int32 kTreeChanged =
    kEpochRenamed | kEpochAdded | kEpochRemoved | kFocusEpochChanged | kTimeChanged;
constexpr int32 kBodiesChanged = kBodyDataChanged | kSystemAdded | kSystemRemoved | kTreeChanged;
constexpr bigtime_t kPatience = 3'000'000;  // us
constexpr float kShift = 40.0f;             // of the window, from the display's left-top corner

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
            TellDistance();
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
    TellDistance();
    mover_->Redraw(false);
}

void ComparisonControl::Redisplay(int32 changes) {
    if ((changes & kTreeChanged) != 0) {
        menu_->Read(display_->Epoch(), comparison_.History());
        comparison_.ModelChanged();
        menu_->ShowOther(comparison_.Other());
    }
    if ((changes & kBodiesChanged) != 0) comparison_.Forget();
    Measure();
    TellDistance();
}

// The status line of the simulation has it as well.
void ComparisonControl::TellDistance() {
    const auto line = comparison_.TakeDistance(dialogs_->LengthUnit(), shown_->Labels());
    if (!line || display_->Owner() == nullptr) return;
    BMessage message(kTellSeparation);
    message.AddString(kTextField, *line);
    WindowServer::Deliver(display_->Owner(), message);
}

// A moment between two samples is not known to the bit.
void ComparisonControl::Measure() {
    const Moment& moment = shown_->GetMoment();
    if (!moment.IsPast() || moment.isExact) comparison_.Measure(shown_->Time(), shown_->Labels());
}

// The caller holds the model's read lock.
const AbEpoch* ComparisonControl::ShownEpoch() const {
    const EpochPortal* const portal = display_->Epoch();
    const AbEpoch* const run = shown_->GetMoment().run;
    return run != nullptr && portal->HasEpoch(run) ? run : portal->FocusEpoch();
}

// A branch whose moment takes too long is not told of.
BranchStarts ComparisonControl::FindStarts() const {
    EpochPortal* const portal = display_->Epoch();
    std::unordered_map<const AbEpoch*, RunHistory::Way> ways;
    {
        const ReadGuard guard(portal);
        for (const AbEpoch* epoch : {ShownEpoch(), comparison_.Other()})
            for (; epoch != nullptr; epoch = epoch->Parent())
                if (const auto way = comparison_.History()->WayTo(*epoch); way && way->run != epoch)
                    ways.emplace(epoch, *way);
    }
    BranchStarts starts;
    const bigtime_t end = system_time() + kPatience;
    for (const auto& [branch, way] : ways) {
        RunCheckpoint moment;
        if (comparison_.History()->MomentAt(
                way.run, way.end, [end](double) { return system_time() < end; }, &moment) !=
            RunHistory::Finding::kFound)
            continue;
        const ReadGuard guard(portal);
        if (portal->HasEpoch(way.run)) starts[branch] = ExactMoment(*way.run, moment).epoch;
    }
    return starts;
}

void ComparisonControl::ShowDifferences() const {
    if (!comparison_.IsOn()) return;
    const BranchStarts starts = FindStarts();
    std::string text;
    {
        const ReadGuard guard(display_->Epoch());
        text = DescribeDifferences({ShownEpoch(), context_.texts->Label(kTextThisStory)},
                                   {comparison_.Other(), menu_->NameOf(comparison_.Other())},
                                   starts, context_);
    }
    const BRect frame = display_->Frame();
    auto* const window =
        new DifferencesWindow({frame.left + kShift, frame.top + kShift}, text, *context_.texts);
    window->Show();
}

void ComparisonControl::End() {
    comparison_.CompareWith(nullptr, {});
    TellDistance();
}

void ComparisonControl::AddTexts(std::vector<OverlayItem>* items) const {
    if (!comparison_.IsOn()) return;
    for (std::string& line :
         comparison_.Lines(shown_->Time(), dialogs_->LengthUnit(), shown_->Labels()))
        items->push_back(MakeTextBelow(*items, std::move(line), *display_->View()));
}

void ComparisonControl::AddRings(std::vector<OverlayItem>* items) const {
    comparison_.AddRings(shown_->Time(), shown_->Labels(), items);
}
