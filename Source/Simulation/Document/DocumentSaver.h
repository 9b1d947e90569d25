// Saving a document so that nothing is lost: what cannot be written where the user wants it becomes
// a recovery copy. No state; on the thread that owns the document, with no lock of it held and the
// calculator at rest.
#pragma once

#include <string>

#include "Platform/Storage/entry_ref.h"
#include "Simulation/Document/DocumentError.h"

class DocumentFile;
class SimulationDocument;

struct SaveResult {
    std::string path;     // of the file, as far as it is known
    DocumentError error;  // why the file is not there
    int leftovers = 0;    // unfinished files of programs that have ended, removed beside it
    bool isCopyNeeded = false;
    DocumentError copyError;  // why there is no copy where one is needed
};

// Writes the whole document, or its focus epoch alone, to the file and remembers the place.
// Deliberately, the document counts as saved and has a file from then on even if it could not be
// written, or if it was the epoch alone; but for edits that are in no whole file a recovery copy is
// kept, and where that fails too the document stays unsaved.
[[nodiscard]] SaveResult SaveDocument(SimulationDocument* document, DocumentFile* file,
                                      const entry_ref& directory, const std::string& name,
                                      bool allEpochs);

// Keeps a recovery copy if the document has changes that are not saved.
DocumentError KeepCopyIfUnsaved(SimulationDocument* document, DocumentFile* file);
