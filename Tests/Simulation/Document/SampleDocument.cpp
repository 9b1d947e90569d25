#include "Tests/Simulation/Document/SampleDocument.h"

#include <limits>

#include "Model/Commands/NewEpochCommand.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Simulation/Document/SimulationFile.h"

std::unique_ptr<Body> MakeBody(const char* name, int64 id, double gm, ThreeVector position,
                               ThreeVector velocity) {
    auto body = std::make_unique<Body>(name, id, rgb_color{10, 20, 30, 255},
                                       rgb_color{40, 50, 60, 255}, kOriginID);
    body->SetM(gm);
    body->SetPosition(position);
    body->SetVelocity(velocity);
    return body;
}

std::unique_ptr<Epoch> MakePlanetEpoch(const char* name) {
    auto epoch = std::make_unique<Epoch>();
    epoch->SetName(name);
    MassSystem* root = epoch->RootSystem();
    root->AddChild(MakeBody("Star", 0, kSunGM, {1e9, 2e9, 3e9}, {10, 20, -30}).release());
    root->AddChild(MakeBody("Planet", 1, 4e14, {1.5e11, 0, 1e9}, {0, 29800, 0}).release());
    root->AddChild(MakeBody("Moon", 2, 5e12, {1.504e11, 0, 1e9}, {0, 30800, 100}).release());
    root->AddChild(MakeBody("Probe", 3, 0, {-2e11, 1e10, 0}, {0, -26000, 10}).release());
    return epoch;
}

BMessage RecordOf(const std::vector<const AbEpoch*>& topLevel) {
    BMessage record;
    for (const AbEpoch* epoch : topLevel) {
        BMessage archive;
        static_cast<void>(epoch->Archive(&archive, true));
        record.AddMessage("Epochs", &archive);
    }
    return record;
}

BMessage PlanetRecord() {
    return RecordOf({MakePlanetEpoch("Genesis").get()});
}

std::string FileOf(const BMessage& record) {
    std::vector<std::byte> bytes;
    static_cast<void>(record.Flatten(&bytes));
    return std::string(SimulationFile::kTag) +
           std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

std::string Outline(AbEpoch* root) {
    std::string text;
    for (int32 i = 0; i < root->CountChildren(); i++) {
        AbEpoch* const epoch = root->ChildAt(i);
        text += (i > 0 ? " " : "") + epoch->Name();
        if (epoch->CountChildren() > 0) text += '(' + Outline(epoch) + ')';
    }
    return text;
}

Bits BitsOf(SimulationDocument* document) {
    Bits bits{document->Portal()->FocusEpoch()->Time(), {}};
    for (const Body* body : document->Portal()->BodiesInMassOrder())
        for (const ThreeVector& v : {body->Position(), body->Velocity()})
            bits.coordinates.insert(bits.coordinates.end(), {v.x, v.y, v.z});
    return bits;
}

StepRunner::StepRunner(SimulationDocument* document) : document_(document) {
    document_->Portal()->AddObserver(this);
}

StepRunner::~StepRunner() {
    document_->Portal()->RemoveObserver(this);
}

void StepRunner::Run(RunControl* control, int64 steps) {
    {
        const std::lock_guard lock(mutex_);
        parked_ = false;
    }
    document_->GetCalculator()->SetRunLimit(steps, std::numeric_limits<double>::infinity());
    control->UnPause();
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return parked_; });
    lock.unlock();
    control->Pause();
}

void StepRunner::Changed(int32 what) {
    if (what != kCalculatorParked) return;
    const std::lock_guard lock(mutex_);
    parked_ = true;
    changed_.notify_all();
}

void NestAsDeepAsPossible(EpochPortal* portal) {
    AbEpoch* epoch = portal->RootEpoch()->ChildAt(0);
    for (int32 depth = 1; depth < NewEpochCommand::kMaxDepth; depth++) {
        auto next = std::make_unique<Epoch>();
        epoch->SetWriteable(false);
        epoch->AddChild(next.get());
        epoch = next.release();
    }
    epoch->SetWriteable(false);
    epoch->RootSystem()->AddChild(MakeBody("Last", 7, 1e20, {}, {}).release());
    portal->SetEpochTo(epoch);
}
