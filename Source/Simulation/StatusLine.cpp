#include "Simulation/StatusLine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Interface Widgets/HistoryMessages.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/SimulationFeatures.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kRateDigits = 3;
constexpr double kLongRate = 1e3;
constexpr double kMaxRate = 1e12;
constexpr float kLineSpacing = 2.0f;
// A narrower line has no width yet.
constexpr float kMinWidth = 50.0f;

// Rounded to three digits, and without an exponent as long as that can be read.
std::string RateText(double rate) {
    if (!(rate >= kLongRate && rate < kMaxRate)) return print_double(rate, kRateDigits);
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
    figuresView_->SetClickMessage(kShowTrust);
    // A long text must not widen the window.
    for (BStringView* const view : {figuresView_, message_}) {
        view->SetExplicitMinSize(1.0f, -1.0f);
        AddChild(view);
    }
    lines_.Learn(resources_->InterfaceLabel(kTextBetweenFigures));
    ShowBodies(0);
}

bool StatusLine::ShowBodies(std::size_t count) {
    bodies_ = count == 0   ? resources_->InterfaceLabel(kTextNoBodies)
              : count == 1 ? resources_->InterfaceLabel(kTextOneBody)
                           : FillIn(resources_->InterfaceLabel(kTextBodies),
                                    {Grouped(std::to_string(count))});
    return ShowFigures();
}

bool StatusLine::ShowRun(const RunMonitor::Figures& figures, double timeUval, int32 order) {
    const std::string& separator = resources_->InterfaceLabel(kTextBetweenFigures);
    run_ = separator + FillIn(resources_->InterfaceLabel(kTextOrderUsed), {std::to_string(order)});
    if (figures.stepsPerSecond > 0.0) {
        run_ += separator + FillIn(resources_->InterfaceLabel(kTextStepRate),
                                   {RateText(figures.stepsPerSecond)});
        run_ += separator + FillIn(resources_->InterfaceLabel(kTextTimeRate),
                                   {RateText(figures.timePerSecond / timeUval),
                                    resources_->TimeUnits().Abbreviation(timeUval)});
    }
    if (figures.evidence)
        if (const std::string words = TrustWords(Judge(*figures.evidence), *resources_);
            !words.empty())
            run_ += separator + words;
    error_.clear();
    if (figures.evidence && figures.evidence->drift.energy)
        error_ = separator + FillIn(resources_->InterfaceLabel(kTextEnergyError),
                                    {ErrorText(*figures.evidence->drift.energy)});
    return ShowFigures();
}

bool StatusLine::ShowAdvice(const std::string& advice) {
    advice_ = advice.empty() ? advice : resources_->InterfaceLabel(kTextBetweenFigures) + advice;
    return ShowFigures();
}

bool StatusLine::ShowSeparation(const std::string& text) {
    separation_ = text.empty() ? text : resources_->InterfaceLabel(kTextBetweenFigures) + text;
    return ShowFigures();
}

bool StatusLine::ShowFigures() {
    const std::string text = bodies_ + run_ + separation_ + advice_;
    std::string lines =
        width_ < kMinWidth
            ? text
            : lines_.BrokenBetween(text, resources_->InterfaceLabel(kTextBetweenFigures), width_);
    const auto breaks = std::ranges::count(lines, '\n');
    const bool isHigher = breaks > figureBreaks_;
    figureBreaks_ = std::max(figureBreaks_, breaks);
    lines.append(static_cast<std::size_t>(figureBreaks_ - breaks), '\n');
    figuresView_->SetText(lines.c_str());
    figuresView_->SetToolTip((text + error_).c_str());
    return isHigher;
}

bool StatusLine::ShowMessage(const std::string& text) {
    return ShowLines(text, text);
}

bool StatusLine::ShowInFull(const std::string& text) {
    if (width_ < kMinWidth) width_ = message_->Bounds().Width();
    const bool isOtherHeight = ShowLines(text, lines_.Broken(text, width_));
    inFull_ = text;
    return isOtherHeight;
}

bool StatusLine::BreakAnew() {
    width_ = figuresView_->Bounds().Width();
    const bool isHigher = ShowFigures();
    if (inFull_.empty()) return isHigher;
    const std::string text = inFull_;
    return (isRunEvent_ ? ShowRunEvent(text) : ShowInFull(text)) || isHigher;
}

bool StatusLine::ShowRunEvent(const std::string& text) {
    const bool isOtherHeight = ShowInFull(text);
    isRunEvent_ = true;
    return isOtherHeight;
}

bool StatusLine::ForgetRun() {
    run_.clear();
    error_.clear();
    const auto breaks = std::exchange(figureBreaks_, 0);
    ShowFigures();
    const bool isOtherHeight = figureBreaks_ != breaks;
    return (isRunEvent_ && ShowMessage("")) || isOtherHeight;
}

float StatusLine::ExtraHeight() const {
    const font_height line = BFont().Height();
    return static_cast<float>(breaks_ + figureBreaks_) *
           std::ceil(line.ascent + line.descent + line.leading);
}

bool StatusLine::ShowLines(const std::string& text, const std::string& lines) {
    isRunEvent_ = false;
    inFull_.clear();
    message_->SetText(lines.c_str());
    message_->SetToolTip(text.c_str());
    const auto breaks = std::ranges::count(lines, '\n');
    return std::exchange(breaks_, breaks) != breaks;
}
