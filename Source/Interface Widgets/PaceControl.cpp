#include "Interface Widgets/PaceControl.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/ShortestOrbit.h"
#include "Model/Units/FittingUnit.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BCheckBox.h"
#include "Platform/Interface/Handles/BEntryControl.h"
#include "Platform/Interface/Handles/BSlider.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Resources/Pace.h"
#include "Resources/SettingsFeatures.h"

namespace {

constexpr double kFastest = std::numeric_limits<double>::infinity();
constexpr int32 kStopsPerDecade = 10;
// The stop behind the last pace is as fast as possible.
const auto kFastestStop = static_cast<int32>(kStopsPerDecade * std::log10(Pace::kMax)) + 1;
constexpr int32 kColumns = 9;
constexpr int kBriefDigits = 3;
constexpr int kFullDigits = 6;  // as many as there is room for
constexpr float kKnobWidth = 72.0f;
constexpr double kKeyFactor = 2.0;

constexpr int32 kShown = kCalculatorSettingsChanged | kBodyDataChanged | kSystemAdded |
                         kSystemRemoved | kFocusEpochChanged;

Pace PaceAt(int32 stop) {
    if (stop >= kFastestStop) return {};
    return Pace::Of(std::pow(10.0, static_cast<double>(stop) / kStopsPerDecade));
}

int32 StopOf(double secondsPerSecond) {
    if (secondsPerSecond > Pace::kMax) return kFastestStop;
    const double decades = std::log10(std::max(secondsPerSecond, Pace::kMin));
    return static_cast<int32>(std::lround(kStopsPerDecade * decades));
}

}  // namespace

PaceControl::PaceControl(EpochPortal* portal, const UnitTable* timeUnits,
                         const InterfaceTexts& texts)
    : BGroupView("pace", B_HORIZONTAL),
      portal_(portal),
      timeUnits_(timeUnits),
      texts_(texts),
      line_(new BEntryControl("line", texts.Text(kLabelPaceName), new BMessage(kEntered))),
      slider_(new BSlider("knob", "", new BMessage(kMoved), 0, kFastestStop)),
      auto_(new BCheckBox("auto", texts.Text(kLabelAutoPace), new BMessage(kAuto))),
      behind_(new BStringView("behind", "")) {
    auto* const label = new BStringView("label", texts.Text(kLabelPace));
    label->SetField(*line_);
    AddChild(label);
    line_->SetColumns(kColumns);
    line_->SetToolTip(texts.Text(kTextPaceTip));
    AddChild(line_);
    slider_->SetModificationMessage(new BMessage(kMoving));
    slider_->SetSteps(1, kStopsPerDecade);
    slider_->SetExplicitMinSize(kKnobWidth, -1.0f);
    slider_->SetStretch(1, 0);
    slider_->SetAccessibleName(texts.Text(kLabelPaceKnob));
    slider_->SetToolTip(texts.Text(kTextPaceTip));
    AddChild(slider_);
    auto_->SetToolTip(texts.Text(kTextAutoPaceTip));
    AddChild(auto_);
    behind_->SetToolTip(texts.Text(kTextBehindPaceTip));
    AddChild(behind_);
}

void PaceControl::AttachedToWindow() {
    line_->SetTarget(this);
    slider_->SetTarget(this);
    auto_->SetTarget(this);
    if (const char key = texts_.Key(kLabelSlowerKey); key != '\0')
        Window()->AddShortcut(static_cast<uint8>(key), B_NO_COMMAND_KEY, new BMessage(kSlower),
                              this);
    if (const char key = texts_.Key(kLabelFasterKey); key != '\0')
        Window()->AddShortcut(static_cast<uint8>(key), B_NO_COMMAND_KEY, new BMessage(kFaster),
                              this);
}

void PaceControl::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kMoving:
            isHeld_ = true;
            return TakeKnob(*message);
        case kMoved:
            isHeld_ = false;
            return TakeKnob(*message);
        case kEntered:
            return TakeText();
        case kAuto:
            return TakeSwitch();
        case kSlower:
            return ScaleBy(1.0 / kKeyFactor);
        case kFaster:
            return ScaleBy(kKeyFactor);
        default:
            BGroupView::MessageReceived(message);
    }
}

// --- What is in force ---

// Seconds of the simulation per second.
double PaceControl::InForce() const {
    const AbCalculator* const calculator = portal_->GetCalculator();
    const Pace pace = calculator == nullptr ? Pace() : calculator->GetPace();
    if (pace.IsUnlimited()) return kFastest;
    if (!pace.IsAuto()) return pace.Number();
    const ReadGuard guard(portal_);
    return AutoPace(portal_->BodiesInMassOrder());
}

