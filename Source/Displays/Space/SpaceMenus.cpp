#include "Displays/Space/SpaceMenus.h"

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Film/FilmControl.h"
#include "Displays/Space/SpaceFields.h"
#include "Interface Widgets/HelpMenu.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Resources/DisplayFeatures.h"
#include "Resources/DisplayWindows.h"
#include "Resources/Film.h"
#include "Resources/Space.h"

namespace {

struct Option {
    uint32 what;
    bool SpaceOptions::*member;
    int32 label;
    int32 key;  // 0: none
};

constexpr Option kOptions[] = {
    {kToggleNames, &SpaceOptions::names, kLabelNames, kLabelNamesKey},
    {kToggleScaleBar, &SpaceOptions::scaleBar, kLabelScaleBar, 0},
    {kToggleTime, &SpaceOptions::time, kLabelShowTime, 0},
    {FourCC("spgd"), &SpaceOptions::ecliptic, kLabelEcliptic, 0},
    {FourCC("spax"), &SpaceOptions::axes, kLabelAxes, 0},
    {FourCC("spor"), &SpaceOptions::orbits, kLabelOrbits, 0},
    {FourCC("spve"), &SpaceOptions::velocities, kLabelVelocities, 0},
    {FourCC("spac"), &SpaceOptions::accelerations, kLabelAccelerations, 0},
    {FourCC("spls"), &SpaceOptions::isLight, kLabelLightSky, 0},
};

}  // namespace

SpaceMenus::SpaceMenus(Display* display, const DisplayContext& context)
    : DisplayMenus(display, context, Common{}) {
    AddOwnMenu(display, context);
    Bar()->AddItem(new HelpMenu(*context.texts));
}

void SpaceMenus::AddOwnMenu(Display* display, const DisplayContext& context) {
    auto* const menu = new BMenu(context.texts->Text(kLabelView));
    AddItem(menu, kLabelFit, kFit, kLabelFitKey);
    AddFollowMenu(menu);
    AddLookMenu(menu);
    perspective_ = AddItem(menu, kLabelPerspective, kPerspective);
    AddHandItems(menu);
    menu->AddSeparatorItem();
    for (const Option& option : kOptions)
        options_.push_back(AddItem(menu, option.label, option.what, option.key));
    menu->AddSeparatorItem();
    AddItem(menu, kLabelSavePicture, kSavePicture, kLabelSavePictureKey);
    AddItem(menu, kTextRecordFilm, FilmControl::kRequest);
    menu->SetTargetForItems(display);
    Bar()->AddItem(menu);
}

void SpaceMenus::ShowOptions(const SpaceFields& fields) {
    perspective_->SetMarked(!fields.camera.isParallel);
    for (std::size_t i = 0; i < options_.size(); i++)
        options_[i]->SetMarked(fields.options.*kOptions[i].member);
}

bool SpaceOptions::*SpaceMenus::OptionOf(const BMessage& message) {
    for (const Option& option : kOptions)
        if (option.what == message.what) return option.member;
    return nullptr;
}
