// The edits of the command line, "SYSTEM.FIELD=VALUE UNIT" and actions such as "new-body", made by
// the same commands as those of the entry controls. Owned by the runner; used on its thread while
// the simulation is paused.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Model/Commands/EpochFactories.h"
#include "Model/Commands/OrbitFactory.h"
#include "Model/Commands/SystemFactories.h"
#include "Model/Units/DimValue.h"
#include "Run/DocumentAction.h"

class ProgramResources;
class SimulationDocument;
class UnitTable;

class DocumentEdit {
public:
    // None is owned.
    DocumentEdit(SimulationDocument* document, SimulationController* controller,
                 const ProgramResources* resources);

    // Makes one edit. The answer is empty, or says what of the text was not understood or cannot be
    // taken; then nothing was changed. SYSTEM is a system's name, "epoch" for the epoch in
    // focus or "animation" for the calculator's pacing. A number without a unit counts in the unit
    // that the quantity is shown in.
    [[nodiscard]] std::optional<std::string> Apply(std::string_view text);

private:
    struct Field;
    static const Field kSystemFields[];
    static const Field kEpochFields[];
    static const Field kAnimationFields[];

    // What is wrong, if anything is.
    using Wrong = std::optional<std::string>;
    using Value = std::string_view;

    Wrong SetName(Value value);
    template <SystemQuantityFactory::Quantity kQuantity>
    Wrong SetQuantity(Value value);
    template <bool kIsVelocity>
    Wrong SetVector(Value value);
    template <bool kIsVelocity, int kComponent>
    Wrong SetComponent(Value value);
    template <bool kIsDisc>
    Wrong SetColorOrSwitch(Value value);
    Wrong SetRelativeTo(Value value);
    template <OrbitalElement kElement>
    Wrong SetOrbit(Value value);
    // In radians; plain numbers are degrees.
    Wrong ReadAngle(Value value, double* angle) const;
    Wrong SetEpochName(Value value);
    Wrong SetTime(Value value);
    Wrong SetCutoff(Value value);
    Wrong SetOrder(Value value);
    Wrong SetCOMOnGo(Value value);
    Wrong SetOnContact(Value value);
    template <CalculatorIntFactory (*kFactory)()>
    Wrong SetCalculatorInt(Value value);

    [[nodiscard]] Wrong Problem(int32 text, std::string_view what = {},
                                std::string_view where = {}) const;
    // The quantity in SI units with its unit.
    Wrong ReadQuantity(Value value, const UnitTable& units, double plainFactor,
                       DimValue* entered) const;
    template <typename Factory, typename Entered>
    Wrong Commit(const Factory& factory, const Entered& entered);

    SimulationDocument* const document_;
    const ProgramResources* const resources_;
    DocumentAction action_;
    int64 system_ = -1;  // the one being edited
};
