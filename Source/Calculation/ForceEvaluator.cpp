#include "Calculation/ForceEvaluator.h"

#include <algorithm>
#include <cstddef>
#include <thread>

#include "Calculation/ForcePair.h"
#include "Calculation/RankRows.h"

namespace {

// The rate when no pair is faster.
constexpr double kMinRate = 1e-100;
constexpr int32 kMaxThreads = 16;

// Pairs of a target and a source in one task: a microsecond or so, so that sharing costs little, a
// pause is seen in time and the last task keeps nobody waiting. But at least a vector of targets.
constexpr int32 kPairsPerTask = 256;
// Fewer pairs are not worth a second thread, nor a look at what others may be doing: each locked
// instruction would cost as much as several pairs.
constexpr int64 kPairsWorthSharing = 1600;

// So many pairs stay in the nearer caches, with what the passes keep of them. Of more it is quicker
// to find it again, and memory is to grow with the bodies only.
constexpr int64 kMaxKeptPairs = 16'384;

int32 RoundUp(int32 number, int32 unit) {
    return (number + unit - 1) / unit * unit;
}

void RaiseTo(std::atomic<double>* greatest, double value) {
    double old = *greatest;
    while (value > old && !greatest->compare_exchange_weak(old, value)) {
    }
}

}  // namespace

// One pass over targets, in tasks that the threads take from a counter.
struct ForceEvaluator::Pass {
    // kRest: what is left when the massive bodies have had the first one.
    enum class Kind { kFirst, kSecond, kRest };

    const ForceEvaluator& evaluator;
    const Kind kind;
    const int32 order;
    const StopFlags& stop;
    const int32 targetsPerTask;
    const int32 countTargets;
    std::atomic<int32> next{0};
    std::atomic<double> rate{kMinRate};
    std::atomic<bool> touching{false};
    std::atomic<bool> stopped{false};
    std::atomic<std::size_t> members{0};
    std::vector<std::vector<double>>* rooms = nullptr;  // of kRest

    static void DoTasks(void* pass) { static_cast<Pass*>(pass)->DoTasks(); }

    void DoTasks() {
        const ForceArrays& arrays = evaluator.arrays_;
        const ForceInstance& instance = *evaluator.instance_;
        const std::size_t member = members++;
        FirstPassResult found;
        while (!stopped) {
            const int32 begin = next.fetch_add(targetsPerTask);
            if (begin >= countTargets) break;
            if (stop.ShouldStop()) {
                stopped = true;
                break;
            }
            const int32 end = std::min(begin + targetsPerTask, countTargets);
            if (kind == Kind::kFirst)
                Note(instance.firstPass(arrays, order, begin, end), &found);
            else if (kind == Kind::kSecond)
                instance.secondPass(arrays, begin, end);
            else
                DoRest(begin, end, member, &found);
        }
        RaiseTo(&rate, found.rate);
        if (found.touching) touching = true;
    }

    // All sources are massive, hence their accelerations are known; a massless target's own are
    // after its first pass.
    void DoRest(int32 begin, int32 end, std::size_t member, FirstPassResult* found) const {
        const ForceInstance& instance = *evaluator.instance_;
        const int32 massless = std::clamp(evaluator.EndOfMassive(), begin, end);
        if (begin < massless) instance.secondPass(evaluator.arrays_, begin, massless);
        if (massless == end) return;
        ForceArrays arrays = evaluator.arrays_;
        arrays.kept = (*rooms)[member].data();
        arrays.keptFrom = massless;
        Note(instance.firstPass(arrays, order, massless, end), found);
        instance.secondPass(arrays, massless, end);
    }

    static void Note(const FirstPassResult& task, FirstPassResult* found) {
        found->rate = std::max(found->rate, task.rate);
        found->touching |= task.touching;
    }
};

ForceEvaluator::ForceEvaluator(int32 threads) : instance_(FindForceInstance(BestInstructionSet())) {
    SetThreads(threads);
    Resize(0, 0);
}

ForceEvaluator::~ForceEvaluator() = default;

void ForceEvaluator::SetThreads(int32 threads) {
    if (threads <= 0) threads = static_cast<int32>(std::thread::hardware_concurrency());
    threads = std::clamp(threads, 1, kMaxThreads);
    if (threads != threads_) team_.reset();
    threads_ = threads;
}

