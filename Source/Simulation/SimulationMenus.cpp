#include "Simulation/SimulationMenus.h"

#include "Displays/Base/DisplayContext.h"
#include "Displays/Chart/ChartDisplay.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Displays/Space/SpaceDisplay.h"
#include "Interface Widgets/HelpMenu.h"
#include "Interface Widgets/HistoryMessages.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/MenuArchives.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/RecentMenu.h"
#include "Model/Commands/UndoChain.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Resources/Chart.h"
#include "Resources/Exchange.h"
#include "Resources/Menus.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Resources/Space.h"
#include "Resources/TimeLine.h"
#include "Simulation/BodyExchange.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/SimulationHost.h"

SimulationMenus::SimulationMenus(const Simulation* simulation, SimulationHost* host)
    : texts_(*host->Context().texts), bar_(new BMenuBar("Main Menu Bar")) {
    AddAppMenu(simulation, host);
    AddFileMenu();
    AddEditMenu();
    AddBodiesMenu();
    AddSimulationMenu(host);
    AddDisplayMenu();
    bar_->AddItem(new HelpMenu(texts_));
}

BMenuItem* SimulationMenus::AddItem(BMenu* menu, int32 label, uint32 what, int32 key,
                                    uint32 modifiers) {
    auto* const item = new BMenuItem(texts_.Text(label), new BMessage(what),
                                     key == 0 ? '\0' : texts_.Key(key), modifiers);
    menu->AddItem(item);
    return item;
}

// An item for the application; the file that "Open..." or the menu of recent ones opens may take
// the place of an untouched simulation.
void SimulationMenus::AddAppMenu(const Simulation* simulation, SimulationHost* host) {
    const DisplayContext& context = host->Context();
    BMenu* const menu = MakeMenu(context.menus->AppMenuArchive()).release();
    if (menu == nullptr) return;
    menu->SetTargetForItems(host->Application());
    if (BMenuItem* const open = menu->FindItem(kOpen); open != nullptr) {
        auto* const message = new BMessage(kOpen);
        message->AddPointer(kSimulationField, simulation);
        open->SetMessage(message);
    }
    for (int32 i = 0; i < menu->CountItems(); i++)
        if (auto* const recent = dynamic_cast<RecentMenu*>(menu->SubmenuAt(i)); recent != nullptr)
            recent->SetRequester(simulation);
    auto* const item = new BMenuItem(menu);
    if (context.icon != nullptr) item->SetIcon(context.icon, context.fineIcon);
    bar_->AddItem(item);
}

void SimulationMenus::AddFileMenu() {
    auto* const menu = new BMenu(texts_.Text(kLabelFile));
    AddItem(menu, kLabelSave, kSave, kLabelSaveKey);
    AddItem(menu, kLabelSaveAs, kSaveAs, kLabelSaveKey, B_SHIFT_KEY);
    AddItem(menu, kLabelSaveCurrentEpoch, kSaveCurrentEpoch);
    saveHistory_ = AddItem(menu, kTextSaveHistory, kSaveHistory);
    menu->AddSeparatorItem();
    AddItem(menu, kTextImportBodies, BodyExchange::kRequestImport);
    AddItem(menu, kTextExport, BodyExchange::kRequestExport);
    AddItem(menu, kTextExportRun, BodyExchange::kRequestExportRun);
    menu->AddSeparatorItem();
    AddItem(menu, kLabelClose, B_QUIT_REQUESTED, kLabelCloseKey);
    AddItem(menu, kLabelCloseThenOpen, kCloseThenOpen, kLabelCloseKey, B_SHIFT_KEY);
    bar_->AddItem(menu);
}

void SimulationMenus::AddEditMenu() {
    auto* const menu = new BMenu(texts_.Text(kLabelEdit));
    undo_ = AddItem(menu, kLabelUndo, kUndo, kLabelUndoKey);
    redo_ = AddItem(menu, kLabelRedo, kRedo, kLabelUndoKey, B_SHIFT_KEY);
    menu->AddSeparatorItem();
    // Without Shift the letters are for the text of an entry.
    AddItem(menu, kTextCopyAsText, BodyExchange::kCopyAsText, kTextCopyAsTextKey, B_SHIFT_KEY);
    AddItem(menu, kTextPasteBodies, BodyExchange::kPasteBodies, kTextPasteBodiesKey, B_SHIFT_KEY);
    bar_->AddItem(menu);
}

