#include "Displays/Hands/OrbitPreview.h"

#include <algorithm>
#include <utility>

#include "Calculation/Calculator.h"
#include "Calculation/CollisionMailbox.h"
#include "Calculation/ReportConsumer.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/NewIdentifiers.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Kernel/OS.h"
#include "Simulation/Document/CollisionMerger.h"
#include "Simulation/History/SideRun.h"

namespace {

constexpr bigtime_t kFirstNews = 50'000;
constexpr bigtime_t kMoreNews = 100'000;
// More are not told apart on a screen.
constexpr std::size_t kMaxPlaces = 4000;
// Bodies that come to rest so near to touching, in parts of the distance, have touched.
constexpr double kTouch = 1.01;

// Puts the changed body into the copy; its identifier there.
int64 PutBody(const HandBody& changed, Epoch* epoch) {
    auto* const body = dynamic_cast<Body*>(epoch->SystemFromID(changed.id));
    if (body != nullptr) {
        body->SetPosition(changed.position);
        body->SetVelocity(changed.velocity);
        return changed.id;
    }
    const int64 id = std::max<int64>(epoch->MaxSystemID(), -1) + 1;
    auto added = std::make_unique<Body>("", id, rgb_color{}, rgb_color{}, kOriginID);
    added->SetM(changed.gm);
    added->SetRadius(changed.radius);
    added->SetPosition(changed.position);
    added->SetVelocity(changed.velocity);
    if (epoch->RootSystem()->AddChild(added.get()) == B_OK) static_cast<void>(added.release());
    return id;
}

bool HaveTouched(const Body& a, const Body& b) {
    return Length(a.Position() - b.Position()) <= kTouch * (a.Radius() + b.Radius());
}

std::optional<std::string> FindTouched(const std::vector<Body*>& bodies, int64 id) {
    const auto isIt = [id](const Body* body) { return body->ID() == id; };
    const auto it = std::find_if(bodies.begin(), bodies.end(), isIt);
    if (it == bodies.end()) return std::nullopt;
    for (const Body* const other : bodies)
        if (other != *it && HaveTouched(*other, **it)) return other->Name();
    return std::nullopt;
}

// What touches while the run rests becomes one, under the heavier one's own name.
std::vector<Merger> MergeTouching(SideRun* side) {
    BMessage pairs(CollisionMailbox::kCollisionMessage);
    {
        const ReadGuard guard(side->Portal());
        const std::vector<Body*> bodies = side->Portal()->BodiesInMassOrder();
        for (std::size_t i = 0; i < bodies.size(); i++)
            for (std::size_t j = i + 1; j < bodies.size(); j++)
                if (HaveTouched(*bodies[i], *bodies[j])) {
                    pairs.AddInt64(CollisionMailbox::kLaterField, bodies[j]->ID());
                    pairs.AddInt64(CollisionMailbox::kEarlierField, bodies[i]->ID());
                }
    }
    std::vector<Merger> mergers = MergeCollidingBodies(side->Portal(), pairs, {}).mergers;
    const WriteGuard guard(side->Portal());
    for (const Merger& merger : mergers)
        if (MassSystem* const survivor = side->GetEpoch()->SystemFromID(merger.survivor))
            survivor->SetName(merger.survivorName.c_str());
    return mergers;
}

}  // namespace

// Takes the reports of the private calculator.
class OrbitPreview::Follower : public ReportConsumer {
public:
    Follower(OrbitPreview* preview, int64 number) : preview_(preview), number_(number) {}

    void Enter(Calculator* calculator, int64 id, const HandSystem& system) {
        calculator_ = calculator;
        id_ = id;
        FindStill(system);
        release_ben(calculator->WriteOk());
    }
    // While the calculator is parked: its reports will be of these.
    void Follow(const std::vector<Body*>& bodies) {
        reference_.clear();
        for (std::size_t i = 0; i < bodies.size(); i++) {
            if (bodies[i]->ID() == id_) body_ = i;
            for (const Still& still : still_)
                if (still.id == bodies[i]->ID())
                    reference_.push_back({static_cast<int32>(i), still.weight});
        }
        count_ = bodies.size();
    }
    void NoteMergers(const std::vector<Merger>& mergers) {
        for (const Merger& merger : mergers)
            for (Still& still : still_)
                if (still.id == merger.absorbed) still.id = merger.survivor;
    }
    void PrepareForGo(int32 /*reportsPerDraw*/) override {}
    void ReadData(int32 count, double* /*times*/, double* positions,
                  double* /*velocities*/) override {
        for (int32 i = 0; i < count; i++)
            Add(positions + 3 * count_ * static_cast<std::size_t>(i));
        if (!preview_->IsWanted(number_)) return calculator_->SetInternalPause();
        if (system_time() < nextNews_) return;
        nextNews_ = system_time() + kMoreNews;
        preview_->Put(number_, {places_, false, std::nullopt});
    }
    void ReadOk() override { release_ben(calculator_->WriteOk()); }

    [[nodiscard]] std::vector<ThreeVector> Places() const { return places_; }

private:
    struct Still {
        int64 id;
        double weight;
    };