bool ForceEvaluator::SetInstructionSet(InstructionSet set) {
    const ForceInstance* instance = FindForceInstance(set);
    if (instance) instance_ = instance;
    return instance != nullptr;
}

void ForceEvaluator::Resize(int32 bodies, int32 massive) {
    // An odd number of lines avoids cache conflicts between the arrays.
    const auto stride = static_cast<size_t>((bodies + kMaxLanes - 1) / kMaxLanes | 1);
    if (stride > stride_) {
        stride_ = stride;
        storage_.assign(stride * kCountArrays, Line{});
    }
    arrays_ = ForceArrays{.bodies = bodies, .massive = massive, .gm = GM(), .radius = Radius()};
    for (int axis = 0; axis < 3; axis++) {
        arrays_.position[axis] = Position(axis);
        arrays_.velocity[axis] = Velocity(axis);
        arrays_.acceleration[axis] = Array(kAcceleration + axis);
        arrays_.jerk[axis] = Array(kJerk + axis);
        arrays_.snap[axis] = Array(kSnap + axis);
    }
    MakeRoomForPairs();
}

void ForceEvaluator::MakeRoomForPairs() {
    const int64 pairs = int64{RoundUp(arrays_.bodies, kMaxLanes)} * arrays_.massive;
    kept_.resize(static_cast<size_t>(pairs <= kMaxKeptPairs ? 2 * pairs : 0));
    if (!kept_.empty()) arrays_.kept = kept_.data();
}

bool ForceEvaluator::IsQuick() const {
    return int64{arrays_.bodies} * arrays_.massive < kPairsWorthSharing;
}

ForceEvaluator::Result ForceEvaluator::Evaluate(int32 order, const StopFlags& stop) {
    collisions_.clear();
    if (IsForRanks()) {
        const RankTask task{RankTask::Kind::kForces, order, arrays_.bodies, arrays_.massive};
        ranks_->Call(&task, sizeof task);
        return EvaluateWithRanks(order, stop);
    }
    if (IsQuick()) return EvaluateQuickly(order, stop);
    if (order >= 4 && kept_.empty() && EndOfMassive() < arrays_.bodies)
        return EvaluateMassiveFirst(stop);
    Pass first{*this, Pass::Kind::kFirst, order, stop, TargetsPerTask(), arrays_.bodies};
    Run(&first);
    if (first.stopped) return Result::kStopped;
    if (first.touching) return ListCollisions(stop);
    rate_ = first.rate;
    if (order >= 4) {
        Pass second{*this, Pass::Kind::kSecond, order, stop, TargetsPerTask(), arrays_.bodies};
        Run(&second);
        if (second.stopped) return Result::kStopped;
    }
    return Result::kDone;
}

int32 ForceEvaluator::EndOfMassive() const {
    return std::min(RoundUp(arrays_.massive, kMaxLanes), arrays_.bodies);
}

// Both passes over a massless target in one go: most of the second one's time goes into finding
// again what the first one had.
ForceEvaluator::Result ForceEvaluator::EvaluateMassiveFirst(const StopFlags& stop) {
    constexpr int32 kOrder = 4;
    Pass first{*this, Pass::Kind::kFirst, kOrder, stop, TargetsPerTask(), EndOfMassive()};
    Run(&first);
    if (first.stopped) return Result::kStopped;
    if (first.touching) return ListCollisions(stop);
    rooms_.resize(static_cast<std::size_t>(threads_));
    for (std::vector<double>& room : rooms_)
        room.resize(2 * static_cast<std::size_t>(TargetsPerTask()) *
                    static_cast<std::size_t>(arrays_.massive));
    Pass rest{*this, Pass::Kind::kRest, kOrder, stop, TargetsPerTask(), arrays_.bodies};
    rest.rooms = &rooms_;
    Run(&rest);
    if (rest.stopped) return Result::kStopped;
    if (rest.touching) return ListCollisions(stop);
    rate_ = std::max(first.rate.load(), rest.rate.load());
    return Result::kDone;
}

int32 ForceEvaluator::TargetsPerTask() const {
    return RoundUp(kPairsPerTask / std::max(arrays_.massive, 1) + 1, kMaxLanes);
}

