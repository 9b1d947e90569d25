#include "Run/RunPainter.h"

#include "Calculation/Calculator.h"
#include "Displays/Pictures/RunPicture.h"
#include "Displays/Pictures/SpacePicture.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Interface/Server/HeadlessGraphics.h"
#include "Resources/EpochWindow.h"
#include "Run/Options.h"
#include "Simulation/Document/ProgramResources.h"

namespace {

class PicturePainter final : public RunPainter {
public:
    PicturePainter(EpochPortal* portal, Calculator* calculator, const ProgramResources& resources)
        : portal_(portal), calculator_(calculator), resources_(resources) {
        // Ready for the first batch.
        release_ben(calculator_->WriteOk());
    }

    // A run goes on from the bodies as they are now: others than before if some have merged.
    void PrepareForGo(int32 /*reportsPerSegment*/) override {
        const ReadGuard guard(portal_);
        picture_.PrepareForGo(portal_->BodiesInMassOrder(), portal_->FocusEpoch()->Time());
    }

    void ReadData(int32 count, double* times, double* positions, double* velocities) override {
        picture_.ReadData(count, times, positions, velocities);
    }
    void ReadOk() override { release_ben(calculator_->WriteOk()); }

    [[nodiscard]] std::vector<std::byte> Draw(const Options& options) const override {
        char name[] = "orvek-run";
        const HeadlessGraphics fonts(name);
        PictureSettings settings;
        settings.width = static_cast<float>(options.width);
        settings.height = static_cast<float>(options.height);
        settings.axis = options.axis;
        settings.scale = options.scale;
        settings.distanceUnits = &resources_.DistanceUnits();
        settings.timeUnits = &resources_.TimeUnits();
        settings.timePrefix = resources_.InterfaceLabel(kLabelTimeIs);
        {
            const ReadGuard guard(portal_);
            settings.timeUval = portal_->FocusEpoch()->TimeUval();
        }
        if (!options.camera) return picture_.Encode(settings);
        return EncodeSpacePicture(
            picture_.Scene(),
            {options.camera->azimuth, options.camera->elevation, options.camera->distance},
            settings);
    }

private:
    EpochPortal* const portal_;
    Calculator* const calculator_;
    const ProgramResources& resources_;
    RunPicture picture_;
};

}  // namespace

bool RunPainter::IsPossible() {
    return true;
}

std::unique_ptr<RunPainter> RunPainter::Make(EpochPortal* portal, Calculator* calculator,
                                             const ProgramResources& resources) {
    return std::make_unique<PicturePainter>(portal, calculator, resources);
}
