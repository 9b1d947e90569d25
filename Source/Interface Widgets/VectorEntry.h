// An entry of a vector: three components, one below the other, and one menu of their units. Each
// component is an edit of its own and leaves the others as they are, to the bit. Rules as for
// Entry.
#pragma once

#include <array>

#include "Entry.h"
#include "SystemFactories.h"

class BMenuField;
class InterfaceTexts;
class QuantityLine;
class UnitMenu;
class UnitTable;

class VectorEntry : public ValueEntry<DimVector, SystemVectorFactory> {
public:
    // The numbers of its title and of the first component's label, which the two others follow.
    struct Labels {
        int32 title;
        int32 firstComponent;
    };
    // `unitMenuField`: the archive of the unit menu's field. `units` is not owned.
    VectorEntry(const char* name, Labels labels, EpochPortal* portal, const UnitTable* units,
                const BMessage& unitMenuField, const InterfaceTexts& texts);

    bool Commit() override;
    void SetEnabled(bool isEnabled) override;

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;

protected:
    void Present(const std::optional<DimVector>& value, bool replacesAll) override;

private:
    static constexpr uint32 kEntered = FourCC("veen");

    bool CommitComponent(int32 component, const std::string& typed, const Source& source,
                         double* uval);
    void ChooseUnit(double uval);

    std::array<QuantityLine*, 3> components_{};
    BMenuField* const unitField_;
    UnitMenu* const units_;
};
