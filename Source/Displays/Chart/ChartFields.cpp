#include "Displays/Chart/ChartFields.h"

#include <algorithm>
#include <cmath>

#include "Displays/Base/ChosenField.h"

namespace {

constexpr const char* kBody = "Chart body";
constexpr std::size_t kMaxBodies = 64;
constexpr double kFarthest = 1e200;

constexpr int64 kAllShown = (int64{1} << kCountQuantities) - 1;

int64 BitOf(Quantity quantity) {
    return int64{1} << static_cast<int32>(quantity);
}

// Both can stand on one axis.
bool IsAlike(Quantity a, Quantity b) {
    return DimensionOf(a) == DimensionOf(b) && IsOfBody(a) == IsOfBody(b) &&
           (a == Quantity::kBodies) == (b == Quantity::kBodies);
}

bool IsAgainst(int32 against) {
    return against >= ChartFields::kTime && IsOfBody(static_cast<Quantity>(against));
}

bool IsCrossing(int32 crossing) {
    return crossing >= 0 && crossing <= static_cast<int32>(Crossing::kZ);
}

bool IsShown(int64 shown) {
    return (shown & kAllShown) != 0;
}

bool IsViewChosen(const ChartFields& fields) {
    return fields.isChosenView;
}

template <auto... kMember>
constexpr Field<kMember...> ViewField(const char* name, const char* meaning) {
    return {
        .name = name, .meaning = meaning, .isWritten = IsViewChosen, .whenMissing = "all is seen"};
}

bool IsSound(const ChartRange& range, bool isLog) {
    return std::isfinite(range.low) && range.low < range.high && std::abs(range.low) < kFarthest &&
           range.high < kFarthest && (!isLog || range.low > 1.0 / kFarthest);
}

using F = ChartFields;
constexpr FieldTable kFields{
    Field<&F::shown>{.name = "Chart shows",
                     .meaning = "bits of the quantities shown, all of one dimension",
                     .missing = 1,
                     .accepts = IsShown},
    ChosenField<&F::about>("Chart about", "the body that places are relative to",
                           "the heaviest other one"),
    Field<&F::against>{.name = "Chart against",
                       .meaning = "the quantity across, -1 to 15; -1: time",
                       .missing = ChartFields::kTime,
                       .accepts = IsAgainst},
    Field<&F::crossing>{.name = "Chart points",
                        .meaning = "0: all; 1, 2, 3: where x, y, z passes 0 upwards",
                        .missing = 0,
                        .accepts = IsCrossing},
    ChosenField<&F::isLogAcross>("Chart log across", "the axis across is logarithmic"),
    ChosenField<&F::isLogUp>("Chart log up", "the axis upwards is logarithmic"),
    ChosenField<&F::isLight>("Chart light", "the background is light"),
    ViewField<&F::across, &ChartRange::low>("Chart left", "the least shown across, SI units"),
    ViewField<&F::across, &ChartRange::high>("Chart right", "the greatest shown across"),
    ViewField<&F::up, &ChartRange::low>("Chart bottom", "the least shown upwards"),
    ViewField<&F::up, &ChartRange::high>("Chart top", "the greatest shown upwards"),
};

}  // namespace

std::vector<Quantity> ChartFields::Quantities() const {
    std::vector<Quantity> quantities;
    for (int32 i = 0; i < kCountQuantities; i++)
        if (Shows(static_cast<Quantity>(i))) quantities.push_back(static_cast<Quantity>(i));
    return quantities;
}

void ChartFields::Toggle(Quantity quantity) {
    const int64 bit = BitOf(quantity);
    if (!IsAlike(quantity, Quantities().front()))
        shown = bit;
    else if (shown != bit)
        shown ^= bit;
}

void ChartFields::ToggleBody(int64 body) {
    const auto found = std::find(bodies.begin(), bodies.end(), body);
    if (found != bodies.end())
        bodies.erase(found);
    else if (bodies.size() < kMaxBodies)
        bodies.push_back(body);
}

std::optional<Quantity> ChartFields::Against() const {
    if (against == kTime || !IsOfBody(Quantities().front())) return std::nullopt;
    return static_cast<Quantity>(against);
}

Crossing ChartFields::Points() const {
    return IsOfBody(Quantities().front()) ? static_cast<Crossing>(crossing) : Crossing::kNone;
}

status_t ChartFields::Write(BMessage* archive) const {
    const status_t status = kFields.Write(*this, archive);
    FieldWriter writer(archive, status);
    for (const int64 body : bodies)
        writer.Add(kBody, body);
    return writer.Status();
}

void ChartFields::Read(const BMessage& archive) {
    kFields.Read(archive, this);
    shown &= kAllShown;
    // Those that do not belong to the first one go.
    const Quantity first = Quantities().front();
    for (const Quantity quantity : Quantities())
        if (!IsAlike(quantity, first)) shown &= ~BitOf(quantity);
    bodies.clear();
    int64 body = 0;
    for (int32 i = 0; archive.FindInt64(kBody, i, &body) == B_OK && bodies.size() < kMaxBodies; i++)
        if (std::find(bodies.begin(), bodies.end(), body) == bodies.end()) bodies.push_back(body);
    isChosenView =
        archive.HasName("Chart left") && IsSound(across, IsAcrossLog()) && IsSound(up, isLogUp);
}

void ChartFields::DescribeFields(FieldDescriptions* into) {
    kFields.Describe(into);
    DescribeField(into, kBody, B_INT64_TYPE, "per body, up to 64", "one that is chosen by itself",
                  "a body that a line is drawn of");
}
