#include "Simulation/History/SavedHistory.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "Model/Epochs/Epoch.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/FieldTable.h"
#include "Simulation/Document/RecordDigest.h"
#include "Simulation/Document/SystemState.h"
#include "Simulation/History/KeptRun.h"
#include "Simulation/History/KeptRunRecord.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr const char* kRuns = "Runs";
constexpr const char* kBranches = "Branches";
// Less is worth nothing.
constexpr std::size_t kMinBytes = 1000;

bool IsNumber(int32 number) {
    return number >= 0;
}

bool IsFinite(double number) {
    return std::isfinite(number);
}

// An epoch that begins in a run.
struct BranchFields {
    int32 run = 0;
    double time = 0.0;
    int64 state = 0;
};

constexpr FieldTable kBranchFields{
    Field<&BranchFields::run>{.name = "Run",
                              .meaning = "which of the runs it begins in, from 0",
                              .accepts = IsNumber,
                              .whenMissing = "damaged"},
    Field<&BranchFields::time>{
        .name = "When", .meaning = "s", .accepts = IsFinite, .whenMissing = "damaged"},
    Field<&BranchFields::state>{.name = "State",
                                .meaning = "eight bytes of a SHA-256 of the epoch's time and of "
                                           "the identifiers, masses, places and velocities of its "
                                           "bodies; the epoch is one below the run's start",
                                .whenMissing = "damaged"},
};

int64 DigestOf(const EpochPortal& document, const AbEpoch& epoch) {
    EpochPortal portal(document);
    portal.SetEpochTo(const_cast<AbEpoch*>(&epoch));  // only looked at
    const SystemState state = StateOf(portal);
    RecordDigest digest;
    digest.Add(std::as_bytes(std::span(&state.time, 1)));
    digest.Add(std::as_bytes(std::span(state.ids)));
    for (const auto* const numbers : {&state.gm, &state.positions, &state.velocities})
        digest.Add(std::as_bytes(std::span(*numbers)));
    const RecordDigest::Bytes bytes = digest.End();
    int64 first = 0;
    std::memcpy(&first, bytes.data(), sizeof first);
    return first;
}

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

// Each run gets its share of the room. `written`: the epochs of the runs.
status_t WriteRuns(const std::vector<const AbEpoch*>& epochs, const RunHistory& history,
                   std::size_t room, BMessage* into, std::vector<const AbEpoch*>* written) {
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
        written->push_back(epoch);
    }
    return B_OK;
}

status_t WriteBranches(EpochPortal* portal, const RunHistory& history,
                       const std::vector<const AbEpoch*>& runs, BMessage* into) {
    const ReadGuard guard(portal);
    for (EpochCursor cursor(portal->RootEpoch()); cursor.GetEpoch() != nullptr;
         cursor.Increment()) {
        const AbEpoch* const epoch = cursor.GetEpoch();
        const auto way = history.WayTo(*epoch);
        if (!way || way->run == epoch) continue;
        const auto run = std::ranges::find(runs, way->run);
        if (run == runs.end()) continue;
        const BranchFields fields{static_cast<int32>(run - runs.begin()), way->end,
                                  DigestOf(*portal, *epoch)};
        BMessage record;
        status_t status = kBranchFields.Write(fields, &record);
        if (status == B_OK) status = into->AddMessage(kBranches, std::move(record));
        if (status != B_OK) return status;
    }
    return B_OK;
}

// Everything, in so much room.
status_t Write(EpochPortal* portal, const std::vector<const AbEpoch*>& epochs,
               const RunHistory& history, std::size_t room, BMessage* into) {
    std::vector<const AbEpoch*> runs;
    const status_t status = WriteRuns(epochs, history, room, into, &runs);
    return status == B_OK ? WriteBranches(portal, history, runs, into) : status;
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

// Where it belongs; null: nowhere.
const AbEpoch* Give(std::unique_ptr<KeptRun> run, EpochPortal* portal, RunHistory* history) {
    const Epoch* end = nullptr;
    std::weak_ptr<const void> life;
    {
        const ReadGuard guard(portal);
        for (EpochCursor cursor(portal->RootEpoch());
             cursor.GetEpoch() != nullptr && end == nullptr; cursor.Increment())
            if (EndsIn(*run, *cursor.GetEpoch()) && !history->SpanOf(cursor.GetEpoch()))
                end = dynamic_cast<const Epoch*>(cursor.GetEpoch());
        if (end == nullptr) return nullptr;
        life = end->Life();
    }
    return history->Adopt(end, life, std::move(run)) ? end : nullptr;
}

// Gives the epochs that begin in the run their way.
void ReadBranch(const BranchFields& branch, const AbEpoch* run, EpochPortal* portal,
                RunHistory* history) {
    const ReadGuard guard(portal);
    if (!portal->HasEpoch(run)) return;
    const AbEpoch* const start = run->Parent();
    for (int32 i = 0; i < start->CountChildren(); i++)
        if (const AbEpoch* const epoch = start->ChildAt(i);
            epoch != run && !history->WayTo(*epoch) && DigestOf(*portal, *epoch) == branch.state)
            history->NoteBranch(epoch, run, branch.time);
}

// Damaged ones have no record, but keep their place.
template <typename Take>
void ForEach(const BMessage& from, const char* name, Take take) {
    type_code type = 0;
    int32 count = 0;
    if (from.GetInfo(name, &type, &count) != B_OK || type != B_MESSAGE_TYPE) return;
    for (int32 i = 0; i < count; i++) {
        BMessage record;
        static_cast<void>(from.FindMessage(name, i, &record));
        take(record);
    }
}

}  // namespace

BMessage SavedHistory::Of(EpochPortal* portal, const RunHistory& history, std::size_t most) {
    const std::vector<const AbEpoch*> epochs = EpochsOf(portal);
    try {
        for (std::size_t room = most; room >= kMinBytes; room /= 2) {
            BMessage record;
            if (Write(portal, epochs, history, room, &record) != B_OK || record.IsEmpty())
                return {};
            if (const std::size_t size = record.FlattenedSize(); size > 0 && size <= most)
                return record;
        }
    } catch (const std::bad_alloc&) {
        // The document is saved without it.
    }
    return {};
}

void SavedHistory::Read(const BMessage& record, EpochPortal* portal, RunHistory* history) {
    try {
        std::vector<const AbEpoch*> runs;
        ForEach(record, kRuns, [&](const BMessage& item) {
            auto run = KeptRunRecord::Read(item);
            runs.push_back(run == nullptr ? nullptr : Give(std::move(run), portal, history));
        });
        ForEach(record, kBranches, [&](const BMessage& item) {
            BranchFields branch;
            if (kBranchFields.Read(item, &branch) != B_OK) return;
            const auto number = static_cast<std::size_t>(branch.run);
            if (number < runs.size() && runs[number] != nullptr)
                ReadBranch(branch, runs[number], portal, history);
        });
    } catch (const std::bad_alloc&) {
        // The rest counts as missing, too.
    }
}

void SavedHistory::DescribeFields(FieldDescriptions* into) {
    DescribeField(into, kRuns, B_MESSAGE_TYPE, "any", "none", "what is kept of one run");
    DescribeField(into, kBranches, B_MESSAGE_TYPE, "any", "none", "an epoch that begins in one");
}

void SavedHistory::DescribeBranch(FieldDescriptions* into) {
    kBranchFields.Describe(into);
}
