// Has a display compared with another epoch: the menu, the comparison, and what is shown of it.
// Owned by the display and used with its lock.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Displays/Comparison/BranchStartFinder.h"
#include "Displays/Comparison/CompareMenu.h"
#include "Displays/Comparison/EpochDifferences.h"
#include "Displays/Comparison/RunComparison.h"

class BMessage;
class PictureMover;
class ProjectionDialogs;
class ShownModel;

class ComparisonControl {
public:
    // None is owned.
    ComparisonControl(TrajectoryDisplay* display, const ShownModel* shown, PictureMover* mover,
                      const ProjectionDialogs* dialogs, const DisplayContext& context)
        : display_(display),
          shown_(shown),
          mover_(mover),
          dialogs_(dialogs),
          context_(context),
          comparison_(display, context) {}

    void SetHistory(const RunHistory* history) { comparison_.SetHistory(history); }
    // Not owned either.
    void SetMenu(CompareMenu* menu) { menu_ = menu; }
    [[nodiscard]] const RunComparison& Comparison() const { return comparison_; }

    // False for a message about something else.
    bool Handle(const BMessage& message);
    // Null, or what the tree has no more: with nothing.
    void CompareWith(const AbEpoch* other);
    // After these changes of the model.
    void Redisplay(int32 changes);
    // Has the distance computed, if it is not known for what is shown.
    void Measure();
    // Lines below the time.
    void AddTexts(std::vector<OverlayItem>* items) const;
    void AddRings(std::vector<OverlayItem>* items) const;
    // The display goes.
    void End();

private:
    // In a window of their own.
    void ShowDifferences();
    void TellDifferences();
    [[nodiscard]] std::string DifferencesText() const;
    [[nodiscard]] BranchStartFinder::Ways BranchWays() const;
    [[nodiscard]] const AbEpoch* ShownEpoch() const;
    void TellDistance();

    TrajectoryDisplay* const display_;
    const ShownModel* const shown_;
    PictureMover* const mover_;
    const ProjectionDialogs* const dialogs_;
    const DisplayContext& context_;
    RunComparison comparison_;
    CompareMenu* menu_ = nullptr;
    BMessenger differences_;  // the window; what was asked about there are the next two
    const AbEpoch* asked_ = nullptr;
    std::unique_ptr<BranchStartFinder> starts_;
};
