#include "Simulation/Document/SimulationDocument.h"

#include <algorithm>

#include "Calculation/ReportConsumer.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/Document/DocumentCheck.h"
#include "Simulation/Document/EpochReader.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/WindowFields.h"

namespace {

constexpr const char* kEpochs = "Epochs";
constexpr const char* kFocusPosition = "Cur Epoch";
constexpr const char* kFocusWriteable = "Cur Ep Writ";
constexpr const char* kFocusSystem = "Cur Sys";
constexpr const char* kSegmentLength = "Segment length";
constexpr const char* kUpdatesPerSecond = "Updates per sec";
constexpr const char* kBodyNameIndex = "Body Name Index";

constexpr int32 kEverythingChanged = -1;

// Without the epoch that it inherits its name from, it has that name as its own.
status_t ArchiveAlone(const AbEpoch& epoch, BMessage* archive) {
    if (!epoch.NameFromParent()) return epoch.Archive(archive, false);
    const std::unique_ptr<AbEpoch> copy(epoch.Copy());
    if (!copy) return B_ERROR;
    copy->SetName(epoch.Name().c_str());
    copy->SetWriteable(epoch.Writeable());
    return copy->Archive(archive, false);
}

}  // namespace

SimulationDocument::SimulationDocument(BLooper* reportTarget)
    : portal_(&undoChain_, &root_),
      calculator_(std::make_unique<TaylorCalculator>(&portal_, &consumers_, reportTarget)) {
    portal_.SetCalculator(calculator_.get());
}

SimulationDocument::~SimulationDocument() {
    portal_.SetCalculator(nullptr);
    portal_.SetEpochTo(nullptr);
}

void SimulationDocument::AddConsumer(ReportConsumer* consumer) {
    consumers_.push_back(consumer);
}

void SimulationDocument::RemoveConsumer(ReportConsumer* consumer) {
    std::erase(consumers_, consumer);
}

// The epochs first: only they can be refused.
DocumentError SimulationDocument::Load(const BMessage& record) {
    portal_.Broadcast(false);
    DocumentError error = FindEpochs(record);
    if (!error.Failed()) {
        FindSimInfo(record);
        windowFields_ = ExtractWindowFields(record);
    }
    portal_.Broadcast(true);
    if (!error.Failed()) portal_.TellObservers(kEverythingChanged);
    return error;
}

DocumentError SimulationDocument::Store(BMessage* record, bool allEpochs) {
    status_t status = B_OK;
    {
        const ReadGuard guard(&portal_);
        status = SetEpochs(record, allEpochs);
        if (status == B_OK) status = SetSimInfo(record);
    }
    if (status == B_OK) status = AppendFields(windowFields_, record);
    return DocumentError::Record(status);
}

void SimulationDocument::FindSimInfo(const BMessage& record) {
    float updates = 0.0f;
    if (record.FindFloat(kUpdatesPerSecond, &updates) == B_OK && updates >= 1.0f &&
        updates <= static_cast<float>(AbCalculator::kMaxUpdatesPerSecond))
        calculator_->SetUpdatesPerSecond(static_cast<int32>(updates));
    int32 segmentLength = 0;
    if (record.FindInt32(kSegmentLength, &segmentLength) == B_OK)
        calculator_->SetSegmentLength(segmentLength);
}

DocumentError SimulationDocument::FindEpochs(const BMessage& record) {
    if (DocumentError error = CheckRecord(record); error.Failed()) return error;
    DocumentNotices notices;
    if (!SimulationFile::IsAsWritten(record)) notices.Add({kTextNotAsWritten, {}});
    std::vector<std::unique_ptr<AbEpoch>> epochs;
    if (DocumentError error = ReadEpochs(record, &epochs, &notices); error.Failed()) return error;
    InstallEpochs(std::move(epochs), record);
    notices_ = std::move(notices);
    return {};
}

void SimulationDocument::InstallEpochs(std::vector<std::unique_ptr<AbEpoch>> topLevel,
                                       const BMessage& record) {
    const BAutolock chainLock(undoChain_);
    undoChain_.Clear();  // of commands for epochs that are going
    const WriteGuard guard(&portal_);
    portal_.SetEpochTo(nullptr);
    portal_.SetSystemTo(nullptr);
    root_.Prune();
    for (std::unique_ptr<AbEpoch>& epoch : topLevel)
        root_.AddChild(epoch.release());
    int32 nextBodyName = 0;
    if (record.FindInt32(kBodyNameIndex, &nextBodyName) == B_OK)
        nextBodyName_ = std::max(nextBodyName, 0);
    SetFocus(record);
}

// Positions count from the first top-level epoch, which is 0.
void SimulationDocument::SetFocus(const BMessage& record) {
    AbEpoch* focus = root_.ChildAt(0);
    if (focus == nullptr) return;
    int32 position = 0;
    if (record.FindInt32(kFocusPosition, &position) != B_OK) position = 0;
    EpochCursor cursor(focus);
    for (; position > 0 && cursor.GetEpoch() != nullptr; position--) {
        cursor.Increment();
        if (cursor.GetEpoch() != nullptr) focus = cursor.GetEpoch();
    }
    portal_.SetEpochTo(focus);
    bool writeable = false;
    if (record.FindBool(kFocusWriteable, &writeable) == B_OK) focus->SetWriteable(writeable);
    // SetEpochTo has chosen the first system; only one that exists takes its place.
    int64 system = kNoSystemID;
    if (record.FindInt64(kFocusSystem, &system) == B_OK && system >= 0)
        if (MassSystem* found = focus->SystemFromID(system)) portal_.SetSystemTo(found);
}

status_t SimulationDocument::SetEpochs(BMessage* record, bool allEpochs) const {
    const AbEpoch* const focus = portal_.FocusEpoch();
    const int32 count = allEpochs ? root_.CountChildren() : 1;
    for (int32 i = 0; i < count; i++) {
        BMessage archive(B_ARCHIVED_OBJECT);
        const status_t archived =
            allEpochs ? root_.ChildAt(i)->Archive(&archive, true) : ArchiveAlone(*focus, &archive);
        if (archived != B_OK) return archived;
        if (const status_t status = record->AddMessage(kEpochs, std::move(archive)); status != B_OK)
            return status;
    }
    status_t status = allEpochs ? record->AddInt32(kFocusPosition, FocusPosition()) : B_OK;
    if (status == B_OK) status = record->AddBool(kFocusWriteable, focus->Writeable());
    const int64 system = portal_.FocusSystem()->ID();
    if (status == B_OK && system >= 0) status = record->AddInt64(kFocusSystem, system);
    return status;
}

int32 SimulationDocument::FocusPosition() const {
    if (root_.CountChildren() == 0) return 0;
    int32 position = 0;
    for (EpochCursor cursor(root_.ChildAt(0)); cursor.GetEpoch() != nullptr; cursor.Increment()) {
        if (cursor.GetEpoch() == portal_.FocusEpoch()) return position;
        position++;
    }
    return 0;
}

status_t SimulationDocument::SetSimInfo(BMessage* record) const {
    status_t status = record->AddInt32(kSegmentLength, calculator_->SegmentLength());
    if (status == B_OK)
        status = record->AddFloat(kUpdatesPerSecond,
                                  static_cast<float>(calculator_->UpdatesPerSecond()));
    if (status == B_OK) status = record->AddInt32(kBodyNameIndex, nextBodyName_);
    return status;
}
