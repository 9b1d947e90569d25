#include "Run/PictureFile.h"

#include <cstring>

#include "Platform/Storage/AtomicFile.h"
#include "Run/Options.h"
#include "Run/RunnerOutput.h"
#include "Simulation/Document/SimulationDocument.h"

PictureFile::PictureFile(const Options& options, const ProgramResources& resources,
                         const RunnerOutput& output, SimulationDocument* document)
    : options_(options), output_(output), document_(document) {
    if (!options_.png) return;
    painter_ = RunPainter::Make(document_->Portal(), document_->GetCalculator(), resources);
    document_->AddConsumer(painter_.get());
}

PictureFile::~PictureFile() {
    if (painter_ != nullptr) document_->RemoveConsumer(painter_.get());
}

void PictureFile::TakeBodies() {
    if (painter_ != nullptr) painter_->PrepareForGo(0);
}

int PictureFile::CheckPlace() const {
    AtomicFile file;
    if (options_.png && file.Open(*options_.png) != B_OK) return Fail(file);
    return RunnerOutput::kDone;
}

int PictureFile::Write() const {
    if (painter_ == nullptr) return RunnerOutput::kDone;
    const std::vector<std::byte> picture = painter_->Draw(options_);
    AtomicFile file;
    if (file.Open(*options_.png) != B_OK) return Fail(file);
    file.Write(picture.data(), picture.size());  // a failure shows in Commit
    return file.Commit() == B_OK ? RunnerOutput::kDone : Fail(file);
}

int PictureFile::Fail(const AtomicFile& file) const {
    return output_.Fail(*options_.png, std::strerror(file.SystemError()));
}
