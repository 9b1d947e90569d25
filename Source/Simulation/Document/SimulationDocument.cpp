#include "Simulation/Document/SimulationDocument.h"

#include <algorithm>

#include "Calculation/ReportConsumer.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/FieldTable.h"
#include "Platform/Support/BAutolock.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/DocumentCheck.h"
#include "Simulation/Document/EpochReader.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/WindowFields.h"

namespace {

constexpr const char* kFocusPosition = "Cur Epoch";
constexpr const char* kFocusWriteable = "Cur Ep Writ";
constexpr const char* kFocusSystem = "Cur Sys";

// Without the epoch that it inherits its name from, it has that name as its own.
status_t ArchiveAlone(const AbEpoch& epoch, BMessage* archive) {
    if (!epoch.NameFromParent()) return epoch.Archive(archive, false);
    const std::unique_ptr<AbEpoch> copy(epoch.Copy());
    if (!copy) return B_ERROR;
    copy->SetName(epoch.Name().c_str());
    copy->SetWriteable(epoch.Writeable());
    return copy->Archive(archive, false);
}

bool IsUpdateRate(float updates) {
    return updates >= 1.0f && updates <= static_cast<float>(AbCalculator::kMaxUpdatesPerSecond);
}

}  // namespace

// What a document's record holds beside its epochs and windows. A field that is missing changes
// nothing.
struct SimulationDocument::SimInfo {
    int32 segmentLength;
    float updatesPerSecond;
    int32 nextBodyName;
    double pace;
    bool savesHistory;

    struct Fields;
};

struct SimulationDocument::SimInfo::Fields {
    static constexpr FieldTable kTable{
        Field<&SimInfo::segmentLength>{.name = "Segment length",
                                       .meaning = "the least length of a piece of a trail, pixels",
                                       .whenMissing = "2, or unchanged"},
        Field<&SimInfo::updatesPerSecond>{
            .name = "Updates per sec",
            .meaning = "display updates wanted per second, a whole number",
            .accepts = IsUpdateRate,
            .whenMissing = "80, or unchanged"},
        Field<&SimInfo::nextBodyName>{.name = "Body Name Index",
                                      .meaning = "index of the next body name to hand out",
                                      .whenMissing = "unchanged"},
        Field<&SimInfo::pace>{.name = "Pace",
                              .meaning = "how fast a run is shown: seconds of the simulation per "
                                         "second, 1 to 1e15; 0: as fast as possible; -1: the "
                                         "shortest orbit takes about 4 s",
                              .missing = 0.0,
                              .accepts = Pace::IsNumber,
                              .isWritten = [](const SimInfo& info) { return info.pace != 0.0; }},
        Field<&SimInfo::savesHistory>{
            .name = "Save history",
            .meaning = "what is kept of runs is saved",
            .missing = false,
            .isWritten = [](const SimInfo& info) { return info.savesHistory; }},
    };
};

SimulationDocument::SimulationDocument(BLooper* reportTarget)
    : portal_(&undoChain_, &root_),
      calculator_(MakeCalculator(&portal_, &consumers_, reportTarget)) {
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
    if (DocumentError error = FindEpochs(record); error.Failed()) return error;
    FindSimInfo(record);
    windowFields_ = ExtractWindowFields(record);
    // What is damaged could not be written again, either.
    if (record.FindMessage(kHistoryField, &history_) != B_OK || CheckHistory(history_).Failed())
        history_.MakeEmpty();
    return {};
}

DocumentError SimulationDocument::Store(BMessage* record, bool allEpochs) {
    status_t status = B_OK;
    {
        const ReadGuard guard(&portal_);
        status = SetEpochs(record, allEpochs);
        if (status == B_OK) status = SetSimInfo(record);
    }
    if (status == B_OK && allEpochs && savesHistory_ && !history_.IsEmpty())
        status = record->AddMessage(kHistoryField, &history_);
    return DocumentError::Record(status == B_OK ? AppendFields(windowFields_, record) : status);
}

void SimulationDocument::FindSimInfo(const BMessage& record) {
    SimInfo info = GetSimInfo();
    SimInfo::Fields::kTable.Read(record, &info);
    calculator_->SetUpdatesPerSecond(static_cast<int32>(info.updatesPerSecond));
    calculator_->SetSegmentLength(info.segmentLength);
    calculator_->SetPace(Pace::From(info.pace));
    savesHistory_ = info.savesHistory;
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
    SimInfo info = GetSimInfo();
    SimInfo::Fields::kTable.Read(record, &info);
    nextBodyName_ = std::max(info.nextBodyName, 0);
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
        if (const status_t status = record->AddMessage(kEpochsField, std::move(archive));
            status != B_OK)
            return status;
    }
    if (allEpochs)
        if (const status_t status = record->AddInt32(kFocusPosition, FocusPosition());
            status != B_OK)
            return status;
    if (const status_t status = record->AddBool(kFocusWriteable, focus->Writeable());
        status != B_OK)
        return status;
    const int64 system = portal_.FocusSystem()->ID();
    return system >= 0 ? record->AddInt64(kFocusSystem, system) : B_OK;
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

SimulationDocument::SimInfo SimulationDocument::GetSimInfo() const {
    return {calculator_->SegmentLength(), static_cast<float>(calculator_->UpdatesPerSecond()),
            nextBodyName_, calculator_->GetPace().Number(), savesHistory_};
}

status_t SimulationDocument::SetSimInfo(BMessage* record) const {
    return SimInfo::Fields::kTable.Write(GetSimInfo(), record);
}

void SimulationDocument::DescribeFields(FieldDescriptions* into) {
    DescribeField(into, kEpochsField, B_MESSAGE_TYPE, "1 or more", "not a usable document",
                  "the top-level epochs, each with its descendants; or the focus epoch alone, "
                  "without them");
    DescribeField(into, kFocusPosition, B_INT32_TYPE, "0, 1", "0",
                  "the focus epoch: its position in visiting order (an epoch before its "
                  "children); only when all epochs are saved");
    DescribeField(into, kFocusWriteable, B_BOOL_TYPE, "1", "as the epoch says",
                  "the focus epoch is writeable");
    DescribeField(into, kFocusSystem, B_INT64_TYPE, "0, 1", "the root system's first child",
                  "identifier of the system in focus, when not negative");
    SimInfo::Fields::kTable.Describe(into);
    DescribeField(into, kHistoryField, B_MESSAGE_TYPE, "0, 1", "no run is kept",
                  "what is kept of runs; at most 64 MB, and not in recovery copies");
    DescribeWindowFields(into);
}
