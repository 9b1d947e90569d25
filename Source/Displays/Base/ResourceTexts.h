// The texts of the program's resources, as widgets ask for them. The resources must outlive it.
#pragma once

#include "Interface Widgets/InterfaceTexts.h"
#include "Simulation/Document/ProgramResources.h"

class ResourceTexts final : public InterfaceTexts {
public:
    explicit ResourceTexts(const ProgramResources* resources) : resources_(resources) {}

    [[nodiscard]] const std::string& Label(int32 id) const override {
        return resources_->InterfaceLabel(id);
    }

private:
    const ProgramResources* const resources_;
};
