#include "Interface Widgets/MenuArchives.h"

#include <memory>

#include "Interface Widgets/AbbrevMenuField.h"
#include "Interface Widgets/HistoryMessages.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/NumberBox.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/RecentMenu.h"
#include "Interface Widgets/UnitMenu.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Handles/BMenu.h"
#include "Resources/ApplicationFeatures.h"
#include "Resources/DisplayFeatures.h"
#include "Resources/Gallery.h"
#include "Resources/Help.h"
#include "Resources/Menus.h"
#include "Resources/Pace.h"
#include "Resources/SimulationFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Resources/TimeLine.h"
#include "Resources/Trust.h"

namespace {

BMessage ArchiveOf(const BArchivable& object) {
    BMessage archive(B_ARCHIVED_OBJECT);
    if (object.Archive(&archive, true) != B_OK) archive.MakeEmpty();
    return archive;
}

}  // namespace

std::unique_ptr<BMenu> MakeMenu(const BMessage& archive) {
    BMessage copy(archive);
    return InstantiateAs<BMenu>(&copy);
}

MenuArchives::MenuArchives(const InterfaceTexts& texts, const UnitTable& mass,
                           const UnitTable& distance, const UnitTable& speed, const UnitTable& time,
                           const std::vector<Example>& examples)
    : appMenu_(MakeAppMenuArchive(texts, examples)),
      simMenu_(MakeSimMenuArchive(texts)),
      massUnits_(MakeUnitMenuFieldArchive(mass)),
      distanceUnits_(MakeUnitMenuFieldArchive(distance)),
      speedUnits_(MakeUnitMenuFieldArchive(speed)),
      timeUnits_(MakeUnitMenuFieldArchive(time)) {}

BMessage MenuArchives::MakeUnitMenuFieldArchive(const UnitTable& table) {
    auto* const menu = new UnitMenu("Number unit menu", true, false);
    for (const UnitInfo& unit : table.Rows())
        menu->AddItem(new UnitMenuItem(unit.name.c_str(), unit.abbreviation.c_str(), unit.factor,
                                       new BMessage(UnitMenu::kUnitChosen)));
    return ArchiveOf(AbbrevMenuField("Unit menu field", nullptr, menu));
}

BMessage MenuArchives::MakeAppMenuArchive(const InterfaceTexts& texts,
                                          const std::vector<Example>& examples) {
    BMenu menu(texts.Text(kLabelAppMenu));
    menu.AddItem(new BMenuItem(texts.Text(kLabelNewSimulation), new BMessage(kNewSimulation),
                               texts.Key(kLabelNewSimulationKey)));
    auto* const open = new BMessage(kOpen);
    open->AddPointer(kSimulationField, nullptr);
    menu.AddItem(new BMenuItem(texts.Text(kLabelOpen), open, texts.Key(kLabelOpenKey)));
    menu.AddItem(new RecentMenu(texts.Text(kLabelOpenRecent), texts.Text(kLabelClearRecent)));
    if (!examples.empty()) {
        menu.AddItem(new ExampleMenu(texts.Text(kTextOpenExample), examples));
        menu.AddItem(
            new BMenuItem(texts.Text(kTextExamples), new BMessage(ExampleMenu::kShowGallery)));
    }
    menu.AddSeparatorItem();
    menu.AddItem(new BMenuItem(texts.Text(kLabelAbout), new BMessage(B_ABOUT_REQUESTED)));
    menu.AddItem(new BMenuItem(texts.Text(kLabelReenable), new BMessage(kClearDefaultResponses)));
    menu.AddSeparatorItem();
    menu.AddItem(new BMenuItem(texts.Text(kLabelQuit), new BMessage(B_QUIT_REQUESTED),
                               texts.Key(kLabelQuitKey)));
    return ArchiveOf(menu);
}

BMessage MenuArchives::MakeSimMenuArchive(const InterfaceTexts& texts) {
    BMenu menu(texts.Text(kLabelSimulation));
    menu.AddItem(
        new BMenuItem(texts.Text(kLabelGo), new BMessage(kTogglePause), texts.Key(kLabelGoKey)));
    menu.AddItem(new BMenuItem(texts.Text(kTextRunBackwards), new BMessage(kRunBackwards),
                               texts.Key(kTextRunBackwardsKey), B_SHIFT_KEY));
    menu.AddItem(
        new BMenuItem(texts.Text(kTextRunTo), new BMessage(kRequestRun), texts.Key(kTextRunToKey)));
    menu.AddItem(new BMenuItem(texts.Text(kTextBranchHere), new BMessage(kBranchHere),
                               texts.Key(kTextBranchKey)));
    menu.AddItem(new BMenuItem(texts.Text(kTextBackToNow), new BMessage(kBackToNow)));
    menu.AddItem(new BMenuItem(texts.Text(kTextMakeRunAgain), new BMessage(kMakeRunAgain),
                               texts.Key(kTextBranchKey), B_SHIFT_KEY));
    menu.AddItem(new BMenuItem(texts.Text(kLabelAnimation), new BMessage(kShowAnimation)));
    menu.AddItem(new BMenuItem(texts.Text(kLabelEpochs), new BMessage(kShowEpochs)));
    menu.AddItem(new BMenuItem(texts.Text(kTextHowExact), new BMessage(kShowTrust),
                               texts.Key(kTextHowExactKey)));
    menu.AddItem(new BMenuItem(texts.Text(kTextRerun), new BMessage(kRerunExactly)));
    menu.AddItem(new BMenuItem(texts.Text(kTextHowChaotic), new BMessage(kLookForChaos)));
    return ArchiveOf(menu);
}
