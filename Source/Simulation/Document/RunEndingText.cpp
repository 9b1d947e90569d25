#include "Simulation/Document/RunEndingText.h"

#include "Calculation/RunEnding.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/MassSystem.h"
#include "Model/Units/QuantityText.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kDistanceDigits = 3;

DocumentText TextFor(const RunEnding& ending) {
    switch (ending.reason) {
        case RunEnding::Reason::kNotFinite:
            return ending.pair ? kTextEndsNotFinite : kTextEndsNotFiniteAlone;
        case RunEnding::Reason::kTimeStands:
            return ending.pair ? kTextEndsTimeStands : kTextEndsTimeStandsAlone;
        case RunEnding::Reason::kNotMerged:
            return kTextEndsNotMerged;
        case RunEnding::Reason::kNoMemory:
            return kTextEndsNoMemory;
        case RunEnding::Reason::kGoal:
            return kTextEndsAtGoal;
        case RunEnding::Reason::kTouchedBackwards:
            return kTextEndsTouchedBackwards;
        case RunEnding::Reason::kTouched:
            return kTextEndsTouched;
        case RunEnding::Reason::kNothingInteracts:
            break;
    }
    return kTextEndsNothingInteracts;
}

std::string NameOf(const MassSystem* system) {
    return system != nullptr ? system->Name() : std::string();
}

std::string QuantityWithUnit(double value, int digits, double uval, const UnitTable& units) {
    return print_double(value / uval, digits) + ' ' + units.Abbreviation(uval);
}

}  // namespace

std::string RunEndingText(const RunEnding& ending, EpochPortal* portal,
                          const ProgramResources& resources) {
    const ReadGuard guard(portal);
    const AbEpoch& epoch = *portal->FocusEpoch();
    const std::string time =
        QuantityWithUnit(ending.time, kReadableDigits, epoch.TimeUval(), resources.TimeUnits());
    std::string heavier;
    std::string lighter;
    std::string distance;
    if (ending.pair) {
        const MassSystem* const body = epoch.SystemFromID(ending.pair->earlier);
        heavier = NameOf(body);
        lighter = NameOf(epoch.SystemFromID(ending.pair->later));
        distance = QuantityWithUnit(ending.pair->distance, kDistanceDigits,
                                    body != nullptr ? body->PositionUval() : 1.0,
                                    resources.DistanceUnits());
    }
    return FillIn(resources.InterfaceLabel(TextFor(ending)), {time, heavier, lighter, distance});
}
