#include "Displays/Chart/ChartMenus.h"

#include <algorithm>

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Chart/ChartFields.h"
#include "Interface Widgets/HelpMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Resources/Chart.h"
#include "Resources/DisplayFeatures.h"

namespace {

// Only the heaviest are offered.
constexpr std::size_t kMaxBodies = 40;

}  // namespace

ChartMenus::ChartMenus(Display* display, const DisplayContext& context)
    : DisplayMenus(display, context, Common{}), display_(display), context_(context) {
    AddOwnMenu();
    Bar()->AddItem(new HelpMenu(*context.texts));
}

BMenu* ChartMenus::AddChoices(BMenu* menu, int32 title) {
    auto* const choices = new BMenu(context_.texts->Text(title));
    menu->AddItem(choices);
    return choices;
}

void ChartMenus::AddChoice(BMenu* menu, const char* label, uint32 what, int64 value) {
    auto* const message = new BMessage(what);
    message->AddInt64(kValue, value);
    auto* const item = new BMenuItem(label, message);
    item->SetTarget(display_);
    menu->AddItem(item);
}

void ChartMenus::AddOwnMenu() {
    auto* const menu = new BMenu(context_.texts->Text(kLabelChart));
    show_ = AddChoices(menu, kLabelChartShow);
    bodies_ = AddChoices(menu, kLabelChartBodies);
    about_ = AddChoices(menu, kLabelChartAbout);
    against_ = AddChoices(menu, kLabelChartAgainst);
    points_ = AddChoices(menu, kLabelChartCrossings);
    AddQuantities();
    int64 crossing = 0;
    for (const int32 label :
         {kLabelChartAllPoints, kLabelChartCrossX, kLabelChartCrossY, kLabelChartCrossZ})
        AddChoice(points_, context_.texts->Text(label), kPoints, crossing++);
    menu->AddSeparatorItem();
    AddItem(menu, kLabelChartFit, kFit, kLabelFitKey);
    logAcross_ = AddItem(menu, kLabelChartLogAcross, kLogAcross);
    logUp_ = AddItem(menu, kLabelChartLogUp, kLogUp);
    light_ = AddItem(menu, kLabelChartLight, kLight);
    menu->AddSeparatorItem();
    AddItem(menu, kLabelSavePicture, kSavePicture, kLabelSavePictureKey);
    AddItem(menu, kLabelSaveSvg, kSaveSvg);
    AddItem(menu, kLabelSaveCsv, kSaveCsv);
    menu->SetTargetForItems(display_);
    Bar()->AddItem(menu);
}

// Kinds that cannot stand on one axis are apart.
void ChartMenus::AddQuantities() {
    AddChoice(against_, context_.texts->Text(kLabelChartTime), kAgainst, ChartFields::kTime);
    against_->AddSeparatorItem();
    for (int32 i = 0; i < kCountQuantities; i++) {
        const auto quantity = static_cast<Quantity>(i);
        const char* const label = context_.texts->Text(kTextDistance + i);
        if (quantity == Quantity::kEnergyError) show_->AddSeparatorItem();
        AddChoice(show_, label, kShow, i);
        if (IsOfBody(quantity)) AddChoice(against_, label, kAgainst, i);
    }
}

void ChartMenus::Mark(const BMenu& menu, const std::vector<int64>& values) {
    for (int32 i = 0; i < menu.CountItems(); i++) {
        BMenuItem* const item = menu.ItemAt(i);
        int64 value = 0;
        if (item->Message() == nullptr || item->Message()->FindInt64(kValue, &value) != B_OK)
            continue;
        item->SetMarked(std::find(values.begin(), values.end(), value) != values.end());
    }
}

void ChartMenus::ShowFields(const ChartFields& fields) {
    std::vector<int64> shown;
    for (const Quantity quantity : fields.Quantities())
        shown.push_back(static_cast<int64>(quantity));
    Mark(*show_, shown);
    Mark(*bodies_, fields.bodies);
    Mark(*about_, {fields.about});
    Mark(*against_, {fields.against});
    Mark(*points_, {fields.crossing});
    const bool isOfBody = IsOfBody(fields.Quantities().front());
    for (BMenu* const menu : {bodies_, about_, against_, points_})
        menu->SetEnabled(isOfBody);
    logAcross_->SetMarked(fields.isLogAcross);
    logAcross_->SetEnabled(fields.Against().has_value());
    logUp_->SetMarked(fields.isLogUp);
    light_->SetMarked(fields.isLight);
}

void ChartMenus::ShowBodies(const BodyLabels& labels, const ChartFields& fields) {
    bodies_->RemoveItems();
    about_->RemoveItems();
    AddChoice(about_, context_.texts->Text(kLabelChartHeaviest), kAbout, kNoSystemID);
    about_->AddSeparatorItem();
    const std::size_t count = std::min(labels.bodies.size(), kMaxBodies);
    for (std::size_t i = 0; i < count; i++) {
        const char* const name = labels.bodies[i].name.c_str();
        AddChoice(bodies_, name, kBody, labels.bodies[i].id);
        AddChoice(about_, name, kAbout, labels.bodies[i].id);
    }
    ShowFields(fields);
}

bool ChartMenus::Take(const BMessage& message, const std::vector<int64>& bodies,
                      ChartFields* fields) {
    int64 value = 0;
    static_cast<void>(message.FindInt64(kValue, &value));
    switch (message.what) {
        case kShow:
            fields->Toggle(static_cast<Quantity>(value));
            return true;
        case kBody:
            if (fields->bodies.empty()) fields->bodies = bodies;
            fields->ToggleBody(value);
            return true;
        case kAbout:
            fields->about = value;
            return true;
        case kAgainst:
            fields->against = static_cast<int32>(value);
            return true;
        case kPoints:
            fields->crossing = static_cast<int32>(value);
            return true;
        case kLogAcross:
            fields->isLogAcross = !fields->isLogAcross;
            return true;
        case kLogUp:
            fields->isLogUp = !fields->isLogUp;
            return true;
        case kLight:
            fields->isLight = !fields->isLight;
            return true;
        default:
            return false;
    }
}
