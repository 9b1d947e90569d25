#include "Calculation/Series/SeriesForces.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <thread>

#include "Model/Epochs/EpochLimits.h"

namespace {

constexpr int32 kMaxThreads = 16;
// What pairs of massive bodies may keep from one pass to the next.
constexpr int64 kMaxPairBytes = int64{256} << 20;
// Fewer pairs of massive bodies are not worth a second thread in each pass, nor are fewer sums of
// vectors; or fewer pairs of massless bodies, which go through all orders at once.
constexpr int64 kPairsWorthSharing = 10'000;
constexpr int64 kSumsWorthSharing = 1000;
constexpr int64 kTargetPairsWorthSharing = 1200;
// Some tens of microseconds, after which it is asked whether to go on.
constexpr int32 kTilesBetweenLooks = 16;
// As many of them are added by one thread in a row.
constexpr int32 kVectorsTogether = 8;
// Fewer vectors are not sorted, and their bodies all go to the highest order.
constexpr int32 kMinSortedVectors = 5;

std::size_t Size(int64 number) {
    return static_cast<std::size_t>(number);
}

// A fixed number for each number of bodies: enough for the threads of most machines, and few where
// the sums would be more than the pairs.
int32 CountGroups(int32 vectors) {
    if (vectors < 8) return 1;
    return vectors < 32 ? 8 : kMaxGroups;
}

int64 CountBlocks(int32 vectors) {
    return int64{kSlots} * vectors * (vectors - 1) / 2 + int64{kSlots / 2} * vectors;
}

// An odd number of lines from order to order avoids cache conflicts.
int64 LinesOfTwoOrders(int64 blocks) {
    return blocks * 4 + 1;
}

bool KeepsPairs(int32 order, int32 massive) {
    const int64 lines = LinesOfTwoOrders(CountBlocks(SplitStates::CountVectors(massive)));
    return lines * (order / 2) * static_cast<int64>(sizeof(SlotRow)) <= kMaxPairBytes;
}

}  // namespace

// One pass over the tiles of some groups: threads take groups from a counter.
struct SeriesForces::Pass {
    const SeriesForces& forces;
    const int32 k;
    const StopFlags& stop;
    const int32 endGroup;
    std::atomic<int32> next{0};
    std::atomic<bool> stopped{false};

    static void DoTasks(void* pass) { static_cast<Pass*>(pass)->DoTasks(); }

    void DoTasks() {
        const TileArrays& tiles = forces.tileArrays_;
        const auto& kernels = *forces.instance_;
        const auto add = tiles.powers ? kernels.tiles[k / 2] : kernels.freshTiles[k / 2];
        for (int32 group; (group = next.fetch_add(1)) < endGroup && !stopped;)
            for (int32 tile = 0; tile * tiles.groups < tiles.countTiles;
                 tile += kTilesBetweenLooks) {
                if (stop.ShouldStop()) stopped = true;
                if (stopped) return;
                add(forces.arrays_, tiles, group, tile, kTilesBetweenLooks);
            }
    }
};

// The sums of all groups, once these are complete: threads take vectors from a counter.
struct SeriesForces::Sums {
    const SeriesForces& forces;
    const int32 k;
    std::atomic<int32> next{0};

    static void DoTasks(void* sums) { static_cast<Sums*>(sums)->DoTasks(); }

    void DoTasks() {
        const SeriesArrays& arrays = forces.arrays_;
        for (int32 first; (first = next.fetch_add(kVectorsTogether)) < arrays.massiveVectors;)
            for (int32 vector = first;
                 vector < std::min(first + kVectorsTogether, arrays.massiveVectors); vector++)
                forces.instance_->sumGroups(arrays, forces.tileArrays_, k, vector);
    }
};

// Massless bodies, a vector at a time.
struct SeriesForces::TargetTasks {
    SeriesForces& forces;
    const StopFlags& stop;
    const int32 endVector;
    std::atomic<int32> next;
    std::atomic<uint32> busy{0};  // bits of the scratches that somebody uses
    std::atomic<bool> stopped{false};

    static void DoTasks(void* tasks) { static_cast<TargetTasks*>(tasks)->DoTasks(); }

