// The lines of a sweep, in the order of its runs whatever the order in which they are done. Of a
// file that holds lines of this very sweep already the whole ones stay. Used by one thread.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Support/SupportDefs.h"
#include "Resources/Sweep.h"
#include "Run/OutputFile.h"

class SweepPlan;

class SweepFile {
public:
    // `head`: the first line; `mark`: what every other line ends with, which no other sweep has.
    // `plan` is not owned.
    SweepFile(const SweepPlan& plan, std::string head, std::string mark);

    // 0, or the errno of what failed; so do Write and Close. Changes nothing in a file that is
    // there.
    [[nodiscard]] int Open(const std::string& path);
    // After Open: why the file cannot be gone on with, if so.
    [[nodiscard]] std::optional<SweepText> Obstacle() const { return obstacle_; }

    // Runs that have a line in the file: those before this one.
    [[nodiscard]] int64 CountWritten() const { return next_; }
    // The columns after a run's values. Goes to the file as soon as all lines before it are there.
    [[nodiscard]] int Write(int64 run, std::string columns);
    [[nodiscard]] int Close() { return file_.Close(); }

private:
    [[nodiscard]] std::string BeginOf(int64 run) const;
    [[nodiscard]] int TakeLines(const std::string& path);
    [[nodiscard]] bool IsLineOf(int64 run, std::string_view line) const;

    const SweepPlan& plan_;
    const std::string head_;
    const std::string mark_;
    OutputFile file_;
    std::optional<SweepText> obstacle_;
    int64 next_ = 0;
    std::map<int64, std::string> waiting_;
};
