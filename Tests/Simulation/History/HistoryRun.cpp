#include "Tests/Simulation/History/HistoryRun.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <limits>

#include "Calculation/CollisionMailbox.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessenger.h"
#include "Simulation/Document/CollisionMerger.h"

namespace {

constexpr uint32 kTake = FourCC("take");
constexpr double kNoTime = std::numeric_limits<double>::infinity();

class Parking : public Observer {
public:
    explicit Parking(EpochPortal* portal) : portal_(portal) { portal_->AddObserver(this); }
    ~Parking() override { portal_->RemoveObserver(this); }
    void Changed(int32 what) override {
        if (what != kCalculatorParked) return;
        const std::lock_guard lock(mutex_);
        hasParked_ = true;
        parking_.notify_all();
    }
    bool CommitChanges() override { return false; }
    void Expect() {
        const std::lock_guard lock(mutex_);
        hasParked_ = false;
    }
    void Await() {
        std::unique_lock lock(mutex_);
        parking_.wait(lock, [this] { return hasParked_; });
    }

private:
    EpochPortal* const portal_;
    std::mutex mutex_;
    std::condition_variable parking_;
    bool hasParked_ = false;
};

}  // namespace

ReportRecorder::ReportRecorder(SimulationDocument* document) : document_(document) {
    release_ben(document_->GetCalculator()->WriteOk());
    document_->AddConsumer(this);
}

ReportRecorder::~ReportRecorder() {
    document_->RemoveConsumer(this);
}

void ReportRecorder::PrepareForGo(int32) {
    ids_.clear();
    for (int32 i = 0; i < document_->GetCalculator()->CountBodies(); i++)
        ids_.push_back(document_->GetCalculator()->BodyAt(i)->ID());
}

void ReportRecorder::ReadData(int32 count, double* times, double* positions, double* velocities) {
    const std::size_t stride = 3 * ids_.size();
    for (int32 k = 0; k < count; k++, positions += stride, velocities += stride)
        reports.push_back(
            {times[k], ids_, {positions, positions + stride}, {velocities, velocities + stride}});
}

void ReportRecorder::ReadOk() {
    release_ben(document_->GetCalculator()->WriteOk());
}

// Takes the calculator's messages.
class HistoryRun::Mail : public BLooper {
public:
    void MessageReceived(BMessage* message) override {
        if (message->what == CollisionMailbox::kCollisionMessage) pairs_ = *message;
        if (message->what != kTake) return;
        SendReply(pairs_);
        pairs_.MakeEmpty();
    }
    BMessage Take() {
        BMessage answer;
        const BMessage request(kTake);
        EXPECT_EQ(BMessenger(this).SendMessage(&request, &answer), B_OK);
        return answer;
    }

private:
    BMessage pairs_{CollisionMailbox::kCollisionMessage};
};

HistoryRun::HistoryRun(const std::vector<Planet>& bodies) : HistoryRun(bodies, Settings()) {}

HistoryRun::HistoryRun(const std::vector<Planet>& bodies, const Settings& settings)
    : HistoryRun(RecordOfBodies(bodies, settings), settings) {
    Focus()->SetCOMOnGo(false);
}

HistoryRun::HistoryRun(const BMessage& record) : HistoryRun(record, Settings()) {}

HistoryRun::HistoryRun(const BMessage& record, const Settings& settings)
    : mail_(new Mail),
      document(mail_),
      history(document.Portal(), document.GetCalculator(), settings.limits) {
    document.AddConsumer(&history);
    mail_->Run();
    EXPECT_FALSE(document.Load(record).Failed());
}

BMessage HistoryRun::Record() {
    BMessage record;
    EXPECT_FALSE(document.Store(&record, true).Failed());
    return record;
}

HistoryRun::~HistoryRun() {
    if (mail_->Lock()) mail_->Quit();
}

BMessage HistoryRun::RecordOfBodies(const std::vector<Planet>& bodies, const Settings& settings) {
    Epoch epoch;
    epoch.SetName("Start");
    epoch.SetOrder(settings.order);
    epoch.SetCutoff(settings.cutoff);
    epoch.SetOnContact(settings.onContact);
    int64 id = 0;
    for (const Planet& planet : bodies) {
        auto body = MakeBody(("Body " + std::to_string(id)).c_str(), id, planet.gm,
                             {planet.x, planet.y, 0.0}, {planet.vx, planet.vy, 0.0});
        body->SetRadius(planet.radius);
        epoch.RootSystem()->AddChild(body.release());
        id++;
    }
    return RecordOf({&epoch});
}

void HistoryRun::Run(int64 count, int64 hold) {
    Parking parking(document.Portal());
    Calculator* const calculator = document.GetCalculator();
    int64 left = count;
    bool isFirst = true;
    while (left > 0) {
        const int64 part = hold > 0 ? std::min(hold, left) : left;
        calculator->SetRunLimit(part, kNoTime);
        parking.Expect();
        isFirst ? control.UnPause() : control.UnRest();
        isFirst = false;
        for (;;) {
            parking.Await();
            control.Rest();
            parking.Expect();
            if (!Merge()) break;
            control.UnRest();
        }
        left -= part;
    }
    control.Pause();
    control.UnRest();
}

bool HistoryRun::Merge() {
    const BMessage pairs = mail_->Take();
    if (pairs.IsEmpty()) return false;
    const MergeResult result = MergeCollidingBodies(document.Portal(), pairs, " & ");
    EXPECT_FALSE(result.mergers.empty());
    history.NoteMergers(result);
    mergers += static_cast<int32>(result.mergers.size());
    return true;
}

int32 HistoryRun::CountWrong(const std::vector<ReportRecorder::Report>& reports,
                             const std::vector<std::size_t>& asked) {
    int32 wrong = 0;
    for (const std::size_t i : asked) {
        SystemState state;
        if (StateAt(reports[i].time, &state) != RunHistory::Finding::kFound ||
            !IsAt(state, reports[i]))
            wrong++;
    }
    return wrong;
}

bool IsAt(const SystemState& state, const ReportRecorder::Report& report) {
    return state.time == report.time && state.ids == report.ids &&
           state.positions == report.positions && state.velocities == report.velocities;
}

std::vector<HistoryRun::Planet> TwoCollisions() {
    return {{1.0, 0.0, 0.0, 0.0, 0.0, 0.0},   {1e-3, 1.0, 0.0, 0.0, 1.0, 0.0},
            {2e-6, 20.0, 0.0, 0.0, 0.2, 0.5}, {1e-6, 20.0, 1.9, 0.0, 0.1, 0.5},
            {2e-6, 0.0, 30.0, 0.2, 0.0, 0.5}, {1e-6, 2.5, 30.0, 0.1, 0.0, 0.5}};
}