    // What moves itself is not what its orbit is seen from: then it is what it goes about, which
    // begins where the picture has it.
    void FindStill(const HandSystem& system) {
        bool isHeld = false;
        for (const TrajectoryCache::Member& member : system.reference) {
            const int64 id = system.bodies[static_cast<std::size_t>(member.body)].id;
            isHeld = isHeld || id == id_;
            still_.push_back({id, member.weight});
        }
        if (!isHeld) return;
        still_.clear();
        offset_ = -1.0 * system.origin;
        const int32 body = system.IndexOf(id_);
        const HandBody* const neighbour =
            system.NeighbourOf(system.bodies[static_cast<std::size_t>(body)].position, id_);
        if (neighbour == nullptr) return;
        still_.push_back({neighbour->id, 1.0});
        offset_ += neighbour->position;
    }

    void Add(const double* report) {
        if (reports_++ % stride_ != 0) return;
        const auto at = [report](std::size_t body) {
            return ThreeVector{report[3 * body], report[3 * body + 1], report[3 * body + 2]};
        };
        ThreeVector origin;
        double weight = 0.0;
        for (const TrajectoryCache::Member& member : reference_) {
            origin += member.weight * at(static_cast<std::size_t>(member.body));
            weight += member.weight;
        }
        if (weight > 0.0) origin *= 1.0 / weight;
        places_.push_back(at(body_) - origin + offset_);
        if (places_.size() < kMaxPlaces) return;
        for (std::size_t i = 1; 2 * i < places_.size(); i++)
            places_[i] = places_[2 * i];
        places_.resize((places_.size() + 1) / 2);
        stride_ *= 2;
    }

    OrbitPreview* const preview_;
    const int64 number_;
    Calculator* calculator_ = nullptr;
    std::size_t body_ = 0;
    std::size_t count_ = 0;
    int64 id_ = kNoSystemID;
    std::vector<Still> still_;
    ThreeVector offset_;  // from what stands still to the picture's origin, m
    std::vector<TrajectoryCache::Member> reference_;
    std::vector<ThreeVector> places_;
    int64 reports_ = 0;
    int64 stride_ = 1;
    bigtime_t nextNews_ = system_time() + kFirstNews;
};

OrbitPreview::OrbitPreview(const BHandler* target) : target_(target) {}

OrbitPreview::~OrbitPreview() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        wishes_++;
        wish_.reset();
        changed_.notify_all();
    }
    if (thread_.joinable()) thread_.join();
}

void OrbitPreview::Want(Wish wish) {
    const std::lock_guard lock(mutex_);
    wish_ = std::move(wish);
    wishes_++;
    if (!thread_.joinable()) thread_ = std::thread([this] { Work(); });
    changed_.notify_all();
}

void OrbitPreview::WantNothing() {
    const std::lock_guard lock(mutex_);
    wish_.reset();
    wishes_++;
    path_ = {};
}

OrbitPreview::Path OrbitPreview::GetPath() const {
    const std::lock_guard lock(mutex_);
    return path_;
}

bool OrbitPreview::IsWanted(int64 number) const {
    const std::lock_guard lock(mutex_);
    return wishes_ == number;
}

bool OrbitPreview::Put(int64 number, Path path) {
    {
        const std::lock_guard lock(mutex_);
        if (wishes_ != number) return false;
        path_ = std::move(path);
    }
    WindowServer::Deliver(target_, BMessage(kNews));
    return true;
}

void OrbitPreview::Work() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return isEnding_ || wish_; });
        if (isEnding_) return;
        Wish wish = std::move(*wish_);
        wish_.reset();
        const int64 number = wishes_;
        lock.unlock();
        Compute(std::move(wish), number);
        lock.lock();
    }
}

void OrbitPreview::Compute(Wish wish, int64 number) {
    const int64 id = PutBody(wish.body, wish.epoch.get());
    wish.epoch->SetCalculatorState(nullptr);
    wish.epoch->SetCOMOnGo(false);
    const bool isMerging = wish.epoch->OnContact() == kContactMerges;
    if (isMerging) wish.epoch->SetOnContact(kContactStops);
    const double until = wish.epoch->Time() + wish.span;
    Follower follower(this, number);
    SideRun side(std::move(wish.epoch));
    follower.Enter(side.GetCalculator(), id, wish.system);
    side.AddConsumer(&follower);
    side.GetCalculator()->SetThreads(1);
    side.GetCalculator()->SetRunLimit(0, until);
    std::optional<std::string> hits;
    for (bool isHeld = false;; isHeld = true) {
        {
            const ReadGuard guard(side.Portal());
            follower.Follow(side.Portal()->BodiesInMassOrder());
        }
        if (!side.Run(isHeld, [&] { return IsWanted(number); })) return;
        if (side.Time() >= until) break;
        {
            const ReadGuard guard(side.Portal());
            hits = FindTouched(side.Portal()->BodiesInMassOrder(), id);
        }
        if (hits || !isMerging) break;
        // Others have met; the body goes on.
        const std::vector<Merger> mergers = MergeTouching(&side);
        if (mergers.empty()) break;
        follower.NoteMergers(mergers);
    }
    Put(number, {follower.Places(), true, std::move(hits)});
}
