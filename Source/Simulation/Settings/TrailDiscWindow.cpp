#include "Simulation/Settings/TrailDiscWindow.h"

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/ColorControl.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/SwitchControl.h"
#include "Model/Commands/SystemFactories.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BBox.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/CommonTexts.h"
#include "Resources/SettingsFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Simulation/Settings/TrailPreview.h"

namespace {

// As in a new simulation.
constexpr BPoint kFirstPlace{667.0f, 66.0f};

constexpr float kPreviewWidth = 160.0f;
constexpr float kPreviewHeight = 120.0f;
constexpr float kMaxPreview = 160.0f;

template <typename T>
std::shared_ptr<const CommandFactory<T>> Share(SystemPropertyFactory<T> factory) {
    return std::make_shared<const SystemPropertyFactory<T>>(std::move(factory));
}

// The heading and the switch in one row, the colour below.
void AddPart(BView* box, const char* title, Entry* color, Entry* isOn) {
    auto* const row = new BGroupView(title, B_HORIZONTAL);
    row->AddChild(new BStringView("title", title));
    row->AddStretch();
    row->AddChild(isOn);
    box->AddChild(row);
    box->AddChild(color);
}

}  // namespace

TrailDiscWindow::TrailDiscWindow(EpochPortal* portal, BLooper* owner, const DisplayContext& context)
    : SettingsWindow(kFirstPlace, portal, owner, context, kLabelTrailDiscOf) {
    const InterfaceTexts& texts = *context.texts;
    trailColor_ = new ColorControl("trail color", texts.Text(kLabelTrailColor), portal, texts);
    trailOn_ = new SwitchControl("trail", texts.Text(kLabelLeaveTrail), portal);
    discColor_ = new ColorControl("disc color", texts.Text(kLabelDiscColor), portal, texts);
    discOn_ = new SwitchControl("disc", texts.Text(kLabelDrawDisc), portal);
    preview_ = new TrailPreview("preview");
    preview_->SetAccessibleName(texts.Text(kTextPreview));
    preview_->SetExplicitMinSize(kPreviewWidth, kPreviewHeight);
    preview_->SetExplicitMaxSize(-1.0f, kMaxPreview);
    preview_->SetStretch(1, 1);

    colors_ = new BBox("colors", texts.Text(kLabelColors));
    AddPart(colors_, texts.Text(kLabelTrailColor), trailColor_, trailOn_);
    AddPart(colors_, texts.Text(kLabelDiscColor), discColor_, discOn_);
    colors_->AddChild(preview_);
    auto* const column = new BGroupView("content", B_VERTICAL);
    column->SetWindowInsets();
    column->AddChild(colors_);
    AddChild(column);
    AddEntries({trailOn_, trailColor_, discOn_, discColor_});
    StartObserving();
}

void TrailDiscWindow::AboutToRefresh() {
    int64 id = kNoSystemID;
    {
        const ReadGuard guard(Portal());
        id = Portal()->FocusSystem()->ID();
        name_ = Portal()->FocusSystem()->Name();
    }
    if (id == system_) return;
    // What is half typed is for the system that is still shown.
    CommitChanges();
    system_ = id;
    const bool isNone = id == kNoSystemID;
    trailColor_->SetFactory(isNone ? nullptr : Share(TrailColorFactory(id)));
    trailOn_->SetFactory(isNone ? nullptr : Share(TrailOnFactory(id)));
    discColor_->SetFactory(isNone ? nullptr : Share(DiscColorFactory(id)));
    discOn_->SetFactory(isNone ? nullptr : Share(DiscOnFactory(id)));
    Entries().SetEnabled(!isNone);
}

void TrailDiscWindow::Refreshed() {
    const std::string title = Texts().Label(kLabelColors);
    colors_->SetLabel((name_.empty() ? title : title + Texts().Label(kLabelOf) + name_).c_str());
    ShowPreview();
}

void TrailDiscWindow::ShowPreview() {
    preview_->ShowLook(
        {trailColor_->ShownColor(), discColor_->ShownColor(), trailOn_->IsOn(), discOn_->IsOn()});
}

void TrailDiscWindow::MessageReceived(BMessage* message) {
    if (message->what == ColorControl::kColorShown)
        ShowPreview();
    else
        SettingsWindow::MessageReceived(message);
}
