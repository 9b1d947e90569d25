#include "Simulation/History/KeptRunRecord.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <utility>
#include <vector>

#include "Model/Epochs/EpochLimits.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"
#include "Simulation/History/KeptRun.h"
#include "Simulation/History/StateRecord.h"

namespace {

constexpr const char* kEnd = "End";
constexpr const char* kTracks = "Tracks";
constexpr const char* kEvents = "Events";
constexpr const char* kCheckpoints = "Checkpoints";

constexpr const char* kBody = "Body";
constexpr const char* kSamples = "Samples";
constexpr const char* kGaps = "Gaps";
constexpr std::size_t kNumbersOfSample = 7;

constexpr const char* kState = "State";
constexpr const char* kCalculator = "Calc";

constexpr const char* kBackwards = "Backwards";
constexpr const char* kDamaged = "damaged";

// More reports than any run has.
constexpr int64 kMaxReports = int64{1} << 53;

bool IsCount(int64 count) {
    return count >= 0 && count <= kMaxReports;
}

bool IsFinite(double number) {
    return std::isfinite(number);
}

bool IsKind(int32 kind) {
    return kind == static_cast<int32>(RunEvent::Kind::kMerger) ||
           kind == static_cast<int32>(RunEvent::Kind::kEdit);
}

constexpr FieldTable kCheckpointFields{
    Field<&RunCheckpoint::report>{.name = "Report",
                                  .meaning = "its number, from the start of the run",
                                  .accepts = IsCount,
                                  .whenMissing = kDamaged},
    Field<&RunCheckpoint::order>{.name = "Order", .whenMissing = kDamaged},
    Field<&RunCheckpoint::cutoff>{.name = "Cutoff", .accepts = IsCutoff, .whenMissing = kDamaged},
    Field<&RunCheckpoint::onContact>{
        .name = "On contact", .accepts = IsOnContact, .whenMissing = kDamaged},
    Field<&RunCheckpoint::isBackwards>{
        .name = kBackwards, .meaning = "time falls", .whenMissing = kDamaged},
    Field<&RunCheckpoint::isStart>{
        .name = "Start", .meaning = "a first step is made there", .whenMissing = kDamaged},
    Field<&RunCheckpoint::isPinned>{
        .name = "Pinned", .meaning = "no calculation leads there", .whenMissing = kDamaged},
};

// An event as it is stored.
struct EventFields {
    int32 kind = 0;
    double time = 0.0;
    std::string name;
};

constexpr FieldTable kEventFields{
    Field<&EventFields::kind>{.name = "Kind",
                              .meaning = "0: a merger, 1: an edit",
                              .accepts = IsKind,
                              .whenMissing = kDamaged},
    Field<&EventFields::time>{
        .name = "When", .meaning = "s", .accepts = IsFinite, .whenMissing = kDamaged},
    Field<&EventFields::name>{
        .name = "Made", .meaning = "name of what has merged", .whenMissing = kDamaged},
};

// What is told of a run as a whole.
struct RunFields {
    double start = 0.0;
    double beforeLast = 0.0;
    int64 reports = 0;
    bool isBackwards = false;
};

constexpr FieldTable kRunFields{
    Field<&RunFields::start>{
        .name = "Start", .meaning = "s", .accepts = IsFinite, .whenMissing = kDamaged},
    Field<&RunFields::beforeLast>{.name = "Before last",
                                  .meaning = "time of the last report but one, s",
                                  .accepts = IsFinite,
                                  .whenMissing = kDamaged},
    Field<&RunFields::reports>{.name = "Reports",
                               .meaning = "how many there were",
                               .accepts = IsCount,
                               .whenMissing = kDamaged},
    Field<&RunFields::isBackwards>{
        .name = kBackwards, .meaning = "time falls", .whenMissing = kDamaged},
};

// --- Records in records ---

template <typename WriteRecord>
status_t WriteNested(const char* name, BMessage* into, WriteRecord write) {
    BMessage record;
    const status_t status = write(&record);
    return status == B_OK ? into->AddMessage(name, std::move(record)) : status;
}

template <typename ReadRecord>
status_t ReadNested(const BMessage& from, const char* name, int32 index, ReadRecord read) {
    BMessage record;
    const status_t status = from.FindMessage(name, index, &record);
    return status == B_OK ? read(record) : status;
}

template <typename Items, typename WriteItem>
status_t WriteAll(const Items& items, const char* name, BMessage* into, WriteItem write) {
    for (const auto& item : items) {
        const auto writeIt = [&](BMessage* record) { return write(item, record); };
        if (const status_t status = WriteNested(name, into, writeIt); status != B_OK) return status;
    }
    return B_OK;
}

template <typename ReadItem>
status_t ReadAll(const BMessage& from, const char* name, ReadItem read) {
    type_code type = 0;
    int32 count = 0;
    if (from.GetInfo(name, &type, &count) != B_OK) return B_OK;
    for (int32 i = 0; i < count; i++)
        if (const status_t status = ReadNested(from, name, i, read); status != B_OK) return status;
    return B_OK;
}

// --- Bodies' paths ---

status_t WriteTrack(int64 body, const SampleTrack& track, BMessage* into) {
    std::vector<double> numbers;
    std::vector<int64> gaps;
    numbers.reserve(kNumbersOfSample * track.Count());
    for (const Sample& sample : track.All()) {
        if (!sample.isJoined) gaps.push_back(static_cast<int64>(numbers.size() / kNumbersOfSample));
        const auto& [time, r, v, isJoined] = sample;
        numbers.insert(numbers.end(), {time, r.x, r.y, r.z, v.x, v.y, v.z});
    }
    if (track.IsBroken()) gaps.push_back(static_cast<int64>(track.Count()));
    const auto addNumbers = [&] {
        return into->AddDoubles(kSamples, numbers.data(), static_cast<int32>(numbers.size()));
    };
    const auto addGaps = [&] {
        return into->AddInt64s(kGaps, gaps.data(), static_cast<int32>(gaps.size()));
    };
    return FieldWriter(into)
        .Add(kBody, body)
        .Then(addNumbers, !numbers.empty())
        .Then(addGaps, !gaps.empty())
        .Status();
}

status_t ReadTrack(const BMessage& record, bool isBackwards, int64* body, SampleTrack* track) {
    std::vector<double> numbers;
    std::vector<int64> gaps;
    status_t status = record.FindInt64(kBody, body);
    if (status == B_OK) status = ReadNumbers(record, kSamples, &numbers);
    if (status == B_OK) status = ReadNumbers(record, kGaps, &gaps);
    if (status != B_OK) return status;
    if (numbers.size() % kNumbersOfSample != 0) return B_BAD_DATA;
    std::deque<Sample> samples;
    for (std::size_t i = 0; i < numbers.size(); i += kNumbersOfSample) {
        const double* const n = &numbers[i];
        if (!samples.empty() && n[0] < samples.back().time) return B_BAD_DATA;
        samples.push_back({n[0], {n[1], n[2], n[3]}, {n[4], n[5], n[6]}, true});
    }
    bool isBroken = false;
    for (const int64 gap : gaps) {
        const auto at = static_cast<std::size_t>(gap);
        if (gap < 0 || at > samples.size()) return B_BAD_DATA;
        if (at < samples.size())
            samples[at].isJoined = false;
        else
            isBroken = true;
    }
    *track = SampleTrack(isBackwards, std::move(samples), isBroken);
    return B_OK;
}

// --- What happened ---

status_t WriteEvent(const RunEvent& event, BMessage* into) {
    const EventFields fields{static_cast<int32>(event.kind), event.time, event.name};
    const status_t status = kEventFields.Write(fields, into);
    if (status != B_OK || event.before.empty()) return status;
    SystemState state;
    std::vector<double> radii;
    state.time = event.time;
    for (const RunEvent::Before& body : event.before) {
        state.ids.push_back(body.id);
        state.names.push_back(body.name);
        state.gm.push_back(body.gm);
        radii.push_back(body.radius);
        for (auto [to, from] : {std::pair(&state.positions, &body.position),
                                std::pair(&state.velocities, &body.velocity)})
            to->insert(to->end(), {from->x, from->y, from->z});
    }
    return WriteNested(kState, into,
                       [&](BMessage* bodies) { return StateRecord::Write(state, radii, bodies); });
}

status_t ReadEvent(const BMessage& record, RunEvent* event) {
    EventFields fields;
    if (const status_t status = kEventFields.Read(record, &fields); status != B_OK) return status;
    *event = {static_cast<RunEvent::Kind>(fields.kind), fields.time, {}, fields.name};
    if (!record.HasName(kState)) return B_OK;
    SystemState state;
    std::vector<double> radii;
    const status_t status = ReadNested(record, kState, 0, [&](const BMessage& bodies) {
        return StateRecord::Read(bodies, &state, &radii);
    });
    for (std::size_t i = 0; i < state.CountBodies() && status == B_OK; i++)
        event->before.push_back({state.ids[i], state.names[i], state.gm[i], radii[i],
                                 state.Position(i), state.Velocity(i)});
    return status;
}

// --- Checkpoints ---

status_t WriteCheckpoint(const RunCheckpoint& checkpoint, BMessage* into) {
    const auto write = [&](BMessage* state) {
        return StateRecord::Write(checkpoint.state, checkpoint.radii, state);
    };
    return FieldWriter(into, kCheckpointFields.Write(checkpoint, into))
        .Then([&] { return WriteNested(kState, into, write); })
        .Then([&] { return into->AddMessage(kCalculator, &checkpoint.calculator); })
        .Status();
}

status_t ReadCheckpoint(const BMessage& record, RunCheckpoint* checkpoint) {
    const auto read = [&](const BMessage& state) {
        return StateRecord::Read(state, &checkpoint->state, &checkpoint->radii);
    };
    status_t status = kCheckpointFields.Read(record, checkpoint);
    if (status == B_OK) status = ReadNested(record, kState, 0, read);
    if (status == B_OK) status = record.FindMessage(kCalculator, &checkpoint->calculator);
    // Those that can be spared lie at so many reports.
    const bool isPlaced = checkpoint->isPinned || checkpoint->report > 0;
    return status == B_OK && !isPlaced ? B_BAD_DATA : status;
}

}  // namespace

