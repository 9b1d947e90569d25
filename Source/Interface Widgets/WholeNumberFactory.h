// Lets an entry of numbers enter a whole one. Rules as for CommandFactory.
#pragma once

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "Model/Commands/CommandFactory.h"

class WholeNumberFactory final : public NumberCommandFactory {
public:
    explicit WholeNumberFactory(std::unique_ptr<const IntCommandFactory> factory)
        : factory_(std::move(factory)) {}

    double Current(const EpochPortal& portal) const override { return factory_->Current(portal); }
    // Numbers with a fraction are refused.
    std::unique_ptr<LCommand> MakeCommand(EpochPortal* portal, const double& value) const override {
        const bool isWhole =
            value == std::floor(value) && std::fabs(value) <= std::numeric_limits<int32>::max();
        return isWhole ? factory_->MakeCommand(portal, static_cast<int32>(value)) : nullptr;
    }
    [[nodiscard]] bool EditsEpoch() const override { return factory_->EditsEpoch(); }

private:
    const std::unique_ptr<const IntCommandFactory> factory_;
};
