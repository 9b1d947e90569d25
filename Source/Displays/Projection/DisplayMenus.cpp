#include "Displays/Projection/DisplayMenus.h"

#include <algorithm>

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Comparison/CompareMenu.h"
#include "Displays/Film/FilmControl.h"
#include "Displays/Hands/MeasureMenu.h"
#include "Displays/Projection/FrameMenu.h"
#include "Displays/Projection/LookMenu.h"
#include "Displays/Projection/TrailMenu.h"
#include "Interface Widgets/HelpMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/MenuArchives.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Epochs/EpochLimits.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/MassSystem.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Resources/DisplayFeatures.h"
#include "Resources/DisplayWindows.h"
#include "Resources/EpochWindow.h"
#include "Resources/Film.h"
#include "Resources/Hands.h"
#include "Resources/Menus.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"

namespace {

// Of the bodies only the heaviest are offered by name; any can be double-clicked.
constexpr std::size_t kMaxBodies = 40;

constexpr int32 kOrderChanged = kEpochSettingsChanged | kFocusEpochChanged;

}  // namespace

DisplayMenus::DisplayMenus(Display* display, const DisplayContext& context, Common /*menus*/)
    : display_(display), context_(context), bar_(new BMenuBar("Main Menu Bar")) {
    AddAppMenu();
    AddFileMenu();
    AddSimulationMenu();
}

DisplayMenus::DisplayMenus(Display* display, const DisplayContext& context)
    : DisplayMenus(display, context, Common{}) {
    AddDisplayMenu();
    AddViewMenu();
    bar_->AddItem(new HelpMenu(*context.texts));
}

void DisplayMenus::RemoveShortcuts(Display* display) {
    for (const int32 label :
         std::initializer_list<int32>{kLabelNewSimulationKey, kLabelOpenKey, kLabelSaveKey,
                                      kLabelGoKey, kLabelAnimationKey, kLabelEpochsKey})
        if (const char key = display->Texts().LowerKey(label); key != '\0')
            display->RemoveShortcut(static_cast<uint8>(key), 0);
}

BMenuItem* DisplayMenus::AddItem(BMenu* menu, int32 label, uint32 what, int32 key) {
    const InterfaceTexts& texts = *context_.texts;
    auto* const item =
        new BMenuItem(texts.Text(label), new BMessage(what), key == 0 ? '\0' : texts.Key(key));
    menu->AddItem(item);
    return item;
}

void DisplayMenus::AddAppMenu() {
    BMenu* const menu = MakeMenu(context_.menus->AppMenuArchive()).release();
    if (menu == nullptr) return;
    menu->SetTargetForItems(be_app);
    auto* const item = new BMenuItem(menu);
    if (context_.icon != nullptr) item->SetIcon(context_.icon, context_.fineIcon);
    bar_->AddItem(item);
}

// As in the simulation's own window. The window's own shortcuts for these items were removed.
void DisplayMenus::AddFileMenu() {
    auto* const menu = new BMenu(context_.texts->Text(kLabelFile));
    AddItem(menu, kLabelSave, kSave, kLabelSaveKey)->SetTarget(display_->Owner());
    menu->AddSeparatorItem();
    AddItem(menu, kLabelClose, B_QUIT_REQUESTED, kLabelCloseKey)->SetTarget(display_);
    bar_->AddItem(menu);
}

void DisplayMenus::AddSimulationMenu() {
    BMenu* const menu = MakeMenu(context_.menus->SimMenuArchive()).release();
    if (menu == nullptr) return;
    menu->SetTargetForItems(display_->Owner());
    go_ = menu->FindItem(kTogglePause);
    runBackwards_ = menu->FindItem(kRunBackwards);
    branch_ = menu->FindItem(kBranchHere);
    backToNow_ = menu->FindItem(kBackToNow);
    ShowMoment(false);
    if (BMenuItem* const item = menu->FindItem(kShowAnimation); item != nullptr)
        item->SetShortcut(context_.texts->Key(kLabelAnimationKey), 0);
    if (BMenuItem* const item = menu->FindItem(kShowEpochs); item != nullptr)
        item->SetShortcut(context_.texts->Key(kLabelEpochsKey), 0);
    bar_->AddItem(menu);
}

void DisplayMenus::AddDisplayMenu() {
    auto* const menu = new BMenu(context_.texts->Text(kLabelDisplay));
    AddItem(menu, kLabelScale, kRequestScale);
    AddItem(menu, kLabelAxis, kRequestAxis);
    menu->AddSeparatorItem();
    AddItem(menu, kLabelErase, kErase);
    menu->SetTargetForItems(display_);
    bar_->AddItem(menu);
}

