#include "Simulation/Document/DocumentSaver.h"

#include "Platform/Application/BMessage.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/Document/DocumentFile.h"
#include "Simulation/Document/SimulationDocument.h"

SaveResult SaveDocument(SimulationDocument* document, DocumentFile* file,
                        const entry_ref& directory, const std::string& name, bool allEpochs) {
    SaveResult result;
    UndoChain* const history = document->GetUndoChain();
    BMessage record;
    BMessage whole;
    bool wasSaved = false;
    DocumentError wholeError;
    {
        // No command comes between what is written and the saved point.
        const BAutolock lock(history);
        wasSaved = history->IsSaved();
        result.error = document->Store(&record, allEpochs);
        if (!allEpochs && !wasSaved) wholeError = document->Store(&whole, true);
        history->MarkSaved();
    }

    if (!result.error.Failed())
        result.error = file->Write(record, directory, name, &result.path, &result.leftovers);
    file->TakePlace(directory);
    const bool isWritten = !result.error.Failed();
    if (allEpochs && isWritten) file->Saved(result.path);

    result.isCopyNeeded = allEpochs ? !isWritten : !wasSaved;
    if (!result.isCopyNeeded) return result;
    constexpr auto kNeeded = DocumentFile::Copy::kNeeded;
    result.copyError = allEpochs ? file->KeepCopy(record, name, result.path, kNeeded)
                       : !wholeError.Failed()
                           ? file->KeepCopy(whole, file->Name(), file->Path(), kNeeded)
                           : wholeError;
    if (result.copyError.Failed()) history->MarkUnsaved();
    return result;
}

DocumentError KeepCopyIfUnsaved(SimulationDocument* document, DocumentFile* file) {
    if (document->GetUndoChain()->IsSaved()) return {};
    BMessage record;
    if (DocumentError error = document->Store(&record, true); error.Failed()) return error;
    return file->KeepCopy(record, file->Name(), file->Path(), DocumentFile::Copy::kNeeded);
}
