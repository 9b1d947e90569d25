#include "Run/Checkpoints.h"

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "Calculation/Calculator.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Resources/Runner.h"
#include "Run/Options.h"
#include "Run/RunnerOutput.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kMaxWait = 1e9;  // ms

}  // namespace

Checkpoints::Checkpoints(const Options& options, const ProgramResources& resources,
                         const RunnerOutput& output, SimulationDocument* document)
    : options_(options), resources_(resources), output_(output), document_(document) {}

std::optional<RunnerText> Checkpoints::FindRun(const BMessage& record, RunRecord* run) const {
    const status_t found = run->FindIn(record);
    if (found == B_NAME_NOT_FOUND) return kTextNoRun;
    status_t taken = found;
    if (found == B_OK) {
        const WriteGuard guard(document_->Portal());
        taken = document_->GetCalculator()->ResumeRun(run->calculator);
    }
    run->calculator.MakeEmpty();
    if (taken != B_OK) return kTextRunDoesNotFit;
    return std::nullopt;
}

bool Checkpoints::AreWanted() const {
    return options_.checkpoint.has_value();
}

DocumentError Checkpoints::CanWrite() const {
    return AreWanted() ? SimulationFile::CanWrite(options_.CheckpointPath()) : DocumentError();
}

void Checkpoints::Start() {
    last_ = Clock::now();
}

bool Checkpoints::IsDue() const {
    return AreWanted() && SinceLast() >= *options_.checkpoint;
}

int Checkpoints::UntilDue() const {
    const double wait = 1e3 * std::max(*options_.checkpoint - SinceLast(), 0.0) + 1.0;
    return static_cast<int>(std::min(wait, kMaxWait));
}

void Checkpoints::Write(RunRecord now) {
    BMessage record;
    DocumentError error = Store(&now, &record);
    if (!error.Failed())
        error = output_.WriteDocument(options_.CheckpointPath(), std::move(record));
    if (error.Failed())
        RunnerOutput::Print(FillIn(resources_.InterfaceLabel(kTextNoCheckpoint),
                                   {options_.CheckpointPath(), error.Reason(resources_)}));
    Start();
}

// The document as Pause would leave it, and the run that goes on.
DocumentError Checkpoints::Store(RunRecord* now, BMessage* record) const {
    EpochPortal* const portal = document_->Portal();
    auto state = std::make_unique<BMessage>();
    AbEpoch* epoch = nullptr;
    status_t status = B_OK;
    {
        const WriteGuard guard(portal);
        epoch = portal->FocusEpoch();
        status = document_->GetCalculator()->ArchiveRun(&now->calculator);
        if (status == B_OK) status = document_->GetCalculator()->Archive(state.get());
        epoch->SetCalculatorState(state.release());
        epoch->SetWriteable(false);
    }
    DocumentError error = DocumentError::Record(status);
    if (!error.Failed()) error = document_->Store(record, true);
    if (!error.Failed()) error = DocumentError::Record(now->AddTo(record));
    const WriteGuard guard(portal);
    epoch->SetWriteable(true);
    return error;
}

void Checkpoints::Remove() const {
    if (AreWanted()) unlink(options_.CheckpointPath().c_str());
}

double Checkpoints::SinceLast() const {
    return std::chrono::duration<double>(Clock::now() - last_).count();
}