void DisplayMenus::AddViewMenu() {
    auto* const menu = new BMenu(context_.texts->Text(kLabelView));
    AddItem(menu, kLabelFit, kFit, kLabelFitKey);
    AddFollowMenu(menu);
    AddLookMenu(menu);
    frame_ = new FrameMenu(display_, *context_.texts);
    menu->AddItem(frame_);
    trail_ = new TrailMenu(display_, *context_.texts);
    menu->AddItem(trail_);
    compare_ = new CompareMenu(display_, context_);
    menu->AddItem(compare_);
    AddHandItems(menu);
    menu->AddSeparatorItem();
    names_ = AddItem(menu, kLabelNames, kToggleNames, kLabelNamesKey);
    scaleBar_ = AddItem(menu, kLabelScaleBar, kToggleScaleBar);
    time_ = AddItem(menu, kLabelShowTime, kToggleTime);
    marks_ = AddItem(menu, kLabelMarks, kToggleMarks);
    menu->AddSeparatorItem();
    AddItem(menu, kLabelSavePicture, kSavePicture, kLabelSavePictureKey);
    AddItem(menu, kTextRecordFilm, FilmControl::kRequest);
    menu->SetTargetForItems(display_);
    bar_->AddItem(menu);
}

void DisplayMenus::AddFollowMenu(BMenu* menu) {
    follow_ = new BMenu(context_.texts->Text(kLabelFollow));
    follow_->SetRadioMode(true);
    menu->AddItem(follow_);
}

void DisplayMenus::AddLookMenu(BMenu* menu) {
    look_ = new LookMenu(display_, *context_.texts);
    menu->AddItem(look_);
}

void DisplayMenus::AddHandItems(BMenu* menu) {
    measure_ = new MeasureMenu(display_, *context_.texts);
    menu->AddItem(measure_);
    AddItem(menu, kLabelThrowIn, kThrowIn);
}

void DisplayMenus::SetGoLabel(const char* label) {
    if (go_ != nullptr) go_->SetLabel(label);
}

void DisplayMenus::ShowMoment(bool isPast) {
    for (BMenuItem* const item : {branch_, backToNow_})
        if (item != nullptr) item->SetEnabled(isPast);
}

void DisplayMenus::Redisplay(int32 changes, EpochPortal* portal) {
    if ((changes & kOrderChanged) == 0 || runBackwards_ == nullptr) return;
    const ReadGuard guard(portal);
    runBackwards_->SetEnabled(portal->FocusEpoch()->Order() > kMaxLowOrder);
}

void DisplayMenus::ShowOptions(const DisplayOptions& options) {
    names_->SetMarked(options.names);
    scaleBar_->SetMarked(options.scaleBar);
    time_->SetMarked(options.time);
    marks_->SetMarked(options.marks);
}

void DisplayMenus::AddSystem(const char* name, int64 id, int64 followed) {
    auto* const message = new BMessage(kFollow);
    message->AddInt64(kFollowedSystem, id);
    auto* const item = new BMenuItem(name, message);
    item->SetTarget(display_);
    item->SetMarked(id == followed);
    follow_->AddItem(item);
}

void DisplayMenus::ShowSystems(const BodyLabels& labels, int64 followed) {
    if (look_ != nullptr) look_->ShowBodies(labels);
    if (measure_ != nullptr) measure_->ShowBodies(labels);
    follow_->RemoveItems();
    AddSystem(context_.texts->Text(kLabelFollowNothing), kNoSystemID, followed);
    follow_->AddSeparatorItem();
    for (const BodyLabels::Label& group : labels.groups)
        AddSystem(group.name.c_str(), group.id, followed);
    if (!labels.groups.empty()) follow_->AddSeparatorItem();
    const std::size_t count = std::min(labels.bodies.size(), kMaxBodies);
    for (std::size_t i = 0; i < count; i++)
        AddSystem(labels.bodies[i].name.c_str(), labels.bodies[i].id, followed);
    // A body that is followed and not among the heaviest.
    for (std::size_t i = count; i < labels.bodies.size(); i++)
        if (labels.bodies[i].id == followed)
            AddSystem(labels.bodies[i].name.c_str(), followed, followed);
}

void DisplayMenus::ShowFollowed(const BodyLabels& labels, int64 followed) {
    for (int32 i = 0; i < follow_->CountItems(); i++) {
        BMenuItem* const item = follow_->ItemAt(i);
        int64 id = 0;
        if (item->Message() == nullptr ||
            item->Message()->FindInt64(kFollowedSystem, &id) != B_OK || id != followed)
            continue;
        item->SetMarked(true);
        return;
    }
    ShowSystems(labels, followed);
}
