#include "VectorEntry.h"

#include "BGridView.h"
#include "BMenuField.h"
#include "BMessage.h"
#include "BStringView.h"
#include "EntryTexts.h"
#include "InterfaceTexts.h"
#include "NumberBox.h"
#include "QuantityLine.h"
#include "UnitField.h"
#include "UnitMenu.h"

namespace {

DimValue Component(const DimVector& value, int32 component) {
    const double number = component == 0 ? value.x : component == 1 ? value.y : value.z;
    return {number, value.Uval()};
}

}  // namespace

VectorEntry::VectorEntry(const char* name, Labels labels, EpochPortal* portal,
                         const UnitTable* units, const BMessage& unitMenuField,
                         const InterfaceTexts& texts)
    : ValueEntry(name, B_VERTICAL, portal),
      unitField_(MakeUnitField(unitMenuField,
                               (texts.Label(labels.title) + texts.Label(kTextUnit)).c_str())),
      units_(UnitMenuOf(unitField_)) {
    auto* const grid = new BGridView("components");
    grid->SetColumnWeight(1, 1);
    grid->AddView(new BStringView("title", texts.Text(labels.title)), 0, 0, 2, 1);
    if (unitField_ != nullptr) grid->AddView(unitField_, 1, 0, 1, 1, BGridView::Align::kRight);
    for (int32 i = 0; i < 3; i++) {
        const std::string& label = texts.Label(labels.firstComponent + i);
        const std::string spoken = texts.Label(labels.title) + ' ' + label;
        components_[static_cast<std::size_t>(i)] =
            new QuantityLine(label.c_str(), spoken.c_str(), units, texts, new BMessage(kEntered));
        grid->AddView(new BStringView("label", label.c_str()), 0, i + 1);
        grid->AddView(components_[static_cast<std::size_t>(i)], 1, i + 1);
    }
    AddChild(grid);
}

void VectorEntry::AttachedToWindow() {
    for (QuantityLine* const line : components_)
        line->SetTarget(this);
    if (units_ != nullptr) units_->SetTargetForItems(this);
}

void VectorEntry::SetEnabled(bool isEnabled) {
    for (QuantityLine* const line : components_)
        line->SetEnabled(isEnabled);
    if (unitField_ != nullptr) unitField_->SetEnabled(isEnabled);
}

void VectorEntry::Present(const std::optional<DimVector>& value, bool replacesAll) {
    int32 component = 0;
    for (QuantityLine* const line : components_) {
        std::optional<DimValue> number;
        if (value) number = Component(*value, component++);
        line->ShowValue(number, replacesAll);
    }
    if (value && units_ != nullptr) units_->SetUval(value->Uval());
}

bool VectorEntry::Commit() {
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

bool VectorEntry::CommitComponent(int32 component, const std::string& typed, const Source& source,
                                  double* uval) {
    QuantityLine& line = *components_[static_cast<std::size_t>(component)];
    const DimValue inForce = Component(*source.value, component);
    std::optional<DimValue> value = line.Read(typed, inForce);
    if (!value) return false;
    if (value->Uval() == inForce.Uval())
        value->SetUval(*uval);
    else
        *uval = value->Uval();
    Portal()->ReadLock();
    std::unique_ptr<LCommand> command =
        source.factory->MakeComponentCommand(Portal(), component, *value);
    Portal()->ReadUnlock();
    return ExecuteFiled(Portal(), std::move(command));
}

void VectorEntry::ChooseUnit(double uval) {
    Commit();  // in the unit in which it was typed
    const Source source = Shown();
    if (!source) return;
    // Nothing is left that would be read in the new unit.
    Present(source.value, true);
    Portal()->ReadLock();
    DimVector value = source.factory->Current(*Portal());
    value.SetUval(uval);
    std::unique_ptr<LCommand> command = source.factory->MakeCommand(Portal(), value);
    Portal()->ReadUnlock();
    ExecuteFiled(Portal(), std::move(command));
}

void VectorEntry::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kEntered:
            Commit();
            break;
        case NumberBox::kUnitChosen: {
            double uval = 0.0;
            if (message->FindDouble("Units Pref", &uval) == B_OK) ChooseUnit(uval);
            break;
        }
        default:
            Entry::MessageReceived(message);
    }
}
