// The trails of a space display, from the kept runs: taken anew now and then, and in between
// lengthened to where the bodies are. Owned by the display and used with its lock.
#pragma once

#include <optional>
#include <vector>

#include "Displays/Space/SpaceScene.h"
#include "Displays/Trajectories/TrailSource.h"
#include "Platform/Kernel/OS.h"

class EpochPortal;
class RunHistory;

class SpaceTrails {
public:
    // Null: there are none. Not owned.
    void SetHistory(const RunHistory* history) { source_.history = history; }
    [[nodiscard]] const RunHistory* History() const { return source_.history; }

    // The epochs, the bodies, what they look like or what is followed may be others.
    void ModelChanged(const AbEpoch* run, std::vector<TrailSource::Member> reference);
    // Brings the scene's trails up to its time and to its bodies.
    void Update(EpochPortal* portal, SpaceScene* scene);

private:
    void Lengthen(SpaceScene* scene);

    TrailSource source_;
    std::optional<std::vector<TrailSource::Part>> parts_;
    std::vector<int32> bodies_;  // of each trail that still grows: which one it is of, or -1
    bool isLengthened_ = false;
    bigtime_t due_ = 0;
};
