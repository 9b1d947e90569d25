#include "Displays/Comparison/EpochDifferences.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Epochs/EpochLimits.h"
#include "Model/Systems/Body.h"
#include "Model/Units/FittingUnit.h"
#include "Model/Units/QuantityText.h"
#include "Resources/SettingsFeatures.h"
#include "Resources/SimulationWindow.h"
#include "Resources/Views.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

using Path = std::vector<const AbEpoch*>;
using Bodies = std::vector<std::pair<int64, const Body*>>;  // by identifier

// More nobody reads.
constexpr std::size_t kMaxLines = 400;
// Of a change, what one of its coordinates has of it by rounding.
constexpr double kLostPart = 1e-12;

void AddBodies(const MassSystem* system, Bodies* bodies) {
    if (system == nullptr) return;
    if (const auto* const body = dynamic_cast<const Body*>(system))
        bodies->emplace_back(body->ID(), body);
    for (int32 i = 0; i < system->CountChildren(); i++)
        AddBodies(system->ChildAt(i), bodies);
}

Bodies BodiesOf(const AbEpoch& epoch) {
    Bodies bodies;
    AddBodies(epoch.RootSystem(), &bodies);
    std::ranges::sort(bodies);
    return bodies;
}

const Body* Find(const Bodies& bodies, int64 id) {
    const auto found = std::ranges::lower_bound(bodies, id, {}, &Bodies::value_type::first);
    return found == bodies.end() || found->first != id ? nullptr : found->second;
}

double LengthOf(const ThreeVector& way) {
    return std::sqrt(Dot(way, way));
}

// What happened to all bodies alike.
struct Shift {
    bool isThere = false;
    ThreeVector way;    // m
    ThreeVector boost;  // m/s
};

// A change beyond that shift; what rounding makes of such a sum is none.
ThreeVector Change(const ThreeVector& was, const ThreeVector& is, const ThreeVector& shift) {
    const ThreeVector change = (is - was) - shift;
    const bool isShifted = shift != ThreeVector{};
    const double lost =
        8.0 * std::numeric_limits<double>::epsilon() * (LengthOf(was) + LengthOf(shift));
    return isShifted && LengthOf(change) <= lost ? ThreeVector{} : change;
}

int32 CountMoved(const Bodies& were, const Bodies& are, const Shift& shift) {
    int32 moved = 0;
    for (const auto& [id, body] : are)
        if (const Body* const was = Find(were, id); was != nullptr) {
            if (Change(was->Position(), body->Position(), shift.way) != ThreeVector{}) moved++;
            if (Change(was->Velocity(), body->Velocity(), shift.boost) != ThreeVector{}) moved++;
        }
    return moved;
}

// The centre of mass came to the origin, if less is left to tell then.
Shift CommonShift(const Bodies& were, const Bodies& are) {
    Shift shift{true, {}, {}};
    double mass = 0.0;
    for (const auto& [id, body] : were) {
        shift.way -= body->Position() * body->M();
        shift.boost -= body->Velocity() * body->M();
        mass += body->M();
    }
    if (!(mass > 0.0)) return {};
    shift.way *= 1.0 / mass;
    shift.boost *= 1.0 / mass;
    return CountMoved(were, are, shift) < CountMoved(were, are, {}) ? shift : Shift{};
}

// From the epoch up.
Path WayUp(const AbEpoch* epoch) {
    Path way;
    for (; epoch != nullptr; epoch = epoch->Parent())
        way.push_back(epoch);
    return way;
}

class Writer {
public:
    explicit Writer(const DisplayContext& context) : context_(context) {}