void PaceControl::Redisplay(int32 changes) {
    if ((changes & kShown) == 0 || portal_->GetCalculator() == nullptr) return;
    const bool isAuto = portal_->GetCalculator()->GetPace().IsAuto();
    const double former = shown_;
    shown_ = InForce();
    auto_->SetValue(isAuto ? B_CONTROL_ON : B_CONTROL_OFF);
    if (!isHeld_) slider_->SetValue(StopOf(shown_));
    ShowText(shown_ != former);
    ShowWhetherBehind();
}

void PaceControl::ShowText(bool replacesAll) {
    const BEntryControl::Writing writing{Full(shown_), Brief(shown_)};
    if (replacesAll)
        line_->SetText(writing);
    else
        line_->ShowText(writing);
}

void PaceControl::ShowWhetherBehind() {
    const AbCalculator* const calculator = portal_->GetCalculator();
    const bool isBehind =
        calculator != nullptr && calculator->IsRunning() && calculator->IsBehindPace();
    if (isBehind == isBehind_) return;
    isBehind_ = isBehind;
    behind_->SetText(isBehind ? texts_.Text(kTextBehindPace) : "");
}

std::string PaceControl::Brief(double secondsPerSecond) const {
    if (secondsPerSecond > Pace::kMax) return texts_.Label(kTextFastestPace);
    const UnitInfo* const unit = FittingUnit(*timeUnits_, secondsPerSecond);
    if (unit == nullptr) return print_double(secondsPerSecond, kBriefDigits);
    return print_double(secondsPerSecond / unit->factor, kBriefDigits) + ' ' + unit->abbreviation;
}

std::string PaceControl::Full(double secondsPerSecond) const {
    if (secondsPerSecond > Pace::kMax) return texts_.Label(kTextFastestPace);
    const UnitInfo* const unit = FittingUnit(*timeUnits_, secondsPerSecond);
    if (unit == nullptr) return print_double(secondsPerSecond, kFullDigits);
    return print_double(secondsPerSecond / unit->factor, kFullDigits) + ' ' + unit->abbreviation;
}

// --- What the user does ---

void PaceControl::Set(Pace pace) {
    if (portal_->GetCalculator() == nullptr) return;
    portal_->GetCalculator()->SetPace(pace);
    Redisplay(kCalculatorSettingsChanged);
}

// From as fast as possible the way down begins at what Auto would be.
void PaceControl::ScaleBy(double factor) {
    double now = InForce();
    if (now > Pace::kMax) {
        if (factor > 1.0) return;
        const ReadGuard guard(portal_);
        now = std::min(AutoPace(portal_->BodiesInMassOrder()), Pace::kMax) / factor;
    }
    const double wanted = now * factor;
    Set(wanted > Pace::kMax ? Pace() : Pace::Of(wanted));
}

void PaceControl::TakeKnob(const BMessage& message) {
    int32 stop = 0;
    // A knob that was only touched leaves a pace between two stops as it is.
    if (message.FindInt32(kValueField, &stop) == B_OK && stop != StopOf(InForce()))
        Set(PaceAt(stop));
}

void PaceControl::TakeSwitch() {
    if (auto_->Value() == B_CONTROL_ON) return Set(Pace::Auto());
    const double now = InForce();
    Set(now > Pace::kMax ? Pace() : Pace::Of(now));
}

void PaceControl::TakeText() {
    const auto typed = line_->TakeText();
    if (!typed) return;
    if (*typed == texts_.Label(kTextFastestPace) || *typed == texts_.Label(kTextFastestPaceFull))
        return Set(Pace());
    if (*typed == texts_.Label(kLabelAutoPace)) return Set(Pace::Auto());
    const UnitInfo* const unit = FittingUnit(*timeUnits_, std::min(shown_, Pace::kMax));
    const UnitTable::Parsed parsed =
        timeUnits_->ParseTyped(*typed, unit == nullptr ? 1.0 : unit->factor);
    const BEntryControl::Writing inForce{Full(shown_), Brief(shown_)};
    if (!parsed)
        return line_->RefuseText(
            inForce,
            texts_.Text(parsed.error == UnitTable::ParseError::kUnknownUnit ? kTextUnknownUnit
                                                                            : kTextNotANumber));
    if (parsed.value < Pace::kMin || parsed.value > Pace::kMax)
        return line_->RefuseText(inForce, texts_.Text(kTextOutOfRange));
    line_->AcceptText({Full(parsed.value), Brief(parsed.value)});
    Set(Pace::Of(parsed.value));
}
