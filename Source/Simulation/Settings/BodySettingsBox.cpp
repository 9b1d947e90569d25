#include "Simulation/Settings/BodySettingsBox.h"

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/MenuArchives.h"
#include "Interface Widgets/MyTextControl.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/QuantityControl.h"
#include "Interface Widgets/VectorControl.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BChoiceField.h"
#include "Platform/Interface/Handles/BGridView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/Menus.h"
#include "Resources/SettingsFeatures.h"
#include "Resources/SimulationWindow.h"

namespace {

constexpr uint32 kSystemChosen = FourCC("bsed");
constexpr uint32 kReferentChosen = FourCC("bsrl");
constexpr int32 kNameColumns = 16;
constexpr float kVectorSpacing = 16.0f;

constexpr int32 kSystemsChanged = kNameChanged | kSystemRemoved | kSystemAdded | kFocusEpochChanged;
constexpr int32 kFocusChanged = kBodyDataChanged | kReferentChanged | kFocusSystemChanged |
                                kFocusEpochChanged | kSystemRemoved | kSystemAdded | kMomentChanged;

template <typename Factory>
std::shared_ptr<const Factory> Share(Factory factory) {
    return std::make_shared<const Factory>(std::move(factory));
}

}  // namespace

BodySettingsBox::BodySettingsBox(EpochPortal* portal, const DisplayContext& context)
    : BBox("Body Settings", context.texts->Text(kLabelBodySettings)),
      portal_(portal),
      texts_(*context.texts) {
    AddSystem(context);
    AddVectors(context);
    physical_.Add({mass_, radius_, position_, velocity_});
    EnableEntries();
}

// --- Layout ---

void BodySettingsBox::AddSystem(const DisplayContext& context) {
    auto* const grid = new BGridView("system");
    grid->SetColumnWeight(1, 1);
    int32 row = 0;
    const auto addRow = [&](int32 label, BView* view, BView* button) {
        auto* const title = new BStringView("label", texts_.Text(label));
        title->SetField(*view);
        grid->AddView(title, 0, row);
        grid->AddView(view, 1, row, button == nullptr ? 2 : 1);
        if (button != nullptr) grid->AddView(button, 2, row);
        row++;
    };

    systems_ =
        new BChoiceField("systems", texts_.Text(kLabelEditBody), new BMessage(kSystemChosen));
    systems_->SetColumns(kNameColumns);
    addRow(kLabelEditBody, systems_,
           new BButton("new", texts_.Text(kLabelNewBody), new BMessage(kNewBody)));
    name_ = new MyTextControl("name", texts_.Text(kLabelName), portal_, texts_);
    trailDisc_ = new BButton("trail", texts_.Text(kLabelTrailDisc), new BMessage(kShowTrailDisc));
    addRow(kLabelName, name_, trailDisc_);
    mass_ = new QuantityControl("mass", texts_.Text(kLabelMass), portal_, context.massUnits,
                                context.menus->MassUnitMenuArchive(), texts_);
    addRow(kLabelMass, mass_, nullptr);
    radius_ =
        new QuantityControl("radius", texts_.Text(kLabelRadius), portal_, context.distanceUnits,
                            context.menus->DistanceUnitMenuArchive(), texts_);
    addRow(kLabelRadius, radius_, nullptr);
    referents_ =
        new BChoiceField("referents", texts_.Text(kLabelRelativeTo), new BMessage(kReferentChosen));
    referents_->SetColumns(kNameColumns);
    referents_->SetToolTip(texts_.Text(kTextRelativeTip));
    addRow(kLabelRelativeTo, referents_, nullptr);
    AddChild(grid);
}

void BodySettingsBox::AddVectors(const DisplayContext& context) {
    auto* const row = new BGroupView("vectors", B_HORIZONTAL, kVectorSpacing);
    position_ =
        new VectorControl("position", {kLabelPosition, kLabelFirstPosition}, portal_,
                          context.distanceUnits, context.menus->DistanceUnitMenuArchive(), texts_);
    velocity_ =
        new VectorControl("velocity", {kLabelVelocity, kLabelFirstVelocity}, portal_,
                          context.speedUnits, context.menus->SpeedUnitMenuArchive(), texts_);
    for (VectorControl* const vector : {position_, velocity_}) {
        vector->SetStretch(1, 0);
        row->AddChild(vector);
    }
    AddChild(row);
}

void BodySettingsBox::AttachedToWindow() {
    systems_->SetTarget(this);
    referents_->SetTarget(this);
}

// --- What is shown ---

