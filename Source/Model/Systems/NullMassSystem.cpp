#include "Model/Systems/NullMassSystem.h"

#include <limits>
#include <memory>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

}  // namespace

NullMassSystem::NullMassSystem() : MassSystem(kNoSystemID) {}

NullMassSystem::NullMassSystem(BMessage* archive) : MassSystem(archive) {}

BArchivable* NullMassSystem::Instantiate(BMessage* archive) {
    return InstantiateAs<NullMassSystem>(archive).release();
}

ThreeVector NullMassSystem::Position() const {
    return {kNaN, kNaN, kNaN};
}

ThreeVector NullMassSystem::Velocity() const {
    return {kNaN, kNaN, kNaN};
}

double NullMassSystem::M() const {
    return kNaN;
}

double NullMassSystem::Radius() const {
    return kNaN;
}
