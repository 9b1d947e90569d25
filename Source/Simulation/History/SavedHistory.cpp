#include "Simulation/History/SavedHistory.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "Model/Epochs/Epoch.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/FieldTable.h"
#include "Simulation/History/KeptRun.h"
#include "Simulation/History/KeptRunRecord.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr const char* kRuns = "Runs";
// Less is worth nothing.
constexpr std::size_t kMinBytes = 1000;

std::vector<const AbEpoch*> EpochsOf(EpochPortal* portal) {
    std::vector<const AbEpoch*> epochs;
    const ReadGuard guard(portal);
    for (EpochCursor cursor(portal->RootEpoch()); cursor.GetEpoch() != nullptr; cursor.Increment())
        epochs.push_back(cursor.GetEpoch());
    return epochs;
}

void ThinTo(std::size_t bytes, KeptRun* run) {
    while (run->CheckpointBytes() > bytes / 2 && run->ThinCheckpoints()) {
    }
    while (run->SampleBytes() > 0 && run->SampleBytes() + run->CheckpointBytes() > bytes)
        run->ThinSamples();
}

// Each run gets its share of the room.
status_t WriteRuns(const std::vector<const AbEpoch*>& epochs, const RunHistory& history,
                   std::size_t room, BMessage* into) {
    const std::size_t all = std::max<std::size_t>(history.Bytes(), 1);
    const double share = std::min(static_cast<double>(room) / static_cast<double>(all), 1.0);
    for (const AbEpoch* const epoch : epochs) {
        const std::unique_ptr<KeptRun> run = history.CopyOf(epoch);
        if (run == nullptr) continue;
        const auto bytes = static_cast<double>(run->SampleBytes() + run->CheckpointBytes());
        if (share < 1.0) ThinTo(static_cast<std::size_t>(share * bytes), run.get());
        BMessage record;
        status_t status = KeptRunRecord::Write(*run, &record);
        if (status == B_OK) status = into->AddMessage(kRuns, std::move(record));
        if (status != B_OK) return status;
    }
    return B_OK;
}

// What it ended with may have merged since.
bool EndsIn(const KeptRun& run, const AbEpoch& epoch) {
    const AbEpoch* const start = epoch.Parent();
    if (start == nullptr || epoch.RootSystem() == nullptr || start->Time() != run.StartTime() ||
        epoch.Time() != run.EndTime())
        return false;
    const auto hasMerged = [&](int64 id) {
        return std::ranges::any_of(run.Events(), [&](const RunEvent& event) {
            return event.kind == RunEvent::Kind::kMerger && event.time == run.EndTime() &&
                   std::ranges::find(event.before, id, &RunEvent::Before::id) != event.before.end();
        });
    };
    const SystemState& end = run.End();
    for (std::size_t i = 0; i < end.CountBodies(); i++) {
        if (hasMerged(end.ids[i])) continue;
        const auto* const body = dynamic_cast<const Body*>(epoch.SystemFromID(end.ids[i]));
        if (body == nullptr || body->M() != end.gm[i] || body->Position() != end.Position(i) ||
            body->Velocity() != end.Velocity(i))
            return false;
    }
    return true;
}

void Give(std::unique_ptr<KeptRun> run, EpochPortal* portal, RunHistory* history) {
    const Epoch* end = nullptr;
    std::weak_ptr<const void> life;
    {
        const ReadGuard guard(portal);
        for (EpochCursor cursor(portal->RootEpoch());
             cursor.GetEpoch() != nullptr && end == nullptr; cursor.Increment())
            if (EndsIn(*run, *cursor.GetEpoch()) && !history->SpanOf(cursor.GetEpoch()))
                end = dynamic_cast<const Epoch*>(cursor.GetEpoch());
        if (end == nullptr) return;
        life = end->Life();
    }
    history->Adopt(end, life, std::move(run));
}

}  // namespace

BMessage SavedHistory::Of(EpochPortal* portal, const RunHistory& history, std::size_t most) {
    const std::vector<const AbEpoch*> epochs = EpochsOf(portal);
    try {
        for (std::size_t room = most; room >= kMinBytes; room /= 2) {
            BMessage record;
            if (WriteRuns(epochs, history, room, &record) != B_OK || record.IsEmpty()) return {};
            if (const std::size_t size = record.FlattenedSize(); size > 0 && size <= most)
                return record;
        }
    } catch (const std::bad_alloc&) {
        // The document is saved without it.
    }
    return {};
}

void SavedHistory::Read(const BMessage& record, EpochPortal* portal, RunHistory* history) {
    type_code type = 0;
    int32 count = 0;
    if (record.GetInfo(kRuns, &type, &count) != B_OK || type != B_MESSAGE_TYPE) return;
    try {
        for (int32 i = 0; i < count; i++) {
            BMessage run;
            if (record.FindMessage(kRuns, i, &run) != B_OK) continue;
            if (auto kept = KeptRunRecord::Read(run); kept != nullptr)
                Give(std::move(kept), portal, history);
        }
    } catch (const std::bad_alloc&) {
        // The rest counts as missing, too.
    }
}

void SavedHistory::DescribeFields(FieldDescriptions* into) {
    DescribeField(into, kRuns, B_MESSAGE_TYPE, "any", "none", "what is kept of one run");
}
