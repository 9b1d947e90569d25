#include "Run/DocumentEdit.h"

#include <charconv>
#include <cmath>
#include <numbers>
#include <span>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/EpochFactories.h"
#include "Model/Commands/OrbitFactory.h"
#include "Model/Commands/SystemFactories.h"
#include "Model/Systems/Body.h"
#include "Resources/Runner.h"
#include "Run/EditText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

using Quantity = SystemQuantityFactory::Quantity;

constexpr std::string_view kEpoch = "epoch";
constexpr std::string_view kAnimation = "animation";
constexpr std::string_view kOrigin = "origin";
constexpr std::string_view kOn = "on";
constexpr std::string_view kOff = "off";

template <typename Number>
bool ReadPlain(std::string_view text, Number* number, int base = 10) {
    const char* const end = text.data() + text.size();
    std::from_chars_result result{};
    if constexpr (std::is_integral_v<Number>)
        result = std::from_chars(text.data(), end, *number, base);
    else
        result = std::from_chars(text.data(), end, *number);
    return result.ec == std::errc() && result.ptr == end;
}

// "#rrggbb".
bool ReadColor(std::string_view text, rgb_color* color) {
    uint32 rgb = 0;
    if (text.size() != 7 || text[0] != '#' || !ReadPlain(text.substr(1), &rgb, 16)) return false;
    *color = {static_cast<uint8>(rgb >> 16), static_cast<uint8>(rgb >> 8 & 0xff),
              static_cast<uint8>(rgb & 0xff), 255};
    return true;
}

bool ReadSwitch(std::string_view text, bool* on) {
    *on = text == kOn;
    return *on || text == kOff;
}

}  // namespace

struct DocumentEdit::Field {
    std::string_view name;
    Wrong (DocumentEdit::*set)(Value);
};

const DocumentEdit::Field DocumentEdit::kSystemFields[] = {
    {"name", &DocumentEdit::SetName},
    {"mass", &DocumentEdit::SetQuantity<Quantity::kMass>},
    {"radius", &DocumentEdit::SetQuantity<Quantity::kRadius>},
    {"r", &DocumentEdit::SetVector<false>},
    {"r.x", &DocumentEdit::SetComponent<false, 0>},
    {"r.y", &DocumentEdit::SetComponent<false, 1>},
    {"r.z", &DocumentEdit::SetComponent<false, 2>},
    {"v", &DocumentEdit::SetVector<true>},
    {"v.x", &DocumentEdit::SetComponent<true, 0>},
    {"v.y", &DocumentEdit::SetComponent<true, 1>},
    {"v.z", &DocumentEdit::SetComponent<true, 2>},
    {"trail", &DocumentEdit::SetColorOrSwitch<false>},
    {"disc", &DocumentEdit::SetColorOrSwitch<true>},
    {"relative-to", &DocumentEdit::SetRelativeTo},
    {"orbit.a", &DocumentEdit::SetOrbit<OrbitalElement::kSemiMajorAxis>},
    {"orbit.q", &DocumentEdit::SetOrbit<OrbitalElement::kPeriapsisDistance>},
    {"orbit.e", &DocumentEdit::SetOrbit<OrbitalElement::kEccentricity>},
    {"orbit.i", &DocumentEdit::SetOrbit<OrbitalElement::kInclination>},
    {"orbit.node", &DocumentEdit::SetOrbit<OrbitalElement::kNode>},
    {"orbit.peri", &DocumentEdit::SetOrbit<OrbitalElement::kArgumentOfPeriapsis>},
    {"orbit.M", &DocumentEdit::SetOrbit<OrbitalElement::kMeanAnomaly>},
    {"orbit.nu", &DocumentEdit::SetOrbit<OrbitalElement::kTrueAnomaly>},
    {"orbit.t", &DocumentEdit::SetOrbit<OrbitalElement::kTimeSincePeriapsis>},
};

const DocumentEdit::Field DocumentEdit::kEpochFields[] = {
    {"name", &DocumentEdit::SetEpochName},    {"time", &DocumentEdit::SetTime},
    {"cutoff", &DocumentEdit::SetCutoff},     {"order", &DocumentEdit::SetOrder},
    {"com-on-go", &DocumentEdit::SetCOMOnGo}, {"on-contact", &DocumentEdit::SetOnContact},
};

const DocumentEdit::Field DocumentEdit::kAnimationFields[] = {
    {"segment-length", &DocumentEdit::SetCalculatorInt<SegmentLengthFactory>},
    {"updates-per-second", &DocumentEdit::SetCalculatorInt<UpdatesPerSecondFactory>},
};

DocumentEdit::DocumentEdit(SimulationDocument* document, SimulationController* controller,
                           const ProgramResources* resources)
    : document_(document), resources_(resources), action_(document, controller, resources) {}