    void DoTasks() {
        const int32 mine = TakeScratch();
        double* const scratch = forces.scratch_.From(Size(mine * forces.scratchRows_));
        for (int32 vector; (vector = next.fetch_add(1)) < endVector && !stopped;) {
            if (stop.ShouldStop())
                stopped = true;
            else
                forces.instance_->targets(forces.arrays_, vector, scratch);
        }
        busy.fetch_and(~(1u << mine));
    }

    int32 TakeScratch() {
        uint32 old = busy;
        while (!busy.compare_exchange_weak(old, old | (old + 1))) {
        }
        return std::countr_one(old);
    }
};

SeriesForces::SeriesForces(int32 threads) : instance_(FindSeriesInstance(BestInstructionSet())) {
    SetThreads(threads);
}

void SeriesForces::SetThreads(int32 threads) {
    if (threads <= 0) threads = static_cast<int32>(std::thread::hardware_concurrency());
    threads = std::clamp(threads, 1, kMaxThreads);
    if (threads != threads_) team_.reset();
    threads_ = threads;
    scratch_.Resize(Size(scratchRows_ * threads_));
}

bool SeriesForces::SetInstructionSet(InstructionSet set) {
    const SeriesInstance* const instance = FindSeriesInstance(set);
    if (instance) instance_ = instance;
    return instance != nullptr;
}

static_assert(kMaxOrder == kMaxSeriesOrder);

int32 SeriesForces::OrderFor(int32 wanted, int32 massive) {
    int32 order = kMinSeriesOrder;
    while (order < wanted && order < kMaxSeriesOrder)
        order += 4;
    if (massive > kMaxInRing)
        while (order > kMinSeriesOrder && !KeepsPairs(order, massive))
            order -= 4;
    return order;
}

void SeriesForces::Resize(const SeriesStore& store) {
    arrays_ = store.Arrays();
    if (arrays_.massive <= kMaxInRing)
        ResizeRing();
    else
        ResizeTiles();
    rankSums_.reset();
    const bool hasTargets = arrays_.bodies > arrays_.massive;
    scratchRows_ = hasTargets ? int64{2} * arrays_.order * arrays_.massive : 0;
    scratch_.Resize(Size(scratchRows_ * threads_));
}

void SeriesForces::ResizeRing() {
    const int32 massive = arrays_.massive;
    pulledScale_ = 0.0;
    ring_.rounds = massive / 2;
    // Differences and powers of all orders, for as many parts as there may be.
    pairs_.Resize(Size(int64{5} * arrays_.order * ring_.rounds * arrays_.massiveVectors));
    ring_.pairs = pairs_.From(0);
    for (int32 round = 0; round < ring_.rounds; round++)
        for (int32 slot = 0; slot < kMaxInRing; slot++) {
            ring_.met[round][slot] = (slot + round + 1) % massive;
            ring_.meeting[round][slot] = (slot % massive + massive - round - 1) % massive;
        }
}

void SeriesForces::ResizeTiles() {
    const int32 vectors = arrays_.massiveVectors;
    const int64 lines = LinesOfTwoOrders(CountBlocks(vectors));
    const bool keeps = KeepsPairs(arrays_.order, arrays_.massive);
    pairs_.Resize(keeps ? Size(lines * (arrays_.order / 2)) : 0);
    tiles_.clear();
    tiles_.reserve(Size(int64{vectors} * (vectors + 1) / 2));
    int64 block = 0;
    for (int32 a = 0; a < vectors; a++)
        for (int32 b = a; b < vectors; b++) {
            tiles_.push_back({a, b, block});
            block += a == b ? kSlots / 2 : kSlots;
        }
    active_.assign(Size(vectors), 1);
    speeds_.resize(Size(arrays_.massive));
    sorted_.resize(Size(arrays_.massive));
    const int32 groups = CountGroups(vectors);
    sums_.Resize(Size(int64{6} * vectors * groups));
    tileArrays_ = {.tiles = tiles_.data(),
                   .countTiles = static_cast<int32>(tiles_.size()),
                   .groups = groups,
                   .powers = pairs_.From(0),
                   .powersStride = lines * kSlots,
                   .sums = sums_.From(0),
                   .active = active_.data()};
}

