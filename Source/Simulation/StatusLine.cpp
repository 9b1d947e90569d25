#include "StatusLine.h"

#include <algorithm>
#include <cmath>

#include "BStringView.h"
#include "ProgramResources.h"
#include "QuantityText.h"
#include "SimulationTexts.h"
#include "TextTemplate.h"
#include "UnitTable.h"

namespace {

constexpr int kRateDigits = 3;
constexpr double kLongRate = 1e3;
constexpr double kLongestRate = 1e12;
constexpr float kLineSpacing = 2.0f;

// Rounded to three digits, and without an exponent as long as that can be read.
std::string RateText(double rate) {
    if (!(rate >= kLongRate && rate < kLongestRate)) return print_double(rate, kRateDigits);
    const double unit = std::pow(10.0, std::floor(std::log10(rate)) - (kRateDigits - 1));
    return Grouped(std::to_string(std::llround(std::round(rate / unit) * unit)));
}

// Only its size is of interest.
std::string ErrorText(double error) {
    return print_double(std::fabs(error), 1);
}

}  // namespace

StatusLine::StatusLine(const ProgramResources* resources)
    : BGroupView("Status", B_VERTICAL, kLineSpacing),
      resources_(resources),
      figuresView_(new BStringView("Figures", "")),
      message_(new BStringView("Message", "")) {
    figuresView_->SetAccessibleDescription(resources_->InterfaceLabel(kTextStatusFigures).c_str());
    message_->SetAccessibleDescription(resources_->InterfaceLabel(kTextStatusMessage).c_str());
    // A long text must not widen the window.
    for (BStringView* const view : {figuresView_, message_}) {
        view->SetExplicitMinSize(1.0f, -1.0f);
        AddChild(view);
    }
    ShowBodies(0);
}

void StatusLine::ShowBodies(std::size_t count) {
    bodies_ = count == 0   ? resources_->InterfaceLabel(kTextNoBodies)
              : count == 1 ? resources_->InterfaceLabel(kTextOneBody)
                           : FillIn(resources_->InterfaceLabel(kTextBodies),
                                    {Grouped(std::to_string(count))});
    ShowFigures();
}

void StatusLine::ShowRun(const RunMonitor::Figures& figures, double timeUval) {
    const std::string& separator = resources_->InterfaceLabel(kTextBetweenFigures);
    run_.clear();
    if (figures.stepsPerSecond > 0.0) {
        run_ += separator + FillIn(resources_->InterfaceLabel(kTextStepRate),
                                   {RateText(figures.stepsPerSecond)});
        run_ += separator + FillIn(resources_->InterfaceLabel(kTextTimeRate),
                                   {RateText(figures.timePerSecond / timeUval),
                                    resources_->TimeUnits().Abbreviation(timeUval)});
    }
    if (figures.energyError)
        run_ += separator + FillIn(resources_->InterfaceLabel(kTextEnergyError),
                                   {ErrorText(*figures.energyError)});
    ShowFigures();
}

void StatusLine::ShowFigures() {
    figuresView_->SetText((bodies_ + run_).c_str());
}

void StatusLine::ShowRunEvent(const std::string& text) {
    ShowMessage(text);
    isRunEvent_ = true;
}

void StatusLine::ForgetRun() {
    run_.clear();
    ShowFigures();
    if (isRunEvent_) ShowMessage("");
}

void StatusLine::ShowMessage(const std::string& text) {
    isRunEvent_ = false;
    message_->SetText(text.c_str());
    message_->SetToolTip(text.c_str());
}