    void Compare(const AbEpoch& before, const AbEpoch& after) {
        const bool isRun = before.Time() != after.Time() && !after.Writeable();
        const Bodies were = BodiesOf(before);
        const Bodies are = BodiesOf(after);
        shift_ = isRun ? Shift{} : CommonShift(were, are);
        if (shift_.isThere) Add(Label(kTextCentered));
        for (const auto& [id, body] : were)
            if (Find(are, id) == nullptr)
                Add(FillIn(Label(isRun ? kTextBodyMerged : kTextBodyRemoved), {body->Name()}));
        for (const auto& [id, body] : are) {
            const Body* const was = Find(were, id);
            if (was == nullptr)
                Add(FillIn(Label(kTextBodyAdded), {body->Name()}));
            else
                CompareBodies(*was, *body, isRun);
        }
        CompareSettings(before, after);
    }
    [[nodiscard]] std::string Take() { return std::exchange(text_, {}); }

private:
    void CompareBodies(const Body& was, const Body& is, bool isRun) {
        if (was.Name() != is.Name()) Add(FillIn(Label(kTextBodyRenamed), {was.Name(), is.Name()}));
        // What a merger makes is heavier; that the other body is gone is in the list already.
        AddValue(is.Name(), kLabelMass, {was.M(), is.M()}, is.MassUval(), *context_.massUnits);
        AddValue(is.Name(), kLabelRadius, {was.Radius(), is.Radius()}, is.RadiusUval(),
                 *context_.distanceUnits);
        if (isRun) return;
        AddWay(kTextMoved, is.Name(), Change(was.Position(), is.Position(), shift_.way),
               is.PositionUval(), *context_.distanceUnits);
        AddWay(kTextBoosted, is.Name(), Change(was.Velocity(), is.Velocity(), shift_.boost),
               is.SpeedUval(), *context_.speedUnits);
    }
    void CompareSettings(const AbEpoch& was, const AbEpoch& is) {
        AddSetting(kLabelOrder, std::to_string(was.Order()), std::to_string(is.Order()));
        AddSetting(kLabelCutoff, print_double(was.Cutoff()), print_double(is.Cutoff()));
        AddSetting(kLabelOnContact, ContactText(was), ContactText(is));
    }
    [[nodiscard]] std::string ContactText(const AbEpoch& epoch) const {
        return Label(epoch.OnContact() == kContactMerges  ? kLabelContactMerges
                     : epoch.OnContact() == kContactStops ? kLabelContactStops
                                                          : kLabelContactPasses);
    }
    void AddValue(const std::string& body, int32 label, std::pair<double, double> values,
                  double uval, const UnitTable& units) {
        if (values.first == values.second) return;
        const UnitInfo* const unit = units.FindNearest(uval);
        const double factor = unit == nullptr ? 1.0 : unit->factor;
        const auto text = [&](double value) {
            return QuantityText(value, factor) + ' ' + units.Abbreviation(uval);
        };
        Add(FillIn(Label(kTextOfBody),
                   {body, FillIn(Label(kTextInstead),
                                 {Label(label), text(values.second), text(values.first)})}));
    }
    void AddWay(int32 label, const std::string& body, const ThreeVector& way, double uval,
                const UnitTable& units) {
        const double length = LengthOf(way);
        if (length == 0.0) return;
        const double factor = SmallerUnit(length, uval);
        std::string text;
        const char* separator = "";
        for (const double part : {way.x, way.y, way.z}) {
            const bool isLost = std::abs(part) < kLostPart * length;
            text += separator + print_double(isLost ? 0.0 : part / factor, kReadableDigits);
            separator = "; ";
        }
        Add(FillIn(Label(label), {body, text, units.Abbreviation(factor)}));
    }
    void AddSetting(int32 label, const std::string& was, const std::string& is) {
        if (was != is) Add(FillIn(Label(kTextInstead), {Label(label), is, was}));
    }
    void Add(const std::string& line) {
        if (++lines_ <= kMaxLines) text_ += "    " + line + '\n';
    }
    [[nodiscard]] const std::string& Label(int32 number) const {
        return context_.texts->Label(number);
    }

    const DisplayContext& context_;
    Shift shift_;
    std::string text_;
    std::size_t lines_ = 0;
};

}  // namespace

std::string DescribeDifferences(const ComparedEpoch& one, const ComparedEpoch& other,
                                const BranchStarts& starts, const DisplayContext& context) {
    const InterfaceTexts& texts = *context.texts;
    Path ways[] = {WayUp(one.epoch), WayUp(other.epoch)};
    const AbEpoch* common = nullptr;
    while (!ways[0].empty() && !ways[1].empty() && ways[0].back() == ways[1].back()) {
        common = ways[0].back();
        for (Path& way : ways)
            way.pop_back();
    }
    std::string text;
    Writer writer(context);
    const std::string* const names[] = {&one.name, &other.name};
    for (int32 i = 0; i < 2; i++) {
        const AbEpoch* before = common;
        for (auto epoch = ways[i].rbegin(); epoch != ways[i].rend(); ++epoch) {
            if (const auto start = starts.find(*epoch); start != starts.end())
                before = start->second.get();
            // What is above all epochs is none.
            if (before != nullptr && before->RootSystem() != nullptr &&
                before->RootSystem()->CountChildren() > 0)
                writer.Compare(*before, **epoch);
            before = *epoch;
        }
        if (const std::string edits = writer.Take(); !edits.empty())
            text += FillIn(texts.Label(kTextSinceThen), {*names[i]}) + '\n' + edits + '\n';
    }
    return text.empty() ? texts.Label(kTextOnlyNewStart) + '\n' : text;
}