status_t KeptRunRecord::Write(const KeptRun& run, BMessage* into) {
    const RunFields fields{run.startTime_, run.timeBeforeLast_, run.reports_, run.isBackwards_};
    const auto writeEnd = [&](BMessage* record) {
        return StateRecord::Write(run.tail_, run.radii_, record);
    };
    const auto writeTrack = [&](int64 body, BMessage* record) {
        return WriteTrack(body, run.tracks_.at(body), record);
    };
    const auto writeCheckpoint = [](const auto& checkpoint, BMessage* record) {
        return WriteCheckpoint(*checkpoint, record);
    };
    return FieldWriter(into, kRunFields.Write(fields, into))
        .Then([&] { return WriteNested(kEnd, into, writeEnd); })
        .Then([&] { return WriteAll(run.Bodies(), kTracks, into, writeTrack); })
        .Then([&] { return WriteAll(run.events_, kEvents, into, WriteEvent); })
        .Then([&] { return WriteAll(run.checkpoints_.All(), kCheckpoints, into, writeCheckpoint); })
        .Status();
}

std::unique_ptr<KeptRun> KeptRunRecord::Read(const BMessage& record) {
    RunFields fields;
    BMessage end;
    SystemState tail;
    std::vector<double> radii;
    if (kRunFields.Read(record, &fields) != B_OK || record.FindMessage(kEnd, &end) != B_OK ||
        StateRecord::Read(end, &tail, &radii) != B_OK)
        return nullptr;
    std::unique_ptr<KeptRun> run;
    const auto isBefore = [&](double time, double other) {
        return fields.isBackwards ? time >= other : time <= other;
    };
    if (!isBefore(fields.start, fields.beforeLast) || !isBefore(fields.beforeLast, tail.time))
        return nullptr;
    double last = fields.start;
    status_t status = ReadAll(record, kCheckpoints, [&](const BMessage& item) {
        RunCheckpoint checkpoint;
        if (const status_t read = ReadCheckpoint(item, &checkpoint); read != B_OK) return read;
        const double time = checkpoint.state.time;
        if (checkpoint.isBackwards != fields.isBackwards || !isBefore(last, time) ||
            !isBefore(time, tail.time))
            return B_BAD_DATA;
        last = time;
        if (run != nullptr)
            run->checkpoints_.Add(std::move(checkpoint));
        else if (time == fields.start)
            run = std::make_unique<KeptRun>(std::move(checkpoint));
        return run == nullptr ? B_BAD_DATA : B_OK;
    });
    if (status != B_OK || run == nullptr) return nullptr;
    run->Restore(tail, std::move(radii), fields.beforeLast, fields.reports);
    status = ReadAll(record, kTracks, [&](const BMessage& item) {
        int64 body = 0;
        SampleTrack track;
        const status_t read = ReadTrack(item, fields.isBackwards, &body, &track);
        if (read == B_OK) run->SetTrack(body, std::move(track));
        return read;
    });
    if (status == B_OK)
        status = ReadAll(record, kEvents, [&](const BMessage& item) {
            return ReadEvent(item, &run->events_.emplace_back());
        });
    return status == B_OK ? std::move(run) : nullptr;
}

