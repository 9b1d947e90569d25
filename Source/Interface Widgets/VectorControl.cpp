#include "Interface Widgets/VectorControl.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/NumberTextControl.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Interface/Handles/BGridView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/SettingsFeatures.h"

namespace {

DimValue Component(const DimVector& value, int32 component) {
    const double number = component == 0 ? value.x : component == 1 ? value.y : value.z;
    return {number, value.Uval()};
}

}  // namespace

VectorControl::VectorControl(const char* name, Labels labels, EpochPortal* portal,
                             const UnitTable* units, const BMessage& unitMenuField,
                             const InterfaceTexts& texts)
    : DimensionalControl(name, B_VERTICAL, portal, unitMenuField,
                         (texts.Label(labels.title) + texts.Label(kTextUnit)).c_str()) {
    auto* const grid = new BGridView("components");
    grid->SetColumnWeight(1, 1);
    auto* const title = new BStringView("title", texts.Text(labels.title));
    grid->AddView(title, 0, 0, 2, 1);
    if (UnitField() != nullptr) grid->AddView(UnitField(), 1, 0, 1, 1, BGridView::Align::kRight);
    for (int32 i = 0; i < 3; i++) {
        const std::string& label = texts.Label(labels.firstComponent + i);
        const std::string spoken = texts.Label(labels.title) + ' ' + label;
        components_[static_cast<std::size_t>(i)] = new NumberTextControl(
            label.c_str(), spoken.c_str(), units, texts, new BMessage(kEntered));
        grid->AddView(new BStringView("label", label.c_str()), 0, i + 1);
        grid->AddView(components_[static_cast<std::size_t>(i)], 1, i + 1);
    }
    title->SetField(*components_[0]);
    AddChild(grid);
}

void VectorControl::AttachedToWindow() {
    for (NumberTextControl* const line : components_)
        line->SetTarget(this);
    DimensionalControl::AttachedToWindow();
}

void VectorControl::ShowEnabled(bool isEnabled) {
    for (NumberTextControl* const line : components_)
        line->SetEnabled(isEnabled);
    DimensionalControl::ShowEnabled(isEnabled);
}

void VectorControl::Present(const std::optional<DimVector>& value, bool replacesAll) {
    int32 component = 0;
    for (NumberTextControl* const line : components_) {
        std::optional<DimValue> number;
        if (value) number = Component(*value, component++);
        line->ShowValue(number, replacesAll);
    }
    if (value) ShowUnit(value->Uval());
}

void VectorControl::SetFaded(bool isFaded) {
    for (NumberTextControl* const line : components_)
        line->SetFaded(isFaded);
}

bool VectorControl::CommitPending() {
    std::array<std::optional<std::string>, 3> typed;
    const Source source = TakePending([&] {
        for (std::size_t i = 0; i < typed.size(); i++)
            typed[i] = components_[i]->TakeText();
    });
    if (!source) return false;
    bool changes = false;
    // Of the whole vector: a unit that was typed behind one component stays for the next ones.
    double uval = source.value->Uval();
    for (int32 i = 0; i < 3; i++)
        if (const auto& text = typed[static_cast<std::size_t>(i)])
            changes = CommitComponent(i, *text, source, &uval) || changes;
    return changes;
}

bool VectorControl::CommitComponent(int32 component, const std::string& typed, const Source& source,
                                    double* uval) {
    NumberTextControl& line = *components_[static_cast<std::size_t>(component)];
    const DimValue inForce = Component(*source.value, component);
    std::optional<DimValue> value = line.Read(typed, inForce);
    if (!value) return false;
    if (value->Uval() == inForce.Uval())
        value->SetUval(*uval);
    else
        *uval = value->Uval();
    if (!Portal()->PrepareForEdit()) return false;
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(Portal());
        command = source.factory->MakeComponentCommand(Portal(), component, *value);
    }
    const bool isRefused = command == nullptr && value->Value() != inForce.Value();
    if (isRefused) line.RefuseRange(inForce);
    return ExecuteFiled(Portal(), std::move(command));
}
