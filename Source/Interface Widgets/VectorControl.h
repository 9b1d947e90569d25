// An entry of a vector: three components, one below the other, and one menu of their units. Each
// component is an edit of its own and leaves the others as they are, to the bit. Rules as for
// Entry.
#pragma once

#include <array>

#include "Interface Widgets/DimensionalControl.h"
#include "Model/Commands/SystemFactories.h"

class InterfaceTexts;
class NumberTextControl;
class UnitTable;

class VectorControl : public DimensionalControl<DimVector, SystemVectorFactory> {
public:
    // The numbers of its title and of the first component's label, which the two others follow.
    struct Labels {
        int32 title;
        int32 firstComponent;
    };
    // `unitMenuField`: the archive of the unit menu's field. `units` is not owned.
    VectorControl(const char* name, Labels labels, EpochPortal* portal, const UnitTable* units,
                  const BMessage& unitMenuField, const InterfaceTexts& texts);

    void SetFaded(bool isFaded) override;
    void AttachedToWindow() override;

protected:
    bool CommitPending() override;
    void Present(const std::optional<DimVector>& value, bool replacesAll) override;
    void ShowEnabled(bool isEnabled) override;

private:
    bool CommitComponent(int32 component, const std::string& typed, const Source& source,
                         double* uval);

    std::array<NumberTextControl*, 3> components_{};
};
