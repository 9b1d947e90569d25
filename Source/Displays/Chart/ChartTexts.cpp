#include "Displays/Chart/ChartTexts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Displays/Base/DisplayContext.h"
#include "Model/Units/FittingUnit.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Resources/Chart.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr int kValueDigits = 7;

}  // namespace

std::string ChartTexts::NameOf(Quantity quantity) const {
    return context_.texts->Label(kTextDistance + static_cast<int32>(quantity));
}

std::string ChartTexts::NameOf(const ChartLine& line, const std::string& body,
                               const std::string& about) const {
    std::string name = NameOf(line.quantity);
    if (!IsOfBody(line.quantity)) return name;
    return FillIn(context_.texts->Label(kTextChartLine), {body, about, name});
}

const char* ChartTexts::NameOf(Dimension dimension) const {
    switch (dimension) {
        case Dimension::kLength:
            return context_.texts->Text(kTextChartLength);
        case Dimension::kSpeed:
            return context_.texts->Text(kTextChartSpeed);
        case Dimension::kAngle:
            return context_.texts->Text(kTextChartAngle);
        case Dimension::kTime:
            return context_.texts->Text(kLabelChartTime);
        default:
            return context_.texts->Text(kTextChartNumber);
    }
}

std::string ChartTexts::WithUnit(const std::string& name, const std::string& unit) const {
    if (unit.empty()) return name;
    return FillIn(context_.texts->Label(kTextChartUnit), {name, unit});
}

std::string ChartTexts::TimeTitle() const {
    return WithUnit(NameOf(Dimension::kTime), context_.timeUnits->Abbreviation(timeUnit));
}

void ChartTexts::SetUnit(Dimension dimension, ChartScene::Axis* axis) const {
    const double size = std::max(std::abs(axis->range.low), std::abs(axis->range.high));
    axis->unit = 1.0;
    axis->unitName.clear();
    if (dimension == Dimension::kTime) {
        axis->unit = timeUnit;
        axis->unitName = context_.timeUnits->Abbreviation(timeUnit);
    } else if (dimension == Dimension::kLength) {
        axis->unit = SmallerUnit(size, lengthUnit);
        axis->unitName = context_.distanceUnits->Abbreviation(axis->unit);
    } else if (dimension == Dimension::kSpeed) {
        axis->unit = SmallerUnit(size, SPEED_UVAL_PREF);
        axis->unitName = context_.speedUnits->Abbreviation(axis->unit);
    } else if (dimension == Dimension::kAngle) {
        axis->unit = kDegree;
        axis->unitName = context_.texts->Label(kTextDegrees);
    }
}

void ChartTexts::Name(const std::vector<Quantity>& quantities, ChartScene::Axis* axis) const {
    const Dimension dimension = quantities.empty() ? Dimension::kTime : DimensionOf(quantities[0]);
    SetUnit(dimension, axis);
    axis->title = WithUnit(quantities.size() == 1 ? NameOf(quantities[0]) : NameOf(dimension),
                           axis->unitName);
}

std::string ChartTexts::ValueText(double value, const ChartScene::Axis& axis) {
    if (std::isnan(value)) return {};
    const std::string number = Grouped(print_double(value / axis.unit, kValueDigits));
    return axis.unitName.empty() ? number : number + ' ' + axis.unitName;
}
