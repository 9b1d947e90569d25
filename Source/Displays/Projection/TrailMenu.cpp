#include "Displays/Projection/TrailMenu.h"

#include "Displays/Base/Display.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuItem.h"
#include "Resources/DisplayFeatures.h"
#include "Resources/Views.h"

namespace {

constexpr const char* kTime = "Time";
constexpr const char* kTurns = "Turns";

constexpr double kDay = 86'400.0;
constexpr double kYear = 365.25 * kDay;

struct Choice {
    int32 label;
    TrailLength length;
};
constexpr Choice kChoices[] = {
    {kLabelTrailHalfTurn, {0.0, 0.5}},   {kLabelTrailTurn, {0.0, 1.0}},
    {kLabelTrailTwoTurns, {0.0, 2.0}},   {kLabelTrailFiveTurns, {0.0, 5.0}},
    {kLabelTrailTenTurns, {0.0, 10.0}},  {kLabelTrailDay, {kDay, 0.0}},
    {kLabelTrailMonth, {kYear / 12, 0}}, {kLabelTrailYear, {kYear, 0.0}},
    {kLabelTrailTenYears, {10 * kYear}}, {kLabelTrailHundredYears, {100 * kYear}},
};

}  // namespace

TrailMenu::TrailMenu(Display* display, const InterfaceTexts& texts)
    : BMenu(texts.Text(kLabelTrailLength)), display_(display) {
    Add(texts.Text(kLabelTrailAll), {});
    bool hadTurns = false;
    for (const Choice& choice : kChoices) {
        const bool hasTurns = choice.length.turns > 0.0;
        if (hasTurns != hadTurns) AddSeparatorItem();
        hadTurns = hasTurns;
        Add(texts.Text(choice.label), choice.length);
    }
    AddSeparatorItem();
    other_ = new BMenuItem(texts.Text(kLabelTrailOther), new BMessage(kRequestLength));
    other_->SetTarget(display_);
    AddItem(other_);
    AddSeparatorItem();
    fading_ = new BMenuItem(texts.Text(kLabelTrailFades), new BMessage(kToggleFading));
    fading_->SetTarget(display_);
    AddItem(fading_);
}

void TrailMenu::Add(const char* label, const TrailLength& length) {
    auto* const item = new BMenuItem(label, new BMessage(MessageFor(length)));
    item->SetTarget(display_);
    AddItem(item);
}

BMessage TrailMenu::MessageFor(const TrailLength& length) {
    BMessage message(kSetLength);
    message.AddDouble(kTime, length.time);
    message.AddDouble(kTurns, length.turns);
    return message;
}

void TrailMenu::ShowLength(const TrailLength& length) {
    bool isOther = true;
    for (int32 i = 0; i < CountItems(); i++) {
        BMenuItem* const item = ItemAt(i);
        if (item->Message() == nullptr || item->Message()->what != kSetLength) continue;
        const bool isIt = Chosen(*item->Message(), length) == length;
        item->SetMarked(isIt);
        if (isIt) isOther = false;
    }
    other_->SetMarked(isOther);
    fading_->SetMarked(length.isFading);
    fading_->SetEnabled(length.IsLimited());
}

TrailLength TrailMenu::Chosen(const BMessage& message, TrailLength before) {
    static_cast<void>(message.FindDouble(kTime, &before.time));
    static_cast<void>(message.FindDouble(kTurns, &before.turns));
    return before;
}