bool ForceEvaluator::IsForRanks() const {
    return ranks_ != nullptr && ranks_->Count() > 1 &&
           int64{arrays_.bodies} * arrays_.massive >= ranks_->LeastPairs();
}

void ForceEvaluator::Help(const RankTask& task) {
    if (task.bodies != arrays_.bodies || task.massive != arrays_.massive)
        Resize(task.bodies, task.massive);
    StopFlags never;
    never.pauseCount = 0;
    static_cast<void>(EvaluateWithRanks(task.order, never));
}

// Each has the targets of its part, as Evaluate has all; what touches number 0 finds alone.
ForceEvaluator::Result ForceEvaluator::EvaluateWithRanks(int32 order, const StopFlags& stop) {
    if (!rankRows_ || rankRows_->CountBodies() != arrays_.bodies)
        rankRows_ = std::make_unique<RankRows>(ranks_, arrays_.bodies);
    RankRows& rows = *rankRows_;
    rows.Tell({Position(0), Position(1), Position(2), Velocity(0), Velocity(1), Velocity(2), GM(),
               Radius()});
    Pass first{*this, Pass::Kind::kFirst, order, stop, TargetsPerTask(), rows.End(), rows.Begin()};
    Run(&first);
    rate_ = first.rate;
    double touching = first.touching ? 1.0 : 0.0;
    double stopped = first.stopped ? 1.0 : 0.0;
    rows.Share({Array(kAcceleration), Array(kAcceleration + 1), Array(kAcceleration + 2)},
               {&rate_, &touching, &stopped});
    if (stopped > 0.0) return Result::kStopped;
    if (touching > 0.0) return ranks_->IsFirst() ? ListCollisions(stop) : Result::kCollision;
    if (order == 3) rows.Gather({Array(kJerk), Array(kJerk + 1), Array(kJerk + 2)});
    if (order < 4) return Result::kDone;
    Pass second{*this,      Pass::Kind::kSecond, order, stop, TargetsPerTask(),
                rows.End(), rows.Begin()};
    Run(&second);
    rows.Gather({Array(kJerk), Array(kJerk + 1), Array(kJerk + 2), Array(kSnap), Array(kSnap + 1),
                 Array(kSnap + 2)});
    return second.stopped ? Result::kStopped : Result::kDone;
}

// On this thread alone and in one go.
ForceEvaluator::Result ForceEvaluator::EvaluateQuickly(int32 order, const StopFlags& stop) {
    if (arrays_.bodies == 2 && arrays_.massive > 0) {
        double rate = 0.0;
        if (EvaluatePair(arrays_, order, &rate)) {
            rate_ = std::max(kMinRate, rate);
            return Result::kDone;
        }
    }
    const FirstPassResult found = instance_->firstPass(arrays_, order, 0, arrays_.bodies);
    if (found.touching) return ListCollisions(stop);
    rate_ = std::max(kMinRate, found.rate);
    if (order >= 4) instance_->secondPass(arrays_, 0, arrays_.bodies);
    return Result::kDone;
}

void ForceEvaluator::Run(Pass* pass) {
    if (threads_ == 1) return pass->DoTasks();
    if (!team_) team_ = std::make_unique<WorkerTeam>(threads_ - 1);
    team_->Run(Pass::DoTasks, pass);
}

ForceEvaluator::Result ForceEvaluator::ListCollisions(const StopFlags& stop) {
    const double* const x = Position(0);
    const double* const y = Position(1);
    const double* const z = Position(2);
    const double* const radius = Radius();
    collisions_.clear();
    for (int32 i = CountMassive() - 1; i >= 0; i--) {
        if (stop.ShouldStop()) return Result::kStopped;
        for (int32 j = CountBodies() - 1; j > i; j--) {
            const double dx = x[i] - x[j];
            const double dy = y[i] - y[j];
            const double dz = z[i] - z[j];
            const double reach = radius[i] + radius[j];
            const bool apart = dx * dx + dy * dy + dz * dz > reach * reach;
            if (!apart) collisions_.push_back({j, i});
        }
    }
    return Result::kCollision;
}

bool ForceEvaluator::Interacts() const {
    return rate_ > kMinRate;
}