void BodySettingsBox::Redisplay(int32 changes, const Moment& moment) {
    if ((changes & (kFocusChanged | kSystemsChanged)) == 0) return;
    // What is half typed is for the system that is still shown.
    if (HasLostFocus(moment)) {
        CommitNonPhysical();
        CommitPhysical();
    }

    SystemList list;
    // Other bodies may have been there then.
    const bool readsList = (changes & (kSystemsChanged | kMomentChanged)) != 0;
    SystemList::Focus focus;
    {
        const ReadGuard guard(portal_);
        const EpochPortal shown = moment.PortalFrom(*portal_);
        focus = ReadFocus(shown);
        if (focus.id != focus_.id) SetFactories(focus.id);
        name_->ReadFrom(shown);
        physical_.ReadFrom(shown);
        if (readsList) list = ReadSystemList(shown);
    }
    name_->SetFaded(moment.IsPast());
    physical_.SetFaded(moment.IsPast());
    name_->ShowValue();
    physical_.ShowValues();
    ShowSystems(readsList && list != list_ ? &list : nullptr, focus);
    EnableEntries();
}

bool BodySettingsBox::HasLostFocus(const Moment& moment) const {
    const ReadGuard guard(portal_);
    return moment.PortalFrom(*portal_).FocusSystem()->ID() != focus_.id;
}

void BodySettingsBox::SetFactories(int64 id) {
    using Value = SystemQuantityFactory::Quantity;
    const bool isNone = id == kNoSystemID;
    name_->SetFactory(isNone ? nullptr : Share(NameFactory(id)));
    mass_->SetFactory(isNone ? nullptr : Share(SystemQuantityFactory(Value::kMass, id)));
    radius_->SetFactory(isNone ? nullptr : Share(SystemQuantityFactory(Value::kRadius, id)));
    position_->SetFactory(isNone ? nullptr : Share(SystemVectorFactory(kPositionQuantity, id)));
    velocity_->SetFactory(isNone ? nullptr : Share(SystemVectorFactory(kVelocityQuantity, id)));
}

void BodySettingsBox::ShowSystems(SystemList* changed, const SystemList::Focus& focus) {
    const bool isOther = focus.id != focus_.id;
    focus_ = focus;
    if (changed != nullptr) {
        list_ = std::move(*changed);
        std::vector<BChoiceField::Choice> choices;
        choices.reserve(list_.rows.size());
        for (const SystemList::Row& row : list_.rows)
            choices.push_back({row.id, row.name, row.level});
        systems_->SetChoices(std::move(choices));
    }
    systems_->Choose(focus.id);
    if (changed != nullptr || isOther) ListReferents();
    // A referent that is gone counts as the origin.
    referents_->Choose(list_.Has(focus.referent) ? focus.referent : kOriginID);
}

// The origin, then all systems but the one in focus.
void BodySettingsBox::ListReferents() {
    std::vector<BChoiceField::Choice> choices{{kOriginID, texts_.Label(kLabelOrigin), 0}};
    choices.reserve(list_.rows.size() + 1);
    for (const SystemList::Row& row : list_.rows) {
        if (row.id != focus_.id) choices.push_back({row.id, row.name, row.level});
    }
    referents_->SetChoices(std::move(choices));
}

void BodySettingsBox::EnableEntries() {
    const bool hasSystem = focus_.id != kNoSystemID;
    name_->SetEnabled(hasSystem);
    trailDisc_->SetEnabled(hasSystem);
    referents_->SetEnabled(hasSystem);
    physical_.SetEnabled(hasSystem && !isRunLocked_);
    for (QuantityControl* const entry : {mass_, radius_}) {
        entry->SetEditable(!focus_.isGroup);
        entry->SetToolTip(texts_.Text(focus_.isGroup ? kTextGroupTip : kTextQuantityTip));
    }
}

void BodySettingsBox::EnableRunControls(bool enable) {
    isRunLocked_ = !enable;
    EnableEntries();
}

// --- Edits ---

bool BodySettingsBox::CommitNonPhysical() {
    return name_->Commit();
}

bool BodySettingsBox::CommitPhysical() {
    return physical_.Commit();
}

void BodySettingsBox::Send(uint32 what, int64 system) {
    BMessage message(what);
    message.AddInt64(kBodyIDField, system);
    WindowServer::Deliver(Window(), message);
}

void BodySettingsBox::MessageReceived(BMessage* message) {
    int64 id = kNoSystemID;
    switch (message->what) {
        case kSystemChosen:
            if (message->FindInt64("id", &id) == B_OK) Send(kEditBody, id);
            break;
        case kReferentChosen:
            if (message->FindInt64("id", &id) == B_OK) Send(kSetRelativeTo, id);
            break;
        default:
            BBox::MessageReceived(message);
    }
}
