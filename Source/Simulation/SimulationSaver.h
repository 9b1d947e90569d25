// Saving one simulation from its window: gathers what is half typed and where the windows stand,
// asks for a name where there is none, writes, and tells how it went. Owned by the window and used
// on its thread, with the window locked.
#pragma once

#include <string>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessenger.h"
#include "Simulation/Document/DocumentFile.h"
#include "Simulation/Document/DocumentNotice.h"
#include "Simulation/SavePanel.h"

class BMessage;
class BWindow;
class DisplayList;
class RunControl;
class RunHistory;
class SimulationControls;
class SimulationDocument;
class SimulationHost;
struct SaveChoice;

class SimulationSaver {
public:
    // Answers of the panel, with a SaveChoice, for SaveRequested.
    static constexpr uint32 kSaveNamed = B_SAVE_REQUESTED;
    static constexpr uint32 kSaveEpochNamed = FourCC("sver");

    // None is owned.
    SimulationSaver(BWindow* window, SimulationHost* host, SimulationDocument* document,
                    const RunHistory* history, RunControl* run, SimulationControls* controls,
                    DisplayList* displays);

    [[nodiscard]] DocumentFile& File() { return file_; }
    [[nodiscard]] SavePanel& Panel() { return panel_; }

    enum class Outcome { kDone, kAsked, kRefused };

    // What the menu asks for; false for any other message.
    bool Handle(const BMessage& message);
    // To the document's file, or where the user says; then `answer` comes from the panel. Refused
    // once for a file that somebody else has changed.
    Outcome Save(uint32 answer);
    void SaveRequested(const SaveChoice& choice, bool allEpochs);
    // Why the last save has left a recovery copy instead (empty if it has not), and where the file
    // should lie.
    [[nodiscard]] const std::string& WhyNotSaved() const { return whyNotSaved_; }
    [[nodiscard]] const std::string& WhereNotSaved() const { return whereNotSaved_; }
    // Of what is half typed, too, if there are changes that are not saved.
    void KeepRecoveryCopy();
    // For the case that the program fails; disturbs neither typing nor, for long, a run.
    void KeepAutomaticCopy();
    // The document was opened, with what it has lost or got.
    void TellOpened(const DocumentNotices& notices);
    // A document that is no such was to be opened.
    void TellNotOpened(const std::string& name, const DocumentError& error);

private:
    void SaveAs(uint32 answer);
    void SaveCurrentEpoch();
    void SaveRequested(const entry_ref& directory, const std::string& name, bool allEpochs);
    void Gather();
    void GatherWindows();
    void SetSimWindowInfo(BMessage* archive) const;
    void TellNotCopied(const DocumentError& error);
    void Tell(const std::string& text);
    void Print(const std::string& text) const;
    [[nodiscard]] std::string Reason(const DocumentError& error) const;

    BWindow* const window_;
    SimulationHost* const host_;
    SimulationDocument* const document_;
    const RunHistory* const history_;
    RunControl* const run_;
    SimulationControls* const controls_;
    DisplayList* const displays_;
    DocumentFile file_;
    std::string whyNotSaved_;
    std::string whereNotSaved_;
    SavePanel panel_;
};
