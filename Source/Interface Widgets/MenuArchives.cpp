#include "MenuArchives.h"

#include "AbbreviatedMenuField.h"
#include "AppDefs.h"
#include "BMenu.h"
#include "HelpTexts.h"
#include "InterfaceLabels.h"
#include "InterfaceTexts.h"
#include "NumberBox.h"
#include "ProgramMessages.h"
#include "RecentMenu.h"
#include "UnitMenu.h"
#include "UnitMenuItem.h"
#include "UnitTable.h"

namespace {

BMessage ArchiveOf(const BArchivable& object) {
    BMessage archive(B_ARCHIVED_OBJECT);
    if (object.Archive(&archive, true) != B_OK) archive.MakeEmpty();
    return archive;
}

}  // namespace

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
    return ArchiveOf(AbbreviatedMenuField("Unit menu field", nullptr, menu));
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
    if (!examples.empty()) menu.AddItem(new ExampleMenu(texts.Text(kTextOpenExample), examples));
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
    menu.AddItem(new BMenuItem(texts.Text(kLabelAnimation), new BMessage(kShowAnimation)));
    menu.AddItem(new BMenuItem(texts.Text(kLabelEpochs), new BMessage(kShowEpochs)));
    return ArchiveOf(menu);
}
