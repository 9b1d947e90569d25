#include "Run/Sweep/SweepPlan.h"

#include "Resources/Sweep.h"
#include "Run/CsvText.h"
#include "Run/Options.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr const char* kAxis = "Axis";
constexpr const char* kField = "Field";
constexpr const char* kValue = "Value";

}  // namespace

std::optional<std::string> SweepPlan::Read(const Options& options,
                                           const ProgramResources& resources) {
    if (options.sweepFile)
        if (auto wrong = SweepAxis::FromFile(*options.sweepFile, resources, &axes_.emplace_back()))
            return wrong;
    for (const std::string& range : options.sweeps)
        if (auto wrong = SweepAxis::FromRange(range, resources, &axes_.emplace_back()))
            return wrong;
    if (SetStrides()) return std::nullopt;
    return FillIn(resources.InterfaceLabel(kTextSweepTooMany), {std::to_string(kMaxRuns)});
}

bool SweepPlan::SetStrides() {
    strides_.resize(axes_.size());
    runs_ = 1;
    for (std::size_t axis = axes_.size(); axis-- > 0;) {
        strides_[axis] = runs_;
        const auto rows = static_cast<int64>(axes_[axis].rows.size());
        if (rows > kMaxRuns / runs_) return false;
        runs_ *= rows;
    }
    return true;
}

status_t SweepPlan::AddTo(BMessage* record) const {
    for (const SweepAxis& axis : axes_) {
        BMessage fields;
        for (const std::string& field : axis.fields)
            if (const status_t status = fields.AddString(kField, field); status != B_OK)
                return status;
        for (const SweepAxis::Values& row : axis.rows)
            for (const std::string& value : row)
                if (const status_t status = fields.AddString(kValue, value); status != B_OK)
                    return status;
        if (const status_t status = record->AddMessage(kAxis, std::move(fields)); status != B_OK)
            return status;
    }
    return B_OK;
}

status_t SweepPlan::FindIn(const BMessage& record) {
    BMessage fields;
    for (int32 i = 0; record.FindMessage(kAxis, i, &fields) == B_OK; i++) {
        SweepAxis& axis = axes_.emplace_back();
        std::string text;
        for (int32 k = 0; fields.FindString(kField, k, &text) == B_OK; k++)
            axis.fields.push_back(text);
        for (int32 k = 0; fields.FindString(kValue, k, &text) == B_OK; k++) {
            if (k % static_cast<int32>(axis.fields.size()) == 0) axis.rows.emplace_back();
            axis.rows.back().push_back(text);
        }
    }
    return SetStrides() ? B_OK : B_BAD_DATA;
}

const SweepAxis::Values& SweepPlan::RowOf(std::size_t axis, int64 run) const {
    const std::vector<SweepAxis::Values>& rows = axes_[axis].rows;
    return rows[static_cast<std::size_t>(run / strides_[axis]) % rows.size()];
}

std::vector<std::string> SweepPlan::EditsOf(int64 run) const {
    std::vector<std::string> edits;
    for (std::size_t axis = 0; axis < axes_.size(); axis++) {
        const SweepAxis::Values& row = RowOf(axis, run);
        for (std::size_t field = 0; field < row.size(); field++)
            edits.push_back(axes_[axis].fields[field] + '=' + row[field]);
    }
    return edits;
}

std::vector<int64> SweepPlan::RunsWithAllValues() const {
    std::vector<int64> runs{0};
    for (std::size_t axis = 0; axis < axes_.size(); axis++)
        for (std::size_t row = 1; row < axes_[axis].rows.size(); row++)
            runs.push_back(static_cast<int64>(row) * strides_[axis]);
    return runs;
}

std::string SweepPlan::FieldColumns() const {
    std::string columns;
    for (const SweepAxis& axis : axes_)
        for (const std::string& field : axis.fields)
            columns += CsvName(field) + ',';
    return columns;
}

std::string SweepPlan::ValueColumns(int64 run) const {
    std::string columns;
    for (std::size_t axis = 0; axis < axes_.size(); axis++)
        for (const std::string& value : RowOf(axis, run))
            columns += CsvName(value) + ',';
    return columns;
}
