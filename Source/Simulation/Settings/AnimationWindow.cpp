#include "Simulation/Settings/AnimationWindow.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/SliderControl.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/EpochFactories.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BBox.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Platform/Interface/Handles/BMenuField.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/CommonTexts.h"
#include "Resources/SimulationWindow.h"
#include "Resources/TimeLine.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/History/HistoryBudget.h"

namespace {

constexpr uint32 kBudgetChosen = FourCC("hbud");
constexpr const char* kMegabytes = "MB";
constexpr int32 kBudgets[] = {64, 128, 256, 512, 1000, 2000, 4000, 8000};
constexpr int32 kGigabyte = 1000;  // megabytes

std::string TextOf(int32 megabytes, const InterfaceTexts& texts) {
    const bool isMore = megabytes >= kGigabyte;
    return FillIn(texts.Label(isMore ? kTextGigabytes : kTextMegabytes),
                  {std::to_string(isMore ? megabytes / kGigabyte : megabytes)});
}

// As in a new simulation.
constexpr BPoint kFirstPlace{609.0f, 559.0f};

// Lets a slider enter whole numbers. Rules as for CommandFactory.
class WholeNumberFactory final : public NumberCommandFactory {
public:
    explicit WholeNumberFactory(std::unique_ptr<const IntCommandFactory> factory)
        : factory_(std::move(factory)) {}

    double Current(const EpochPortal& portal) const override { return factory_->Current(portal); }
    // Numbers with a fraction are refused.
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal, const double& value) const override {
        const bool isWhole =
            value == std::floor(value) && std::fabs(value) <= std::numeric_limits<int32>::max();
        return isWhole ? factory_->MakeCommand(portal, static_cast<int32>(value)) : nullptr;
    }
    [[nodiscard]] bool EditsEpoch() const override { return factory_->EditsEpoch(); }

private:
    const std::unique_ptr<const IntCommandFactory> factory_;
};

std::shared_ptr<const NumberCommandFactory> WholeNumbers(const CalculatorIntFactory& factory) {
    return std::make_shared<const WholeNumberFactory>(
        std::make_unique<CalculatorIntFactory>(factory));
}

}  // namespace

AnimationWindow::AnimationWindow(EpochPortal* portal, BLooper* owner, const DisplayContext& context)
    : SettingsWindow(kFirstPlace, portal, owner, context, kLabelAnimationOf) {
    const InterfaceTexts& texts = *context.texts;
    const SliderControl::Texts lines{texts.Label(kLabelSmoothness), texts.Label(kLabelSmoothTrails),
                                     texts.Label(kLabelJaggedTrails), texts.Label(kLabelLinesUpTo),
                                     texts.Label(kLabelPixelsLong)};
    const SliderControl::Texts updates{texts.Label(kLabelFrequency), texts.Label(kLabelSmooth),
                                       texts.Label(kLabelChoppy), texts.Label(kLabelUpdateScreen),
                                       texts.Label(kLabelTimesPerSecond)};
    auto* const smoothness = new SliderControl(
        "smoothness", lines,
        {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12, 15, 20, 25, 30, 40, 50, 60, 80, 100}, portal, texts);
    auto* const frequency = new SliderControl(
        "frequency", updates,
        {120, 100, 90, 80, 70, 60, 50, 40, 30, 25, 20, 15, 12, 10, 8, 6, 5, 4, 3, 2, 1}, portal,
        texts);
    smoothness->SetFactory(WholeNumbers(SegmentLengthFactory()));
    frequency->SetFactory(WholeNumbers(UpdatesPerSecondFactory()));

    auto* const column = new BGroupView("content", B_VERTICAL);
    column->SetWindowInsets();
    auto* const box = new BBox("animation", texts.Text(kLabelAnimationBox));
    box->AddChild(smoothness);
    box->AddChild(frequency);
    column->AddChild(box);
    column->AddChild(MakeBudgets(texts));
    column->AddStretch();
    AddChild(column);
    AddEntries({smoothness, frequency});
    StartObserving();
}

BView* AnimationWindow::MakeBudgets(const InterfaceTexts& texts) {
    budgets_ = new BPopUpMenu("budgets");
    for (const int32 megabytes : kBudgets) {
        auto* const message = new BMessage(kBudgetChosen);
        message->AddInt32(kMegabytes, megabytes);
        budgets_->AddItem(new BMenuItem(TextOf(megabytes, texts).c_str(), message));
    }
    budgets_->SetTargetForItems(this);
    auto* const field = new BMenuField("budget", nullptr, budgets_);
    field->SetAccessibleName(texts.Text(kLabelHistoryBudget));
    field->SetToolTip(texts.Text(kTextHistoryBudgetTip));
    auto* const row = new BGroupView("history", B_HORIZONTAL);
    auto* const label = new BStringView("label", texts.Text(kLabelHistoryBudget));
    row->AddChild(label);
    row->AddChild(field);
    row->AddStretch();
    auto* const box = new BBox("kept runs", texts.Text(kLabelHistoryBox));
    box->AddChild(row);
    return box;
}

// The program's, which another window may have changed: the nearest that there is.
void AnimationWindow::AboutToRefresh() {
    const int32 inForce = HistoryBudget::Shared().Megabytes();
    const auto* const nearest =
        std::ranges::min_element(kBudgets, {}, [&](int32 it) { return std::abs(it - inForce); });
    budgets_->ItemAt(static_cast<int32>(nearest - std::begin(kBudgets)))->SetMarked(true);
}

void AnimationWindow::MessageReceived(BMessage* message) {
    int32 megabytes = 0;
    if (message->what != kBudgetChosen) return SettingsWindow::MessageReceived(message);
    if (message->FindInt32(kMegabytes, &megabytes) == B_OK) HistoryBudget::Shared().Set(megabytes);
}
