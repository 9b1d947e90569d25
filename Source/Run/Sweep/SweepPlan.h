// The runs of a sweep: every combination of what its axes hold, those of the last axis one after
// the other. Made once; then any thread may ask.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Support/SupportDefs.h"
#include "Run/Sweep/SweepAxis.h"

class ProgramResources;
struct Options;

class SweepPlan {
public:
    static constexpr int64 kMaxRuns = 1'000'000;

    // What the command line asks for. The answer is empty, or says what is wrong.
    [[nodiscard]] std::optional<std::string> Read(const Options& options,
                                                  const ProgramResources& resources);

    // As fields of a record.
    [[nodiscard]] status_t AddTo(BMessage* record) const;
    [[nodiscard]] status_t FindIn(const BMessage& record);

    [[nodiscard]] int64 CountRuns() const { return runs_; }
    // What a run changes, as --edit has it.
    [[nodiscard]] std::vector<std::string> EditsOf(int64 run) const;
    // The runs that are enough to see every value of every axis once.
    [[nodiscard]] std::vector<int64> RunsWithAllValues() const;
    // The columns of the fields, and of what a run sets them to: as comma-separated values.
    [[nodiscard]] std::string FieldColumns() const;
    [[nodiscard]] std::string ValueColumns(int64 run) const;

private:
    // False: there are too many runs.
    [[nodiscard]] bool SetStrides();
    [[nodiscard]] const SweepAxis::Values& RowOf(std::size_t axis, int64 run) const;

    std::vector<SweepAxis> axes_;
    std::vector<int64> strides_;  // runs from one row of an axis to the next
    int64 runs_ = 0;
};