bool SeriesForces::Make(SeriesStore* store, const SplitStates& states, double theta, double cutoff,
                        const StopFlags& stop) {
    isWithRanks_ = IsForRanks();
    if (isWithRanks_) Tell(*store, states, theta, cutoff);
    return MakeAll(store, states, theta, cutoff, stop);
}

bool SeriesForces::IsForRanks() const {
    return ranks_ != nullptr && ranks_->Count() > 1 &&
           int64{arrays_.bodies} * arrays_.massive >= ranks_->LeastPairs();
}

void SeriesForces::Tell(const SeriesStore& store, const SplitStates& states, double theta,
                        double cutoff) {
    const SeriesArrays& arrays = store.Arrays();
    const RankTask task{RankTask::Kind::kSeries,
                        arrays.order,
                        arrays.bodies,
                        arrays.massive,
                        arrays.scale,
                        theta,
                        cutoff};
    ranks_->Call(&task, sizeof task);
    gm_.resize(Size(arrays.massive));
    for (int32 body = 0; body < arrays.massive; body++)
        gm_[Size(body)] = store.GM(body);
    ranks_->Tell(gm_.data(), gm_.size() * sizeof(double));
    ranks_->Tell(states.High(), states.Bytes());
    ranks_->Tell(states.Low(), states.Bytes());
}

void SeriesForces::Help(SeriesStore* store, SplitStates* states, double theta, double cutoff) {
    isWithRanks_ = true;
    gm_.resize(Size(arrays_.massive));
    ranks_->Hear(gm_.data(), gm_.size() * sizeof(double));
    ranks_->Hear(states->High(), states->Bytes());
    ranks_->Hear(states->Low(), states->Bytes());
    pulledScale_ = 0.0;
    for (int32 body = 0; body < arrays_.massive; body++)
        store->SetGM(body, gm_[Size(body)]);
    StopFlags never;
    never.pauseCount = 0;
    static_cast<void>(MakeAll(store, *states, theta, cutoff, never));
}

bool SeriesForces::MakeAll(SeriesStore* store, const SplitStates& states, double theta,
                           double cutoff, const StopFlags& stop) {
    hasLeftOut_ = false;
    if (arrays_.massive <= kMaxInRing) {
        store->Begin(states);
        arrays_ = store->Arrays();
        SetPulls();
        if (arrays_.massive > 0) instance_->ring(arrays_, ring_);
    } else if (!MakeTiles(store, states, theta, cutoff, stop)) {
        return false;
    }
    return arrays_.bodies == arrays_.massive || MakeTargets(stop);
}

void SeriesForces::SetPulls() {
    if (arrays_.scale == pulledScale_) return;
    pulledScale_ = arrays_.scale;
    const int32 massive = arrays_.massive;
    for (int32 round = 0; round < ring_.rounds; round++)
        for (int32 slot = 0; slot < kMaxInRing; slot++) {
            const bool areMet = 2 * (round + 1) == massive && slot % massive >= massive / 2;
            ring_.pullOfMet[round][slot] = areMet ? 0.0 : arrays_.pull[ring_.met[round][slot]];
            ring_.pullOfMeeting[round][slot] = areMet ? 0.0 : arrays_.pull[slot % massive];
        }
}

bool SeriesForces::MakeTiles(SeriesStore* store, const SplitStates& states, double theta,
                             double cutoff, const StopFlags& stop) {
    std::fill(active_.begin(), active_.end(), uint8{1});
    store->PlaceInOrder();
    store->Begin(states);
    arrays_ = store->Arrays();
    if (!MakePass(0, stop)) return false;
    const bool leavesOut = cutoff > 0.0 && arrays_.massiveVectors >= kMinSortedVectors;
    if (leavesOut) {
        SortBodies(store);
        store->Begin(states);
        if (!MakePass(0, stop)) return false;
    }
    for (int32 k = 2; k < arrays_.order; k += 2) {
        if (leavesOut && k >= 4) LeaveOut(k, theta, cutoff);
        if (!MakePass(k, stop)) return false;
    }
    return true;
}

