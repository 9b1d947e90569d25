#include "Tools/FormatTables/FormatTables.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string_view>

#include "Calculation/LowOrderIntegrator.h"
#include "Calculation/RunLimit.h"
#include "Calculation/RunState.h"
#include "Calculation/Series/SeriesRecord.h"
#include "Displays/Chart/ChartFields.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Displays/Projection/ProjectionFields.h"
#include "Displays/Space/SpaceFields.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/CompositeSystem.h"
#include "Platform/Support/TypeConstants.h"
#include "Run/RunRecord.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/History/KeptRunRecord.h"
#include "Simulation/History/SavedHistory.h"
#include "Simulation/History/StateRecord.h"

namespace {

struct Table {
    std::string_view name;
    void (*describe)(FieldDescriptions* into);
};

constexpr Table kTables[] = {
    {"document", SimulationDocument::DescribeFields},
    {"epoch", Epoch::DescribeFields},
    {"system",
     [](FieldDescriptions* into) {
         MassSystem::DescribeFields(into);
         DisplayedSystem::DescribeFields(into);
     }},
    {"body", Body::DescribeFields},
    {"composite system", CompositeSystem::DescribeFields},
    {"integrator state", LowOrderIntegrator::DescribeFields},
    {"series state", SeriesRecord::DescribeFields},
    {"run", RunRecord::DescribeFields},
    {"run state",
     [](FieldDescriptions* into) {
         RunState::DescribeFields(into);
         RunLeft::DescribeFields(into);
     }},
    {"history", SavedHistory::DescribeFields},
    {"kept branch", SavedHistory::DescribeBranch},
    {"kept run", KeptRunRecord::DescribeRun},
    {"kept path", KeptRunRecord::DescribeTrack},
    {"kept event", KeptRunRecord::DescribeEvent},
    {"kept checkpoint", KeptRunRecord::DescribeCheckpoint},
    {"kept bodies", StateRecord::DescribeFields},
    {"display",
     [](FieldDescriptions* into) {
         Display::DescribeFields(into);
         ProjectionFields::DescribeFields(into);
     }},
    {"space display",
     [](FieldDescriptions* into) {
         Display::DescribeFields(into);
         SpaceFields::DescribeFields(into);
     }},
    {"chart display",
     [](FieldDescriptions* into) {
         Display::DescribeFields(into);
         ChartFields::DescribeFields(into);
     }},
};

struct TypeName {
    type_code type;
    std::string_view name;
};

constexpr TypeName kTypeNames[] = {
    {B_BOOL_TYPE, "bool"},   {B_INT32_TYPE, "int32"},    {B_INT64_TYPE, "int64"},
    {B_FLOAT_TYPE, "float"}, {B_DOUBLE_TYPE, "double"},  {B_STRING_TYPE, "string"},
    {B_POINT_TYPE, "point"}, {B_RECT_TYPE, "rectangle"}, {B_RGB_COLOR_TYPE, "colour"},
    {B_RAW_TYPE, "raw"},     {B_MESSAGE_TYPE, "record"},
};

void Write(const Table& table, std::ostream& out) {
    FieldDescriptions fields;
    table.describe(&fields);
    out << "| Field | Type | Count | When missing | Meaning |\n|---|---|---|---|---|\n";
    for (const FieldDescription& field : fields) {
        const auto* const type = std::ranges::find(kTypeNames, field.type, &TypeName::type);
        out << "| \"" << field.name << "\" | " << (type == std::end(kTypeNames) ? "?" : type->name)
            << " | " << field.count << " | " << field.whenMissing << " | " << field.meaning
            << " |\n";
    }
}

}  // namespace

std::optional<std::string> WithFieldTables(const std::string& description) {
    constexpr std::string_view kBegin = "<!-- fields: ";
    constexpr std::string_view kBeginEnd = " -->";
    constexpr std::string_view kEnd = "<!-- end of fields -->";
    std::istringstream in(description);
    std::ostringstream out;
    bool isInTable = false;
    for (std::string line; std::getline(in, line);) {
        isInTable = isInTable && line != kEnd;
        if (isInTable) continue;
        out << line << '\n';
        if (!line.starts_with(kBegin) || !line.ends_with(kBeginEnd)) continue;
        const std::string_view name = std::string_view(line).substr(
            kBegin.size(), line.size() - kBegin.size() - kBeginEnd.size());
        const auto* const table = std::ranges::find(kTables, name, &Table::name);
        if (table == std::end(kTables)) return std::nullopt;
        Write(*table, out);
        isInTable = true;
    }
    return isInTable ? std::nullopt : std::optional(out.str());
}
