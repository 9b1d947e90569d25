#include "Simulation/RunTargetWindow.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/NumberTextControl.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/CommonTexts.h"
#include "Resources/Pace.h"

namespace {

using Kind = RunTarget::Kind;

constexpr uint32 kPressed = FourCC("prsd");
constexpr uint32 kKindChosen = FourCC("rtkd");
constexpr uint32 kBodyChosen = FourCC("rtbd");
constexpr uint32 kOtherChosen = FourCC("rtot");
constexpr uint32 kTyped = FourCC("rttm");
constexpr const char* kIdField = "id";
constexpr int32 kColumns = 28;

struct KindText {
    Kind kind;
    int32 text;
};
constexpr KindText kKinds[] = {
    {Kind::kFor, kTextRunFor},       {Kind::kUntil, kTextRunUntil},
    {Kind::kMerger, kTextRunMerger}, {Kind::kClosest, kTextRunClosest},
    {Kind::kPlaneX, kTextRunPlaneX}, {Kind::kPlaneY, kTextRunPlaneY},
    {Kind::kPlaneZ, kTextRunPlaneZ},
};

int64 IdIn(const BMessage& message) {
    int64 id = 0;
    message.FindInt64(kIdField, &id);
    return id;
}

}  // namespace

RunTargetWindow::RunTargetWindow(BPoint at, Bodies bodies, const UnitTable* units, double timeUval,
                                 BLooper* owner, const InterfaceTexts* texts)
    : SubWindow({at.x, at.y, at.x - 1.0f, at.y - 1.0f}, texts->Text(kTextRunTitle), B_MODAL_WINDOW,
                B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE | B_CLOSE_ON_ESCAPE, owner, texts),
      units_(units),
      timeUval_(timeUval),
      bodies_(std::move(bodies)) {
    target_.body = bodies_.focus;
    target_.time = timeUval_;
    auto* const column = new BGroupView("content", B_VERTICAL);
    column->SetWindowInsets();
    kind_ = AddChoice(column, "kind", kLabelRunKind);
    std::vector<BChoiceField::Choice> kinds;
    for (const KindText& kind : kKinds)
        kinds.push_back({static_cast<int64>(kind.kind), texts->Label(kind.text), 0});
    kind_->SetChoices(std::move(kinds));

    auto* const row = new BGroupView("time", B_HORIZONTAL);
    auto* const label = new BStringView("label", texts->Text(kLabelRunTime));
    time_ = new NumberTextControl("time", texts->Text(kLabelRunTime), units_, *texts,
                                  new BMessage(kTyped));
    time_->SetToolTip(texts->Text(kTextRunTimeTip));
    time_->SetShowsUnit(true);
    label->SetField(*time_);
    row->AddChild(label);
    row->AddChild(time_);
    column->AddChild(row);

    body_ = AddChoice(column, "body", kLabelRunBody);
    body_->SetChoices(bodies_.all);
    body_->Choose(target_.body);
    other_ = AddChoice(column, "other", kLabelRunOther);
    AddButtons(column);
    AddChild(column);
    ChooseKind(Kind::kFor);
    time_->SelectAll();
    time_->MakeFocus();
}

BChoiceField* RunTargetWindow::AddChoice(BGroupView* column, const char* name, int32 label) {
    const uint32 what = label == kLabelRunKind   ? kKindChosen
                        : label == kLabelRunBody ? kBodyChosen
                                                 : kOtherChosen;
    auto* const row = new BGroupView(name, B_HORIZONTAL);
    auto* const text = new BStringView("label", Texts().Text(label));
    auto* const field = new BChoiceField(name, Texts().Text(label), new BMessage(what));
    field->SetColumns(kColumns);
    field->SetStretch(1, 0);
    text->SetField(*field);
    row->AddChild(text);
    row->AddChild(field);
    column->AddChild(row);
    return field;
}

void RunTargetWindow::AddButtons(BGroupView* column) {
    auto* const row = new BGroupView("buttons", B_HORIZONTAL);
    row->AddStretch();
    row->AddChild(
        new BButton("cancel", Texts().Text(kLabelCancel), new BMessage(B_QUIT_REQUESTED)));
    auto* const run = new BButton("run", Texts().Text(kTextRunButton), new BMessage(kPressed));
    row->AddChild(run);
    SetDefaultButton(run);
    column->AddChild(row);
}

// A plane may go through the origin; to that nobody comes close.
void RunTargetWindow::ChooseKind(Kind kind) {
    target_.kind = kind;
    kind_->Choose(static_cast<int64>(kind));
    std::vector<BChoiceField::Choice> others;
    if (kind != Kind::kClosest)
        others.push_back({RunCondition::kOrigin, Texts().Label(kTextRunOrigin), 0});
    others.insert(others.end(), bodies_.all.begin(), bodies_.all.end());
    target_.other = kind == Kind::kClosest ? bodies_.heaviest : RunCondition::kOrigin;
    other_->SetChoices(std::move(others));
    other_->Choose(target_.other);
    if (target_.IsTime()) time_->ShowValue(DimValue(target_.time, timeUval_), true);
    EnableFields();
}

void RunTargetWindow::EnableFields() {
    const bool isTime = target_.IsTime();
    const bool hasBodies = !isTime && target_.kind != Kind::kMerger;
    time_->SetEnabled(isTime);
    body_->SetEnabled(hasBodies);
    other_->SetEnabled(hasBodies);
}

// What cannot be read keeps the window open.
void RunTargetWindow::Answer() {
    if (target_.IsTime()) {
        const DimValue former(target_.time, timeUval_);
        if (const auto typed = time_->TakeText()) {
            const auto value = time_->Read(*typed, former);
            if (!value) return;
            if (!(value->Value() > 0.0)) return time_->RefuseRange(former);
            target_.time = value->Value();
        }
    }
    SendToOwner(target_.ToMessage());
    QuitRequested();
}

void RunTargetWindow::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kPressed:
            return Answer();
        case kKindChosen:
            return ChooseKind(static_cast<Kind>(IdIn(*message)));
        case kBodyChosen:
            target_.body = IdIn(*message);
            break;
        case kOtherChosen:
            target_.other = IdIn(*message);
            break;
        case kTyped:
            if (const auto typed = time_->TakeText()) {
                const DimValue former(target_.time, timeUval_);
                if (const auto value = time_->Read(*typed, former)) target_.time = value->Value();
            }
            break;
        default:
            SubWindow::MessageReceived(message);
    }
}

bool RunTargetWindow::QuitRequested() {
    Hide();
    SendToOwner(BMessage(kClosed));
    return false;
}