std::optional<std::string> DocumentEdit::Apply(std::string_view text) {
    const std::size_t equals = text.find('=');
    const bool hasValue = equals != std::string_view::npos;
    const std::string_view target = Trimmed(text.substr(0, equals));
    const Value value = hasValue ? Trimmed(text.substr(equals + 1)) : Value();
    if (DocumentAction::IsAction(target)) return action_.Do(target, value);
    if (!hasValue) return Problem(kTextEditNoValue, text);

    // A name may hold points: the longest one that fits is meant.
    for (std::size_t dot = target.rfind('.'); dot != std::string_view::npos && dot > 0;
         dot = target.rfind('.', dot - 1)) {
        const std::string_view owner = target.substr(0, dot);
        const std::optional<int64> system = FindSystem(document_, owner);
        if (!system && owner != kEpoch && owner != kAnimation) continue;
        system_ = system.value_or(kNoSystemID);
        const std::string_view name = target.substr(dot + 1);
        const std::span<const Field> fields = system ? std::span<const Field>(kSystemFields)
                                              : owner == kEpoch
                                                  ? std::span<const Field>(kEpochFields)
                                                  : std::span<const Field>(kAnimationFields);
        for (const Field& field : fields)
            if (field.name == name) return (this->*field.set)(value);
        return Problem(kTextEditNoField, name, owner);
    }
    return Problem(kTextEditNoSystem, target.substr(0, target.find('.')));
}

DocumentEdit::Wrong DocumentEdit::Problem(int32 text, std::string_view what,
                                          std::string_view where) const {
    return FillIn(resources_->InterfaceLabel(text), {what, where});
}

DocumentEdit::Wrong DocumentEdit::ReadQuantity(Value value, const UnitTable& units,
                                               double plainFactor, DimValue* entered) const {
    const UnitTable::Parsed parsed = units.Parse(value, plainFactor);
    switch (parsed.error) {
        case UnitTable::ParseError::kNotANumber:
            return Problem(kTextEditNoNumber, value);
        case UnitTable::ParseError::kUnknownUnit:
            return Problem(kTextEditNoUnit, value);
        case UnitTable::ParseError::kNone:
            break;
    }
    *entered = DimValue{parsed.value, parsed.unit ? parsed.unit->factor : plainFactor};
    return std::nullopt;
}

template <typename Factory, typename Entered>
DocumentEdit::Wrong DocumentEdit::Commit(const Factory& factory, const Entered& entered) {
    EpochPortal* const portal = document_->Portal();
    if (factory.Current(*portal) == entered || CommitEntry(portal, factory, entered))
        return std::nullopt;
    return Problem(kTextEditRefused);
}

DocumentEdit::Wrong DocumentEdit::SetName(Value value) {
    return Commit(NameFactory(system_), std::string(value));
}

template <SystemQuantityFactory::Quantity kQuantity>
DocumentEdit::Wrong DocumentEdit::SetQuantity(Value value) {
    const SystemQuantityFactory factory(kQuantity, system_);
    const UnitTable& units =
        kQuantity == Quantity::kMass ? resources_->MassUnits() : resources_->DistanceUnits();
    const DimValue former = factory.Current(*document_->Portal());
    DimValue entered = former;
    if (Wrong wrong = ReadQuantity(value, units, former.Uval(), &entered)) return wrong;
    entered.SetValue(std::fabs(entered.Value()));
    // Those of a group follow from its members: the factory takes the unit alone.
    const bool isBody = dynamic_cast<const Body*>(ChosenSystem(*document_->Portal(), system_));
    if (!isBody && entered.Value() != former.Value()) return Problem(kTextEditRefused);
    return Commit(factory, entered);
}

template <bool kIsVelocity>
DocumentEdit::Wrong DocumentEdit::SetVector(Value value) {
    const SystemVectorFactory factory(kIsVelocity ? kVelocityQuantity : kPositionQuantity, system_);
    // "X Y Z UNIT": the unit is that of all three.
    std::string_view rest = value;
    const std::string_view words[] = {TakeUpTo(' ', &rest), TakeUpTo(' ', &rest),
                                      TakeUpTo(' ', &rest)};
    double numbers[3] = {};
    double unit = factory.Current(*document_->Portal()).Uval();
    const UnitTable& units = kIsVelocity ? resources_->SpeedUnits() : resources_->DistanceUnits();
    for (int i = 0; i < 3; i++) {
        const std::string component = std::string(words[i]) + ' ' + std::string(Trimmed(rest));
        DimValue entered{0.0, unit};
        if (Wrong wrong = ReadQuantity(Trimmed(component), units, unit, &entered)) return wrong;
        numbers[i] = entered.Value();
        unit = entered.Uval();
    }
    return Commit(factory, DimVector{numbers[0], numbers[1], numbers[2], unit});
}

template <bool kIsVelocity, int kComponent>
DocumentEdit::Wrong DocumentEdit::SetComponent(Value value) {
    const SystemVectorFactory factory(kIsVelocity ? kVelocityQuantity : kPositionQuantity, system_);
    EpochPortal* const portal = document_->Portal();
    const UnitTable& units = kIsVelocity ? resources_->SpeedUnits() : resources_->DistanceUnits();
    DimValue entered{0.0, factory.Current(*portal).Uval()};
    if (Wrong wrong = ReadQuantity(value, units, entered.Uval(), &entered)) return wrong;
    const DimVector former = factory.Current(*portal);
    const double now = kComponent == 0 ? former.x : kComponent == 1 ? former.y : former.z;
    if (entered == DimValue{now, former.Uval()} ||
        ExecuteFiled(portal, factory.MakeComponentCommand(portal, kComponent, entered)))
        return std::nullopt;
    return Problem(kTextEditRefused);
}

