#include "Simulation/Settings/GlobalControlsBox.h"

#include <charconv>
#include <iterator>
#include <string>
#include <utility>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/MenuArchives.h"
#include "Interface Widgets/MyMenuField.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Interface Widgets/QuantityControl.h"
#include "Interface Widgets/SliderControl.h"
#include "Interface Widgets/SwitchControl.h"
#include "Model/Commands/EpochFactories.h"
#include "Model/Epochs/EpochLimits.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/SettingsFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int32 kShown = kTimeChanged | kEpochSettingsChanged | kFocusEpochChanged | kMomentChanged;
constexpr float kGoWidth = 8.0f;  // in sizes of the plain font

// Ten to a decade, evenly spaced to the eye. Made from text, so that each is the number that its
// text means.
std::vector<double> CutoffStops() {
    constexpr int kFirstDecade = -15;
    constexpr int kLastDecade = -4;
    constexpr const char* kMantissas[] = {"1",   "1.3", "1.6", "2",   "2.5",
                                          "3.2", "4",   "5",   "6.3", "7.9"};
    std::vector<double> stops;
    for (int decade = kFirstDecade; decade <= kLastDecade; decade++)
        for (const char* mantissa : kMantissas) {
            const std::string text = mantissa + ("e" + std::to_string(decade));
            std::from_chars(text.data(), text.data() + text.size(), stops.emplace_back());
            if (decade == kLastDecade) break;
        }
    return stops;
}

constexpr std::pair<int32, int32> kOrderWords[] = {
    {2, kTextOrderHistorical}, {3, kTextOrderHistorical}, {4, kTextOrderStandard},
    {8, kTextOrderRough},      {12, kTextOrderMedium},    {16, kTextOrderExact},
    {20, kTextOrderFiner},     {24, kTextOrderFinest}};
static_assert(std::size(kOrderWords) == std::size(kOrders));

}  // namespace

GlobalControlsBox::GlobalControlsBox(EpochPortal* portal, const DisplayContext& context)
    : BBox("Global Controls", context.texts->Text(kLabelGlobalControls)), portal_(portal) {
    AddRun(context);
    AddCenter(*context.texts);
    AddCalculation(*context.texts);
    AddOrder(*context.texts);
    AddOnContact(*context.texts);
    entries_.Add({time_, uponGo_, cutoff_, order_, onContact_});
}

// --- Layout ---

void GlobalControlsBox::AddRun(const DisplayContext& context) {
    const InterfaceTexts& texts = *context.texts;
    auto* const row = new BGroupView("run", B_HORIZONTAL);
    go_ = new BButton("go", texts.Text(kLabelGo), new BMessage(kTogglePause));
    go_->SetToolTip(texts.Text(kTextGoTip));
    // Its labels differ in length; the time beside it stays where it is.
    go_->SetExplicitMinSize(kGoWidth * BFont().Size(), -1.0f);
    row->AddChild(go_);
    auto* const label = new BStringView("label", texts.Text(kLabelTime));
    row->AddChild(label);
    time_ = new QuantityControl("time", texts.Text(kLabelTime), portal_, context.timeUnits,
                                context.menus->TimeUnitMenuArchive(), texts);
    time_->SetFactory(std::make_shared<const EpochTimeFactory>());
    time_->SetStretch(1, 0);
    label->SetField(*time_);
    row->AddChild(time_);
    AddChild(row);
}

void GlobalControlsBox::AddCenter(const InterfaceTexts& texts) {
    auto* const row = new BGroupView("center", B_HORIZONTAL);
    row->AddChild(new BStringView("label", texts.Text(kLabelCenterOfMass)));
    now_ = new BButton("now", texts.Text(kLabelNow), new BMessage(kToCenterOfMass));
    now_->SetToolTip(texts.Text(kTextCenterTip));
    row->AddChild(now_);
    uponGo_ = new SwitchControl("upon go", texts.Text(kLabelUponGo), portal_);
    uponGo_->SetFactory(std::make_shared<const EpochPropertyFactory<bool>>(COMOnGoFactory()));
    uponGo_->SetToolTip(texts.Text(kTextUponGoTip));
    row->AddChild(uponGo_);
    row->AddStretch();
    AddChild(row);
}

void GlobalControlsBox::AddCalculation(const InterfaceTexts& texts) {
    const SliderControl::Texts labels{
        texts.Label(kLabelCutoff), texts.Label(kLabelSlow) + '\n' + texts.Label(kLabelSmallErrors),
        texts.Label(kLabelFast) + '\n' + texts.Label(kLabelLargeErrors),
        texts.Label(kLabelIgnoreSmaller), texts.Label(kLabelBlank)};
    cutoff_ = new SliderControl("cutoff", labels, CutoffStops(), portal_, texts);
    cutoff_->SetFactory(std::make_shared<const EpochPropertyFactory<double>>(CutoffFactory()));
    cutoff_->SetToolTip(texts.Text(kTextCutoffTip));
    AddChild(cutoff_);
}

void GlobalControlsBox::AddOrder(const InterfaceTexts& texts) {
    std::vector<std::string> words;
    for (const auto& [order, word] : kOrderWords)
        words.push_back(
            FillIn(texts.Label(kTextOrderWord), {std::to_string(order), texts.Label(word)}));
    order_ = AddMenu("order", texts.Text(kLabelOrder), texts.Text(kTextOrderTip),
                     {std::begin(kOrders), std::end(kOrders)}, words);
    order_->SetFactory(std::make_shared<const EpochPropertyFactory<int32>>(OrderFactory()));
}

void GlobalControlsBox::AddOnContact(const InterfaceTexts& texts) {
    onContact_ = AddMenu("on contact", texts.Text(kLabelOnContact), texts.Text(kTextOnContactTip),
                         {kContactMerges, kContactStops, kContactPasses},
                         {texts.Label(kLabelContactMerges), texts.Label(kLabelContactStops),
                          texts.Label(kLabelContactPasses)});
    onContact_->SetFactory(std::make_shared<const EpochPropertyFactory<int32>>(OnContactFactory()));
}

MyMenuField* GlobalControlsBox::AddMenu(const char* name, const char* title, const char* tip,
                                        std::vector<int32> numbers,
                                        const std::vector<std::string>& words) {
    auto* const row = new BGroupView(name, B_HORIZONTAL);
    auto* const label = new BStringView("label", title);
    row->AddChild(label);
    auto* const menu = new MyMenuField(name, title, portal_, std::move(numbers), words);
    menu->SetToolTip(tip);
    label->SetField(*menu);
    row->AddChild(menu);
    row->AddStretch();
    AddChild(row);
    return menu;
}

// --- What is shown ---

void GlobalControlsBox::Redisplay(int32 changes, const Moment& moment) {
    if ((changes & kShown) == 0) return;
    {
        const ReadGuard guard(portal_);
        entries_.ReadFrom(moment.PortalFrom(*portal_));
    }
    entries_.SetFaded(moment.IsPast());
    entries_.ShowValues();
}

void GlobalControlsBox::EnableRunControls(bool enable) {
    entries_.SetEnabled(enable);
    now_->SetEnabled(enable);
}

void GlobalControlsBox::ShowGoPause(const char* label, bool isEnabled) {
    go_->SetLabel(label);
    go_->SetEnabled(isEnabled);
}

// --- Edits ---

bool GlobalControlsBox::CommitEpochValues() {
    return entries_.Commit();
}