void SimulationMenus::AddBodiesMenu() {
    auto* const menu = new BMenu(texts_.Text(kLabelBodies));
    AddItem(menu, kLabelTrailDisc, kShowTrailDisc, kTextTrailDiscKey);
    AddItem(menu, kLabelDeleteBody, kDeleteCurrentBody, kLabelDeleteBodyKey);
    AddItem(menu, kLabelNewBody, kNewBody, kLabelNewBodyKey);
    menu->AddSeparatorItem();
    AddItem(menu, kTextGroup, kRequestGroup, kLabelGoKey, B_SHIFT_KEY);
    dissolve_ = AddItem(menu, kTextDissolveGroup, kDissolveGroup);
    bar_->AddItem(menu);
}

void SimulationMenus::AddSimulationMenu(SimulationHost* host) {
    BMenu* const menu = MakeMenu(host->Context().menus->SimMenuArchive()).release();
    if (menu == nullptr) return;
    go_ = menu->FindItem(kTogglePause);
    runBackwards_ = menu->FindItem(kRunBackwards);
    branch_ = menu->FindItem(kBranchHere);
    backToNow_ = menu->FindItem(kBackToNow);
    ShowMoment(false);
    if (BMenuItem* const item = menu->FindItem(kShowAnimation); item != nullptr)
        item->SetShortcut(texts_.Key(kLabelAnimationKey), 0);
    if (BMenuItem* const item = menu->FindItem(kShowEpochs); item != nullptr)
        item->SetShortcut(texts_.Key(kLabelEpochsKey), 0);
    bar_->AddItem(menu);
}

void SimulationMenus::AddDisplayMenu() {
    auto* const menu = new BMenu(texts_.Text(kLabelNewDisplay));
    auto* const message = new BMessage(kNewDisplay);
    message->AddInt32(kDisplayTypeField, ProjectionDisplay::kType);
    menu->AddItem(
        new BMenuItem(texts_.Text(kLabelNewProjection), message, texts_.Key(kTextProjectionKey)));
    auto* const space = new BMessage(kNewDisplay);
    space->AddInt32(kDisplayTypeField, SpaceDisplay::kType);
    menu->AddItem(
        new BMenuItem(texts_.Text(kLabelSpace), space, texts_.Key(kLabelNewSpaceKey), B_SHIFT_KEY));
    auto* const chart = new BMessage(kNewDisplay);
    chart->AddInt32(kDisplayTypeField, ChartDisplay::kType);
    menu->AddItem(new BMenuItem(texts_.Text(kLabelChart), chart, texts_.Key(kLabelNewChartKey)));
    menu->AddSeparatorItem();
    openDisplays_ = AddItem(menu, kTextOpenDisplays, kOpenDisplays);
    openDisplays_->SetEnabled(false);
    bar_->AddItem(menu);
}

void SimulationMenus::ShowGo(const char* label, bool isEnabled) {
    if (go_ == nullptr) return;
    go_->SetLabel(label);
    go_->SetEnabled(isEnabled);
}

void SimulationMenus::ShowMoment(bool isPast) {
    for (BMenuItem* const item : {branch_, backToNow_})
        if (item != nullptr) item->SetEnabled(isPast);
}

void SimulationMenus::ShowRunBackwards(bool isPossible) {
    if (runBackwards_ != nullptr) runBackwards_->SetEnabled(isPossible);
}

void SimulationMenus::Show(BMenuItem* item, bool isPossible, int32 name, int32 plainLabel,
                           int32 namedLabel) {
    const bool hasName = isPossible && name != kUnnamedCommand;
    const std::string label =
        hasName ? FillIn(texts_.Label(namedLabel), {texts_.Label(name)}) : texts_.Label(plainLabel);
    item->SetLabel(label.c_str());
    item->SetEnabled(isPossible);
}

void SimulationMenus::ShowSavesHistory(bool isSaved) {
    saveHistory_->SetMarked(isSaved);
}

void SimulationMenus::ShowFocus(bool isGroup) {
    dissolve_->SetEnabled(isGroup);
}

void SimulationMenus::ShowWaitingDisplays(bool areThere) {
    openDisplays_->SetEnabled(areThere);
}

void SimulationMenus::ShowHistory(UndoChain* history) {
    Show(undo_, history->CanUndo(), history->UndoName(), kLabelUndo, kTextUndo);
    Show(redo_, history->CanRedo(), history->RedoName(), kLabelRedo, kTextRedo);
}
