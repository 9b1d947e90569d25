// One simulation without its window: the epoch tree, the portal to it, the undo history, the
// calculator and those who take its reports, and reading and writing all of it as one record. Owned
// by the window or the runner; everything here is called on the owner's thread, with the calculator
// parked wherever epochs are replaced or the list of consumers changes.
#pragma once

#include <memory>
#include <vector>

#include "Calculation/Calculator.h"
#include "Calculation/PaceClock.h"
#include "Model/Commands/UndoChain.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldDescription.h"
#include "Simulation/Document/DocumentError.h"
#include "Simulation/Document/DocumentNotice.h"

class BLooper;
class ReportConsumer;

class SimulationDocument {
public:
    // `reportTarget` (not owned, may be null) is posted the calculator's collision messages.
    explicit SimulationDocument(BLooper* reportTarget);
    ~SimulationDocument();
    SimulationDocument(const SimulationDocument&) = delete;
    SimulationDocument& operator=(const SimulationDocument&) = delete;

    [[nodiscard]] EpochPortal* Portal() { return &portal_; }
    [[nodiscard]] Calculator* GetCalculator() { return calculator_.get(); }
    [[nodiscard]] UndoChain* GetUndoChain() { return &undoChain_; }
    // The parent of the top-level epochs. It is never shown, focused or stored.
    [[nodiscard]] AbEpoch* Root() { return &root_; }

    void AddConsumer(ReportConsumer* consumer);
    void RemoveConsumer(ReportConsumer* consumer);

    // Runs keep the document's pace from now on. While parked.
    void KeepPace() { calculator_->SetClock(&clock_); }

    // Replaces everything by the record, and forgets the undo history. A record that cannot be used
    // changes nothing. Observers hear of single changes at most: an owner that has some silences
    // the portal meanwhile, and tells them that everything has changed afterwards.
    DocumentError Load(const BMessage& record);
    // What the record that was loaded last has lost or got.
    [[nodiscard]] const DocumentNotices& Notices() const { return notices_; }
    // Adds everything to an empty record: the whole tree, or the focus epoch alone. Takes the
    // portal's read lock.
    DocumentError Store(BMessage* record, bool allEpochs);

    // The groups of a record, in the order in which they are written. Epochs that cannot be used
    // change nothing.
    void FindSimInfo(const BMessage& record);
    DocumentError FindEpochs(const BMessage& record);
    [[nodiscard]] status_t SetEpochs(BMessage* record, bool allEpochs) const;
    [[nodiscard]] status_t SetSimInfo(BMessage* record) const;
    // Of a document's record.
    static void DescribeFields(FieldDescriptions* into);

    // Displays and windows, which this floor keeps without understanding them: the fields of the
    // record that was read, or those that the window floor has put in their place.
    [[nodiscard]] const BMessage& WindowFields() const { return windowFields_; }
    void SetWindowFields(BMessage fields) { windowFields_ = std::move(fields); }

    // Likewise what is kept of the runs, which is saved with the whole document if it is wanted.
    static constexpr const char* kHistoryField = "History";
    [[nodiscard]] const BMessage& History() const { return history_; }
    void SetHistory(BMessage record) { history_ = std::move(record); }
    [[nodiscard]] bool SavesHistory() const { return savesHistory_; }
    void SetSavesHistory(bool isSaved) { savesHistory_ = isSaved; }

    [[nodiscard]] int32 NextBodyNameIndex() const { return nextBodyName_; }
    void SetNextBodyNameIndex(int32 index) { nextBodyName_ = index; }

private:
    struct SimInfo;
    [[nodiscard]] SimInfo GetSimInfo() const;
    void InstallEpochs(std::vector<std::unique_ptr<AbEpoch>> topLevel, const BMessage& record);
    void SetFocus(const BMessage& record);
    [[nodiscard]] int32 FocusPosition() const;

    Epoch root_;
    UndoChain undoChain_;
    EpochPortal portal_;
    std::vector<ReportConsumer*> consumers_;
    DocumentNotices notices_;
    BMessage windowFields_;
    BMessage history_;
    bool savesHistory_ = false;
    int32 nextBodyName_ = 0;
    SystemPaceClock clock_;
    std::unique_ptr<Calculator> calculator_;  // last: it uses all of the above
};