template <bool kIsDisc>
DocumentEdit::Wrong DocumentEdit::SetColorOrSwitch(Value value) {
    bool on;
    if (ReadSwitch(value, &on))
        return Commit(kIsDisc ? DiscOnFactory(system_) : TrailOnFactory(system_), on);
    rgb_color color;
    if (ReadColor(value, &color))
        return Commit(kIsDisc ? DiscColorFactory(system_) : TrailColorFactory(system_), color);
    return Problem(kTextEditNoColor, value);
}

DocumentEdit::Wrong DocumentEdit::SetRelativeTo(Value value) {
    const std::optional<int64> referent =
        value == kOrigin ? kOriginID : FindSystem(document_, value);
    if (!referent) return Problem(kTextEditNoSystem, value);
    if (*referent == system_) return Problem(kTextEditRefused);
    return Commit(RelativeToFactory(system_), *referent);
}

DocumentEdit::Wrong DocumentEdit::ReadAngle(Value value, double* angle) const {
    constexpr std::pair<Value, double> kUnits[] = {{"", std::numbers::pi / 180.0},
                                                   {"deg", std::numbers::pi / 180.0},
                                                   {"rad", 1.0},
                                                   {"h", std::numbers::pi / 12.0}};
    const char* const end = value.data() + value.size();
    const auto read = std::from_chars(value.data(), end, *angle);
    if (read.ec != std::errc()) return Problem(kTextEditNoNumber, value);
    const Value unit = Trimmed({read.ptr, static_cast<std::size_t>(end - read.ptr)});
    for (const auto& [name, radians] : kUnits) {
        if (unit != name) continue;
        *angle *= radians;
        return std::nullopt;
    }
    return Problem(kTextEditNoUnit, value);
}

template <OrbitalElement kElement>
DocumentEdit::Wrong DocumentEdit::SetOrbit(Value value) {
    constexpr bool kIsDistance = kElement == OrbitalElement::kSemiMajorAxis ||
                                 kElement == OrbitalElement::kPeriapsisDistance;
    EpochPortal* const portal = document_->Portal();
    double entered = 0.0;
    if constexpr (kElement == OrbitalElement::kEccentricity) {
        if (!ReadPlain(value, &entered)) return Problem(kTextEditNoNumber, value);
    } else if constexpr (kIsDistance || kElement == OrbitalElement::kTimeSincePeriapsis) {
        const double unit = kIsDistance ? ChosenSystem(*portal, system_)->PositionUval()
                                        : portal->FocusEpoch()->TimeUval();
        const UnitTable& units =
            kIsDistance ? resources_->DistanceUnits() : resources_->TimeUnits();
        DimValue quantity{0.0, unit};
        if (Wrong wrong = ReadQuantity(value, units, unit, &quantity)) return wrong;
        entered = quantity.Value();
    } else if (Wrong wrong = ReadAngle(value, &entered)) {
        return wrong;
    }
    return Commit(OrbitFactory(kElement, system_), entered);
}

DocumentEdit::Wrong DocumentEdit::SetEpochName(Value value) {
    return Commit(EpochNameFactory(), std::string(value));
}

DocumentEdit::Wrong DocumentEdit::SetTime(Value value) {
    const EpochTimeFactory time;
    DimValue entered = time.Current(*document_->Portal());
    if (Wrong wrong = ReadQuantity(value, resources_->TimeUnits(), entered.Uval(), &entered))
        return wrong;
    return Commit(time, entered);
}

DocumentEdit::Wrong DocumentEdit::SetCutoff(Value value) {
    double cutoff;
    if (!ReadPlain(value, &cutoff)) return Problem(kTextEditNoNumber, value);
    return Commit(CutoffFactory(), cutoff);
}

DocumentEdit::Wrong DocumentEdit::SetOrder(Value value) {
    int32 order;
    if (!ReadPlain(value, &order)) return Problem(kTextEditNoNumber, value);
    return Commit(OrderFactory(), order);
}

DocumentEdit::Wrong DocumentEdit::SetOnContact(Value value) {
    const std::optional<int32> what = ContactFromName(value);
    if (!what) return Problem(kTextEditRefused);
    return Commit(OnContactFactory(), *what);
}

DocumentEdit::Wrong DocumentEdit::SetCOMOnGo(Value value) {
    bool on;
    if (!ReadSwitch(value, &on)) return Problem(kTextEditNoSwitch, value);
    return Commit(COMOnGoFactory(), on);
}

template <CalculatorIntFactory (*kFactory)()>
DocumentEdit::Wrong DocumentEdit::SetCalculatorInt(Value value) {
    int32 setting;
    if (!ReadPlain(value, &setting)) return Problem(kTextEditNoNumber, value);
    return Commit(kFactory(), setting);
}
