#include "Run/Sweep/SweepProgress.h"

#include <unistd.h>

#include <cstdio>

#include "Resources/Sweep.h"
#include "Run/NumberText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

// Back to the first column; clear to the end of the line.
constexpr const char* kRestartLine = "\r\x1B[K";

void Put(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

}  // namespace

SweepProgress::SweepProgress(const ProgramResources& resources, bool wanted, int64 kept, int64 runs)
    : resources_(resources),
      wanted_(wanted),
      isLineShown_(wanted && isatty(STDERR_FILENO) == 1),
      kept_(kept),
      runs_(runs),
      begin_(std::chrono::steady_clock::now()) {}

SweepProgress::~SweepProgress() {
    if (onScreen_) Put(kRestartLine);
}

void SweepProgress::TellKept() const {
    if (wanted_)
        Put(FillIn(resources_.InterfaceLabel(kTextSweepKept),
                   {std::to_string(kept_), std::to_string(runs_)}));
}

void SweepProgress::Show() {
    if (!isLineShown_) return;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin_;
    const double each = elapsed.count() / static_cast<double>(done_);
    const int64 done = kept_ + done_;
    const std::string left =
        done_ > 0 ? ClockText(each * static_cast<double>(runs_ - done)) : std::string("?");
    Put(kRestartLine + FillIn(resources_.InterfaceLabel(kTextSweepProgress),
                              {std::to_string(done), std::to_string(runs_), left}));
    onScreen_ = true;
}
