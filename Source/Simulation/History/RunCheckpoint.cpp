#include "Simulation/History/RunCheckpoint.h"

#include "Calculation/TaylorCalculator.h"
#include "Calculation/TaylorParts.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Systems/Body.h"

namespace {

// Memory may be lacking within.
class ReadLocked {
public:
    explicit ReadLocked(EpochPortal* portal) : portal_(portal) { portal_->ReadLock(); }
    ~ReadLocked() { portal_->ReadUnlock(); }
    ReadLocked(const ReadLocked&) = delete;
    ReadLocked& operator=(const ReadLocked&) = delete;

private:
    EpochPortal* const portal_;
};

}  // namespace

std::size_t RunCheckpoint::Bytes() const {
    // The parts of a body's position and velocity, and its identifier, in the record.
    constexpr std::size_t kPartsOfBody =
        3 * (TaylorParts::kPositionParts + TaylorParts::kVelocityParts) + 1;
    constexpr std::size_t kNumbersOfBody = kPartsOfBody + 3 + 3 + 3;
    return sizeof(RunCheckpoint) +
           state.CountBodies() * (kNumbersOfBody * sizeof(double) + sizeof(std::string));
}

std::optional<RunCheckpoint> TakeCheckpoint(EpochPortal* portal,
                                            const TaylorCalculator& calculator) {
    RunCheckpoint checkpoint;
    const ReadLocked lock(portal);
    if (calculator.ArchiveRun(&checkpoint.calculator) != B_OK) return std::nullopt;
    const AbEpoch& epoch = *calculator.GetEpoch();
    checkpoint.order = epoch.Order();
    checkpoint.cutoff = epoch.Cutoff();
    checkpoint.state = StateOf(*portal);
    for (int32 i = 0; i < calculator.CountBodies(); i++)
        checkpoint.radii.push_back(calculator.BodyAt(i)->Radius());
    return checkpoint;
}
