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
#include "Resources/Views.h"
#include "Simulation/History/Moment.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr int32 kTreeChanged =
    kEpochRenamed | kEpochAdded | kEpochRemoved | kFocusEpochChanged | kTimeChanged;
constexpr int32 kBodiesChanged = kBodyDataChanged | kSystemAdded | kSystemRemoved | kTreeChanged;
constexpr uint32 kStartsFound = FourCC("cmps");
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
        case kStartsFound:
            TellDifferences();
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

BranchStartFinder::Ways ComparisonControl::BranchWays() const {
    BranchStartFinder::Ways ways;
    const ReadGuard guard(display_->Epoch());
    for (const AbEpoch* epoch : {ShownEpoch(), comparison_.Other()})
        for (; epoch != nullptr; epoch = epoch->Parent())
            if (const auto way = comparison_.History()->WayTo(*epoch); way && way->run != epoch)
                ways.emplace(epoch, *way);
    return ways;
}

// What branches began with may take long to compute; the rest is told at once.
void ComparisonControl::ShowDifferences() {
    if (!comparison_.IsOn()) return;
    asked_ = comparison_.Other();
    starts_.reset();
    if (BranchStartFinder::Ways ways = BranchWays(); !ways.empty())
        starts_ = std::make_unique<BranchStartFinder>(
            display_->Epoch(), comparison_.History(), std::move(ways),
            [display = display_] { WindowServer::Deliver(display, BMessage(kStartsFound)); });
    const BRect frame = display_->Frame();
    auto* const window =
        new DifferencesWindow({frame.left + kShift, frame.top + kShift}, DifferencesText(),
                              context_.texts->Label(kTextDifferTitle));
    differences_ = BMessenger(window);
    window->Show();
}

void ComparisonControl::TellDifferences() {
    if (comparison_.Other() == asked_ && asked_ != nullptr) {
        BMessage message(DifferencesWindow::kText);
        message.AddString(DifferencesWindow::kTextField, DifferencesText());
        static_cast<void>(differences_.SendMessage(&message));
    }
    if (starts_ != nullptr && starts_->Found()) starts_.reset();
}

std::string ComparisonControl::DifferencesText() const {
    const auto starts = starts_ == nullptr ? BranchStarts() : starts_->Found();
    const ReadGuard guard(display_->Epoch());
    std::string text =
        DescribeDifferences({ShownEpoch(), context_.texts->Label(kTextThisStory)},
                            {comparison_.Other(), menu_->NameOf(comparison_.Other())},
                            starts.value_or(BranchStarts()), context_);
    if (!starts) text += "\n" + context_.texts->Label(kTextStillComputed) + "\n";
    return text;
}

void ComparisonControl::End() {
    starts_.reset();
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
