#include "Simulation/SimulationSaver.h"

#include <cstdio>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Units/QuantityText.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Resources/SimulationFeatures.h"
#include "Simulation/DisplayList.h"
#include "Simulation/Document/DocumentSaver.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"
#include "Simulation/Document/WindowFields.h"
#include "Simulation/History/SavedHistory.h"
#include "Simulation/SimulationControls.h"
#include "Simulation/SimulationHost.h"
#include "Simulation/SubsidiaryWindows.h"
#include "Simulation/WindowPlaces.h"

SimulationSaver::SimulationSaver(BWindow* window, SimulationHost* host,
                                 SimulationDocument* document, const RunHistory* history,
                                 RunControl* run, SimulationControls* controls,
                                 DisplayList* displays)
    : window_(window),
      host_(host),
      document_(document),
      history_(history),
      run_(run),
      controls_(controls),
      displays_(displays),
      panel_(host->Context().texts) {}

// A file that stands where this document was never written or read (after an epoch alone was saved
// there) is not replaced without a question.
bool SimulationSaver::Handle(const BMessage& message) {
    switch (message.what) {
        case kSave:
            Save(kSaveNamed);
            return true;
        case kSaveAs:
            SaveAs(kSaveNamed);
            return true;
        case kSaveCurrentEpoch:
            SaveCurrentEpoch();
            return true;
        default:
            return false;
    }
}

SimulationSaver::Outcome SimulationSaver::Save(uint32 answer) {
    if (!file_.HasFile() || file_.WouldReplaceAnother()) {
        SaveAs(answer);
        return Outcome::kAsked;
    }
    if (file_.HasChangedUnseen()) {
        Tell(FillIn(host_->Resources().InterfaceLabel(kTextChangedByAnother), {file_.Path()}));
        return Outcome::kRefused;
    }
    SaveRequested(file_.Directory(), file_.Name(), true);
    return Outcome::kDone;
}

void SimulationSaver::SaveAs(uint32 answer) {
    panel_.Ask(answer, BMessenger(window_), file_.Directory(), file_.Name(), file_.Name());
}

void SimulationSaver::SaveCurrentEpoch() {
    EpochPortal* const portal = document_->Portal();
    double time = 0.0;
    double uval = 1.0;
    {
        const ReadGuard guard(portal);
        time = portal->FocusEpoch()->Time();
        uval = portal->FocusEpoch()->TimeUval();
    }
    const ProgramResources& resources = host_->Resources();
    const std::string proposal = file_.Name() + resources.InterfaceLabel(kTextAtTime) +
                                 print_double(time / uval) + ' ' +
                                 resources.TimeUnits().Abbreviation(uval);
    panel_.Ask(kSaveEpochNamed, BMessenger(window_), file_.Directory(), file_.Name(), proposal);
}

void SimulationSaver::SaveRequested(const SaveChoice& choice, bool allEpochs) {
    SaveRequested(choice.directory, choice.name, allEpochs);
}

void SimulationSaver::SaveRequested(const entry_ref& directory, const std::string& name,
                                    bool allEpochs) {
    const ProgramResources& resources = host_->Resources();
    run_->Pause();
    Gather();
    if (allEpochs && document_->SavesHistory())
        document_->SetHistory(SavedHistory::Of(document_->Portal(), *history_));
    const SaveResult result = SaveDocument(document_, &file_, directory, name, allEpochs);
    document_->SetHistory({});
    whyNotSaved_.clear();
    whereNotSaved_ = result.path;
    if (result.error.Failed() && allEpochs && !result.copyError.Failed())
        whyNotSaved_ = Reason(result.error);
    if (!result.error.Failed()) {
        controls_->ShowMessage(result.leftovers == 0
                                   ? resources.InterfaceLabel(kTextSaved)
                                   : FillIn(resources.InterfaceLabel(kTextSavedAndTidied),
                                            {std::to_string(result.leftovers)}));
        if (allEpochs) host_->NoteDocument(result.path.c_str());
    }
    if (result.copyError.Failed() && !result.error.Failed())
        TellNotCopied(result.copyError);
    else if (result.copyError.Failed())
        Tell(FillIn(resources.InterfaceLabel(kTextNotEvenCopied),
                    {result.path, Reason(result.error), Reason(result.copyError)}));
    else if (result.error.Failed())
        Tell(FillIn(resources.InterfaceLabel(kTextNotSaved), {result.path, Reason(result.error)}));
    controls_->ShowHistory();
    run_->UnPause();
}

// All that is half typed becomes part of the document, and so do the windows as they stand.
void SimulationSaver::Gather() {
    document_->Portal()->CommitChanges();  // of the windows too
    controls_->SetSimValues();
    controls_->SetEpochValues();
    controls_->SetPhysicalBodyValues();
    controls_->SetNonPhysicalBodyValues();
    GatherWindows();
}

void SimulationSaver::GatherWindows() {
    BMessage fields;
    displays_->Archive(&fields);
    SetSimWindowInfo(&fields);
    document_->SetWindowFields(std::move(fields));
}

void SimulationSaver::SetSimWindowInfo(BMessage* archive) const {
    SetWindowInfo(archive, *window_, kWindowAtField, nullptr);
    controls_->Windows()->Archive(archive);
    panel_.SetArea(archive);
}

void SimulationSaver::KeepRecoveryCopy() {
    run_->Rest();
    Gather();
    if (const DocumentError error = KeepCopyIfUnsaved(document_, &file_); error.Failed())
        TellNotCopied(error);
    run_->UnRest();
}

void SimulationSaver::KeepAutomaticCopy() {
    if (document_->GetUndoChain()->IsSaved()) return file_.DiscardAutomaticCopy();
    BMessage record;
    run_->Rest();
    GatherWindows();
    DocumentError error = document_->Store(&record, true);
    run_->UnRest();
    if (!error.Failed())
        error = file_.KeepCopy(record, file_.Name(), file_.Path(), DocumentFile::Copy::kAutomatic);
    if (error.Failed()) TellNotCopied(error);
}

// --- What went wrong ---

void SimulationSaver::TellOpened(const DocumentNotices& notices) {
    const ProgramResources& resources = host_->Resources();
    const std::string summary = notices.Summary(resources);
    controls_->ShowOpened(summary);
    for (const std::string& line : notices.Lines(resources))
        Print(FillIn(resources.InterfaceLabel(kTextOpenedWith), {file_.Name(), line}));
}

void SimulationSaver::TellNotOpened(const std::string& name, const DocumentError& error) {
    Tell(FillIn(host_->Resources().InterfaceLabel(kTextNotOpened), {name, Reason(error)}));
}

void SimulationSaver::TellNotCopied(const DocumentError& error) {
    Tell(FillIn(host_->Resources().InterfaceLabel(kTextNotCopied), {file_.Name(), Reason(error)}));
}

std::string SimulationSaver::Reason(const DocumentError& error) const {
    return error.Reason(host_->Resources());
}

void SimulationSaver::Tell(const std::string& text) {
    controls_->ShowInFull(text);
    Print(text);
}

void SimulationSaver::Print(const std::string& text) const {
    const std::string line = FillIn(host_->Resources().InterfaceLabel(kTextPrinted), {text});
    std::fwrite(line.data(), 1, line.size(), stderr);
}
