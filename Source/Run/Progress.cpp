#include "Run/Progress.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>

#include "Resources/Runner.h"
#include "Run/NumberText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr int kTimeDigits = 6;
// Back to the first column; clear to the end of the line.
constexpr std::string_view kRestartLine = "\r\x1B[K";

void PutOnScreen(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

}  // namespace

Progress::Progress(const ProgramResources& resources, bool wanted, const RunGoal& goal,
                   double startTime, double timeUval, double secondsBefore)
    : resources_(resources),
      shown_(wanted && (goal.steps || goal.time) && isatty(STDERR_FILENO) == 1),
      goal_(goal),
      startTime_(startTime),
      timeUval_(timeUval),
      begin_(std::chrono::steady_clock::now() -
             std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                 std::chrono::duration<double>(secondsBefore))) {}

Progress::~Progress() {
    Clear();
}

void Progress::Show(int64 steps, double time) {
    if (!shown_) return;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin_;
    PutOnScreen(std::string(kRestartLine) + Line(steps, time, elapsed.count()));
    onScreen_ = true;
}

void Progress::Clear() {
    if (onScreen_) PutOnScreen(std::string(kRestartLine));
    onScreen_ = false;
}

// Of two limits the one that will be reached first is shown.
std::string Progress::Line(int64 steps, double time, double seconds) const {
    const double stepsDone =
        goal_.steps ? static_cast<double>(steps) / static_cast<double>(*goal_.steps) : 0.0;
    const double timeDone = goal_.time ? (time - startTime_) / (*goal_.time - startTime_) : 0.0;
    const std::string rate = RateText(static_cast<double>(steps) / seconds);
    const auto left = [seconds](double done) {
        return done > 0.0 ? ClockText(seconds * (1.0 - done) / done) : std::string("?");
    };
    if (goal_.steps && stepsDone >= timeDone)
        return FillIn(resources_.InterfaceLabel(kTextStepsProgress),
                      {std::to_string(steps), std::to_string(*goal_.steps), rate, left(stepsDone)});
    return FillIn(resources_.InterfaceLabel(kTextTimeProgress),
                  {RoundedText((time - startTime_) / timeUval_, kTimeDigits),
                   RoundedText((*goal_.time - startTime_) / timeUval_, kTimeDigits),
                   resources_.TimeUnits().Abbreviation(timeUval_), rate, left(timeDone)});
}
