// The window of one open simulation: its document, its run control, the boxes in which bodies and
// the run are edited, its displays and subsidiary windows, and saving and closing. Made by the
// application on its thread, which calls Init once; the window then builds itself step by step on
// a thread of its own and shows itself when it is complete. It asks the application to be deleted
// ("klme"), which locks and quits it. What concerns the document is done with the window locked,
// on the window's thread unless it says otherwise.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "Interface Widgets/ChangeInbox.h"
#include "Model/Sharing/Observer.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Simulation/DisplayList.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/MessageBoxes.h"
#include "Simulation/MomentControl.h"
#include "Simulation/SimulationCloser.h"
#include "Simulation/SimulationControls.h"
#include "Simulation/SimulationRun.h"
#include "Simulation/SimulationSaver.h"

class SimulationHost;

class Simulation : public BWindow, public Observer {
public:
    // Keep a recovery copy if there are changes that are not saved. Answered (B_REPLY) when done.
    static constexpr uint32 kKeepRecoveryCopy = FourCC("krcv");
    // Sent from time to time: keep an automatic copy if something has changed since the last one.
    static constexpr uint32 kKeepAutomaticCopy = FourCC("kacp");

    // The host is not owned.
    Simulation(BRect frame, SimulationHost* host);
    ~Simulation() override;

    // Takes the record over, which is read when the window has built itself. Without a name the
    // simulation is untitled and in no file yet. Runs the window's thread, hidden, and so gives up
    // the maker's lock: the last call of its maker.
    void Init(std::unique_ptr<BMessage> archive, const entry_ref& directory, const char* name,
              bool isNewlyCreated);
    // Instead of Init: a document that has no file yet; the name is the one to save it by.
    void InitCopy(std::unique_ptr<BMessage> archive, const entry_ref& directory,
                  const std::string& name);
    // Instead of Init: the record is that of a recovery copy. The simulation has its old name and
    // place, and is not saved.
    void InitFromRecovery(std::unique_ptr<BMessage> archive, const RecoveryCopy& copy);
    // Replaces everything by another document; a window that is still being built does so when it
    // is complete. Any thread. A record that cannot be used changes nothing.
    void ReLoad(std::unique_ptr<BMessage> archive, const entry_ref& directory, const char* name);
    // An untouched new simulation, in whose window a file may be opened. Any thread.
    [[nodiscard]] bool IsNewlyCreated() const;

    // Any thread.
    void Changed(int32 changes) override;
    bool CommitChanges() override { return controls_.CommitBoxes(); }

    void MessageReceived(BMessage* message) override;
    // Closes the simulation, or asks whether to save it first; never agrees.
    bool QuitRequested() override;
    void Quit() override;

private:
    // What is to replace everything.
    struct Replacement {
        std::unique_ptr<BMessage> archive;
        entry_ref directory;
        std::string name;
    };

    // --- Building ---
    void StartBuilding();
    bool BuildStep(uint32 what);
    void ArrangeWindow();
    DocumentError ReadArchive();
    void ShowSelf();

    // --- Messages ---
    bool FileMessage(BMessage* message);
    bool RunMessage(const BMessage& message);
    bool WindowMessage(BMessage* message);
    void PassToApplication(const BMessage& message, bool withThis);
    void Tell(const std::string& text);

    // --- Reading a document ---
    void Replace(const Replacement& replacement);
    void SetName(const std::string& name);
    DocumentError Find(const BMessage& archive);
    void FindSimWindowInfo(const BMessage& archive);

    SimulationHost* const host_;
    SimulationDocument document_;
    UndoChain* const history_;  // the document's
    SimulationControls controls_;
    SimulationRun run_;
    MomentControl moments_;
    DisplayList displays_;
    SimulationSaver saver_;
    MessageBoxes boxes_;
    SimulationCloser closer_;
    std::string title_;  // the document's name; of a further window of the same one it says so
    std::unique_ptr<BMessage> archive_;  // until it is read
    // While the window is being built: what it does when it is complete.
    std::optional<Replacement> replacement_;
    std::string notice_;

    ChangeInbox changes_{this};
    std::atomic<bool> wasTooDeep_{false};     // an edit was refused, and not yet told
    std::atomic<bool> hasNewChanges_{false};  // since the last automatic copy
    std::atomic<bool> isNewlyCreated_{false};
    std::ptrdiff_t builtSteps_ = 0;
    bool isBuilt_ = false;
};