void KeptRunRecord::DescribeRun(FieldDescriptions* into) {
    kRunFields.Describe(into);
    DescribeField(into, kEnd, B_MESSAGE_TYPE, "1", kDamaged, "the bodies at its last report");
    DescribeField(into, kTracks, B_MESSAGE_TYPE, "per body", "none", "the bodies' paths");
    DescribeField(into, kEvents, B_MESSAGE_TYPE, "any", "none", "mergers and edits, in order");
    DescribeField(into, kCheckpoints, B_MESSAGE_TYPE, "1 or more", kDamaged,
                  "states of the calculation, in order; the first one is the start");
}

void KeptRunRecord::DescribeTrack(FieldDescriptions* into) {
    DescribeField(into, kBody, B_INT64_TYPE, "1", kDamaged, "its identifier");
    DescribeField(into, kSamples, B_DOUBLE_TYPE, "7 per sample", "none",
                  "in the order of time: time (s), place (m) and velocity (m/s)");
    DescribeField(into, kGaps, B_INT64_TYPE, "any", "none",
                  "numbers of the samples, from 0, that the path does not lead to; their count: "
                  "nor to the run's end");
}

void KeptRunRecord::DescribeEvent(FieldDescriptions* into) {
    kEventFields.Describe(into);
    DescribeField(into, kState, B_MESSAGE_TYPE, "0, 1", "none",
                  "the bodies that it happened to, as they were");
}

void KeptRunRecord::DescribeCheckpoint(FieldDescriptions* into) {
    kCheckpointFields.Describe(into);
    DescribeField(into, kState, B_MESSAGE_TYPE, "1", kDamaged, "the bodies");
    DescribeField(into, kCalculator, B_MESSAGE_TYPE, "1", kDamaged, "the integrator's whole state");
}
