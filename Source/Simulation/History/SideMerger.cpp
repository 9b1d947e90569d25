#include "Simulation/History/SideMerger.h"

#include "Calculation/Calculator.h"
#include "Calculation/CollisionMailbox.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/History/SideRun.h"

SideMerger::SideMerger(SideRun* run, std::string joiner) : run_(run), joiner_(std::move(joiner)) {
    run_->GetCalculator()->AddWatcher(this);
}

void SideMerger::BodiesAre(double /*time*/, const std::vector<Body*>& bodies, int32 /*massive*/) {
    ids_.clear();
    for (const Body* const body : bodies)
        ids_.push_back(body->ID());
}

void SideMerger::Touched(double /*time*/, const BodyArrays& /*bodies*/,
                         const std::vector<CollidingPair>& pairs) {
    for (const CollidingPair& pair : pairs)
        touching_.emplace_back(ids_[static_cast<std::size_t>(pair.later)],
                               ids_[static_cast<std::size_t>(pair.earlier)]);
}

MergeResult SideMerger::Merge() {
    if (touching_.empty() || run_->GetEpoch()->OnContact() != kContactMerges) return {};
    BMessage message(CollisionMailbox::kCollisionMessage);
    for (const auto& [later, earlier] : touching_) {
        message.AddInt64(CollisionMailbox::kLaterField, later);
        message.AddInt64(CollisionMailbox::kEarlierField, earlier);
    }
    return MergeCollidingBodies(run_->Portal(), message, joiner_);
}
