#include "Simulation/Settings/AnimationWindow.h"

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/SliderControl.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/EpochFactories.h"
#include "Platform/Interface/Handles/BBox.h"
#include "Resources/CommonTexts.h"
#include "Resources/SimulationWindow.h"

namespace {

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
    column->AddStretch();
    AddChild(column);
    AddEntries({smoothness, frequency});
    StartObserving();
}