bool SeriesForces::MakePass(int32 k, const StopFlags& stop) {
    if (isWithRanks_) return MakePassWithRanks(k, stop);
    Pass pass{*this, k, stop, tileArrays_.groups};
    Run(&pass, int64{arrays_.massive} * arrays_.massive / 2 >= kPairsWorthSharing);
    if (pass.stopped) return false;
    Sums sums{*this, k};
    Run(&sums, int64{arrays_.massiveVectors} * tileArrays_.groups >= kSumsWorthSharing);
    return true;
}

bool SeriesForces::MakePassWithRanks(int32 k, const StopFlags& stop) {
    if (!rankSums_)
        rankSums_ = std::make_unique<RankSums>(ranks_, tileArrays_.groups, arrays_.massiveVectors);
    Pass pass{*this, k, stop, rankSums_->EndGroup(), rankSums_->BeginGroup()};
    Run(&pass, true);
    if (!rankSums_->Add(tileArrays_.sums, pass.stopped)) return false;
    TileArrays all = tileArrays_;
    all.groups = 1;
    for (int32 vector = rankSums_->BeginVector(); vector < rankSums_->EndVector(); vector++)
        instance_->sumGroups(arrays_, all, k, vector);
    rankSums_->ShareOrders(arrays_, k);
    return true;
}

// The fastest first: by the third order against the second, squared. What is no number comes first.
void SeriesForces::SortBodies(SeriesStore* store) {
    for (int32 body = 0; body < arrays_.massive; body++) {
        const double* const x = arrays_.Vector(body / kSlots) + body % kSlots;
        double second = 0.0;
        double third = 0.0;
        for (int axis = 0; axis < 3; axis++) {
            const double a = x[(6 + axis) * kSlots];
            const double b = x[(9 + axis) * kSlots];
            second += a * a;
            third += b * b;
        }
        const double speed = third / second;
        speeds_[Size(body)] = {speed >= 0.0 ? -speed : -1e300, body};
    }
    std::sort(speeds_.begin(), speeds_.end());
    std::transform(speeds_.begin(), speeds_.end(), sorted_.begin(),
                   [](const auto& speed) { return speed.second; });
    store->PlaceMassive(sorted_.data());
}

void SeriesForces::LeaveOut(int32 k, double theta, double cutoff) {
    for (int32 vector = 0; vector < arrays_.massiveVectors; vector++) {
        uint8& isActive = active_[Size(vector)];
        if (!isActive) continue;
        // What is no number goes on.
        if (!(instance_->activity(arrays_, k, vector, theta) <= cutoff * cutoff)) continue;
        isActive = 0;
        hasLeftOut_ = true;
    }
}

bool SeriesForces::MakeTargets(const StopFlags& stop) {
    if (isWithRanks_) return MakeTargetsWithRanks(stop);
    TargetTasks tasks{*this, stop, arrays_.vectors, arrays_.massiveVectors};
    Run(&tasks,
        int64{arrays_.bodies - arrays_.massive} * arrays_.massive >= kTargetPairsWorthSharing);
    return !tasks.stopped;
}

// Number 0 alone needs them.
bool SeriesForces::MakeTargetsWithRanks(const StopFlags& stop) {
    RankParts parts = ranks_->Split(arrays_.vectors - arrays_.massiveVectors);
    const auto own = [&](std::size_t end) {
        return arrays_.massiveVectors + static_cast<int32>(parts[ranks_->Index() + end]);
    };
    TargetTasks tasks{*this, stop, own(1), own(0)};
    Run(&tasks, true);
    for (int64& part : parts)
        part *= arrays_.Stride();
    ranks_->Gather(arrays_.Vector(arrays_.massiveVectors), parts);
    return !tasks.stopped;
}

template <class Work>
void SeriesForces::Run(Work* work, bool isWorthSharing) {
    if (threads_ == 1 || !isWorthSharing) {
        work->DoTasks();
        return;
    }
    if (!team_) team_ = std::make_unique<WorkerTeam>(threads_ - 1);
    team_->Run(Work::DoTasks, work);
}
